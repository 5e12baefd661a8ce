#pragma once
// The bill of material screen: the head of a kit, a row editor for its
// components and the list of them, saved with the kit's mirror product in
// one transaction. The rules and the statements are in distintabase.h.

#include "masterdata/distintabase.h"
#include "screens/framework/crecordscreen.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QLineEdit;
class QTreeWidget;
class cLookupField;

class frmDistintaBase : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmDistintaBase(QWidget* parent = nullptr);

    bool newRecord() override;
    bool saveRecord() override;
    void showData(int rid, const QString& codice) override;
    void cmdSfoglia_Click(int index) override;

    const ElencoDistinta& elenco() const { return m_elenco; }
    // Wide enough for every column of the list.
    QSize sizeHint() const override;

    // The row editor: the product by key (as the search gives it), the row
    // into the list, the selected or loaded row deleted, the editor emptied.
    void prodottoScelto(int fkProdotto);
    void cmdConferma_Click();
    void delProdotto();
    void cmdAnnulla_Click();
    // A double click on a row: a deleted row asks to come back, any other is
    // loaded into the editor.
    void lswElenco_DblClick(int riga);
    void selezionaRiga(int riga);

protected:
    QString codeCondition(const QString& code) const override;
    QString searchStatement() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    int writeRecord(int rid) override;
    bool saveDetails(int rid) override;
    QString deleteQuestion() const override;
    bool removeRecord(int rid) override;
    bool fieldLeft(const QString& controlName) override;
    void onFunctionKey(const QString& controlName, int keyCode, int shift) override;
    void closeEvent(QCloseEvent* event) override;

public:
    // The print of the saved kit (DistintaBase.rpt), in the preview.
    void printRecord();

private:
    QWidget* buildEditor();
    QWidget* buildTotals();
    QLineEdit* editorField(const char* name, int typeFormat, int decimals, int width);
    cLookupField* editorLookup(int index, const char* name, QWidget*& row);
    TestaDistinta testa() const;
    QString precodice() const;
    RigaDistinta rigaEditor() const;
    void mostraEditor(const RigaDistinta& riga);
    void resetEditor();
    void mostraElenco();
    void calcolaTotali();
    int rigaSelezionata() const;
    bool txtBarCode_Validate();
    void txtProdotto_Validate();
    // controllaModifica: another product than the loaded row's is refused.
    bool controllaModifica(int fkProdotto);
    // Unsaved rows: the question, and the save on yes. False keeps the screen as it is.
    bool chiediSalvataggio();

    ElencoDistinta m_elenco;
    QLabel* m_lblPrecodice = nullptr;
    QLineEdit* m_txtProdotto = nullptr;
    QLabel* m_lblDescProdotto = nullptr;
    QLineEdit* m_txtQuantita = nullptr;
    QLineEdit* m_txtPrezzo = nullptr;
    cLookupField* m_iva = nullptr;
    cLookupField* m_um = nullptr;
    QCheckBox* m_chkAddPrev = nullptr;
    QTreeWidget* m_lswElenco = nullptr;
    QPushButton* m_cmdStampa = nullptr;
    QLabel* m_lblTotaleImponibile = nullptr;
    QLabel* m_lblTotaleIva = nullptr;
    QLabel* m_lblTotaleImporto = nullptr;
    // The product in the editor and the rate of its VAT.
    RigaDistinta m_editor;
    Single m_valoreIva = 0;
    // The list row loaded in the editor, -1 for none.
    int m_caricata = -1;
    // The code the kit had before this save.
    QString m_precedente;
};
