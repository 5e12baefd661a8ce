#pragma once
// Barcodes of the products, without widgets.
//
// Bulk generation (frmGeneraBarCodeIntoProdotti): every product gets in
// EAN13CODE the barcode-font text of its BARCODE, in one transaction; a
// failed update undoes them all.
//
// Labels (frmStampaBarCode): the search of the products by the filters of
// the screen, the print list (one entry a product with its number of
// labels), the list handed over by another screen (a document's rows), and
// the BARCODE table of the print database, one row a label, that the
// template "BarCode.rpt" reads.

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

// --- bulk generation -------------------------------------------------------------

// Called before each product: n of total (n from 1) and its description.
using AvanzamentoBarCode = std::function<void(int n, int totale, const QString& descrizione)>;

// "Generazione Codice a Barre n di total", a line break, "Prodotto: " and
// the description: what the screen shows for each product.
QString testoAvanzamentoBarCode(int n, int totale, const QString& descrizione);

// Writes EAN13CODE of every product from its BARCODE (as the product card
// does, a product without barcode gets the text of an empty code) in one
// transaction, then tells the user: "Generazione dei Codici a Barre
// avvenuta correttamente." or, after the rollback, the failure with the
// stop icon. The question comes before, from the screen.
bool generaBarCode(const AvanzamentoBarCode& avanzamento = {});

// "UPDATE Prodotti SET EAN13Code = " the font text of `codice` " WHERE RID = "
// `rid`. False when the statement failed (told by the data layer).
bool updateBarCode(int rid, const QString& codice);

// --- the products of the label screen ----------------------------------------------

// A product of the two lists: code, description and brand as the lists show
// them; `quantita` is its number of labels in the print list.
struct ProdottoEtichetta
{
    int rid = 0;
    QString codice;
    QString descrizione;
    QString marca;
    int quantita = 1;

    // The key of the list items: "P_" and the RID.
    QString chiave() const;
};

// The key of a list item back to the product's RID; 0 when it is none.
int ridDaChiave(const QString& chiave);

// The filters of the search. A product by its key, or with `parteCodice`
// the products whose code begins with `codice` (chkLike); the other filters
// by key, 0 for none.
struct FiltriEtichette
{
    int prodotto = 0;
    QString codice = {};
    bool parteCodice = false;
    int marca = 0;
    int categoria = 0;
    int gruppo = 0;
    int collezione = 0;
};

// The search statement: products with their brand, category and group,
// "ORDER BY P.DESCRIZIONE".
QString ricercaEtichetteSql(const FiltriEtichette& filtri);

// The products found; nothing when the statement failed (already told).
std::optional<QList<ProdottoEtichetta>> cercaProdottiEtichette(const FiltriEtichette& filtri);

// " Prodotti trovati." after the count.
QString testoProdottiTrovati(int trovati);

// The print list: each product once, in the order it came in.
class ElencoEtichette
{
public:
    // Adds the product with `quantita` labels, or raises the labels of the
    // product already there by `quantita`. Its place in the list.
    int aggiungi(const ProdottoEtichetta& prodotto, int quantita = 1);
    // Each product of the list, one label more each.
    void aggiungiTutti(const QList<ProdottoEtichetta>& prodotti);
    // Takes the product out; false when it was not there.
    bool rimuovi(int rid);
    void svuota();

    const QList<ProdottoEtichetta>& prodotti() const { return m_prodotti; }
    int indice(int rid) const { return m_indice.value(rid, -1); }
    int numeroProdotti() const { return int(m_prodotti.size()); }
    int numeroEtichette() const;
    bool isEmpty() const { return m_prodotti.isEmpty(); }

    // checkTickets: the labels, " Etichette per ", the products and
    // " Prodotti selezionati".
    QString testoEtichette() const;

private:
    QList<ProdottoEtichetta> m_prodotti;
    QHash<int, int> m_indice; // RID -> place
};

// A line of the list another screen hands over: product key and labels.
struct RigaLista
{
    int rid = 0;
    int etichette = 0;
};

// The text of startMe: lines ended by "\r" (a "\n" is tolerated), fields
// split by "\t": the product's key (also as "P_" and the key) and the number
// of labels, written as a quantity of the screens ("3", "2,00"); a fraction
// makes one label more, a key alone one label. Lines without a key, or with
// no label (0, a negative quantity, no number), are left out.
QList<RigaLista> leggiLista(const QString& lista);

// getLista: each product of the lines read with its brand and collection
// and added to `elenco` with its labels; products that no longer exist are
// left out. False when a read failed (already told).
bool getLista(const QString& lista, ElencoEtichette& elenco);

// --- the print database ----------------------------------------------------------

// Called after each product written: n of total.
using AvanzamentoStampa = std::function<void(int n, int totale)>;

// Empties the BARCODE table of the print database at `percorso` (empty:
// percorsoStampaDB()) and writes a row for each label of the list: a
// running number from 1 across the list, the product's EAN13CODE, the code
// and description joined by "-" and the brand, each cut to 50 characters,
// and PLISTINO. One transaction on a connection of its own; a product that
// cannot be read stops it and nothing is written. False after telling the
// user.
bool fillBorcodesToPrint(const ElencoEtichette& elenco, const AvanzamentoStampa& avanzamento = {},
                         const QString& percorso = QString());

// "Si è verificato un errore durante la preparazione del DataBase di
// stampa. [Rif: Creazione TEMP_DB].", a line break and "Impossibile
// continuare": shown when the print database cannot be opened.
QString erroreStampaDB();
