#pragma once
// The pieces of the workstation stress program: the data it saves on, one
// save as a document save makes it, and the check of the database after.

#include "accounting/primanota.h"
#include "common/currency.h"

#include <QList>
#include <QString>
#include <QStringList>

class QRandomGenerator;

namespace stress {

// What one workstation did; a worker prints it as one line after every
// save, so that the last line of a killed process still counts its saves.
struct Figures
{
    int saves = 0;
    int busy = 0;
    int lost = 0;
    int other = 0;

    int failures() const { return busy + lost + other; }
    void add(const Figures& f);
    QString line() const;
    static Figures fromLine(const QString& line); // zero figures for another line
};

// The rows the saves refer to, read by code from the database.
struct Fixture
{
    int sede = 0;
    int cliente = 0;
    int fornitore = 0;
    int tdFattura = 0, cauFattura = 0, numFatture = 0;
    int tdCarico = 0, cauCarico = 0, numCarichi = 0;
    int tdDdt = 0, tdTrasferimento = 0;
    int negozio = 0; // a second warehouse, for transfers
    int iva = 0;
    int pagamento = 0;
    int termine = 0;   // a payment term whose instalments the saves rewrite
    int categoria = 0; // a discount category with one supplier's ranges
    QList<int> prodotti;
    ContiControparti conti;
};

// The date of every document and entry, and its year.
constexpr int kAnno = 2026;

bool createDatabase(int tipoServer, const QString& server, const QString& connectionString, QString* message);
void dropServerDatabase(const QString& server);

// Counterparties, products and a first load of every product.
bool prepareFixture(QString* message);
bool readFixture(Fixture& f);

// One random save, counted in the figures: mostly a document (a load from
// the supplier or a sale to the customer of one to three products); else an
// address-book card, a payment term's instalments, or a discount category's
// ranges, as their screens save them.
void save(const Fixture& f, QRandomGenerator& random, Figures& figures);

struct Check
{
    bool ok = true;
    QStringList lines; // what was found, one fact a line
};

// Checks the whole database against what the saves must have left.
Check checkDatabase(int tipoServer);

} // namespace stress
