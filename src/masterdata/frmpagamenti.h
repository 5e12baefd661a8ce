#pragma once
// Payment terms: the head of the term and its grid of instalments, saved
// together in one transaction.

#include "masterdata/pagamento.h"
#include "screens/framework/crecordscreen.h"

class cGrid;

class frmPagamenti : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmPagamenti(QWidget* parent = nullptr);

    bool saveRecord() override;
    void showData(int rid, const QString& codice) override;

    // The grid's rows as shown.
    QList<RataPagamento> rate() const;

protected:
    void clearFields() override;
    QStringList faults() const override;
    bool saveDetails(int rid) override;
    QString deleteQuestion() const override;
    // The term and its instalments together.
    bool removeRecord(int rid) override;
    bool fieldLeft(const QString& controlName) override;

private:
    // The grid rebuilt from "Nr. Rate": one empty row per instalment.
    void txtNrRate_LostFocus();
    void chkRimessaDiretta_Click();
    void showRate(const QList<RataPagamento>& rate);

    cGrid* m_flxRate;
};
