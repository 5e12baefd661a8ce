#pragma once
// Which list price and which three cascaded discounts a document row starts
// from. The engine reads master data and fills the row's price and discount
// fields as the row form shows them (text in Italian form); it stores
// nothing. The document screen applies the fields, and their colour.

#include "common/currency.h"
#include "common/single.h"

#include <QString>

// The side of a document and what the row form keeps between calls.
struct DocumentoPrezzi
{
    int tipoOrigine = 0; // 1 customer, 2 supplier, 3 warehouse
    int tipoDestinazione = 0;
    int origine = 0; // RID of the counterparty or warehouse on each side
    int destinazione = 0;
    int lblPos = 0;             // position of the row under edit; 0 for a new row
    Single quantita = 0;        // txtQuantita
    Currency scontoControparte; // the counterparty's general discount, kept by the form
    int catPrezziNetti = 0;     // option CatPrezziNetti
    int decimaliDopo = 2;       // option DecimaliDopo
};

// The price and discount fields of the row under edit.
struct CampiRiga
{
    enum class Colore {
        Normale,
        Rosso,
        Blu
    };
    QString txtPrezzoListino;
    QString txtSconto1;
    QString txtSconto2;
    QString txtSconto3;
    Colore colorePrezzo = Colore::Normale;
    QString ultimoPrezzo; // the text last written to the price, restored when emptied
};

// The counterparty's list (LISTINO1..4, list 1 when unset or 0), its
// personal price in Listini (prezzoPersonale becomes 1 when a row exists,
// and a personal price of 0 falls back to the list), the counterparty's
// discount when applicaSconto. prezziIva is kept for the callers and unused.
Currency getPrezzoVendita(int fkAnagrafe, int fkProdotto, quint8& prezzoPersonale, bool prezziIva, bool& applicaSconto);

// PREZZOACQUISTO as text; empty when the product does not exist.
QString getPrezzoAcquisto(int fkProdotto);

// The price a new row starts from, by the document's side: formatted with
// DecimaliDopo decimals, empty when no side gives one.
QString getPrezzo(int fkProdotto, const DocumentoPrezzi& documento);

// The customer's band, 0 when none.
int getFasciaCliente(int fkAnagrafe);

// The discount cascade: the row under edit keeps its discounts unless
// forced; on the sales side the product's own discount wins; then the range
// tables of the side; last the counterparty's discount when the first
// field is still 0. done tells the caller to recompute the net price.
void setSconti(int fkProdotto, bool force, bool& done, CampiRiga& riga, const DocumentoPrezzi& documento);

// The ranges of one side (category, brand, counterparty, quantity, product).
void setScontiVendita(int fkCategoria, int fkMarca, int fkCliente, Single quantita, int fkProdotto, bool& done,
                      CampiRiga& riga, const DocumentoPrezzi& documento);
void setScontiAcquisto(int fkCategoria, int fkMarca, int fkFornitore, Single quantita, int fkProdotto, bool& done,
                       CampiRiga& riga, const DocumentoPrezzi& documento);
