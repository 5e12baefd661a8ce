#pragma once
// The product card without widgets: the markup arithmetic between purchase
// price and first list price, the barcode of a new card and its check, the
// code-and-brand identity, stock that forbids a delete, the alternatives.

#include "screens/services/fieldlist.h"

#include <QList>
#include <QString>

class QDateTime;

// The fields of the card that are stored as typed; amounts of the lists
// with `decimali` decimals (the option DecimaliDopo).
fields::FieldList prodottoFields(int decimali);

// The search of F3 on the code: every product with its brand, by code.
QString ricercaProdotti();
// The read of one card: its fields and the statistics frame, by key.
QString letturaProdotto(int decimali, int rid);

// The prices as the card shows them (Italian text). Only the first list has
// a gross price and a markup; the other lists are kept by hand.
struct PrezziProdotto
{
    QString acquisto;      // txtPrezzoAcquisto, net of VAT
    QString acquistoLordo; // txtPrezzoAcquistoLordo
    QString listino1;      // txtListino1, net of VAT
    QString listino1Lordo; // txtListino1Lordo
    QString ricarico;      // txtRicarico, percent on cost
    QString pListino;      // txtPListino, the indicative list price
    double iva = 0;        // the rate's percent (lblIva)
    int decimali = 2;      // the option DecimaliDopo
};

enum class PrezzoCambiato {
    Acquisto,
    AcquistoLordo,
    Listino1,
    Listino1Lordo,
    Iva
};

// A price changed: its net or gross partner follows, the indicative price
// takes the gross list price when it has none, and the markup follows.
void ricalcolaPrezzi(PrezziProdotto& p, PrezzoCambiato cambiato);
// daRicarico true: the first list price from the markup (nothing for a
// markup or purchase price of 0); false: the markup from the prices.
void calcolaRicarico(PrezziProdotto& p, bool daRicarico);

// A new card's barcode: the moment as YYMMDDHhNnSs and its check digit.
QString nuovoBarcode(const QDateTime& adesso);
// The barcode of variant n (1 to 10) of an assisted duplication: the moment
// as YYMMDDHhNn, the variant's number plus 60, and the check digit.
QString barcodeVariante(const QDateTime& adesso, int variante);
// For 13 digits whose last is not their check digit: "Il Check Code corretto
// è: 7" and a carriage return. Empty for anything else.
QString erroreCheckCode(const QString& barcode);

// A product with this code and brand (0 for none) exists already.
bool esisteMarcaCodice(const QString& codice, int fkMarca);
// The product's stock over all its lots is above 0.
bool getGiacenzaProdotto(int rid);
// The product, its stock rows and its list prices, in one transaction; false
// after a failure (rolled back, told by the data layer).
bool eliminaProdotto(int rid);

struct Alternativo
{
    int rid = 0;
    QString codice;
};
// The alternatives of a product from both directions: first those it names,
// then those that name it.
QList<Alternativo> leggiAlternativi(int rid);
// Inside the save's transaction: the product's own pairs replaced by the
// list, every one written in its direction.
bool saveAlternativi(int rid, const QList<Alternativo>& alternativi);
