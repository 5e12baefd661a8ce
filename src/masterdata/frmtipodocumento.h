#pragma once
// The document types: code, descriptions, causal, numerator, report, the
// flags that steer the document engine, the withholding (R.D.A.) and the
// printer of this workstation. Saving or deleting a type has the main
// window rebuild its document menu.

#include "crecordscreen.h"
#include "tipodocumento.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;
class cLookupField;

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

    // The type as the fields hold it.
    TipoDocumento tipoDocumento() const;

protected:
    QString tableName() const override { return QStringLiteral("TipoDocumenti"); }
    QString selectStatement() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    QString insertStatement() const override;
    QString updateStatement(int rid) const override;
    QString searchStatement() const override;
    void onFunctionKey(const QString& controlName, int keyCode, int shift) override;
    bool protectsFirstRow() const override { return false; }

private:
    QLineEdit* lineEdit(const char* name);
    QCheckBox* checkBox(const char* name, const char* caption);
    void fillNumeratori();
    void fillStampanti();
    void chkRDA_Click();
    void setCausale(const QString& codice, const QString& descrizione, int rid);
    void cmdCausale_Click();
    QString stampanteScelta() const;

    QLineEdit* m_txtCodice;
    QLineEdit* m_txtDescrizione;
    QLineEdit* m_txtDescStampa;
    QLineEdit* m_txtCausale;
    QLabel* m_lblCausale;
    QToolButton* m_cmdCausale;
    QComboBox* m_cmbNumeratore;
    QComboBox* m_cmbReport;
    QComboBox* m_cmbStampante;
    QCheckBox* m_chkAccompagnatorio;
    QCheckBox* m_chkMostraVB;
    QCheckBox* m_chkNonStampareVB;
    QCheckBox* m_chkStampaElencoSpeciale;
    QCheckBox* m_chkModificaPrezzoAcquisto;
    QCheckBox* m_chkUsaPrezziIva;
    QCheckBox* m_chkFlexCounter;
    QCheckBox* m_chkHideMenu;
    QCheckBox* m_chkHideRicerca;
    QCheckBox* m_chkRDA;
    QLineEdit* m_txtRDA1;
    QLineEdit* m_txtRDA2;
    cTextBox* m_rda1;
    cTextBox* m_rda2;

    cLookupField* m_causale;
};
