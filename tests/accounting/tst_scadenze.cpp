// Due dates of a journal entry, on both back ends: the instalments of a term,
// their regeneration, the values they refuse to store, and a new entry that
// deletes nothing.
#include "cadosqlserver.h"
#include "italiantext.h"
#include "recordset.h"
#include "scadenze.h"
#include "sqldialect.h"
#include "sqlliteral.h"
#include "testdb.h"

#include <QDate>
#include <QtTest>

namespace {

void run(const QString& sql)
{
    QVERIFY2(gAdoSqlServer().executeSQL(sql, QStringLiteral("test")), qPrintable(sql));
}

int value(const QString& sql)
{
    return gAdoSqlServer().getValueBySQL(sql, QStringLiteral("test")).toInt();
}

using Rate = QList<QPair<int, double>>;

// A payment term: down payment, flags, instalments as (days, share).
int addTerm(const QString& code, double acconto, bool rimessa, bool fineMese, int nRate, const Rate& rate)
{
    run(QStringLiteral("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO IN (SELECT RID FROM Pagamenti WHERE CODICE = ¤") + code
        + QStringLiteral("¤)"));
    run(QStringLiteral("DELETE FROM Pagamenti WHERE CODICE = ¤") + code + QStringLiteral("¤"));
    run(QStringLiteral("INSERT INTO Pagamenti (CODICE, DESCRIZIONE, ACCONTO, RIMESSADIRETTA, FINEMESE, NRATE) VALUES (¤") + code
        + QStringLiteral("¤, ¤prova¤, ") + getSqlNumber(acconto) + QStringLiteral(", ") + (rimessa ? "-1" : "0")
        + QStringLiteral(", ") + (fineMese ? "-1" : "0") + QStringLiteral(", ") + QString::number(nRate) + QLatin1Char(')'));
    const int rid = value(QStringLiteral("SELECT RID FROM Pagamenti WHERE CODICE = ¤") + code + QStringLiteral("¤"));
    for (const auto& [giorni, quota] : rate)
        run(QStringLiteral("INSERT INTO DettagliPagamenti (FK_PAGAMENTO, NGIORNI, PERCENTUALE) VALUES (") + QString::number(rid)
            + QStringLiteral(", ") + QString::number(giorni) + QStringLiteral(", ") + getSqlNumber(quota) + QLatin1Char(')'));
    return rid;
}

int addEntry(int anagrafe, const QDate& valuta)
{
    return gAdoSqlServer().getIDByInsert(
        QStringLiteral("INSERT INTO PrimaNota (DATA, DataValuta, FK_Anagrafe, DESCRIZIONE) VALUES (") + gAdoSqlServer().getSQLDate(valuta)
            + QStringLiteral(", ") + gAdoSqlServer().getSQLDate(valuta) + QStringLiteral(", ") + getIDOrNullStr(anagrafe)
            + QStringLiteral(", ¤prova¤)"),
        QStringLiteral("test"), QStringLiteral("RID"), QStringLiteral("PrimaNota"));
}

// The rows of an entry as "DD/MM/YYYY amount".
QStringList rowsOf(int entry)
{
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(
        QStringLiteral("SELECT DATA, IMPORTO FROM Scadenze WHERE FK_PrimaNota = ") + QString::number(entry)
            + QStringLiteral(" ORDER BY RID"),
        QStringLiteral("test"));
    QStringList rows;
    for (; rs && !rs->eof(); rs->moveNext())
        rows << formatDate(rs->value(QStringLiteral("DATA"))) + QLatin1Char(' ') + formattaImporto(rs->amount(QStringLiteral("IMPORTO")), 2);
    gAdoSqlServer().disconnect();
    return rows;
}

// MariaDB: the DELETE statements run so far on the connection in use (the
// transaction's); -1 elsewhere.
int deletesRun()
{
    if (gAdoSqlServer().TipoServer() != TipoServer::MySql)
        return -1;
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(QStringLiteral("SHOW SESSION STATUS LIKE ¤Com_delete¤"), QStringLiteral("test"));
    const int n = rs && !rs->eof() ? rs->value(1).toInt() : -2;
    if (rs)
        rs->close();
    return n;
}

const QString kLimiti = QStringLiteral(" (sono ammessi importi da -922.337.203.685.477,5808 a 922.337.203.685.477,5807).");
const QString kIntervallo = QStringLiteral(" (la data deve essere compresa tra il 01/01/1753 e il 31/12/9999).");

} // namespace

class TestScadenze : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup()
    {
        if (gAdoSqlServer().inTransaction())
            gAdoSqlServer().rollbackTrasaction(QStringLiteral("test"));
        gAdoSqlServer().closeAll();
    }

    void dueDates_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<double>("acconto");
        QTest::addColumn<bool>("rimessa");
        QTest::addColumn<bool>("fineMese");
        QTest::addColumn<int>("nRate");
        QTest::addColumn<Rate>("rate");
        QTest::addColumn<QString>("importo");
        QTest::addColumn<QString>("data");
        QTest::addColumn<bool>("negative");
        QTest::addColumn<QStringList>("expected");
        for (const QString& b : testdb::backends()) {
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("30/60 end of month from 15 January")
                << 0.0 << false << true << 2 << Rate{{30, 50}, {60, 50}} << "1000" << "2026-01-15" << false
                << QStringList{"28/02/2026 500,00", "31/03/2026 500,00"};
            row("leap year") << 0.0 << false << true << 2 << Rate{{30, 50}, {60, 50}} << "1000" << "2028-01-15" << false
                             << QStringList{"29/02/2028 500,00", "31/03/2028 500,00"};
            row("days first, no months") << 0.0 << false << true << 1 << Rate{{30, 100}} << "10" << "2026-01-31" << false
                                         << QStringList{"31/03/2026 10,00"};
            row("plain days") << 0.0 << false << false << 1 << Rate{{30, 100}} << "10" << "2026-01-31" << false
                              << QStringList{"02/03/2026 10,00"};
            row("direct remittance at month end") << 0.0 << true << true << 2 << Rate{{30, 50}, {60, 50}} << "100" << "2026-04-10"
                                                  << false << QStringList{"30/04/2026 50,00", "30/04/2026 50,00"};
            row("30% down payment") << 30.0 << false << false << 1 << Rate{{60, 70}} << "1000" << "2026-05-02" << false
                                    << QStringList{"02/05/2026 300,00", "01/07/2026 700,00"};
            row("zero total") << 0.0 << false << false << 2 << Rate{{30, 50}, {60, 50}} << "0" << "2026-05-02" << false
                              << QStringList{"01/06/2026 0,00", "01/07/2026 0,00"};
            row("negative") << 0.0 << false << false << 2 << Rate{{30, 50}, {60, 50}} << "100" << "2026-05-02" << true
                            << QStringList{"01/06/2026 -50,00", "01/07/2026 -50,00"};
            row("shares not adjusted") << 0.0 << false << false << 3 << Rate{{30, 33.33}, {60, 33.33}, {90, 33.34}} << "100"
                                       << "2026-05-02" << false
                                       << QStringList{"01/06/2026 33,33", "01/07/2026 33,33", "31/07/2026 33,34"};
            row("fewer instalments than rows") << 0.0 << false << false << 1 << Rate{{30, 50}, {60, 50}} << "100" << "2026-05-02"
                                               << false << QStringList{"01/06/2026 50,00"};
            // The month-end rule takes its days as a 16-bit number; the plain rule does not.
            row("32767 days at month end") << 0.0 << false << true << 1 << Rate{{32767, 100}} << "10" << "2026-01-01" << false
                                           << QStringList{"30/09/2115 10,00"};
            row("40000 plain days") << 0.0 << false << false << 1 << Rate{{40000, 100}} << "10" << "2026-01-01" << false
                                    << QStringList{"09/07/2135 10,00"};
            row("large amounts kept") << 10.0 << false << false << 1 << Rate{{30, 100}} << "900000000000000" << "2026-01-01"
                                      << true << QStringList{"01/01/2026 -90.000.000.000.000,00", "31/01/2026 -900.000.000.000.000,00"};
        }
    }
    void dueDates()
    {
        QFETCH(QString, backend);
        QFETCH(double, acconto);
        QFETCH(bool, rimessa);
        QFETCH(bool, fineMese);
        QFETCH(int, nRate);
        QFETCH(Rate, rate);
        QFETCH(QString, importo);
        QFETCH(QString, data);
        QFETCH(bool, negative);
        QFETCH(QStringList, expected);
        QVERIFY(testdb::shared(backend).isValid());
        const int term = addTerm(QStringLiteral("TST"), acconto, rimessa, fineMese, nRate, rate);
        const int entry = addEntry(0, QDate(2026, 1, 1));
        QVERIFY(entry > 0);
        testdb::ErrorRecorder errors;
        QString messaggio = QStringLiteral("not cleared");
        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        QVERIFY(generaScadenzePagamento(entry, term, getValoreCurrency(importo), QDate::fromString(data, Qt::ISODate), negative,
                                        &messaggio));
        QVERIFY(gAdoSqlServer().commitTrasaction(QStringLiteral("test")));
        QCOMPARE(messaggio, QString());
        QCOMPARE(errors.reports.size(), 0);
        QCOMPARE(rowsOf(entry), expected);
    }

    // Saving again with another term replaces every row, also one changed by
    // hand; a term without instalments leaves none.
    void regenerate_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void regenerate()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        const int entry = addEntry(0, QDate(2026, 1, 1));
        const int due = addTerm(QStringLiteral("T2"), 0, false, false, 2, {{30, 50}, {60, 50}});
        const int uno = addTerm(QStringLiteral("T1"), 0, false, false, 1, {{10, 100}});
        QVERIFY(generaScadenzePagamento(entry, due, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        run(QStringLiteral("UPDATE Scadenze SET IMPORTO = 12 WHERE FK_PrimaNota = ") + QString::number(entry));
        QVERIFY(generaScadenzePagamento(entry, uno, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        QCOMPARE(rowsOf(entry), QStringList{"11/02/2026 80,00"});
        QVERIFY(generaScadenzePagamento(entry, 0, Currency::fromUnits(80), QDate(2026, 2, 1), false));   // no term: none
        QVERIFY(rowsOf(entry).isEmpty());
    }

    // Values that cannot be stored: false with the message for the user, no
    // report (no dialog inside the transaction) and nothing written, so the
    // entry's earlier due dates are still there.
    void refusals_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<double>("acconto");
        QTest::addColumn<bool>("rimessa");
        QTest::addColumn<bool>("fineMese");
        QTest::addColumn<int>("nRate");
        QTest::addColumn<Rate>("rate");
        QTest::addColumn<QString>("importo");
        QTest::addColumn<QDate>("data");
        QTest::addColumn<bool>("negative");
        QTest::addColumn<QString>("messaggio");
        const Rate trentaSessanta{{30, 50}, {60, 50}};
        for (const QString& b : testdb::backends()) {
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("no date") << 0.0 << false << false << 2 << trentaSessanta << "100" << QDate() << false
                           << "Data non valida: data delle scadenze (data mancante o inesistente).";
            row("30 February") << 0.0 << false << false << 2 << trentaSessanta << "100"
                               << QDate::fromString(QStringLiteral("2026-02-30"), Qt::ISODate) << false
                               << "Data non valida: data delle scadenze (data mancante o inesistente).";
            row("date before 1753") << 0.0 << false << false << 2 << trentaSessanta << "100" << QDate(1700, 5, 1) << false
                                    << QStringLiteral("Data non valida: data delle scadenze") + kIntervallo;
            row("due date after 9999") << 0.0 << false << false << 2 << Rate{{30, 50}, {3000000, 50}} << "100"
                                       << QDate(2026, 1, 1) << false
                                       << QStringLiteral("Data non valida: scadenza della rata 2 delle scadenze") + kIntervallo;
            row("32768 days at month end") << 0.0 << false << true << 1 << Rate{{32768, 100}} << "100" << QDate(2026, 1, 1) << false
                                           << "Il pagamento TSTR indica 32768 giorni per la rata 1: con la scadenza a fine mese "
                                              "i giorni devono essere compresi tra -32768 e 32767.";
            row("direct remittance at month end, 40000 days")
                << 0.0 << true << true << 2 << Rate{{0, 50}, {40000, 50}} << "100" << QDate(2026, 1, 1) << false
                << "Il pagamento TSTR indica 40000 giorni per la rata 2: con la scadenza a fine mese "
                   "i giorni devono essere compresi tra -32768 e 32767.";
            row("more instalments than rows") << 0.0 << false << false << 3 << trentaSessanta << "100" << QDate(2026, 1, 1) << false
                                              << "Il pagamento TSTR prevede 3 rate ma ne descrive 2: impossibile generare le scadenze.";
            row("instalment beyond the range") << 0.0 << false << false << 2 << Rate{{30, 50}, {60, 150}} << "900000000000000"
                                               << QDate(2026, 1, 1) << false
                                               << QStringLiteral("Importo fuori dai limiti consentiti: rata 2 delle scadenze") + kLimiti;
            row("negative instalment beyond the range")
                << 0.0 << false << false << 1 << Rate{{30, 200}} << "-900000000000000" << QDate(2026, 1, 1) << true
                << QStringLiteral("Importo fuori dai limiti consentiti: rata 1 delle scadenze") + kLimiti;
            row("down payment beyond the range") << 150.0 << false << false << 1 << Rate{{30, 100}} << "900000000000000"
                                                 << QDate(2026, 1, 1) << false
                                                 << QStringLiteral("Importo fuori dai limiti consentiti: acconto delle scadenze") + kLimiti;
        }
    }
    void refusals()
    {
        QFETCH(QString, backend);
        QFETCH(double, acconto);
        QFETCH(bool, rimessa);
        QFETCH(bool, fineMese);
        QFETCH(int, nRate);
        QFETCH(Rate, rate);
        QFETCH(QString, importo);
        QFETCH(QDate, data);
        QFETCH(bool, negative);
        QFETCH(QString, messaggio);
        QVERIFY(testdb::shared(backend).isValid());
        const int buono = addTerm(QStringLiteral("TSTB"), 0, false, false, 1, {{10, 100}});
        const int term = addTerm(QStringLiteral("TSTR"), acconto, rimessa, fineMese, nRate, rate);
        const int entry = addEntry(0, QDate(2026, 1, 1));
        QVERIFY(generaScadenzePagamento(entry, buono, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        const QStringList prima{"11/02/2026 80,00"};
        QCOMPARE(rowsOf(entry), prima);

        testdb::ErrorRecorder errors;
        QString ricevuto;
        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        QVERIFY(!generaScadenzePagamento(entry, term, getValoreCurrency(importo), data, negative, &ricevuto));
        QCOMPARE(rowsOf(entry), prima);   // inside the transaction: nothing written, nothing deleted
        QVERIFY(gAdoSqlServer().rollbackTrasaction(QStringLiteral("test")));
        QCOMPARE(ricevuto, messaggio);
        QCOMPARE(errors.reports.size(), 0);
        QCOMPARE(rowsOf(entry), prima);
        // Without a place for the message the answer is the same.
        QVERIFY(!generaScadenzePagamento(entry, term, getValoreCurrency(importo), data, negative));
        QCOMPARE(rowsOf(entry), prima);
    }

    // The due dates of a new entry run no DELETE: on MariaDB a delete that
    // finds nothing may lock the index gap where other entries' due dates go,
    // and hold up another workstation writing the due dates of a newer
    // entry. An entry that has due dates still has them deleted first.
    void newEntryRunsNoDelete_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void newEntryRunsNoDelete()
    {
        QFETCH(QString, backend);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        const bool server = db.tipoServer() == TipoServer::MySql;
        const int term = addTerm(QStringLiteral("TNEW"), 0, false, false, 2, {{30, 50}, {60, 50}});
        const int nostra = addEntry(0, QDate(2026, 3, 1));
        QVERIFY(nostra > 0);

        testdb::ErrorRecorder errors;
        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        const int primaDelete = deletesRun();
        QString messaggio;
        QVERIFY(generaScadenzePagamento(nostra, term, Currency::fromUnits(100), QDate(2026, 3, 1), false, &messaggio));
        QCOMPARE(messaggio, QString());
        if (server)
            QCOMPARE(deletesRun(), primaDelete);

        QVERIFY(gAdoSqlServer().commitTrasaction(QStringLiteral("test")));
        QCOMPARE(rowsOf(nostra), (QStringList{"31/03/2026 50,00", "30/04/2026 50,00"}));

        // Generated again: the old rows go first.
        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        const int primaRigenera = deletesRun();
        QVERIFY(generaScadenzePagamento(nostra, term, Currency::fromUnits(40), QDate(2026, 3, 1), false, &messaggio));
        if (server)
            QCOMPARE(deletesRun(), primaRigenera + 1);
        QVERIFY(gAdoSqlServer().commitTrasaction(QStringLiteral("test")));
        QCOMPARE(rowsOf(nostra), (QStringList{"31/03/2026 20,00", "30/04/2026 20,00"}));
        QCOMPARE(errors.reports.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestScadenze)
#include "tst_scadenze.moc"
