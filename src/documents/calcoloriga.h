#pragma once
// The arithmetic of one document row, as the row editor shows it. Every
// value travels as the text of its field, and some fields keep a second text
// beside it (their tag): reading a value back has the rounding of the format
// it was shown with, so what the user sees is what is computed on. The
// order of the roundings and the number type of each step are the design:
// the same inputs give the same cents.

#include "common/currency.h"
#include "common/single.h"

#include <QString>

struct EditorRiga
{
    QString prezzoListino, tagPrezzoListino; // tag: the last net price accepted
    QString sconto1, sconto2, sconto3;
    QString prezzoNetto, tagPrezzoNetto; // tag: the net price at full precision
    QString prezzoIvaInclusa, tagPrezzoIvaInclusa;
    QString quantita;
    QString aliquota; // the rate's percentage (tag of lblIva); empty without a rate
    QString totRigaImponibile;
    // The hidden labels, six decimals each.
    QString scNetto, totPrezzoNetto, ivaProdotto, totIva, totRiga;
    // The screen's last list price.
    QString ultimoListino;
};

// The net price of `prezzo` through the three discounts; fills the hidden
// labels. The discount value passes through a Single, as it always has.
Currency calcolaPrezzoNetto(EditorRiga& r, Currency prezzo, Single aliquota);
// The price with its VAT.
Currency calcolaPrezzoLordo(Currency prezzo, Single aliquota);
// The prices shown after the net price's tag was set: without VAT the net
// price leads; with VAT the VAT-included price leads and the list price is
// worked back through the discounts. False when a discount of 100 makes that
// impossible (the fields stay as they were).
bool setPrezzi(EditorRiga& r, bool prezziIvaInclusa, int decimali);

// What leaving each field does. The list price returns true when it was
// accepted and computed on (the purchase-price question may follow).
bool prezzoListinoLasciato(EditorRiga& r, int decimali);
void scontoLasciato(EditorRiga& r, int decimali);
void prezzoNettoLasciato(EditorRiga& r, int decimali);
void prezzoIvaInclusaLasciato(EditorRiga& r, int decimali);
// The quantity, before the row entry asks the discounts of its range; the
// taxable amount follows.
void quantitaLasciata(EditorRiga& r, int decimali);
// A new VAT rate: the prices follow, keeping the VAT-included price when
// prices are entered with VAT.
bool aliquotaCambiata(EditorRiga& r, bool prezziIvaInclusa, int decimali);
// The first discount that gives the net price from the list price.
void ricalcolaSconti(EditorRiga& r, int decimali);
// The recomputation when a row is confirmed.
void confermaRiga(EditorRiga& r, int decimali);

// The amount cells of a row in the grid.
struct CelleRiga
{
    QString quantita;      // 9
    QString listino;       // 13
    QString sconti;        // 14: "10+5+2"
    QString sc1, sc2, sc3; // 15, 16, 17
    QString netto;         // 18
    QString nettoEsteso;   // 19
    QString imponibile;    // 20
    QString iva;           // 21
    QString importo;       // 22
    QString scNetto;       // 27
    QString ivaProd;       // 28
    QString totIvaProd;    // 29
};
// The cells of a confirmed row with quantity q.
CelleRiga celleRiga(const EditorRiga& r, Single quantita, int decimali);
