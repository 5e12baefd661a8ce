#pragma once
// The document types: code, descriptions, causal, numerator, report, the
// flags that steer the document engine, the withholding (R.D.A.) and the
// printer of this workstation. Saving or deleting a type has the main
// window rebuild its document menu.

#include "screens/framework/crecordscreen.h"

class QComboBox;
class QToolButton;

class frmTipoDocumento : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmTipoDocumento(QWidget* parent = nullptr);

    bool newRecord() override;
    bool saveRecord() override;
    bool deleteRecord() override;
    void showData(int rid, const QString& codice) override;
    void cmdSfoglia_Click(int index) override;

protected:
    QString selectStatement() const override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    QString searchStatement() const override;
    void onFunctionKey(const QString& controlName, int keyCode, int shift) override;

private:
    QComboBox* combo(const char* name) const;
    void fillNumeratori();
    void fillStampanti();
    void chkRDA_Click();
    void causaleChanged();
    void cmdCausale_Click();
    QString stampanteScelta() const;

    QComboBox* m_cmbStampante;
    QToolButton* m_cmdCausale;
};
