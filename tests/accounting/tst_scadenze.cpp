// Due dates of a journal entry, the ledger balance and the credit limit,
// on both back ends.
#include "cadosqlserver.h"
#include "fido.h"
#include "italiantext.h"
#include "recordset.h"
#include "scadenze.h"
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

// A payment term: down payment, flags, instalments "days:share" each.
int addTerm(const QString& code, double acconto, bool rimessa, bool fineMese, int nRate, const QList<QPair<int, double>>& rate)
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

using Rate = QList<QPair<int, double>>;

} // namespace

class TestScadenze : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

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
        gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
        QVERIFY(generaScadenzePagamento(entry, term, getValoreCurrency(importo), QDate::fromString(data, Qt::ISODate), negative));
        gAdoSqlServer().commitTrasaction(QStringLiteral("test"));
        QCOMPARE(rowsOf(entry), expected);
    }

    // Saving again with another term replaces every row; a term that promises
    // more instalments than it describes fails.
    void regenerateAndFail_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void regenerateAndFail()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        const int entry = addEntry(0, QDate(2026, 1, 1));
        const int due = addTerm(QStringLiteral("T2"), 0, false, false, 2, {{30, 50}, {60, 50}});
        const int uno = addTerm(QStringLiteral("T1"), 0, false, false, 1, {{10, 100}});
        const int rotto = addTerm(QStringLiteral("T3"), 0, false, false, 3, {{10, 50}, {20, 50}});
        QVERIFY(generaScadenzePagamento(entry, due, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        QVERIFY(generaScadenzePagamento(entry, uno, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        QCOMPARE(rowsOf(entry), QStringList{"11/02/2026 80,00"});
        QVERIFY(generaScadenzePagamento(entry, 0, Currency::fromUnits(80), QDate(2026, 2, 1), false));   // no term: none
        QVERIFY(rowsOf(entry).isEmpty());
        testdb::ErrorRecorder errors;
        QVERIFY(!generaScadenzePagamento(entry, rotto, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        QCOMPARE(errors.reports.size(), 1);
    }

    // The customers' account of the counterparty's entries; the limit left.
    void creditLimit_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("ctrl");
        QTest::addColumn<bool>("allaData");
        QTest::addColumn<QString>("saldo");
        QTest::addColumn<QString>("residuo");
        for (const QString& b : testdb::backends()) {
            QTest::newRow(qPrintable(b + QStringLiteral(" every entry: exactly 0"))) << b << true << false << "1000" << "0";
            QTest::newRow(qPrintable(b + QStringLiteral(" due by today"))) << b << true << true << "600" << "400";
            QTest::newRow(qPrintable(b + QStringLiteral(" limit not checked"))) << b << false << false << "1000" << "0";
        }
    }
    void creditLimit()
    {
        QFETCH(QString, backend);
        QFETCH(bool, ctrl);
        QFETCH(bool, allaData);
        QFETCH(QString, saldo);
        QFETCH(QString, residuo);
        QVERIFY(testdb::shared(backend).isValid());
        const QDate oggi(2026, 6, 15);
        run(QStringLiteral("DELETE FROM Anagrafiche WHERE NUMERO IN (801, 802)"));
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, CTRLFIDO, FIDO) VALUES (801, ¤Rossi¤, ¤C¤, ")
            + (ctrl ? QStringLiteral("-1") : QStringLiteral("0")) + QStringLiteral(", 1000)"));
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (802, ¤Bianchi¤, ¤C¤)"));
        const int rossi = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 801"));
        const int bianchi = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 802"));
        const int clienti = value(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ¤01001001¤"));
        const int ricavi = value(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ¤04001001¤"));
        const auto line = [](int entry, int conto, int dare, int avere) {
            run(QStringLiteral("INSERT INTO PrimaNotaDettagli (FK_PrimaNota, FK_Conto, DARE, Avere) VALUES (") + QString::number(entry)
                + QStringLiteral(", ") + QString::number(conto) + QStringLiteral(", ") + QString::number(dare) + QStringLiteral(", ")
                + QString::number(avere) + QLatin1Char(')'));
        };
        const int passata = addEntry(rossi, oggi.addDays(-10));
        line(passata, clienti, 800, 0);
        line(passata, clienti, 0, 200);     // a payment on the same account
        line(passata, ricavi, 0, 600);      // another account: not counted
        line(addEntry(rossi, oggi), clienti, 0, 0);
        line(addEntry(rossi, oggi.addDays(5)), clienti, 400, 0);   // due later
        line(addEntry(bianchi, oggi), clienti, 999, 0);            // another customer
        QCOMPARE(getSaldoCliente(rossi, clienti, allaData, oggi), getValoreCurrency(saldo));
        bool ctrlFido = !ctrl;
        QCOMPARE(controllaFuoriFido(rossi, ctrlFido, clienti, allaData, oggi), getValoreCurrency(residuo));
        QCOMPARE(ctrlFido, ctrl);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
        run(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota IN (SELECT RID FROM PrimaNota WHERE FK_Anagrafe IN (")
            + QString::number(rossi) + QStringLiteral(", ") + QString::number(bianchi) + QStringLiteral("))"));
        run(QStringLiteral("DELETE FROM PrimaNota WHERE FK_Anagrafe IN (") + QString::number(rossi) + QStringLiteral(", ")
            + QString::number(bianchi) + QLatin1Char(')'));
    }

    void fuoriFidoMessage()
    {
        QCOMPARE(messaggioFuoriFido(Currency::fromUnits(-1250)),
                 QStringLiteral("Attenzione! E' stato riscontrato un FUORI FIDO per l'anagrafica selezionata di Euro: -1.250,00"));
    }
};

QTEST_GUILESS_MAIN(TestScadenze)
#include "tst_scadenze.moc"
