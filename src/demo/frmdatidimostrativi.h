#pragma once
// Dati dimostrativi: how many documents, a start button, and the progress
// of the run. While it runs the controls are off but "Interrompi", which
// stops the run after the document in hand; the window doesn't close until
// the run is over. At the end a box tells what the firm now holds.

#include "screens/framework/ritmodisegno.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;

class frmDatiDimostrativi : public QDialog
{
    Q_OBJECT

public:
    explicit frmDatiDimostrativi(QWidget* parent = nullptr);

    void cmdAvvia_Click();
    bool inCorso() const { return m_inCorso; }

public Q_SLOTS:
    void reject() override;

private:
    bool avanzamento(int fatto, int totale, const QString& cosa);

    QSpinBox* m_txtDocumenti;
    QPushButton* m_cmdAvvia;
    QPushButton* m_cmdChiudi;
    QProgressBar* m_pgbMain;
    QLabel* m_lblInfo;
    bool m_inCorso = false;
    bool m_interrompi = false;
    RitmoDisegno m_ritmo;
};
