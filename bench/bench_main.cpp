// Benchmark: the operations users wait for, on each back end, against their
// floor: the same final statements replayed through the bare driver.
//
//   orvantis_bench [--rows N] [--runs K] [--mysql "Server=..;Port=..;Uid=..;Pwd="] [--only GROUP]
//
// Without --mysql the server named by ORVANTIS_TEST_MYSQL is used, if any.
//
// Each scenario runs once with the driver's trace on, which keeps every
// statement as the engine received it and the transaction boundaries. Then
// the timed runs of the program's code and the timed replays of the trace on
// one bare connection (QSqlQuery::exec, every row and column of a read
// fetched) alternate, the database put back as it was before each of them.
// Prints one line a scenario: the medians and their ratio; never fails on a
// time.
#include "accounting/primanota.h"
#include "accounting/scadenze.h"
#include "common/apphome.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/modeldatabase.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "documents/documento.h"
#include "documents/editordocumento.h"
#include "documents/frmmovimento.h"
#include "documents/grigliamovimento.h"
#include "documents/salvadocumento.h"
#include "lookups/lookuptable.h"
#include "masterdata/prodotto.h"
#include "numbering/numeratore.h"
#include "pricing/prezzi.h"
#include "printing/cartellareport.h"
#include "printing/creport.h"
#include "printing/stampadb.h"
#include "screens/services/ricercasql.h"
#include "stock/giacenze.h"
#include "stock/ricalcologiacenze.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <functional>

namespace {

QTextStream out(stdout);
const QString kTag = QStringLiteral("bench");

struct Backend
{
    QString name;
    int tipo;
    QString connection;
};

double median(QList<double> v)
{
    std::sort(v.begin(), v.end());
    const qsizetype n = v.size();
    return n == 0 ? 0 : (n % 2 ? v.at(n / 2) : (v.at(n / 2 - 1) + v.at(n / 2)) / 2);
}

double timeMs(const std::function<void()>& job)
{
    QElapsedTimer t;
    t.start();
    job();
    return double(t.nsecsElapsed()) / 1e6;
}

// --- the trace and its replay ------------------------------------------------

struct TraceEntry
{
    driver::TraceEvent event;
    QString sql;
};

QList<TraceEntry>* recording = nullptr;

void record(driver::TraceEvent event, const QString& sql) { recording->append({event, sql}); }

// Runs the trace on one connection as bare driver code would; the number of
// steps that failed (a faithful replay has none).
int replay(QSqlDatabase db, int tipo, const QList<TraceEntry>& trace)
{
    int failed = 0;
    const auto exec = [&db](const QString& sql) {
        QSqlQuery q(db);
        q.setForwardOnly(true);
        if (!q.exec(sql))
            return false;
        if (q.isSelect()) {
            const int columns = q.record().count();
            while (q.next())
                for (int i = 0; i < columns; ++i)
                    q.value(i);
        }
        return true;
    };
    for (const TraceEntry& step : trace) {
        bool ok = true;
        switch (step.event) {
        case driver::TraceEvent::Statement: ok = exec(step.sql); break;
        case driver::TraceEvent::Begin:
            ok = tipo == TipoServer::FileDb ? exec(QStringLiteral("BEGIN IMMEDIATE")) : db.transaction();
            break;
        case driver::TraceEvent::Commit:
            ok = tipo == TipoServer::FileDb ? exec(QStringLiteral("COMMIT")) : db.commit();
            break;
        case driver::TraceEvent::Rollback:
            ok = tipo == TipoServer::FileDb ? exec(QStringLiteral("ROLLBACK")) : db.rollback();
            break;
        }
        failed += ok ? 0 : 1;
    }
    return failed;
}

struct Measure
{
    double system = 0;
    double floor = 0;
    qsizetype statements = 0;
    int replayFailures = 0;
};

// The work the engine leaves for later done now, so that no timed run pays
// for what another one began: the file database's log written back into the
// file, the server's purge of deleted rows finished.
void settle(const Backend& b)
{
    DbError error;
    const PhysicalConnectionPtr c = driver::acquire(b.tipo, b.connection, 60, error);
    if (!c)
        return;
    if (b.tipo == TipoServer::FileDb)
        c->execute(QStringLiteral("PRAGMA wal_checkpoint(RESTART)"), nullptr, error);
    else if (b.tipo == TipoServer::MySql)
        c->execute(QStringLiteral("SET GLOBAL innodb_max_purge_lag_wait = 0"), nullptr, error);
    driver::release(c);
}

// The scenario's job through the program's code against the replay of its
// trace, each time from the state `reset` gives.
Measure measure(const Backend& b, int runs, const std::function<void()>& job, const std::function<void()>& reset)
{
    QList<TraceEntry> trace;
    reset();
    settle(b);
    recording = &trace;
    driver::setTraceHook(record);
    job();
    driver::setTraceHook(nullptr);
    recording = nullptr;

    Measure m;
    m.statements = std::count_if(trace.cbegin(), trace.cend(),
                                 [](const TraceEntry& e) { return e.event == driver::TraceEvent::Statement; });
    QList<double> system, floor;
    for (int run = 0; run < runs; ++run) {
        // The side that runs first changes at each run.
        for (int side = 0; side < 2; ++side) {
            reset();
            settle(b);
            if ((side == 0) == (run % 2 == 0)) {
                system.append(timeMs(job));
                continue;
            }
            DbError error;
            const PhysicalConnectionPtr raw = driver::acquire(b.tipo, b.connection, 60, error);
            if (!raw) {
                ++m.replayFailures;
                continue;
            }
            int failed = 0;
            const QSqlDatabase db = raw->database();
            floor.append(timeMs([&] { failed = replay(db, b.tipo, trace); }));
            m.replayFailures = qMax(m.replayFailures, failed);
            driver::release(raw);
        }
    }
    m.system = median(system);
    m.floor = median(floor);
    return m;
}

void print(const Backend& b, const QString& scenario, const Measure& m, const QString& note = QString())
{
    out << b.name.leftJustified(8) << ' ' << scenario.leftJustified(52) << " system "
        << QString::number(m.system, 'f', 1).rightJustified(8) << " ms  floor "
        << QString::number(m.floor, 'f', 1).rightJustified(8) << " ms  ratio "
        << QString::number(m.floor > 0 ? m.system / m.floor : 0, 'f', 2) << "  (" << m.statements << " statements";
    if (m.replayFailures > 0)
        out << ", " << m.replayFailures << " failed on replay";
    out << ')';
    if (!note.isEmpty())
        out << "  " << note;
    out << '\n';
    out.flush();
}

void run(const QString& sql) { gAdoSqlServer().executeSQL(sql, kTag); }

// The next key of the table's counter back to one more than its highest key,
// so that a replayed insert gives its row the key the trace's later
// statements name.
void restoreKeyCounter(const Backend& b, const QString& table)
{
    if (b.tipo == TipoServer::FileDb)
        run(QStringLiteral("UPDATE sqlite_sequence SET seq = (SELECT COALESCE(MAX(RID), 0) FROM ") + table
            + QStringLiteral(") WHERE name = ") + sqlText(table));
    else if (b.tipo == TipoServer::MySql)
        run(QStringLiteral("ALTER TABLE ") + table + QStringLiteral(" AUTO_INCREMENT = 1"));
}

// --- the scenarios -------------------------------------------------------------

// The fields of one product as the product screen holds them: made before
// the timing, which covers writing them into the statement and running it.
struct ProductFields
{
    QString code;
    QString description;
    QString price;
    double purchasePrice;
    QDateTime modified;
};

ProductFields productFields(int i)
{
    return {QStringLiteral("ART%1").arg(i, 6, 10, QLatin1Char('0')),
            QStringLiteral("Vite a testa esagonale 8x%1 l'una, zincata").arg(i % 90 + 10),
            QStringLiteral("%1,%2").arg(i % 500).arg(i % 100, 2, 10, QLatin1Char('0')), double(i % 300) / 7.0,
            QDateTime(QDate(2026, 11, 22), QTime(10, 30, 0))};
}

// One product row as the product screen writes it.
QString productInsert(const ProductFields& f)
{
    cAdoSqlServer& db = gAdoSqlServer();
    return QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, LISTINO1, PREZZOACQUISTO, SCORTAMINIMA, "
                          "DATAULTIMAMODIFICA, FK_Iva, DISABILITATO) VALUES (")
        + sqlText(f.code) + QStringLiteral(", ") + sqlText(f.description) + QStringLiteral(", ") + getSqlNumber(f.price)
        + QStringLiteral(", ") + getSqlNumber(f.purchasePrice) + QStringLiteral(", ") + getSqlNumberOrZero(QString())
        + QStringLiteral(", ") + db.getSQLDateTime(f.modified) + QStringLiteral(", ") + getIDOrNullStr(0)
        + QStringLiteral(", 0)");
}

// Rows saved in one transaction, as an import writes them.
void benchInsert(const Backend& b, int rows, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    QList<ProductFields> products;
    for (int i = 0; i < rows; ++i)
        products.append(productFields(i));
    const Measure m = measure(
        b, runs,
        [&] {
            db.beginTrasaction(kTag);
            for (const ProductFields& f : std::as_const(products))
                db.executeSQL(productInsert(f), QStringLiteral("bench.insert"));
            db.commitTrasaction(kTag);
        },
        [] { run(QStringLiteral("DELETE FROM Prodotti")); });
    const int stored = db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Prodotti"), kTag).toInt();
    print(b, QStringLiteral("insert %1 products, one transaction").arg(rows), m,
          QStringLiteral("[rows stored %1]").arg(stored));
}

// A reader as the screens use it: open, read one value, disconnect.
void benchLookups(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const Measure m = measure(
        b, runs,
        [&] {
            for (int i = 0; i < count; ++i)
                db.getValueBySQL(QStringLiteral("SELECT DESCRIZIONE FROM Prodotti WHERE CODICE = ")
                                     + sqlText(QStringLiteral("ART%1").arg(i, 6, 10, QLatin1Char('0'))),
                                 QStringLiteral("bench.lookup"));
        },
        [] {});
    print(b, QStringLiteral("look-up by code, %1 reads").arg(count), m);
}

// Taking document numbers, one a transaction as a document save does.
void benchNumbering(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString anno = QStringLiteral("2099");
    int last = 0;
    const Measure m = measure(
        b, runs,
        [&] {
            for (int i = 0; i < count; ++i) {
                db.beginTrasaction(kTag);
                last = getNewNumeratoreAnnuale(1, anno);
                db.commitTrasaction(kTag);
            }
        },
        [&] {
            run(QStringLiteral("DELETE FROM Contatori WHERE ANNO = ") + sqlText(anno));
            run(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (1, ")
                + sqlText(anno) + QStringLiteral(", 0, ") + sqlText(QStringLiteral("n/d")) + QLatin1Char(')'));
        });
    print(b, QStringLiteral("document numbers, %1 transactions").arg(count), m,
          QStringLiteral("[last number %1]").arg(last));
}

// Journal entries of sales invoices: number, header and three lines, one
// entry a transaction as a document save posts it; in a year with no
// entries and in one that holds `filled` already. The cost of an entry must
// not grow with the year.
void benchJournal(const Backend& b, int count, int runs, int filled)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const ContiControparti conti{db.getValueBySQL(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ")
                                                      + sqlText(QStringLiteral("01001001")),
                                                  kTag)
                                     .toInt(),
                                 db.getValueBySQL(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ")
                                                      + sqlText(QStringLiteral("02001001")),
                                                  kTag)
                                     .toInt()};
    constexpr int emptyYear = 2041, fullYear = 2042;
    db.beginTrasaction(kTag);
    for (int i = 1; i <= filled; ++i)
        db.executeSQL(
            QStringLiteral(
                "INSERT INTO PrimaNota (ANNO, PROGRESSIVO, DATA, DataValuta, FK_CAUSALE, DESCRIZIONE, Importo) "
                "VALUES (")
                + QString::number(fullYear) + QStringLiteral(", ") + QString::number(i) + QStringLiteral(", ")
                + db.getSQLDate(QDate(fullYear, 1, 1).addDays(i % 365)) + QStringLiteral(", ")
                + db.getSQLDate(QDate(fullYear, 1, 1).addDays(i % 365)) + QStringLiteral(", 1, ")
                + sqlText(QStringLiteral("Fattura N.%1").arg(i)) + QStringLiteral(", 122)"),
            kTag);
    db.commitTrasaction(kTag);

    for (const int year : {emptyYear, fullYear}) {
        const Measure m = measure(
            b, runs,
            [&] {
                for (int i = 0; i < count; ++i) {
                    DatiPrimaNota d;
                    d.fkCausale = 1;
                    d.descrizione = QStringLiteral("Fattura N.%1 DEL 15/01/%2").arg(i).arg(year);
                    d.importo = Currency::fromUnits(122 + i);
                    d.importoIva = Currency::fromUnits(22);
                    d.data = QDate(year, 1, 15);
                    d.dataValuta = d.data;
                    db.beginTrasaction(kTag);
                    salvaPrimaNota(d, conti);
                    db.commitTrasaction(kTag);
                }
            },
            [&] {
                const QString added = QStringLiteral(" WHERE ANNO = ") + QString::number(year)
                    + QStringLiteral(" AND PROGRESSIVO > ") + QString::number(year == fullYear ? filled : 0);
                run(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota IN (SELECT RID FROM PrimaNota")
                    + added + QLatin1Char(')'));
                run(QStringLiteral("DELETE FROM PrimaNota") + added);
                run(QStringLiteral("DELETE FROM AnniPrimaNota WHERE ANNO = ") + QString::number(year));
                restoreKeyCounter(b, QStringLiteral("PrimaNota"));
            });
        print(b,
              year == emptyYear
                  ? QStringLiteral("journal entries, empty year, %1 transactions").arg(count)
                  : QStringLiteral("journal entries, %1 in the year, %2 transactions").arg(filled).arg(count),
              m);
    }
}

// Due dates of a journal entry (30/60 end of month), one entry a
// transaction as a document save writes them.
void benchDueDates(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const int entry = db.getIDByInsert(QStringLiteral("INSERT INTO PrimaNota (DESCRIZIONE) VALUES (") + sqlText(kTag)
                                           + QLatin1Char(')'),
                                       kTag, QStringLiteral("RID"), QStringLiteral("PrimaNota"));
    const int term = db.getValueBySQL(QStringLiteral("SELECT RID FROM Pagamenti WHERE CODICE = ")
                                          + sqlText(QStringLiteral("3060FM")),
                                      kTag)
                         .toInt();
    const Measure m = measure(
        b, runs,
        [&] {
            for (int i = 0; i < count; ++i) {
                db.beginTrasaction(kTag);
                generaScadenzePagamento(entry, term, Currency::fromUnits(1000 + i), QDate(2026, 1, 15).addDays(i % 300),
                                        false);
                db.commitTrasaction(kTag);
            }
        },
        [&] { run(QStringLiteral("DELETE FROM Scadenze WHERE FK_PRIMANOTA = ") + QString::number(entry)); });
    print(b, QStringLiteral("due dates 30/60 f.m., %1 transactions").arg(count), m);
}

// Stock postings: a load of one product at one lot, one row a posting, in
// one transaction as a document save runs them.
void benchStock(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA) VALUES (")
        + sqlText(QStringLiteral("BENCHSTK")) + QStringLiteral(", ") + sqlText(kTag) + QStringLiteral(", 0, -1)"));
    const int prodotto = db.getValueBySQL(QStringLiteral("SELECT RID FROM Prodotti WHERE CODICE = ")
                                              + sqlText(QStringLiteral("BENCHSTK")),
                                          kTag)
                             .toInt();
    const OpzioniGiacenza lotti;
    const Measure m = measure(
        b, runs,
        [&] {
            db.beginTrasaction(kTag);
            for (int i = 0; i < count; ++i) {
                Currency taglio = Currency::fromUnits(5 + i % 3);
                Currency precedente = Currency::fromUnits(-1);
                int riga = -1;
                aggiornaGiacenze(1, 0, taglio, prodotto, 1, -1, 1, kTag, precedente, riga, lotti);
            }
            db.commitTrasaction(kTag);
        },
        [&] {
            run(QStringLiteral("DELETE FROM DettagliProdotto WHERE FK_PRODOTTO = ") + QString::number(prodotto));
            run(QStringLiteral("UPDATE Prodotti SET GIACENZA = 0 WHERE RID = ") + QString::number(prodotto));
        });
    print(b, QStringLiteral("stock postings (lots), %1 in one transaction").arg(count), m);
}

// Price and discounts of a sales row, as the row entry asks them: the
// list price, then the discount cascade.
void benchPricing(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO) VALUES (99001, ")
        + sqlText(kTag) + QStringLiteral(", ") + sqlText(QStringLiteral("C")) + QStringLiteral(", 2, 5)"));
    const int cliente =
        db.getValueBySQL(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 99001"), kTag).toInt();
    const int prodotto = db.getValueBySQL(QStringLiteral("SELECT MIN(RID) FROM Prodotti WHERE CODICE LIKE ")
                                              + sqlText(QStringLiteral("ART%")),
                                          kTag)
                             .toInt();
    DocumentoPrezzi doc;
    doc.tipoOrigine = 3;
    doc.tipoDestinazione = 1;
    doc.destinazione = cliente;
    doc.quantita = 3;
    doc.scontoControparte = Currency::fromUnits(5);
    const Measure m = measure(
        b, runs,
        [&] {
            for (int i = 0; i < count; ++i) {
                CampiRiga riga;
                riga.txtPrezzoListino = getPrezzo(prodotto + i % 100, doc);
                bool done = false;
                setSconti(prodotto + i % 100, false, done, riga, doc);
            }
        },
        [] {});
    print(b, QStringLiteral("price and discounts of %1 sales rows").arg(count), m);
}

// A firm's catalogue: products up to `count`, written many rows a statement.
void fillCatalogue(int count)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const int have = db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Prodotti"), kTag).toInt();
    db.beginTrasaction(kTag);
    for (int i = have; i < count;) {
        QStringList rows;
        for (int n = 0; n < 500 && i < count; ++n, ++i)
            rows << QStringLiteral("(%1, %2, 1, 2, %3)")
                        .arg(sqlText(QStringLiteral("C%1").arg(i * 7919 % 1000003, 7, 10, QLatin1Char('0'))),
                             sqlText(QStringLiteral("Articolo di catalogo %1").arg(i)), QString::number(i % 500));
        run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_UNITAMISURA, FK_Iva, LISTINO1) VALUES ")
            + rows.join(QStringLiteral(", ")));
    }
    db.commitTrasaction(kTag);
}

// F3 on the product code over the catalogue: one read a keystroke as the
// search list fills, cut at 500 rows, every row and column read; the last
// keystrokes find nothing, which reads the most.
void benchProductSearch(const Backend& b, int count, int runs)
{
    fillCatalogue(count);
    const QString prepared = ricerca::prepareStatement(ricercaProdotti(), false);
    const QString field = ricerca::nomeCampo(prepared, 1);
    const QStringList typed{QStringLiteral("C"),    QStringLiteral("C0"),    QStringLiteral("C01"),
                            QStringLiteral("C012"), QStringLiteral("C0123"), QStringLiteral("C01234"),
                            QStringLiteral("X")};
    int shown = 0;
    Measure m = measure(
        b, runs,
        [&] {
            shown = 0;
            for (const QString& text : typed) {
                const cReader rs(ricerca::withMaxRows(ricerca::addCondition(prepared,
                                                                            ricerca::likeCondition(field, text, false)),
                                                      QStringLiteral("500"), b.tipo),
                                 QStringLiteral("frmRicerca.startMe"));
                for (; rs && !rs->eof(); rs->moveNext(), ++shown)
                    for (int c = 0; c < rs->fieldCount(); ++c)
                        rs->value(c);
            }
        },
        [] {});
    m.system /= typed.size();
    m.floor /= typed.size();
    print(b, QStringLiteral("product search, per keystroke, %1 products").arg(count), m,
          QStringLiteral("%1 rows listed in all").arg(shown));

    // Opening cards: each one's row, then the code and name of each key it
    // holds; 200 cards, spread over the catalogue.
    constexpr int kCards = 200;
    const int last = gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT MAX(RID) FROM Prodotti"), kTag).toInt();
    const fields::FieldList list = prodottoFields(2);
    m = measure(
        b, runs,
        [&] {
            for (int card = 0; card < kCards; ++card) {
                QList<int> keys;
                {
                    const cReader rs(letturaProdotto(2, last - card * (count / kCards)),
                                     QStringLiteral("frmProdotto.showData"));
                    for (const fields::Field& f : list.fields())
                        if (f.lookup)
                            keys << (rs && !rs->eof() ? int(rs->integer(f.column)) : 0);
                }
                int k = 0;
                for (const fields::Field& f : list.fields())
                    if (f.lookup) {
                        QString code, description;
                        int key = keys.at(k++);
                        if (key > 0)
                            f.lookup->validate(code, description, key);
                    }
            }
        },
        [] {});
    m.system /= kCards;
    m.floor /= kCards;
    print(b, QStringLiteral("opening a product card among %1, per card").arg(count), m);
}

// The key of a seeded row by its code.
int keyOf(const QString& table, const QString& code)
{
    return gAdoSqlServer()
        .getValueBySQL(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE CODICE = ") + sqlText(code),
                       kTag)
        .toInt();
}

// A sales invoice of 1,000 rows over the catalogue, five of them kits of three
// components each; its key.
// The catalogue a stored document's rows come from ("C" codes), when no
// earlier scenario made it.
void ensureCatalogue(int count)
{
    const int present = gAdoSqlServer()
                            .getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Prodotti WHERE CODICE LIKE ")
                                               + sqlText(QStringLiteral("C%")),
                                           kTag)
                            .toInt();
    if (present >= count)
        return;
    gAdoSqlServer().beginTrasaction(kTag);
    for (int i = present; i < count; ++i)
        run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE) VALUES (%1, %2)")
                .arg(sqlText(QStringLiteral("C%1").arg(i, 7, 10, QLatin1Char('0'))),
                     sqlText(QStringLiteral("Articolo di catalogo %1 in confezione da banco").arg(i))));
    gAdoSqlServer().commitTrasaction(kTag);
}

int storeDocument(int righe = 1000, int numero = 901)
{
    ensureCatalogue(righe);
    cAdoSqlServer& db = gAdoSqlServer();
    const QString kit = gOptions().distintaBase;
    const int iva22 = keyOf(QStringLiteral("Iva"), QStringLiteral("22"));
    const int iva10 = keyOf(QStringLiteral("Iva"), QStringLiteral("10"));
    const int pezzi = keyOf(QStringLiteral("UnitaMisura"), QStringLiteral("PZ"));
    const int next =
        db.getValueBySQL(QStringLiteral("SELECT COALESCE(MAX(RID), 0) FROM DettagliMovimento"), kTag).toInt() + 1;
    const int rid = db.getValueBySQL(QStringLiteral("SELECT COALESCE(MAX(RID), 0) FROM Movimenti"), kTag).toInt() + 1;
    db.beginTrasaction(kTag);
    const bool kitPresenti = db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Prodotti WHERE CODICE LIKE ")
                                                  + sqlText(kit + QStringLiteral("KIT%")),
                                              kTag)
                                 .toInt()
        > 0;
    for (int k = 1; k <= 5 && !kitPresenti; ++k)
        run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_UNITAMISURA, FK_Iva) VALUES (%1, %2, %3, %4)")
                .arg(sqlText(kit + QStringLiteral("KIT%1").arg(k)),
                     sqlText(QStringLiteral("Kit di montaggio %1").arg(k)))
                .arg(pezzi)
                .arg(iva22));
    if (db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Anagrafiche WHERE NUMERO = 99002"), kTag).toInt() == 0)
        run(QStringLiteral(
                "INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, INDIRIZZO, CITTA, PIVA, TIPO, FK_PAGAMENTO, "
                "SCONTO) VALUES (99002, ")
            + sqlText(QStringLiteral("Ferramenta dell'Adige")) + QStringLiteral(", ")
            + sqlText(QStringLiteral("Via Roma 1")) + QStringLiteral(", ") + sqlText(QStringLiteral("Verona"))
            + QStringLiteral(", ") + sqlText(QStringLiteral("01234567897")) + QStringLiteral(", ")
            + sqlText(QStringLiteral("C")) + QStringLiteral(", ")
            + QString::number(keyOf(QStringLiteral("Pagamenti"), QStringLiteral("RD"))) + QStringLiteral(", 0)"));
    run(QStringLiteral("INSERT INTO Movimenti (RID, PROGRESSIVO, ANNO, DATA, FK_TIPODOCUMENTO, FK_ORIGINE, "
                       "FK_CONTROPARTITA, FK_PAGAMENTO, RIFERIMENTI, RDA1, RDA2, USAPREZZIIVA) VALUES (%1, %8, 2026, "
                       "%2, %3, %4, %5, %6, %7, 0, 0, 0)")
            .arg(rid)
            .arg(db.getSQLDate(QDate(2026, 3, 2)))
            .arg(keyOf(QStringLiteral("TipoDocumenti"), QStringLiteral("FV")))
            .arg(keyOf(QStringLiteral("Magazzini"), QStringLiteral("SEDE")))
            .arg(db.getValueBySQL(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 99002"), kTag).toInt())
            .arg(keyOf(QStringLiteral("Pagamenti"), QStringLiteral("RD")))
            .arg(sqlText(QStringLiteral("ordine 12/2026")))
            .arg(numero));
    const cReader kits(QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Prodotti WHERE CODICE LIKE ")
                           + sqlText(kit + QStringLiteral("KIT%")) + QStringLiteral(" ORDER BY RID"),
                       kTag);
    const cReader products(QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Prodotti WHERE CODICE LIKE ")
                               + sqlText(QStringLiteral("C%")) + QStringLiteral(" ORDER BY RID LIMIT ")
                               + QString::number(righe),
                           kTag);
    int parent = 0;
    for (int i = 0; i < righe; ++i) {
        // Every 200 rows a kit, its three components after it at their prices.
        const bool isKit = i % 200 == 100;
        const cReader& p = isKit ? kits : products;
        const bool child = !isKit && parent > 0 && next + i - parent <= 3;
        const double aliquota = i % 7 == 3 ? 10 : 22;
        const double quantita = isKit ? 2 : 1 + i % 12, prezzo = isKit ? 0 : (150 + (i * 37) % 9000) / 100.0;
        const double sconto = isKit || child ? 0 : (i % 3) * 5;
        const double netto = prezzo * (100 - sconto) / 100, ivaUnita = netto * aliquota / 100;
        if (isKit)
            parent = next + i;
        QStringList values{QString::number(next + i),
                           QString::number(rid),
                           QString::number(i + 1),
                           p->text(QStringLiteral("RID")),
                           sqlText(p->text(QStringLiteral("CODICE"))),
                           sqlText(p->text(QStringLiteral("DESCRIZIONE"))),
                           QString::number(aliquota == 22 ? iva22 : iva10),
                           QString::number(pezzi)};
        for (const double v : {quantita, prezzo, sconto, 0.0, 0.0, prezzo - netto, netto, netto * quantita, ivaUnita,
                               ivaUnita * quantita, (netto + ivaUnita) * quantita, aliquota, 0.0})
            values << QString::number(v, 'f', 4);
        values << (child ? QString::number(parent) : QStringLiteral("NULL"));
        run(QStringLiteral("INSERT INTO DettagliMovimento (RID, FK_MOVIMENTO, POS, FK_PRODOTTO, CODPRODOTTO, "
                           "DESCPRODOTTO, FK_Iva, FK_UM, QUANTITA, PREZZO, SCONTO, SCONTO2, SCONTO3, SCONTONETTO, "
                           "PREZZONETTO, TotPrezzoNetto, IVA, TOTALEIVA, TOTALERIGA, VALOREIVA, TAGLIO, "
                           "IK_DETTAGLIOMOVIMENTO) VALUES (")
            + values.join(QStringLiteral(", ")) + QLatin1Char(')'));
        p->moveNext();
    }
    db.commitTrasaction(kTag);
    return rid;
}

// Opening a stored invoice of 1,000 rows on the document screen, and adding
// rows to it: in the editor alone, then with the grid shown again as the
// screen does after each row. Adding a row reads nothing, so it is timed on
// the first back end only.
void benchDocument(const Backend& b, int runs)
{
    gOptions().decimaliDopo = getOpzione(QStringLiteral("DecimaliDopo")).toInt();
    gOptions().distintaBase = getOpzione(QStringLiteral("DistintaBase"));
    gOptions().rigaLibera = getOpzione(QStringLiteral("RigaLibera"));
    const int rid = storeDocument();
    frmMovimento screen;
    screen.resize(1200, 800);
    screen.show();
    QCoreApplication::processEvents();
    // Each opening starts from the screen drawn: the drawing that follows an
    // opening is not timed.
    const Measure m = measure(
        b, runs, [&] { screen.showData(rid); }, [] { QCoreApplication::processEvents(); });
    print(b, QStringLiteral("opening a stored document of %1 rows").arg(screen.editor().griglia().righe()), m,
          QStringLiteral("[taxable %1]").arg(screen.editor().totali().imponibile));
    if (b.tipo != TipoServer::FileDb)
        return;

    // One row of a product of the catalogue, as row entry fills the editor.
    const auto nuovaRiga = [](EditorDocumento& e, int i) {
        e.pulisciRiga();
        std::tie(e.dati.prodotto, e.dati.codice, e.dati.descrizione, e.dati.iva) =
            std::tuple(1 + i, QStringLiteral("C%1").arg(i, 7, 10, QLatin1Char('0')),
                       QStringLiteral("Articolo di catalogo %1").arg(i), 1);
        std::tie(e.riga.prezzoListino, e.riga.quantita, e.riga.sconto1, e.riga.aliquota) =
            std::tuple(QStringLiteral("12,50"), QStringLiteral("3"), QStringLiteral("10"), QStringLiteral("22"));
    };
    auto* griglia = screen.findChild<GrigliaMovimento*>();
    const EditorDocumento caricato = screen.editor();
    constexpr int kRows = 200;
    for (const bool withGrid : {false, true}) {
        QList<double> times;
        for (int i = 0; i < kRows; ++i) {
            EditorDocumento& e = screen.editor();
            e = caricato;
            griglia->aggiorna(-1);
            nuovaRiga(e, i);
            times.append(timeMs([&] {
                e.confermaRiga();
                if (withGrid)
                    griglia->aggiorna(e.corrente);
            }));
        }
        out << b.name.leftJustified(8) << ' '
            << (withGrid ? QStringLiteral("adding a row to a %1-row document + grid, per row")
                         : QStringLiteral("adding a row to a %1-row document, per row"))
                   .arg(caricato.griglia().righe())
                   .leftJustified(52)
            << " system " << QString::number(median(times), 'f', 3).rightJustified(8) << " ms  (no database)\n";
    }
    out.flush();
}

// Saving a new sales invoice of 200 rows as F5 does: its number, the header,
// each row's stock and statistics, the journal entry and its due dates, in one
// transaction. The products keep stock and have a lot at the seat.
void benchSalvataggio(const Backend& b, int runs)
{
    constexpr int kRighe = 200;
    QStringList prodotti;
    {
        const cReader rs(QStringLiteral("SELECT RID FROM Prodotti P WHERE CODICE LIKE ") + sqlText(QStringLiteral("C%"))
                             + QStringLiteral(" AND NOT EXISTS (SELECT 1 FROM DettagliProdotto D WHERE "
                                              "D.FK_PRODOTTO = P.RID) ORDER BY RID"),
                         kTag);
        for (; rs && !rs->eof() && prodotti.size() < kRighe; rs->moveNext())
            prodotti << rs->text(QStringLiteral("RID"));
    }
    const int sede = keyOf(QStringLiteral("Magazzini"), QStringLiteral("SEDE"));
    gAdoSqlServer().beginTrasaction(kTag);
    run(QStringLiteral("UPDATE Prodotti SET SETGIACENZA = -1, GIACENZA = 1000000 WHERE RID IN (")
        + prodotti.join(QStringLiteral(", ")) + QLatin1Char(')'));
    for (const QString& p : std::as_const(prodotti))
        run(QStringLiteral("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, QUANTITA, TAGLIO) VALUES (%1, %2, "
                           "1000000, 4)")
                .arg(p)
                .arg(sede));
    gAdoSqlServer().commitTrasaction(kTag);

    DocumentoDaSalvare d;
    d.testata.tipo = {keyOf(QStringLiteral("TipoDocumenti"), QStringLiteral("FV")), QStringLiteral("FV"), QString()};
    getInfoDocumento(d.testata.tipo.rid, d.info);
    d.testata.anno = 2026;
    d.testata.data = QDate(2026, 1, 2);
    d.testata.origine.rid = sede;
    d.testata.destinazione.rid =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 99002"), kTag).toInt();
    d.testata.pagamento.rid = keyOf(QStringLiteral("Pagamenti"), QStringLiteral("30FM"));
    EditorDocumento e(2, gOptions().distintaBase);
    for (int i = 0; i < prodotti.size(); ++i) {
        e.pulisciRiga();
        std::tie(e.dati.prodotto, e.dati.codice, e.dati.descrizione, e.dati.iva, e.dati.codIva) =
            std::tuple(prodotti.at(i).toInt(), QStringLiteral("C%1").arg(i), QStringLiteral("Articolo %1").arg(i), 1,
                       QStringLiteral("22"));
        std::tie(e.riga.prezzoListino, e.riga.quantita, e.riga.sconto1, e.riga.aliquota) =
            std::tuple(QStringLiteral("%1,50").arg(5 + i % 40), QString::number(1 + i % 5), QString::number(i % 3 * 5),
                       QStringLiteral("22"));
        e.confermaRiga();
    }
    d.totali = e.totali();
    int salvati = 0;
    const Measure m = measure(
        b, runs,
        [&] {
            DocumentoDaSalvare nuovo = d;
            GrigliaDocumento righe = e.griglia();
            salvati += salvaDocumento(nuovo, righe, true) ? 1 : 0;
        },
        [] {});
    print(b, QStringLiteral("saving a new invoice of %1 rows").arg(prodotti.size()), m,
          QStringLiteral("[%1 of %2 saved]").arg(salvati).arg(runs + 1));
}

// Printing a stored invoice of 700 rows, about 20 pages: its print
// database written from the live one, then the invoice template laid out
// and written as PDF, which reads no live data.
void benchStampa(const Backend& b, int runs)
{
    QTemporaryDir cartella;
    setProgramFolder(cartella.path());
    gSession().strReportPath = cartella.filePath(QStringLiteral("Reports"));
    installaModelliReport(gSession().strReportPath);
    loadOptionGlobals();
    const int rid = storeDocument(700, 902);
    const QString filtro = QStringLiteral("M.RID = ") + QString::number(rid);
    bool sopra = false;
    long extra = 0;
    bool scritto = false;
    const Measure m = measure(
        b, runs, [&] { scritto = creaStampaDB(filtro, sopra, extra); }, [] {});
    print(b, QStringLiteral("print database of a 700-row invoice"), m,
          scritto ? QString() : QStringLiteral("[failed]"));

    const QString pdf = cartella.filePath(QStringLiteral("fattura.pdf"));
    QList<double> times;
    int pagine = 0;
    QString errore;
    for (int i = 0; i <= runs; ++i) {
        const double t = timeMs([&] {
            cReport r;
            r.setReportFileName(QDir(gSession().strReportPath).filePath(QStringLiteral("Fattura.rpt")));
            r.setConnect(connessioneStampaDB());
            r.setSelectionFormula(QStringLiteral("{Movimenti.RID}=") + QString::number(rid));
            r.setDestination(cReport::Stampante);
            r.setPrinterName(stampantePdf());
            r.setPrintFileName(pdf);
            report::RenderedReport pages;
            if (!r.run(&pages))
                errore = r.error();
            pagine = pages.pageCount();
        });
        if (i > 0) // the first run loads the fonts
            times.append(t);
    }
    out << b.name.leftJustified(8) << ' '
        << QStringLiteral("rendering the invoice, %1 pages, to PDF").arg(pagine).leftJustified(52) << " system "
        << QString::number(median(times), 'f', 1).rightJustified(8) << " ms  (print database only)"
        << (errore.isEmpty() ? QString() : QStringLiteral("  [") + errore + QLatin1Char(']')) << '\n';
    out.flush();
    setProgramFolder(QString());
}

// Stock recalculation over a stored history of `righe` document rows (20
// rows a document: loads, sales, transfers between two warehouses, each row
// at one of three cost lots of its product), the standard way for every
// product: from no stock rows at all, and again on stock already right,
// which writes nothing. Then the forced way for one product of 5,000 rows.
void benchRicalcolo(const Backend& b, int righe, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const MsgBoxHandler previous =
        setMsgBoxHandler([](const QString&, int style, const QString&) { return defaultAnswer(style); });
    constexpr int kProdotti = 20000, kRighePerDocumento = 20, kRigheForzato = 5000;
    const QString massimo = QStringLiteral("SELECT COALESCE(MAX(RID), 0) FROM ");
    const int primoProdotto = db.getValueBySQL(massimo + QStringLiteral("Prodotti"), kTag).toInt() + 1;
    int documento = db.getValueBySQL(massimo + QStringLiteral("Movimenti"), kTag).toInt();
    int riga = db.getValueBySQL(massimo + QStringLiteral("DettagliMovimento"), kTag).toInt();
    run(QStringLiteral("INSERT INTO Magazzini (CODICE, DESCRIZIONE) VALUES (") + sqlText(QStringLiteral("RICNEG"))
        + QStringLiteral(", ") + sqlText(QStringLiteral("Negozio")) + QLatin1Char(')'));
    const int sede = keyOf(QStringLiteral("Magazzini"), QStringLiteral("SEDE"));
    const int negozio = keyOf(QStringLiteral("Magazzini"), QStringLiteral("RICNEG"));
    const int carico = keyOf(QStringLiteral("TipoDocumenti"), QStringLiteral("CF"));
    const int vendita = keyOf(QStringLiteral("TipoDocumenti"), QStringLiteral("FV"));
    const int trasferimento = keyOf(QStringLiteral("TipoDocumenti"), QStringLiteral("TM"));

    QElapsedTimer fill;
    fill.start();
    db.beginTrasaction(kTag);
    QStringList valori;
    QStringList documenti;
    const QString testaDocumenti = QStringLiteral(
        "INSERT INTO Movimenti (RID, FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA, FK_ORIGINE, FK_DESTINAZIONE) VALUES ");
    // Rows go in blocks of `blocco`, their documents before them.
    const auto scrivi = [&](const QString& testa, int blocco) {
        if (valori.size() < blocco || valori.isEmpty())
            return;
        if (!documenti.isEmpty())
            run(testaDocumenti + documenti.join(QStringLiteral(", ")));
        documenti.clear();
        run(testa + valori.join(QStringLiteral(", ")));
        valori.clear();
    };
    const QString testaProdotti =
        QStringLiteral("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA, DISTINTABASE) VALUES ");
    for (int p = 0; p <= kProdotti; ++p) {
        valori << QStringLiteral("(%1, %2, %3, 0, -1, 0)")
                      .arg(primoProdotto + p)
                      .arg(sqlText(QStringLiteral("RIC%1").arg(p, 6, 10, QLatin1Char('0'))),
                           sqlText(QStringLiteral("Articolo di magazzino %1").arg(p)));
        scrivi(testaProdotti, 500);
    }
    scrivi(testaProdotti, 1);
    const QString testaRighe = QStringLiteral("INSERT INTO DettagliMovimento (RID, FK_MOVIMENTO, POS, FK_PRODOTTO, "
                                              "CODPRODOTTO, QUANTITA, PREZZONETTO, TAGLIO) VALUES ");
    quint32 seme = 12345;
    const auto caso = [&seme](quint32 n) {
        seme = seme * 1103515245u + 12345u;
        return (seme >> 8) % n;
    };
    // The last product is the forced way's: its rows come first.
    const int righeTotali = righe + kRigheForzato;
    for (int r = 0; r < righeTotali; r += kRighePerDocumento) {
        const quint32 tipo = caso(10); // 4 loads, 5 sales, 1 transfer in 10
        const int td = tipo < 4 ? carico : tipo < 9 ? vendita : trasferimento;
        const QString origine = td == carico ? QStringLiteral("NULL") : QString::number(sede);
        const QString destinazione =
            td == vendita ? QStringLiteral("NULL") : QString::number(td == carico ? sede : negozio);
        ++documento;
        documenti << QStringLiteral("(%1, %2, 2025, %3, %4, %5, %6)")
                         .arg(documento)
                         .arg(td)
                         .arg(documento)
                         .arg(db.getSQLDate(QDate(2025, 1, 1).addDays(r / 4000)), origine, destinazione);
        for (int i = 0; i < kRighePerDocumento; ++i) {
            const int p = r < kRigheForzato ? kProdotti : int(caso(kProdotti));
            const int lotto = int(caso(3));
            const double costo = 1 + p % 50 + lotto * 0.25;
            valori << QStringLiteral("(%1, %2, %3, %4, %5, %6, %7, %8)")
                          .arg(++riga)
                          .arg(documento)
                          .arg(i + 1)
                          .arg(primoProdotto + p)
                          .arg(sqlText(QStringLiteral("RIC%1").arg(p, 6, 10, QLatin1Char('0'))))
                          .arg(1 + caso(12))
                          .arg(costo * 1.4, 0, 'f', 2)
                          .arg(costo, 0, 'f', 2);
            scrivi(testaRighe, 500);
        }
    }
    scrivi(testaRighe, 1);
    db.commitTrasaction(kTag);
    out << b.name.leftJustified(8) << " recalculation: " << righeTotali << " document rows stored in "
        << QString::number(fill.elapsed() / 1000.0, 'f', 1) << " s\n";

    OpzioniRicalcolo standard;
    standard.distintaBase = getOpzione(QStringLiteral("DistintaBase"));
    const auto azzera = [&] {
        run(QStringLiteral("DELETE FROM DettagliProdotto"));
        run(QStringLiteral("UPDATE Prodotti SET GIACENZA = 0"));
        restoreKeyCounter(b, QStringLiteral("DettagliProdotto"));
    };
    const QString lotti = QString::number(
        db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM (SELECT DISTINCT FK_PRODOTTO, TAGLIO FROM "
                                        "DettagliMovimento WHERE FK_PRODOTTO >= ")
                             + QString::number(primoProdotto) + QStringLiteral(") l"),
                         kTag)
            .toInt());
    print(b, QStringLiteral("stock recalculation, %1 rows, no stock rows").arg(righeTotali),
          measure(
              b, runs, [&] { eseguiRicalcolo(0, standard); }, azzera),
          QStringLiteral("[%1 lots of %2 products]").arg(lotti).arg(kProdotti + 1));
    print(b, QStringLiteral("stock recalculation, %1 rows, stock already right").arg(righeTotali),
          measure(
              b, runs, [&] { eseguiRicalcolo(0, standard); }, [] {}));
    OpzioniRicalcolo forzato = standard;
    forzato.forzato = true;
    print(b, QStringLiteral("forced stock recalculation, one product of %1 rows").arg(kRigheForzato),
          measure(
              b, runs, [&] { eseguiRicalcolo(primoProdotto + kProdotti, forzato); }, [] {}));
    setMsgBoxHandler(previous);
}

// The benchmark's database on the server, dropped before a run (one that was
// stopped may have left it) and after.
void dropServerDatabase(const QString& server)
{
    driver::closeIdle();
    DbError error;
    if (PhysicalConnectionPtr c = driver::acquire(TipoServer::MySql, server, 10, error)) {
        c->execute(QStringLiteral("DROP DATABASE IF EXISTS orvantis_bench"), nullptr, error);
        c->close();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    // The document screen is a widget: without a display it is drawn off screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int rows = 5000;
    int runs = 5;
    QString mysql = qEnvironmentVariable("ORVANTIS_TEST_MYSQL");
    QString only; // one scenario group: insert, lookups, ..., document, save, print, recalculation
    const QStringList args = app.arguments();
    for (qsizetype i = 1; i + 1 < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--rows"))
            rows = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--runs"))
            runs = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--mysql"))
            mysql = args.at(++i);
        else if (args.at(i) == QLatin1String("--only"))
            only = args.at(++i);
    }

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("bench.db"));
    QList<Backend> backends{{QStringLiteral("SQLite"), TipoServer::FileDb, fileDbConnectionString(file)}};
    if (!mysql.isEmpty())
        backends.append(
            {QStringLiteral("MariaDB"), TipoServer::MySql, mysql + QStringLiteral(";Database=orvantis_bench")});

    out << "Orvantis benchmark: medians of " << runs
        << " runs; floor: the same statements replayed on a bare connection of the driver\n";
    for (const Backend& b : backends) {
        QString message;
        bool ready = false;
        if (b.tipo == TipoServer::FileDb) {
            ready = model::buildModelFile(file, &message);
        } else {
            dropServerDatabase(mysql);
            ready = model::initServerDatabase(b.tipo, b.connection, &message);
        }
        if (!ready) {
            out << b.name << ": " << message << '\n';
            continue;
        }
        gAdoSqlServer().setTipoServer(b.tipo);
        gSession().strConnessione = b.connection;
        const auto want = [&](const char* name) { return only.isEmpty() || only == QLatin1String(name); };
        if (want("insert"))
            benchInsert(b, rows, runs);
        if (want("lookups"))
            benchLookups(b, qMin(rows, 2000), runs);
        if (want("numbering"))
            benchNumbering(b, qMin(rows, 1000), runs);
        if (want("journal"))
            benchJournal(b, qMin(rows, 1000), runs, 20000);
        if (want("duedates"))
            benchDueDates(b, qMin(rows, 1000), runs);
        if (want("stock"))
            benchStock(b, qMin(rows, 1000), runs);
        if (want("pricing"))
            benchPricing(b, qMin(rows, 500), runs);
        if (want("search"))
            benchProductSearch(b, 100000, runs);
        if (want("document"))
            benchDocument(b, runs);
        if (want("save"))
            benchSalvataggio(b, runs);
        if (want("print"))
            benchStampa(b, runs);
        if (want("recalculation"))
            benchRicalcolo(b, 1000000, qMin(runs, 3));
        if (b.tipo == TipoServer::MySql)
            dropServerDatabase(mysql);
        out.flush();
    }
    driver::closeIdle();
    return 0;
}
