// The customer's balance and the credit limit, on both back ends, over
// journal lines written by the journal engine itself: a line fills Dare or
// Avere and leaves the other Null.
#include "accounting/fido.h"
#include "accounting/primanota.h"
#include "accounting/scadenze.h"
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

using testdb::rid;
using testdb::run;

namespace {

// One document of the customer through the journal engine: "FV 1220 220 -10"
// is causal, total, VAT and the value date's distance in days from `oggi`.
void registra(int anagrafe, const QString& movimento, const QDate& oggi, const ContiControparti& conti)
{
    const QStringList p = movimento.split(' ');
    const QString valuta = gAdoSqlServer().getSQLDate(oggi.addDays(p.at(3).toInt()));
    const int entry = gAdoSqlServer().getIDByInsert(
        QString("INSERT INTO PrimaNota (DATA, DataValuta, FK_Anagrafe, DESCRIZIONE) VALUES (%1, %1, %2, ¤prova¤)")
            .arg(valuta)
            .arg(anagrafe),
        "test", "RID", "PrimaNota");
    QVERIFY(entry > 0);
    const int causale = rid("Causali", "CODICE = ¤" + p.at(0) + "¤");
    const Currency importo = getValoreCurrency(p.at(1)), iva = getValoreCurrency(p.at(2));
    QCOMPARE(saveDettagliPrimaNota(entry, causale, importo, iva, Currency(), conti), QStringLiteral("#"));
}

} // namespace

class TestFido : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // Customer 801 with a limit of 500 (or none to check) and its documents;
    // customer 802 always has an unpaid invoice that must not count. The
    // question on saving is asked for a document of 100.
    void creditLimit_data()
    {
        QTest::addColumn<bool>("ctrl");
        QTest::addColumn<bool>("allaData");
        QTest::addColumn<QStringList>("movimenti");
        QTest::addColumn<QString>("saldo");
        QTest::addColumn<QString>("residuo");
        QTest::addColumn<QString>("avviso"); // "-720,00": the warning of that amount
        QTest::addColumn<QString>("domanda");
        const auto row = [](const char* name, bool ctrl, bool allaData, const QStringList& movimenti, const char* saldo,
                            const char* residuo, const char* avviso, const char* domanda) {
            QTest::newRow(name) << ctrl << allaData << movimenti << QString(saldo) << QString(residuo)
                                << QString(avviso) << QString(domanda);
        };
        const QString fv = "FV 1220 220 -10";
        row("unpaid invoice beyond the limit", true, false, {fv}, "1220", "-720", "-720,00", "-820,00");
        row("invoice partly paid", true, false, {fv, "INC 1000 0 -5"}, "220", "280", "", "");
        row("no entries", true, false, {}, "0", "500", "", "");
        row("exactly at the limit", true, false, {"FV 500 0 -1"}, "500", "0", "", "-100,00");
        row("credit note", true, false, {fv, "NC 610 110 -2"}, "610", "-110", "-110,00", "-210,00");
        row("future value date counts", true, false, {"FV 1220 220 5"}, "1220", "-720", "-720,00", "-820,00");
        row("future value date left out by date", true, true, {"FV 1220 220 5", "FV 122 22 0"}, "122", "378", "", "");
        row("limit not checked", false, false, {fv}, "1220", "0", "", "");
    }
    void creditLimit()
    {
        QFETCH(bool, ctrl);
        QFETCH(bool, allaData);
        QFETCH(QStringList, movimenti);
        QFETCH(QString, saldo);
        QFETCH(QString, residuo);
        QFETCH(QString, avviso);
        QFETCH(QString, domanda);
        const QDate oggi(2026, 6, 15);
        const QString clienti = "(SELECT RID FROM Anagrafiche WHERE NUMERO IN (801, 802))";
        run("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota IN (SELECT RID FROM PrimaNota WHERE FK_Anagrafe IN "
            + clienti + ")");
        run("DELETE FROM PrimaNota WHERE FK_Anagrafe IN " + clienti);
        run("DELETE FROM Anagrafiche WHERE NUMERO IN (801, 802)");
        run(QString("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, CTRLFIDO, FIDO) "
                    "VALUES (801, ¤Rossi¤, ¤C¤, %1, 500), (802, ¤Bianchi¤, ¤C¤, -1, 0)")
                .arg(ctrl ? -1 : 0));
        const int rossi = rid("Anagrafiche", "NUMERO = 801");
        const ContiControparti conti{rid("PianoConti", "CODICE = ¤01001001¤"),
                                     rid("PianoConti", "CODICE = ¤02001001¤")};
        QVERIFY(conti.clienti > 0);
        for (const QString& movimento : movimenti)
            registra(rossi, movimento, oggi, conti);
        registra(rid("Anagrafiche", "NUMERO = 802"), "FV 999 0 -1", oggi, conti);
        // The engine leaves the other side Null: the case the balance must survive.
        QVERIFY(testdb::count("PrimaNotaDettagli", "AVERE IS NULL") > 0);

        testdb::ErrorRecorder errors;
        QCOMPARE(getSaldoCliente(rossi, conti.clienti, allaData, oggi), getValoreCurrency(saldo));
        bool ctrlFido = !ctrl;
        QCOMPARE(controllaFuoriFido(rossi, ctrlFido, conti.clienti, allaData, oggi), getValoreCurrency(residuo));
        QCOMPARE(ctrlFido, ctrl);
        const QString fuori = "Attenzione! E' stato riscontrato un FUORI FIDO per l'anagrafica selezionata di Euro: ";
        QCOMPARE(avvisoFuoriFido(rossi, conti.clienti, allaData, oggi), avviso.isEmpty() ? QString() : fuori + avviso);
        QCOMPARE(domandaFuoriFido(rossi, Currency::fromUnits(100), conti.clienti, allaData, oggi),
                 domanda.isEmpty() ? QString() : fuori + domanda + "\n\nSi desidera continuare?");
        QVERIFY(errors.reports.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFido)
#include "tst_fido.moc"
