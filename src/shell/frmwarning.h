#pragma once
// The error report dialog: what failed, where, and the statement or values at
// hand. "OK" goes on; "Esci da Orvantis" ends the program at once.

#include "common/errorlog.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QLineEdit;
class QPushButton;
class QWidget;

class frmWarning : public QDialog
{
    Q_OBJECT

public:
    explicit frmWarning(const ErrorReport& report, QWidget* parent = nullptr);

    bool isLong() const;

    // Installs the dialog as the report path of gError: Err.log is written by
    // gError, this dialog shows the report, and its exit button ends the
    // process at once without committing anything.
    static void install();

public Q_SLOTS:
    void reject() override; // Esc and the close button go on, like OK

private:
    void toggleAvanzate();

    QLabel* m_lblNumero;
    QPlainTextEdit* m_txtDescrizione;
    QLineEdit* m_txtModulo;
    QLabel* m_lblOrigine;
    QPlainTextEdit* m_txtAvanzate;
    QWidget* m_longPart;
    QPushButton* m_cmdAvanzate;
};
