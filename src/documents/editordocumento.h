#pragma once
// The document under edit, without widgets: the row editor, the grid of rows
// and the totals, as the document screen shows them. The screen gathers
// input into it and shows what it holds; everything it decides is here, so
// that row entry and its arithmetic run in tests without a window.

#include "core/optionstore.h"
#include "documents/grigliadocumento.h"
#include "pricing/prezzi.h"

struct ProdottoEsteso;

// What leaving the product code did.
struct EsitoProdotto
{
    enum Tipo {
        Invariato,     // the code accepted last: nothing to do
        Svuotato,      // an empty code: the editor holds no product
        Compilato,     // one product: the editor holds it
        RigaEsistente, // the product is in the grid already: that row is in the editor
        NuovoProdotto, // not found, and the user wants it created (frmProdotto on a new product)
        Rifiutato,     // not found, or another product on a row under edit: the editor is empty
        Multipla       // several products chosen: each became a row
    } tipo = Invariato;
    int riga = -1;  // RigaEsistente: the grid row brought to the editor
    QString codice; // NuovoProdotto: the code typed
};

// The purchase-price mark-up of a product, percent, as LISTINO1 stands to
// PREZZOACQUISTO, read back through `decimali` decimals. False (told) when
// the product has no purchase price.
bool getRicaricoProdotto(int ridProdotto, Single& ricarico, int decimali);

class EditorDocumento
{
public:
    // decimali: the option DecimaliDopo; carattereDistinta: the first
    // character of a kit row's code (the option DistintaBase).
    explicit EditorDocumento(int decimali = 2, const QString& carattereDistinta = gOptions().distintaBase);

    int decimali() const { return m_decimali; }
    const QString& carattereDistinta() const { return m_carattereDistinta; }
    GrigliaDocumento& griglia() { return m_griglia; }
    const GrigliaDocumento& griglia() const { return m_griglia; }

    // --- the side of the document, set by the screen when the type or a
    // counterparty changes: kinds and keys of origin and destination, the
    // counterparty's discount, the net-price category. The row under edit,
    // its quantity and the decimals are filled in here before each use.
    DocumentoPrezzi prezzi;
    // The causal's lot flag, when stock doesn't carry a moving average: a
    // new row's lot is its price.
    bool taglioEffettivo = false;
    // While several products chosen at once become rows: no questions, and
    // each row is added to an equal one.
    bool multiselezione = false;
    // The options of row entry.
    QString carattereRigaLibera = gOptions().rigaLibera; // first character of a free row's code
    int ivaRigaLibera = gOptions().ivaPredRigaLibera;    // a free row's VAT rate
    bool ignoraVerificaCodice = gOptions().ignoraVerificaCodiceProdotto;

    // --- the row editor
    EditorRiga riga;
    DatiRiga dati;
    int posizione = -1;              // lblPos: the grid row under edit, -1 for a new row
    bool aggiungiPrecedente = false; // "Aggiungi alla riga precedente"
    int corrente = -1;               // the grid's current row
    bool prezziIvaInclusa = false;   // chkPrezziIva
    // The colour of the list price: red for the counterparty's own price,
    // blue for a net price by quantity.
    CampiRiga::Colore colorePrezzo = CampiRiga::Colore::Normale;
    // rdaPerc, rdaPercSu: the withholding strip.
    QString rdaPerc = QStringLiteral("0,00"), rdaPercSu = QStringLiteral("0,00");

    // Empties the row editor: quantity 1, discounts and prices 0, no lot.
    void pulisciRiga();
    // Writes the row editor into the grid (merging with an equal row when
    // adding to the previous one), recomputes the totals and empties the
    // editor. A new kit brings its components after it; a kit written
    // again takes its components along. Gives the row written, -1 when
    // there is no product.
    int confermaRiga();
    // The grid row back into the editor; false for a row that can't be
    // edited there (a deleted row, a child of a stored kit).
    bool getRowFromGrid(int riga);
    // Deletes the row, and a kit's components with it.
    void eliminaRiga(int riga);
    // A copied row as a new row; false when nothing was copied.
    bool incollaRiga(const QString& copiato);

    // --- choosing the product
    // Leaving the product code field (the header was checked before):
    // finds the product by code, bar code or extra code (`like`: the code
    // is a beginning) and fills the editor with its text, VAT, unit, stock,
    // the price of the document's side and its discounts.
    EsitoProdotto prodottoLasciato(const QString& codice, bool like);
    // The product card closed on a new product: the editor is filled as
    // for a code found.
    void prodottoCreato(int ridProdotto);
    // Several products chosen: one fills the editor; several become rows
    // one by one. A key below 1 stops the run and asks for a new product.
    void multiselezioneProdotti(const QStringList& chiavi);
    // multiselezioneProdotti met a key below 1: the screen opens the
    // product card on a new product.
    bool nuovoProdottoChiesto() const { return m_nuovoProdotto; }
    // The code last accepted in the product field (lblProdotto).
    const QString& codiceAccettato() const { return m_codiceAccettato; }
    // Stock on hand as shown ("12,00"); empty without a product.
    QString giacenza() const { return m_giacenza; }
    // The stock on hand of the product in the editor read again (a grid row
    // brought back to the editor shows it too).
    void leggiGiacenza();

    // --- leaving the price fields
    // The quantity: the discounts of its range are asked again (a row
    // under edit keeps its own) and the amounts follow.
    void quantitaLasciata();
    // The list price; with modificaPrezzoAcquisto (the document type may
    // change purchase prices) the purchase-price question comes first.
    // False when there is no price or rate to compute on.
    bool prezzoListinoLasciato(bool modificaPrezzoAcquisto);
    // A list price other than the last one shown may become the product's
    // purchase price, with its sales list price moved by the same mark-up,
    // when the user says so. Written at once, outside any document save.
    void checkPrezzoAcquisto();

    void calcolaTotali();
    const TotaliDocumento& totali() const { return m_totali; }

private:
    bool rigaLibera(const QString& codice) const;
    bool padreKit(const QString& codice) const;
    DocumentoPrezzi lato() const;
    int magazzinoGiacenza() const;
    void svuotaProdotto();
    EsitoProdotto compila(const ProdottoEsteso& p, bool controllaDuplicato);
    void prezzoDaLato();
    void applicaSconti(bool force);
    void prezzoDistinta();
    void getProdFigli(const QString& chiave, Single quantita, int rigaPadre);
    void domandaPrezzoAcquisto(const QString& ultimoListino);

    int m_decimali;
    QString m_carattereDistinta;
    GrigliaDocumento m_griglia;
    TotaliDocumento m_totali;
    QString m_codiceAccettato;
    QString m_testoProposto; // the product's own text, as filled in
    QString m_giacenza;
    bool m_nuovoProdotto = false;
};
