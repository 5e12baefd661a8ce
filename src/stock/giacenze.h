#pragma once
// Stock posting: every document row that moves goods changes the stock row
// of its warehouse (and cost lot) in DettagliProdotto and the product's
// running total GIACENZA. Two models: cost lots, or (prezzoMedio) one row
// per warehouse at the moving average cost. Also the product's load and
// sale statistics. Runs inside the caller's transaction.
//
// Results of the postings: "OK"; "#err" when a statement failed (already
// reported); any other text is a message for the user.

#include "common/currency.h"
#include "common/single.h"

#include <QList>
#include <QString>

class QDate;

namespace giacenze {
// Actions of a posting: the state of the document row.
constexpr int Inserimento = 1, Modifica = 2, Cancellazione = 3;
} // namespace giacenze

// The options that choose and shape the stock model.
struct OpzioniGiacenza
{
    bool prezzoMedio = false; // moving average in place of cost lots
    int mesiPrezzoMedio = 12; // the months the average looks back
};

// Moves quantita (or the difference from vecchiaQuantita, or the removal
// of it, by the action) out of the origin warehouse and into the
// destination one (0 or less: none). taglio is the cost lot (-1: the
// oldest lot in stock at the origin); taglioPrecedente the lot the row had
// before (-1 none): a changed lot moves the whole row from the old lot to
// the new. With the moving average the cost the goods moved at comes back
// in taglio.
QString aggiornaGiacenze(Single quantita, Single vecchiaQuantita, Currency& taglio, int fkProdotto, int azione,
                         int fkMagazzinoOrig, int fkMagazzinoDest, const QString& informazioni,
                         Currency& taglioPrecedente, int& ridRiga, const OpzioniGiacenza& opzioni);

// The moving-average model (one row per warehouse).
QString aggiornaGiacenzeSimple(Single quantita, Single vecchiaQuantita, Currency& taglio, int fkProdotto, int azione,
                               int fkMagazzinoOrig, int fkMagazzinoDest, const QString& informazioni, int& ridRiga,
                               const OpzioniGiacenza& opzioni);

// The oldest lot of the product with stock in the warehouse, else its
// oldest lot; -1 when it has no stock row there.
Currency getTaglioProdotto(int fkProdotto, int fkMagazzino);

// The product keeps stock (SETGIACENZA).
bool getAggiornamentoGiacenzeByProdotto(int fkProdotto);

// GIACENZA of the product, 0 when missing.
double getGiacenzaProdottoTotale(int fkProdotto);

// Locks the rows of the products until the caller's transaction ends, in
// the order of their keys. A save that posts several products calls it
// first, so that two workstations never wait on each other's products in
// opposite orders. False when a lock could not be had.
bool bloccaProdotti(QList<int> prodotti);

// The average unit cost of the loads into the warehouse over the last
// `mesi` months, with a row being written (quantita, prezzo above -1) in
// place of its stored self (ridRiga above 0); else the latest load, the
// price given, or the product's purchase price.
Currency getPrezzoMedioProdotto(int fkProdotto, int fkMagazzino, Single quantita, Currency prezzo, int& ridRiga,
                                int mesi);

// The last load from a supplier and the last sale, when the document is not
// older than the one recorded. False when the statement failed.
bool aggiornaStatisticaCarico(int fkProdotto, Currency prezzo, int fkFornitore, const QDate& dataDocumento);
bool aggiornaStatisticaScarico(int fkProdotto, Currency prezzo, const QDate& dataDocumento);
