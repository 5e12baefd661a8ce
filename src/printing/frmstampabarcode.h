#pragma once
// Stampa Codici a Barre: the products found by the filters (product, or the
// beginning of its code with chkLike; brand, category, group, collection)
// go into lswElencoDisponibile; the products chosen from there, each with
// its number of labels, make the print list lswElencoStampa. "Stampa"
// writes one row a label into the print database and shows "BarCode.rpt".
// Another screen may open this one with a list of products to print (a
// document's rows): see startMe.

#include "printing/codiciabarre.h"

#include <QElapsedTimer>
#include <QWidget>

#include <functional>

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTreeWidget;
class cLookupField;
struct LookupTable;

class frmStampaBarCode : public QWidget
{
    Q_OBJECT

public:
    explicit frmStampaBarCode(QWidget* parent = nullptr);

    // `lista`: lines ended by "\r", each the product's key, a tab and the
    // number of labels; its products fill the print list.
    void startMe(const QString& lista = QString());

    void eseguiRicerca();
    void nuovaRicerca();
    void addProdotto();
    void addAllProdotti();
    void remProdotto();
    void cmdStampa_Click();

    const ElencoEtichette& elenco() const { return m_elenco; }

private:
    // A filter field of the search, on row `riga` of the group's grid; the
    // look-up of the table, or `valida` in its place.
    cLookupField* filtro(const char* nome, const QString& didascalia, const LookupTable& tabella, int riga,
                         QGridLayout* griglia, QWidget* gruppo,
                         std::function<bool(QString&, QString&, int&)> valida = {});
    // The print list shown again; `rid` is selected and in view.
    void mostraElencoStampa(int rid = 0);
    void checkTickets();
    void abilita(bool abilitato);
    void avanzamentoStampa(int n, int totale);

    cLookupField* m_prodotto = nullptr;
    cLookupField* m_marca = nullptr;
    cLookupField* m_categoria = nullptr;
    cLookupField* m_gruppo = nullptr;
    cLookupField* m_collezione = nullptr;
    QLineEdit* m_txtProdotto = nullptr;
    QCheckBox* m_chkLike = nullptr;
    QTreeWidget* m_lswElencoDisponibile = nullptr;
    QTreeWidget* m_lswElencoStampa = nullptr;
    QLabel* m_lblInfo = nullptr;
    QLabel* m_lblTickets = nullptr;
    QProgressBar* m_pgbMain = nullptr;
    QList<QPushButton*> m_comandi;

    QList<ProdottoEtichetta> m_disponibili; // in the order of the list
    ElencoEtichette m_elenco;
    QElapsedTimer m_ultimoDisegno;
};
