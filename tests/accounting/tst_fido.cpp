// The customer's balance and the credit limit, on both back ends, over
// journal lines written by the journal engine itself: a line fills Dare or
// Avere and leaves the other Null.
#include "data/cadosqlserver.h"
#include "accounting/fido.h"
#include "common/italiantext.h"
#include "accounting/primanota.h"
#include "accounting/scadenze.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

using testdb::number;
using testdb::run;

namespace {

int conto(const char* codice)
{
    return number(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ¤") + QLatin1String(codice) + QStringLiteral("¤"));
}

// Removes the two test customers and their entries.
void clear()
{
    const QString clienti = QStringLiteral("(SELECT RID FROM Anagrafiche WHERE NUMERO IN (801, 802))");
    run(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota IN (SELECT RID FROM PrimaNota WHERE FK_Anagrafe IN ") + clienti
        + QLatin1Char(')'));
    run(QStringLiteral("DELETE FROM PrimaNota WHERE FK_Anagrafe IN ") + clienti);
    run(QStringLiteral("DELETE FROM Anagrafiche WHERE NUMERO IN (801, 802)"));
}

// One document of the customer through the journal engine: "FV 1220 220 0"
// is causal, total, VAT and the value date's distance in days from `oggi`.
void registra(int anagrafe, const QString& movimento, const QDate& oggi, const ContiControparti& controparti)
{
    const QStringList parti = movimento.split(QLatin1Char(' '));
    QCOMPARE(parti.size(), 4);
    const QDate valuta = oggi.addDays(parti.at(3).toInt());
    const int entry = gAdoSqlServer().getIDByInsert(
        QStringLiteral("INSERT INTO PrimaNota (DATA, DataValuta, FK_Anagrafe, DESCRIZIONE) VALUES (") + gAdoSqlServer().getSQLDate(valuta)
            + QStringLiteral(", ") + gAdoSqlServer().getSQLDate(valuta) + QStringLiteral(", ") + QString::number(anagrafe)
            + QStringLiteral(", ¤prova¤)"),
        QStringLiteral("test"), QStringLiteral("RID"), QStringLiteral("PrimaNota"));
    QVERIFY(entry > 0);
    const int causale = number(QStringLiteral("SELECT RID FROM Causali WHERE CODICE = ¤") + parti.at(0) + QStringLiteral("¤"));
    QVERIFY(causale > 0);
    QCOMPARE(saveDettagliPrimaNota(entry, causale, getValoreCurrency(parti.at(1)), getValoreCurrency(parti.at(2)), Currency(),
                                   controparti),
             QStringLiteral("#"));
}

} // namespace

class TestFido : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    // Customer 801 with a limit of 500 (or none to check) and its documents;
    // customer 802 always has an unpaid invoice that must not count. The
    // question on saving is asked for a document of 100.
    void creditLimit_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("ctrl");
        QTest::addColumn<bool>("allaData");
        QTest::addColumn<QStringList>("movimenti");
        QTest::addColumn<QString>("saldo");
        QTest::addColumn<QString>("residuo");
        QTest::addColumn<QString>("avviso");
        QTest::addColumn<QString>("domanda");
        const QString fuori = QStringLiteral("Attenzione! E' stato riscontrato un FUORI FIDO per l'anagrafica selezionata di Euro: ");
        const QString continuare = QStringLiteral("\n\nSi desidera continuare?");
        for (const QString& b : testdb::backends()) {
            const auto row = [&b](const char* name) -> QTestData& { return testdb::row(b, QLatin1String(name)); };
            row("one unpaid invoice beyond the limit") << true << false << QStringList{"FV 1220 220 -10"} << "1220" << "-720"
                                                       << fuori + "-720,00" << fuori + "-820,00" + continuare;
            row("invoice partly paid") << true << false << QStringList{"FV 1220 220 -10", "INC 1000 0 -5"} << "220" << "280"
                                       << "" << "";
            row("no entries") << true << false << QStringList{} << "0" << "500" << "" << "";
            row("exactly at the limit") << true << false << QStringList{"FV 500 0 -1"} << "500" << "0" << ""
                                        << fuori + "-100,00" + continuare;
            row("credit note") << true << false << QStringList{"FV 1220 220 -10", "NC 610 110 -2"} << "610" << "-110"
                               << fuori + "-110,00" << fuori + "-210,00" + continuare;
            row("future value date counts") << true << false << QStringList{"FV 1220 220 5"} << "1220" << "-720"
                                             << fuori + "-720,00" << fuori + "-820,00" + continuare;
            row("future value date left out by date") << true << true << QStringList{"FV 1220 220 5", "FV 122 22 0"} << "122"
                                                       << "378" << "" << "";
            row("limit not checked") << false << false << QStringList{"FV 1220 220 -10"} << "1220" << "0" << "" << "";
        }
    }
    void creditLimit()
    {
        QFETCH(QString, backend);
        QFETCH(bool, ctrl);
        QFETCH(bool, allaData);
        QFETCH(QStringList, movimenti);
        QFETCH(QString, saldo);
        QFETCH(QString, residuo);
        QFETCH(QString, avviso);
        QFETCH(QString, domanda);
        QVERIFY(testdb::shared(backend).isValid());
        const QDate oggi(2026, 6, 15);
        clear();
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, CTRLFIDO, FIDO) VALUES (801, ¤Rossi¤, ¤C¤, ")
            + (ctrl ? QStringLiteral("-1") : QStringLiteral("0")) + QStringLiteral(", 500)"));
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, CTRLFIDO, FIDO) VALUES (802, ¤Bianchi¤, ¤C¤, -1, 0)"));
        const int rossi = number(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 801"));
        const int bianchi = number(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 802"));
        ContiControparti controparti;
        controparti.clienti = conto("01001001");
        controparti.fornitori = conto("02001001");
        QVERIFY(controparti.clienti > 0);
        for (const QString& movimento : movimenti)
            registra(rossi, movimento, oggi, controparti);
        registra(bianchi, QStringLiteral("FV 999 0 -1"), oggi, controparti);
        // The engine leaves the other side Null: the case the balance must survive.
        if (!movimenti.isEmpty())
            QVERIFY(number(QStringLiteral("SELECT COUNT(*) FROM PrimaNotaDettagli WHERE AVERE IS NULL")) > 0);

        testdb::ErrorRecorder errors;
        const int clienti = controparti.clienti;
        QCOMPARE(getSaldoCliente(rossi, clienti, allaData, oggi), getValoreCurrency(saldo));
        bool ctrlFido = !ctrl;
        QCOMPARE(controllaFuoriFido(rossi, ctrlFido, clienti, allaData, oggi), getValoreCurrency(residuo));
        QCOMPARE(ctrlFido, ctrl);
        QCOMPARE(avvisoFuoriFido(rossi, clienti, allaData, oggi), avviso);
        QCOMPARE(domandaFuoriFido(rossi, Currency::fromUnits(100), clienti, allaData, oggi), domanda);
        QCOMPARE(errors.reports.size(), 0);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
        clear();
    }
};

QTEST_GUILESS_MAIN(TestFido)
#include "tst_fido.moc"
