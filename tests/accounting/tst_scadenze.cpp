// Due dates of a journal entry, on both back ends: the instalments of a term,
// their regeneration, the values they refuse to store, and a new entry that
// deletes nothing.
#include "data/cadosqlserver.h"
#include "common/italiantext.h"
#include "accounting/scadenze.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

using testdb::number;
using testdb::run;

namespace {

// A payment term: down payment, flags, instalments as (days, share).
struct Termine
{
    double acconto = 0;
    bool rimessa = false;
    bool fineMese = false;
    int nRate = 0;
    QList<QPair<int, double>> rate;
};

int addTerm(const QString& code, const Termine& t)
{
    run(QStringLiteral("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO IN (SELECT RID FROM Pagamenti WHERE CODICE = ¤") + code
        + QStringLiteral("¤)"));
    run(QStringLiteral("DELETE FROM Pagamenti WHERE CODICE = ¤") + code + QStringLiteral("¤"));
    run(QStringLiteral("INSERT INTO Pagamenti (CODICE, DESCRIZIONE, ACCONTO, RIMESSADIRETTA, FINEMESE, NRATE) VALUES (¤") + code
        + QStringLiteral("¤, ¤prova¤, ") + getSqlNumber(t.acconto) + QStringLiteral(", ") + (t.rimessa ? "-1" : "0")
        + QStringLiteral(", ") + (t.fineMese ? "-1" : "0") + QStringLiteral(", ") + QString::number(t.nRate) + QLatin1Char(')'));
    const int rid = number(QStringLiteral("SELECT RID FROM Pagamenti WHERE CODICE = ¤") + code + QStringLiteral("¤"));
    for (const auto& [giorni, quota] : t.rate)
        run(QStringLiteral("INSERT INTO DettagliPagamenti (FK_PAGAMENTO, NGIORNI, PERCENTUALE) VALUES (") + QString::number(rid)
            + QStringLiteral(", ") + QString::number(giorni) + QStringLiteral(", ") + getSqlNumber(quota) + QLatin1Char(')'));
    return rid;
}

int addEntry()
{
    return gAdoSqlServer().getIDByInsert(QStringLiteral("INSERT INTO PrimaNota (DATA, DESCRIZIONE) VALUES (")
                                             + gAdoSqlServer().getSQLDate(QDate(2026, 1, 1)) + QStringLiteral(", ¤prova¤)"),
                                         QStringLiteral("test"), QStringLiteral("RID"), QStringLiteral("PrimaNota"));
}

// The rows of an entry as "DD/MM/YYYY amount".
QStringList rowsOf(int entry)
{
    QStringList out;
    for (const QVariantList& r : testdb::rows(QStringLiteral("SELECT DATA, IMPORTO FROM Scadenze WHERE FK_PrimaNota = ")
                                              + QString::number(entry) + QStringLiteral(" ORDER BY RID")))
        out << formatDate(r.at(0)) + QLatin1Char(' ') + formattaImporto(getValoreCurrency(r.at(1)), 2);
    return out;
}

// MariaDB: the DELETE statements run so far on the transaction's connection.
int deletesRun()
{
    if (gAdoSqlServer().TipoServer() != TipoServer::MySql)
        return -1;
    const QList<QVariantList> status = testdb::rows(QStringLiteral("SHOW SESSION STATUS LIKE ¤Com_delete¤"));
    return status.isEmpty() ? -1 : status.first().value(1).toInt();
}

const QString kLimiti = QStringLiteral(" (sono ammessi importi da -922.337.203.685.477,5808 a 922.337.203.685.477,5807).");
const QString kIntervallo = QStringLiteral(" (la data deve essere compresa tra il 01/01/1753 e il 31/12/9999).");
const QString kFineMese = QStringLiteral(": con la scadenza a fine mese i giorni devono essere compresi tra -32768 e 32767.");

} // namespace

Q_DECLARE_METATYPE(Termine)

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

    // The rows of a term, or the message of a value that cannot be stored:
    // then nothing is written, nothing deleted, and nothing reported (no
    // dialog inside the transaction).
    void dueDates_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<Termine>("termine");
        QTest::addColumn<QString>("importo");
        QTest::addColumn<QDate>("data");
        QTest::addColumn<bool>("negative");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("messaggio");
        const Termine fm3060{0, false, true, 2, {{30, 50}, {60, 50}}}, df3060{0, false, false, 2, {{30, 50}, {60, 50}}};
        const QDate maggio(2026, 5, 2), gennaio(2026, 1, 1);
        const QStringList none;
        for (const QString& b : testdb::backends()) {
            const auto row = [&b](const char* name) -> QTestData& { return testdb::row(b, QLatin1String(name)); };
            row("30/60 end of month from 15 January") << fm3060 << "1000" << QDate(2026, 1, 15) << false
                                                       << QStringList{"28/02/2026 500,00", "31/03/2026 500,00"} << "";
            row("leap year") << fm3060 << "1000" << QDate(2028, 1, 15) << false
                             << QStringList{"29/02/2028 500,00", "31/03/2028 500,00"} << "";
            row("days first, no months") << Termine{0, false, true, 1, {{30, 100}}} << "10" << QDate(2026, 1, 31) << false
                                         << QStringList{"31/03/2026 10,00"} << "";
            row("plain days") << Termine{0, false, false, 1, {{30, 100}}} << "10" << QDate(2026, 1, 31) << false
                              << QStringList{"02/03/2026 10,00"} << "";
            row("direct remittance at month end") << Termine{0, true, true, 2, {{30, 50}, {60, 50}}} << "100" << QDate(2026, 4, 10)
                                                  << false << QStringList{"30/04/2026 50,00", "30/04/2026 50,00"} << "";
            row("30% down payment") << Termine{30, false, false, 1, {{60, 70}}} << "1000" << maggio << false
                                    << QStringList{"02/05/2026 300,00", "01/07/2026 700,00"} << "";
            row("zero total") << df3060 << "0" << maggio << false << QStringList{"01/06/2026 0,00", "01/07/2026 0,00"} << "";
            row("negative") << df3060 << "100" << maggio << true << QStringList{"01/06/2026 -50,00", "01/07/2026 -50,00"} << "";
            row("shares not adjusted") << Termine{0, false, false, 3, {{30, 33.33}, {60, 33.33}, {90, 33.34}}} << "100" << maggio
                                       << false << QStringList{"01/06/2026 33,33", "01/07/2026 33,33", "31/07/2026 33,34"} << "";
            row("fewer instalments than rows") << Termine{0, false, false, 1, {{30, 50}, {60, 50}}} << "100" << maggio << false
                                               << QStringList{"01/06/2026 50,00"} << "";
            // The month-end rule takes its days as a 16-bit number; the plain rule does not.
            row("32767 days at month end") << Termine{0, false, true, 1, {{32767, 100}}} << "10" << gennaio << false
                                           << QStringList{"30/09/2115 10,00"} << "";
            row("40000 plain days") << Termine{0, false, false, 1, {{40000, 100}}} << "10" << gennaio << false
                                    << QStringList{"09/07/2135 10,00"} << "";
            row("large amounts kept") << Termine{10, false, false, 1, {{30, 100}}} << "900000000000000" << gennaio << true
                                      << QStringList{"01/01/2026 -90.000.000.000.000,00", "31/01/2026 -900.000.000.000.000,00"} << "";
            row("no date") << df3060 << "100" << QDate() << false << none
                           << "Data non valida: data delle scadenze (data mancante o inesistente).";
            row("date before 1753") << df3060 << "100" << QDate(1700, 5, 1) << false << none
                                    << QStringLiteral("Data non valida: data delle scadenze") + kIntervallo;
            row("due date after 9999") << Termine{0, false, false, 2, {{30, 50}, {3000000, 50}}} << "100" << gennaio << false << none
                                       << QStringLiteral("Data non valida: scadenza della rata 2 delle scadenze") + kIntervallo;
            row("32768 days at month end") << Termine{0, false, true, 1, {{32768, 100}}} << "100" << gennaio << false << none
                                           << QStringLiteral("Il pagamento TST indica 32768 giorni per la rata 1") + kFineMese;
            row("direct remittance at month end, 40000 days") << Termine{0, true, true, 2, {{0, 50}, {40000, 50}}} << "100" << gennaio
                                                              << false << none
                                                              << QStringLiteral("Il pagamento TST indica 40000 giorni per la rata 2") + kFineMese;
            row("more instalments than rows") << Termine{0, false, false, 3, {{30, 50}, {60, 50}}} << "100" << gennaio << false << none
                                              << "Il pagamento TST prevede 3 rate ma ne descrive 2: impossibile generare le scadenze.";
            row("instalment beyond the range") << Termine{0, false, false, 2, {{30, 50}, {60, 150}}} << "900000000000000" << gennaio
                                               << false << none
                                               << QStringLiteral("Importo fuori dai limiti consentiti: rata 2 delle scadenze") + kLimiti;
            row("down payment beyond the range") << Termine{150, false, false, 1, {{30, 100}}} << "900000000000000" << gennaio << false
                                                 << none
                                                 << QStringLiteral("Importo fuori dai limiti consentiti: acconto delle scadenze") + kLimiti;
        }
    }
    void dueDates()
    {
        QFETCH(QString, backend);
        QFETCH(Termine, termine);
        QFETCH(QString, importo);
        QFETCH(QDate, data);
        QFETCH(bool, negative);
        QFETCH(QStringList, expected);
        QFETCH(QString, messaggio);
        QVERIFY(testdb::shared(backend).isValid());
        const int term = addTerm(QStringLiteral("TST"), termine);
        const int entry = addEntry();
        QVERIFY(entry > 0);
        // A refusal must leave the entry's earlier due dates as they were.
        const QStringList prima{"11/02/2026 80,00"};
        if (!messaggio.isEmpty()) {
            QVERIFY(generaScadenzePagamento(entry, addTerm(QStringLiteral("TSTB"), {0, false, false, 1, {{10, 100}}}),
                                            Currency::fromUnits(80), QDate(2026, 2, 1), false));
            expected = prima;
        }
        testdb::ErrorRecorder errors;
        QString ricevuto = QStringLiteral("not cleared");
        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        QCOMPARE(generaScadenzePagamento(entry, term, getValoreCurrency(importo), data, negative, &ricevuto), messaggio.isEmpty());
        QCOMPARE(rowsOf(entry), expected);
        QVERIFY(messaggio.isEmpty() ? gAdoSqlServer().commitTrasaction(QStringLiteral("test"))
                                    : gAdoSqlServer().rollbackTrasaction(QStringLiteral("test")));
        QCOMPARE(ricevuto, messaggio);
        QCOMPARE(errors.reports.size(), 0);
        QCOMPARE(rowsOf(entry), expected);
    }

    // A new entry runs no DELETE (on MariaDB one that finds nothing locks
    // the index gap where other workstations' due dates go); saving again
    // with another term replaces every row, also one changed by hand; a term
    // without instalments leaves none.
    void regenerate_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void regenerate()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        const bool server = backend == QLatin1String("mariadb");
        const int entry = addEntry();
        const int due = addTerm(QStringLiteral("T2"), {0, false, false, 2, {{30, 50}, {60, 50}}});
        const int uno = addTerm(QStringLiteral("T1"), {0, false, false, 1, {{10, 100}}});
        testdb::ErrorRecorder errors;

        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        const int deletes = deletesRun();
        QVERIFY(generaScadenzePagamento(entry, due, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        if (server)
            QCOMPARE(deletesRun(), deletes);
        QVERIFY(gAdoSqlServer().commitTrasaction(QStringLiteral("test")));
        QCOMPARE(rowsOf(entry), (QStringList{"03/03/2026 40,00", "02/04/2026 40,00"}));

        run(QStringLiteral("UPDATE Scadenze SET IMPORTO = 12 WHERE FK_PrimaNota = ") + QString::number(entry));
        QVERIFY(gAdoSqlServer().beginTrasaction(QStringLiteral("test")));
        const int again = deletesRun();
        QVERIFY(generaScadenzePagamento(entry, uno, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        if (server)
            QCOMPARE(deletesRun(), again + 1);
        QVERIFY(gAdoSqlServer().commitTrasaction(QStringLiteral("test")));
        QCOMPARE(rowsOf(entry), QStringList{"11/02/2026 80,00"});
        QVERIFY(generaScadenzePagamento(entry, 0, Currency::fromUnits(80), QDate(2026, 2, 1), false));   // no term: none
        QVERIFY(rowsOf(entry).isEmpty());
        QCOMPARE(errors.reports.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestScadenze)
#include "tst_scadenze.moc"
