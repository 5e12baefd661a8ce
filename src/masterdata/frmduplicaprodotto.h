#pragma once
// Assisted duplication of a product card: up to ten variants of its code,
// each saved as a product of its own (the first may turn the card itself).

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QProgressBar;
class frmProdotto;

class frmDuplicaProdotto : public QDialog
{
    Q_OBJECT

public:
    frmDuplicaProdotto(frmProdotto* prodotto, const QString& codice);
    ~frmDuplicaProdotto() override;

    // The ticked variants in order: their number (1 to 10) and text.
    QList<QPair<int, QString>> varianti() const;
    void cmdEsegui_Click();

private:
    frmProdotto* m_prodotto;
    QList<QCheckBox*> m_chkVariante;
    QList<QLineEdit*> m_txtVariante;
    QCheckBox* m_chkChiediConferma;
    QCheckBox* m_chkSavePrd;
    QProgressBar* m_pgbMain;
};
