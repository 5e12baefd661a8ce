#pragma once
// Demo data: an empty firm filled with what a hardware wholesaler in the
// north of Italy would hold after most of a year of work. Customers and
// suppliers with valid tax codes and VAT numbers, a few hundred products
// over brands and categories with valid EAN-13 codes, kits, discount ranges
// by category, brand, customer band and supplier, and documents of every
// starter type dated over the current year.
//
// Master data goes in with plain statements, in a few transactions (the
// ranges through their own editor). Every document is built in the
// document editor as a user enters it (product code, quantity, confirm) and
// saved by the document save, one transaction each: stock, cost lots,
// journal entries, due dates and statistics are what the program writes.
// Loads come before the sales that need them: the run keeps its own picture
// of the lots and sells only what is there.
//
// The random numbers have a fixed seed: the same number of documents gives
// the same firm on every run, dates apart (they follow the current year).
//
// The option globals must be loaded (the kit character, the decimals, the
// stock model): the run uses them as the document screen does.

#include <QMap>
#include <QString>

#include <functional>

// What is done out of the total and what is being written now; false stops
// the run before the next step. Called between transactions only.
using ProgressoDemo = std::function<bool(int fatto, int totale, const QString& cosa)>;

struct RiepilogoDemo
{
    int clienti = 0, fornitori = 0, prodotti = 0, kit = 0, range = 0;
    int documenti = 0, righe = 0, primaNota = 0, scadenze = 0;
    QMap<QString, int> perTipo; // document type code -> documents
};

// The fewest documents a run writes: one of each starter type.
constexpr int kMinimoDocumentiDemo = 7;

// Empty when the firm holds no documents, customers, suppliers or products
// of its own; otherwise the Italian message that says why the demo data
// can't go in.
QString dittaNonVuota();

// Fills the firm. False with the reason in `errore` (Italian) when the firm
// isn't empty, the starter rows are missing, a save failed or the progress
// asked to stop; what was written until then stays. The summary tells what
// the firm holds at the end either way.
bool generaDatiDimostrativi(int documenti, const ProgressoDemo& progresso, QString* errore,
                            RiepilogoDemo* riepilogo = nullptr);

// The summary as lines for the user.
QString testoRiepilogo(const RiepilogoDemo& riepilogo);
