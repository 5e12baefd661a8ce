// Payment terms: the instalment grid, the exact-100 rule in currency, head
// and instalments saved and deleted together.
#include "masterdata/frmpagamenti.h"
#include "screens/framework/cgrid.h"
#include "support/screendriver.h"

#include <QtTest>

using testdb::ScriptedDialogs;
using Screen = testdb::Screen<frmPagamenti>;

class TestFrmPagamenti : public testdb::BackendTest
{
    Q_OBJECT

    static void fill(Screen& s, const QString& acconto, const QStringList& percentuali)
    {
        s.type("txtCodice", "T1");
        s.type("txtDescrizione", "Prova");
        s.type("txtAcconto", acconto);
        s.set("txtNrRate", QString::number(percentuali.size()));
        s.get("txtNote")->setFocus(); // the grid follows the count
        auto* grid = s.screen.findChild<cGrid*>("flxRate");
        for (int i = 0; i < percentuali.size(); ++i) {
            grid->setText(i, 1, QString::number(30 * (i + 1)));
            grid->setText(i, 2, percentuali.at(i));
        }
    }

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        testdb::run("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO IN (SELECT RID FROM Pagamenti WHERE CODICE = "
                    "¤T1¤)");
        testdb::run("DELETE FROM Pagamenti WHERE CODICE = ¤T1¤");
    }

    void percentuali_data()
    {
        QTest::addColumn<QString>("acconto");
        QTest::addColumn<QStringList>("rate");
        QTest::addColumn<bool>("salvato");
        QTest::newRow("three thirds") << "0" << QStringList{"33,33", "33,33", "33,33"} << false;
        QTest::newRow("thirds and a cent") << "0" << QStringList{"33,33", "33,33", "33,34"} << true;
        QTest::newRow("down payment 100") << "100" << QStringList{"0"} << true;
        QTest::newRow("over 100") << "10" << QStringList{"50", "50"} << false;
        QTest::newRow("half and half") << "0" << QStringList{"50", "50"} << true;
    }
    void percentuali()
    {
        QFETCH(QString, acconto);
        QFETCH(QStringList, rate);
        QFETCH(bool, salvato);
        Screen s(true, true, 0);
        fill(s, acconto, rate);
        ScriptedDialogs script;
        if (!salvato)
            script.expectMessage("Impossbile salvare questo tipo di pagamento.\r La percentuale dell'importo "
                                 "attribbuito alle rate + l'acconto non è esatto.",
                                 vb::OK);
        QCOMPARE(s.screen.saveRecord(), salvato);
        QCOMPARE(testdb::count("Pagamenti", "CODICE = ¤T1¤"), salvato ? 1 : 0);
        if (salvato)
            QCOMPARE(testdb::count("DettagliPagamenti", "FK_PAGAMENTO = " + s.rid()), rate.size());
    }

    // The rows come back in their order; saving again replaces them; the
    // count is required; "Rimessa Diretta" rebuilds the grid with one row;
    // delete takes the instalments too.
    void saveReloadDelete()
    {
        Screen s(true, true, 0);
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                             " - Campo [Nr. Rate] Obbligatorio.",
                             vb::OK);
        QVERIFY(!s.screen.saveRecord());

        fill(s, "10", {"40", "50"});
        QVERIFY(s.screen.saveRecord());
        const QString rid = s.rid();
        s.screen.newRecord();
        QCOMPARE(s.screen.rate().size(), 0);
        s.type("txtCodice", "T1");
        s.get("txtDescrizione")->setFocus();
        QCOMPARE(s.rid(), rid);
        QCOMPARE(s.shown("txtAcconto"), QStringLiteral("10,00"));
        QCOMPARE(s.screen.rate().size(), 2);
        QCOMPARE(s.screen.rate().at(1).giorni, QStringLiteral("60"));
        QCOMPARE(s.screen.rate().at(1).percentuale, QStringLiteral("50,00"));

        s.set("chkRimessaDiretta", "");
        QCOMPARE(s.shown("txtNrRate"), QStringLiteral("1"));
        QCOMPARE(s.screen.rate().size(), 1);
        QCOMPARE(s.screen.rate().at(0).percentuale, QStringLiteral("0,00"));
        s.type("txtAcconto", "100");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("DettagliPagamenti", "FK_PAGAMENTO = " + rid), 1);

        script.expectMessage("Eliminare il pagamento con codice T1?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("Pagamenti", "RID = " + rid), 0);
        QCOMPARE(testdb::count("DettagliPagamenti", "FK_PAGAMENTO = " + rid), 0);
    }
};

QTEST_MAIN(TestFrmPagamenti)
#include "tst_frmpagamenti.moc"
