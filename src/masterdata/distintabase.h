#pragma once
// Bills of material without widgets. A kit is a head in DistintaBase with its
// components in DistintaBaseDettagli, and a product in Prodotti with
// DISTINTABASE 1 and the same code, so that documents sell it by code and
// expand it into its components (documents/righekit.h reads the rows by
// DistintaBase.CODICE and POS). The code is stored whole in both tables: the
// kit character (option DistintaBase) followed by what the user typed.
//
// Saving a kit is one transaction: the kits' lock, the head, the rows, the
// mirror product. The lock makes two workstations that save kits at once
// take turns, so a code can't be given to two kits and a mirror product is
// never written from two heads.

#include "common/currency.h"
#include "common/single.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace statoDistinta {
// The "Gestione" column of a row: what the save does with it.
constexpr int Invariata = 0, Nuova = 1, Modificata = 2, Eliminata = 3;
} // namespace statoDistinta

// A component as the list shows it; amounts and quantities as Italian text.
struct RigaDistinta
{
    QString codice; // the component's code, copied when the row is saved
    int prodotto = 0;
    QString descrizione;
    int iva = 0;
    QString codIva, descIva;
    QString valoreIva; // the rate's percent, "22,00"
    QString quantita;
    int um = 0;
    QString codUM;
    QString prezzo;
    int gestione = statoDistinta::Nuova;
    int rid = 0; // 0 until saved
};

// The rows of the kit on screen and the rules of the row editor. Rows are
// kept in their order; a deleted row that was saved stays, marked, until the
// kit is saved.
class ElencoDistinta
{
public:
    const QList<RigaDistinta>& righe() const { return m_righe; }
    int size() const { return int(m_righe.size()); }
    const RigaDistinta& at(int posizione) const { return m_righe.at(posizione); }
    // The rows as read: unchanged.
    void carica(const QList<RigaDistinta>& righe);
    void clear() { m_righe.clear(); }
    // A row is new, changed or deleted.
    bool modificato() const;

    // The faults of the row in the editor, each " - Campo [...] Obbligatorio.".
    static QStringList controllaElemento(const RigaDistinta& riga);
    // The live row with the same product, VAT and price; -1 when none.
    int controllaPresenzaElemento(const RigaDistinta& riga) const;
    // The editor's row goes into the list and its position comes back. It
    // replaces the row loaded in the editor (`caricata`, -1 for none); with
    // none loaded, a live row with the same product, VAT and price takes it
    // and adds the quantities; otherwise it is a new row at the end, or with
    // `prima` in the place of row `selezionata`, which moves down.
    int conferma(RigaDistinta riga, int caricata, bool prima, int selezionata);
    // A new row leaves the list; a saved one is marked deleted.
    void elimina(int posizione);
    // A deleted row comes back, to be written again.
    void ripristina(int posizione);
    // The unchanged rows after `posizione` are marked changed, so that their
    // new position is written.
    void updateNextRow(int posizione);
    // The POS a row is saved with: 1 for the first live row, no gaps; 0 for
    // a deleted row.
    int pos(int posizione) const;

private:
    QList<RigaDistinta> m_righe;
};

// A row's amount, price times quantity rounded to cents, and its VAT, also
// rounded to cents.
Currency importoRiga(const RigaDistinta& riga);
Currency ivaRiga(const RigaDistinta& riga);

struct TotaliDistinta
{
    Currency imponibile, iva, totale;
};
// The sums of the live rows, each row rounded first.
TotaliDistinta calcolaTotali(const QList<RigaDistinta>& righe);

// The VAT key of the live row with the highest rate (the first on a tie);
// -1 without live rows.
int getIDIvaDistinta(const QList<RigaDistinta>& righe);

// Weight and parcels of one kit: each live row's quantity times its
// product's (getPesoProd, getColliProd); the parcels are a whole number,
// rounded after each row.
struct PesoColli
{
    Single peso = 0;
    qint16 colli = 0;
};
PesoColli getTotPesoColliDistinta(const QList<RigaDistinta>& righe);

// The code the user types: the stored code without the kit character.
QString codiceSenzaPrecodice(const QString& codice, const QString& precodice);

// The head as it is written.
struct TestaDistinta
{
    QString codice; // whole, kit character first
    QString barcode, extraCod, descrizione;
    int categoria = 0, gruppo = 0, um = 0;
};

// " - Il codice [*KIT] appartiene già a un'altra distinta."
QString erroreDistintaDuplicata(const QString& codice);
// Another kit than `rid` has the code.
bool esisteDistinta(const QString& codice, int rid);
// The key of the kit with the code; 0 when none.
int ridDistinta(const QString& codice);

// The product of a component row: code, description, VAT, unit, and the
// price that the option ClientePredefinito's counterparty pays, without its
// discount, with `decimali` decimals. False when the product doesn't exist.
bool leggiProdottoDistinta(int fkProdotto, int decimali, RigaDistinta& riga);
// The search of the components: products that aren't kits.
QString ricercaComponenti();

// The rows of a kit in their order, unchanged; prices with `decimali` decimals.
QList<RigaDistinta> leggiRigheDistinta(int fkDistinta, int decimali);

// --- inside the save's transaction: no dialog, a message waits for the end

// Takes the kits' lock (until the transaction ends), refuses a code that
// another kit has (told after the rollback), writes the head (insert for a
// rid of 0) and gives its key; `precedente` receives the code the kit had
// (empty for a new one). -1 on a failure.
int scriviTestaDistinta(int rid, const TestaDistinta& testa, QString& precedente);
// Each row by its state, with POS its place among the live rows.
bool saveDettagli(int fkDistinta, const QList<RigaDistinta>& righe);
// The mirror product of a kit, found by code: updated, or inserted with
// DISTINTABASE 1. Prices and stock control are left alone.
bool salvaDistintaInProdotti(QString& codice, QString& barcode, QString& extraCod, QString& descrizione, int categoria,
                             int gruppo, int um, int iva, Single peso, qint16 colli);
// After the head: the rows, the kit's VAT, weight and parcels, and the mirror
// product, which follows a change of code when the new code is free.
bool salvaDettagliDistinta(int fkDistinta, const TestaDistinta& testa, const QString& precedente,
                           const QList<RigaDistinta>& righe);

// The kit, its rows and its mirror product, in one transaction. False after
// a failure (rolled back, told).
bool eliminaDistinta(int rid);
