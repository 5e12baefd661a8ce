#pragma once
// The card of a customer or a supplier: one table for both kinds, one
// number sequence, the tax codes checked when left and tested for
// duplicates within the kind, the privacy notice of the card.

#include "screens/framework/cnumberedscreen.h"

class QComboBox;
class QWidget;

class frmAnagrafica : public cNumberedScreen
{
    Q_OBJECT

public:
    explicit frmAnagrafica(QWidget* parent = nullptr);

    bool saveRecord() override;
    // False when a new card holds a tax code or VAT number already in use by
    // a card of the same kind (the user is told).
    bool checkCodFiscPIVA(const QString& codiceFiscale, const QString& partitaIva, const QString& tipo);

    // The commands beyond the four of every card: 4 statement, 5 due dates,
    // 6 privacy notice, 7 print card.
    void cmdCommandExtra_Click(int index);

protected:
    QString codeCondition(const QString& code) const override;
    QString searchStatement() const override;
    QString deleteQuestion() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    bool fieldLeft(const QString& controlName) override;

private:
    QString tipo() const;
    // Asks "Continuare?" for a code whose control character is wrong;
    // true when the code passes or the user accepts it.
    bool confermaCodice(bool valido, const QString& messaggio);
    void cmbTipo_Click();
    void chkFido_Click();
    void printInformativa();

    QWidget* m_pctEstrC = nullptr;
    QWidget* m_pctEstrF = nullptr;
};
