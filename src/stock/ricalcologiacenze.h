#pragma once
// Stock recalculation: GIACENZA and the stock rows of DettagliProdotto are
// derived data, rebuilt here from the stored documents, for one product or
// for all, in one transaction.
//
// The standard way sums the document rows per product, warehouse and cost
// lot (per warehouse with the moving average) with a few grouped reads per
// block of products and writes only the figures that differ. It counts a
// row as a save posts it: its causal moves stock (Operazione), a side of
// kind warehouse (3) names the warehouse, the product keeps stock
// (SETGIACENZA), the product is no kit and the row's code does not start
// with the kit character. Stock rows keep their keys: the order of the lots,
// which decides the oldest lot a sale leaves from, stays as it was, and a lot
// no stored row moves any more stays with quantity 0, as a posting leaves it.
// On a database whose stock the postings wrote, nothing changes.
//
// The forced way deletes the stock rows of the products and replays every
// stored row through the posting routine, in the order of the rows, each at
// the cost lot it stored (the net price with the moving average); a refused
// row stops the run with its message and nothing is kept.
//
// Kits and products that keep no stock are never touched.
//
// Several workstations: the run locks the products it rebuilds, in the order
// of their keys, before it reads their rows, and keeps the locks until the
// end. Every posting of a save locks its products in the same order first, so
// a save waits for the recalculation of its products (or the recalculation
// for the save) and the two never wait on each other in opposite orders. A
// run cannot be interrupted: stopped halfway, the transaction would undo it
// all anyway.

#include "stock/giacenze.h"

#include <QString>

#include <functional>

struct OpzioniRicalcolo
{
    OpzioniGiacenza giacenza;      // the stock model
    QString distintaBase;          // first character of a kit row's code (empty: no kits)
    bool forzato = false;          // replay every row through the postings
    bool modificaOrigDest = false; // forced, all products: documents take the warehouses of their causal first
};

// Called for each product (standard way) or row (forced way) done: n of
// total; n is 0 before the first one.
using AvanzamentoRicalcolo = std::function<void(int fatti, int totale)>;

// The whole run in one transaction, then the final box: "Ricalcolo della
// giacenze terminato." or, after the rollback, "Impossibile eseguire il
// ricalcolo delle giacenze!". ridProdotto below 1: every product.
bool eseguiRicalcolo(int ridProdotto, const OpzioniRicalcolo& opzioni, const AvanzamentoRicalcolo& avanzamento = {});

// The two ways, inside the caller's transaction; true when complete.
bool ricalcoloStandard(int ridProdotto, const OpzioniRicalcolo& opzioni, const AvanzamentoRicalcolo& avanzamento = {});
bool ricalcoloForzato(int ridProdotto, const OpzioniRicalcolo& opzioni, const AvanzamentoRicalcolo& avanzamento = {});

// Every document whose causal has a warehouse side takes the causal's
// warehouse on that side (FK_MagazzinoOrig, FK_MagazzinoDest).
bool resetCausaliToMovimenti();

// The time left when `fatti` of `totale` took `trascorsiMs`: "hh:mm:ss", led
// by "d day(s), " when a day or more; empty before the first is done.
QString tempoRimanente(qint64 trascorsiMs, int fatti, int totale);
