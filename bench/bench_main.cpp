// Benchmark: the operations users wait for, on each back end, against the
// floor of the same final statements replayed through the bare driver.
//
//   orvantis_bench [--rows N] [--runs K] [--mysql "Server=..;Port=..;Uid=..;Pwd="]
//
// Without --mysql the server named by ORVANTIS_TEST_MYSQL is used, if any.
// Prints medians and ratios; never fails on a time.
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "common/italiantext.h"
#include "data/modeldatabase.h"
#include "numbering/numeratore.h"
#include "pricing/prezzi.h"
#include "accounting/primanota.h"
#include "stock/giacenze.h"
#include "accounting/scadenze.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <functional>

namespace {

QTextStream out(stdout);

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

// One product row as the product screen writes it.
QString productInsert(int i)
{
    cAdoSqlServer& db = gAdoSqlServer();
    return QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, LISTINO1, PREZZOACQUISTO, SCORTAMINIMA, "
                          "DATAULTIMAMODIFICA, FK_Iva, DISABILITATO) VALUES (")
        + sqlText(QStringLiteral("ART%1").arg(i, 6, 10, QLatin1Char('0'))) + QStringLiteral(", ")
        + sqlText(QStringLiteral("Vite a testa esagonale 8x%1 l'una, zincata").arg(i % 90 + 10)) + QStringLiteral(", ")
        + getSqlNumber(QStringLiteral("%1,%2").arg(i % 500).arg(i % 100, 2, 10, QLatin1Char('0'))) + QStringLiteral(", ")
        + getSqlNumber(double(i % 300) / 7.0) + QStringLiteral(", ") + getSqlNumberOrZero(QString()) + QStringLiteral(", ")
        + db.getSQLDateTime(QDateTime(QDate(2026, 11, 22), QTime(10, 30, 0))) + QStringLiteral(", ")
        + getIDOrNullStr(0) + QStringLiteral(", 0)");
}

struct Backend
{
    QString name;
    int tipo;
    QString connection;
};

void clearProducts()
{
    gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM Prodotti"), QStringLiteral("bench"));
}

void benchInsert(const Backend& b, int rows, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    QList<double> system, floor;
    QStringList finals;
    for (int i = 0; i < rows; ++i) {
        const DialectResult r = rewriteStatement(productInsert(i), b.tipo);
        finals.append(driver::finalSql(r.text, b.tipo));
    }
    for (int run = 0; run < runs; ++run) {
        clearProducts();
        system.append(timeMs([&] {
            db.beginTrasaction(QStringLiteral("bench"));
            for (int i = 0; i < rows; ++i)
                db.executeSQL(productInsert(i), QStringLiteral("bench.insert"));
            db.commitTrasaction(QStringLiteral("bench"));
        }));
        clearProducts();
        DbError error;
        PhysicalConnectionPtr raw = driver::acquire(b.tipo, b.connection, 60, error);
        floor.append(timeMs([&] {
            raw->begin(error);
            for (const QString& sql : std::as_const(finals)) {
                QSqlQuery q(QSqlDatabase::database(raw->name(), false));
                q.exec(sql);
            }
            raw->commit(error);
        }));
        driver::release(raw);
    }
    const int stored = db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Prodotti"), QStringLiteral("bench")).toInt();
    const double s = median(system), f = median(floor);
    out << QStringLiteral("%1  insert %2 rows, one transaction: cAdoSqlServer %3 ms (%4 rows/s), driver %5 ms (%6 rows/s), ratio %7  [rows stored %8]\n")
               .arg(b.name, -8)
               .arg(rows)
               .arg(s, 0, 'f', 1)
               .arg(rows / (s / 1000.0), 0, 'f', 0)
               .arg(f, 0, 'f', 1)
               .arg(rows / (f / 1000.0), 0, 'f', 0)
               .arg(s / f, 0, 'f', 2)
               .arg(stored);
}

// A reader as the screens use it: open, read one value, disconnect.
void benchLookups(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    QList<double> system;
    for (int run = 0; run < runs; ++run)
        system.append(timeMs([&] {
            for (int i = 0; i < count; ++i)
                db.getValueBySQL(QStringLiteral("SELECT DESCRIZIONE FROM Prodotti WHERE CODICE = ")
                                     + sqlText(QStringLiteral("ART%1").arg(i, 6, 10, QLatin1Char('0'))),
                                 QStringLiteral("bench.lookup"));
        }));
    const double s = median(system);
    out << QStringLiteral("%1  look-up by code, connection per statement: %2 ms for %3 (%4 per second)\n")
               .arg(b.name, -8)
               .arg(s, 0, 'f', 1)
               .arg(count)
               .arg(count / (s / 1000.0), 0, 'f', 0);
}

// Taking document numbers, one a transaction as a document save does: the
// counter moved on under its lock and read back (MySQL), or the locking read
// and the update.
void benchNumbering(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString anno = QStringLiteral("2099");
    QList<double> system, floor;
    const auto reset = [&] {
        db.executeSQL(QStringLiteral("DELETE FROM Contatori WHERE ANNO = ") + sqlText(anno), QStringLiteral("bench"));
        db.executeSQL(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (1, ") + sqlText(anno)
                          + QStringLiteral(", 0, ") + sqlText(QStringLiteral("n/d")) + QLatin1Char(')'),
                      QStringLiteral("bench"));
    };
    const auto final = [&b](const QString& sql) { return driver::finalSql(rewriteStatement(sql, b.tipo).text, b.tipo); };
    const QString read = final(QStringLiteral("SELECT NUMERO FROM Contatori WHERE FK_NUMERATORE = 1 AND ANNO = ") + sqlText(anno));
    const QString upsert = final(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (1, ")
                                 + sqlText(anno) + QStringLiteral(", 1, ") + sqlText(QStringLiteral("n/d"))
                                 + QStringLiteral(") ON DUPLICATE KEY UPDATE NUMERO = NUMERO + 1"));
    int last = 0;
    for (int run = 0; run < runs; ++run) {
        reset();
        system.append(timeMs([&] {
            for (int i = 0; i < count; ++i) {
                db.beginTrasaction(QStringLiteral("bench"));
                last = getNewNumeratoreAnnuale(1, anno);
                db.commitTrasaction(QStringLiteral("bench"));
            }
        }));
        reset();
        DbError error;
        PhysicalConnectionPtr raw = driver::acquire(b.tipo, b.connection, 60, error);
        floor.append(timeMs([&] {
            for (int i = 1; i <= count; ++i) {
                raw->begin(error);
                QSqlQuery q(QSqlDatabase::database(raw->name(), false));
                if (b.tipo == TipoServer::MySql) {
                    q.exec(upsert);
                    q.exec(read);
                    q.next();
                } else {
                    q.exec(read);
                    q.next();
                    const int next = q.value(0).toInt() + 1;
                    q.exec(final(QStringLiteral("UPDATE Contatori SET NUMERO = ") + QString::number(next)
                                 + QStringLiteral(" WHERE FK_NUMERATORE = 1 AND ANNO = ") + sqlText(anno)));
                }
                raw->commit(error);
            }
        }));
        driver::release(raw);
    }
    const double s = median(system), f = median(floor);
    out << QStringLiteral("%1  document numbers, one a transaction: %2 ms for %3 (%4 numbers/s, %5 statements/s), "
                          "driver %6 ms, ratio %7  [last number %8]\n")
               .arg(b.name, -8)
               .arg(s, 0, 'f', 1)
               .arg(count)
               .arg(count / (s / 1000.0), 0, 'f', 0)
               .arg(2 * count / (s / 1000.0), 0, 'f', 0)
               .arg(f, 0, 'f', 1)
               .arg(s / f, 0, 'f', 2)
               .arg(last);
}

// Due dates of a journal entry (30/60 end of month), one entry a
// transaction as a document save writes them.
void benchDueDates(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const int entry = db.getIDByInsert(QStringLiteral("INSERT INTO PrimaNota (DESCRIZIONE) VALUES (") + sqlText(QStringLiteral("bench"))
                                           + QLatin1Char(')'),
                                       QStringLiteral("bench"), QStringLiteral("RID"), QStringLiteral("PrimaNota"));
    const int term = db.getValueBySQL(QStringLiteral("SELECT RID FROM Pagamenti WHERE CODICE = ") + sqlText(QStringLiteral("3060FM")),
                                      QStringLiteral("bench"))
                         .toInt();
    QList<double> system;
    for (int run = 0; run < runs; ++run)
        system.append(timeMs([&] {
            for (int i = 0; i < count; ++i) {
                db.beginTrasaction(QStringLiteral("bench"));
                generaScadenzePagamento(entry, term, Currency::fromUnits(1000 + i), QDate(2026, 1, 15).addDays(i % 300), false);
                db.commitTrasaction(QStringLiteral("bench"));
            }
        }));
    const double s = median(system);
    // Per entry: the term's read, the delete and two inserts.
    out << QStringLiteral("%1  due dates 30/60 f.m., one entry a transaction: %2 ms for %3 (%4 entries/s, %5 statements/s)\n")
               .arg(b.name, -8)
               .arg(s, 0, 'f', 1)
               .arg(count)
               .arg(count / (s / 1000.0), 0, 'f', 0)
               .arg(4 * count / (s / 1000.0), 0, 'f', 0);
}

// Stock postings: a load of one product at one lot, one row a posting, in
// one transaction as a document save runs them.
void benchStock(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    db.executeSQL(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA) VALUES (")
                      + sqlText(QStringLiteral("BENCHSTK")) + QStringLiteral(", ") + sqlText(QStringLiteral("bench"))
                      + QStringLiteral(", 0, -1)"),
                  QStringLiteral("bench"));
    const int prodotto = db.getValueBySQL(QStringLiteral("SELECT RID FROM Prodotti WHERE CODICE = ") + sqlText(QStringLiteral("BENCHSTK")),
                                          QStringLiteral("bench"))
                             .toInt();
    const OpzioniGiacenza lotti;
    QList<double> system;
    for (int run = 0; run < runs; ++run)
        system.append(timeMs([&] {
            db.beginTrasaction(QStringLiteral("bench"));
            for (int i = 0; i < count; ++i) {
                Currency taglio = Currency::fromUnits(5 + i % 3);
                Currency precedente = Currency::fromUnits(-1);
                int riga = -1;
                aggiornaGiacenze(1, 0, taglio, prodotto, 1, -1, 1, QStringLiteral("bench"), precedente, riga, lotti);
            }
            db.commitTrasaction(QStringLiteral("bench"));
        }));
    const double s = median(system);
    // Per row: the total read, the lot row read, its update and the total's update.
    out << QStringLiteral("%1  stock postings (lots), one transaction: %2 ms for %3 rows (%4 rows/s, %5 statements/s)\n")
               .arg(b.name, -8)
               .arg(s, 0, 'f', 1)
               .arg(count)
               .arg(count / (s / 1000.0), 0, 'f', 0)
               .arg(4 * count / (s / 1000.0), 0, 'f', 0);
}

// Price and discounts of a sales row, as the row entry asks them: the
// list price, then the discount cascade.
void benchPricing(const Backend& b, int count, int runs)
{
    cAdoSqlServer& db = gAdoSqlServer();
    db.executeSQL(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO) VALUES (99001, ")
                      + sqlText(QStringLiteral("bench")) + QStringLiteral(", ") + sqlText(QStringLiteral("C")) + QStringLiteral(", 2, 5)"),
                  QStringLiteral("bench"));
    const int cliente = db.getValueBySQL(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 99001"), QStringLiteral("bench")).toInt();
    const int prodotto = db.getValueBySQL(QStringLiteral("SELECT MIN(RID) FROM Prodotti WHERE CODICE LIKE ") + sqlText(QStringLiteral("ART%")),
                                          QStringLiteral("bench"))
                             .toInt();
    DocumentoPrezzi doc;
    doc.tipoOrigine = 3;
    doc.tipoDestinazione = 1;
    doc.destinazione = cliente;
    doc.quantita = 3;
    doc.scontoControparte = Currency::fromUnits(5);
    QList<double> system;
    for (int run = 0; run < runs; ++run)
        system.append(timeMs([&] {
            for (int i = 0; i < count; ++i) {
                CampiRiga riga;
                riga.txtPrezzoListino = getPrezzo(prodotto + i % 100, doc);
                bool done = false;
                setSconti(prodotto + i % 100, false, done, riga, doc);
            }
        }));
    const double s = median(system);
    out << QStringLiteral("%1  price and discounts of a sales row: %2 ms for %3 rows (%4 rows/s)\n")
               .arg(b.name, -8)
               .arg(s, 0, 'f', 1)
               .arg(count)
               .arg(count / (s / 1000.0), 0, 'f', 0);
}

// Journal entries of sales invoices: number, header and three lines, one
// entry a transaction as a document save posts it; in a year with no
// entries and in one that holds `filled` already. The cost of an entry must
// not grow with the year.
void benchJournal(const Backend& b, int count, int runs, int filled)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const ContiControparti conti{
        db.getValueBySQL(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ") + sqlText(QStringLiteral("01001001")),
                         QStringLiteral("bench")).toInt(),
        db.getValueBySQL(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ") + sqlText(QStringLiteral("02001001")),
                         QStringLiteral("bench")).toInt()};
    constexpr int emptyYear = 2041, fullYear = 2042;
    db.beginTrasaction(QStringLiteral("bench"));
    for (int i = 1; i <= filled; ++i)
        db.executeSQL(QStringLiteral("INSERT INTO PrimaNota (ANNO, PROGRESSIVO, DATA, DataValuta, FK_CAUSALE, DESCRIZIONE, Importo) VALUES (")
                          + QString::number(fullYear) + QStringLiteral(", ") + QString::number(i) + QStringLiteral(", ")
                          + db.getSQLDate(QDate(fullYear, 1, 1).addDays(i % 365)) + QStringLiteral(", ")
                          + db.getSQLDate(QDate(fullYear, 1, 1).addDays(i % 365)) + QStringLiteral(", 1, ")
                          + sqlText(QStringLiteral("Fattura N.%1").arg(i)) + QStringLiteral(", 122)"),
                      QStringLiteral("bench"));
    db.commitTrasaction(QStringLiteral("bench"));

    const auto perEntry = [&](int year) {
        QList<double> times;
        for (int run = 0; run < runs; ++run) {
            times.append(timeMs([&] {
                for (int i = 0; i < count; ++i) {
                    DatiPrimaNota d;
                    d.fkCausale = 1;
                    d.descrizione = QStringLiteral("Fattura N.%1 DEL 15/01/%2").arg(i).arg(year);
                    d.importo = Currency::fromUnits(122 + i);
                    d.importoIva = Currency::fromUnits(22);
                    d.data = QDate(year, 1, 15);
                    d.dataValuta = d.data;
                    db.beginTrasaction(QStringLiteral("bench"));
                    salvaPrimaNota(d, conti);
                    db.commitTrasaction(QStringLiteral("bench"));
                }
            }) / count);
            // The year back as it was for the next run.
            const QString added = QStringLiteral(" WHERE ANNO = ") + QString::number(year) + QStringLiteral(" AND PROGRESSIVO > ")
                + QString::number(year == fullYear ? filled : 0);
            db.executeSQL(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota IN (SELECT RID FROM PrimaNota") + added
                              + QLatin1Char(')'),
                          QStringLiteral("bench"));
            db.executeSQL(QStringLiteral("DELETE FROM PrimaNota") + added, QStringLiteral("bench"));
        }
        return median(times);
    };
    const double empty = perEntry(emptyYear), full = perEntry(fullYear);
    // Per entry: the year's lock (on a server), the number, the header, the
    // causal and three lines.
    out << QStringLiteral("%1  journal entries of sales invoices, one a transaction: %2 ms an entry in an empty year, "
                          "%3 ms with %4 entries in the year, ratio %5 (%6 entries/s)\n")
               .arg(b.name, -8)
               .arg(empty, 0, 'f', 3)
               .arg(full, 0, 'f', 3)
               .arg(filled)
               .arg(full / empty, 0, 'f', 2)
               .arg(1000.0 / empty, 0, 'f', 0);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    int rows = 5000;
    int runs = 5;
    QString mysql = qEnvironmentVariable("ORVANTIS_TEST_MYSQL");
    const QStringList args = app.arguments();
    for (qsizetype i = 1; i + 1 < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--rows")) rows = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--runs")) runs = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--mysql")) mysql = args.at(++i);
    }

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("bench.db"));
    QList<Backend> backends{{QStringLiteral("SQLite"), TipoServer::FileDb, fileDbConnectionString(file)}};
    if (!mysql.isEmpty())
        backends.append({QStringLiteral("MariaDB"), TipoServer::MySql, mysql + QStringLiteral(";Database=orvantis_bench")});

    out << "Orvantis benchmark: medians of " << runs << " runs\n";
    for (const Backend& b : backends) {
        QString message;
        bool ready = false;
        if (b.tipo == TipoServer::FileDb)
            ready = model::buildModelFile(file, &message);
        else
            ready = model::initServerDatabase(b.tipo, b.connection, &message);
        if (!ready) {
            out << b.name << ": " << message << '\n';
            continue;
        }
        gAdoSqlServer().setTipoServer(b.tipo);
        gSession().strConnessione = b.connection;
        benchInsert(b, rows, runs);
        benchLookups(b, qMin(rows, 2000), runs);
        benchNumbering(b, qMin(rows, 1000), runs);
        benchJournal(b, qMin(rows, 1000), runs, 20000);
        benchDueDates(b, qMin(rows, 1000), runs);
        benchStock(b, qMin(rows, 1000), runs);
        benchPricing(b, qMin(rows, 500), runs);
        if (b.tipo == TipoServer::MySql) {
            driver::closeIdle();
            DbError error;
            if (PhysicalConnectionPtr c = driver::acquire(b.tipo, mysql, 10, error)) {
                c->execute(QStringLiteral("DROP DATABASE orvantis_bench"), nullptr, error);
                c->close();
            }
        }
        out.flush();
    }
    driver::closeIdle();
    return 0;
}
