#pragma once
// The product card: three codes, the markup between purchase and list
// price, the barcode, the alternatives, simple and assisted duplication.
// The arithmetic and the statements are in prodotto.h.

#include "masterdata/prodotto.h"
#include "screens/framework/crecordscreen.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class frmProdotto : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmProdotto(QWidget* parent = nullptr);

    bool newRecord() override;
    bool saveRecord() override;
    bool deleteRecord() override;

    // The card stands as a new one with all its values.
    void cmdDuplica_Click();
    // A new card with the code and barcode of this one (another brand).
    void cmdAdd_Click();
    void cmdUnlock_Click();
    // The variants (index 1 to 10 and text) in order: the first turns the
    // card into itself when aggiornaOrigine, every other becomes a new
    // product. `avanza` follows each save. False when a save failed.
    bool duplicaVarianti(const QList<QPair<int, QString>>& varianti, bool aggiornaOrigine,
                         const std::function<void(int fatti)>& avanza = {});
    void addAlternativo(int rid);
    QList<Alternativo> alternativi() const;

protected:
    QString selectStatement() const override;
    QString codeCondition(const QString& code) const override;
    QString searchStatement() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    QString insertStatement() const override;
    QString updateStatement(int rid) const override;
    bool saveDetails(int rid) override;
    bool fieldLeft(const QString& controlName) override;
    void codeLeft(const QString& code) override;

private:
    QLineEdit* edit(const char* name) const;
    PrezziProdotto prezzi() const;
    void mostraPrezzi(const PrezziProdotto& p);
    void cambiaPrezzo(PrezzoCambiato cambiato);
    void ivaChanged();
    void lockCode(bool locked);
    void txtCodice2_Validate();
    void showAlternativi(int rid);
    void cmdRemProdAlt_Click();
    void cmdDuplicaAvanzata_Click();
    QWidget* buildPrices();
    QWidget* buildStock();
    QWidget* buildAlternatives();

    QLabel* m_lblIva = nullptr;
    QLabel* m_lblGiacenza = nullptr;
    QLabel* m_lblStatistiche = nullptr;
    QWidget* m_pctGiacenze = nullptr;
    QCheckBox* m_chkLike = nullptr;
    QPushButton* m_cmdUnlock = nullptr;
    QListWidget* m_lstAlternativi = nullptr;
    double m_iva = 0;
    QString m_codiceTenuto; // kept by cmdAdd for another brand
};
