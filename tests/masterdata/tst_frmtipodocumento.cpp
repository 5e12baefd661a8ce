// The document types screen on both back ends, and the notice that has the
// document menu rebuilt.
#include "core/documentmenu.h"
#include "core/serversettings.h"
#include "masterdata/frmtipodocumento.h"
#include "support/screendriver.h"

#include <QSettings>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

QString column(const QString& name, const QString& code)
{
    return testdb::value("SELECT " + name + " FROM TipoDocumenti WHERE " + testdb::code(code)).toString();
}

const QStringList kFlags{
    "Accompagnatorio", "MostraVB",    "NonStampareVB", "StampaElencoSpeciale", "ModificaPrezzoAcquisto",
    "UsaPrezziIva",    "FlexCounter", "HideMenu",      "HideRicerca"};

struct Screen : testdb::Screen<frmTipoDocumento>
{
    int notices = 0;
    QObject receiver;
    Screen()
        : testdb::Screen<frmTipoDocumento>(true, true, 0)
    {
        screens::onDocumentTypesChanged(&receiver, [this] { ++notices; });
    }
    // A complete new type.
    void fill(const QString& code)
    {
        testdb::run("DELETE FROM TipoDocumenti WHERE " + testdb::code(code.toUpper()));
        screen.newRecord();
        type("txtCodice", code);
        type("txtDescrizione", "Prova " + code);
        type("txtDescStampa", "Documento di prova");
        enter("txtCausale", "fv");
        set("cmbNumeratore", "Ordini clienti");
    }
};

} // namespace

class TestFrmTipoDocumento : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // The first save inserts, the second updates, the delete removes; each
    // tells the menu.
    void saveTwice()
    {
        Screen s;
        QCOMPARE(s.shown({"cmbReport", "cmbStampante"}), (QStringList{"Fattura.rpt", "Predefinita"}));
        // An unknown causal is refused and emptied; the browse buttons pick a
        // causal and a numerator.
        ScriptedDialogs script;
        script.expectMessage("Codice: ZZZ inesistente!", vb::OK);
        s.enter("txtCausale", "zzz");
        QCOMPARE(s.shown("txtCausale") + s.shown("lblCausale"), QString());
        script.expectDialog("frmRicerca", testdb::searchFor("CF"));
        s.set("cmdSfoglia_1", {});
        QCOMPARE(s.shown({"txtCausale", "lblCausale"}), (QStringList{"CF", "Carico da fornitore"}));
        script.expectDialog("frmRicerca", testdb::searchFor("Documenti"));
        s.set("cmdSfoglia_2", {});
        QCOMPARE(s.shown("cmbNumeratore"), QStringLiteral("Documenti di trasporto"));

        s.fill("t1");
        QCOMPARE(s.shown("lblCausale"), QStringLiteral("Fattura di vendita"));
        s.set("cmbReport", "Ordine.rpt");
        QVERIFY(s.screen.saveRecord());
        const QString first = s.rid();
        QVERIFY(first.toInt() > 0 && s.notices == 1);
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Tipi di Documento - T1"));

        s.type("txtDescrizione", "Seconda descrizione");
        QVERIFY(s.screen.saveRecord());
        QVERIFY(s.rid() == first && s.notices == 2);
        QCOMPARE(testdb::count("TipoDocumenti", testdb::code("T1")), 1);
        QCOMPARE(column("DESCRIZIONE", "T1"), QStringLiteral("Seconda descrizione"));
        QCOMPARE(column("REPORT", "T1"), QStringLiteral("Ordine.rpt"));
        QCOMPARE(column("FK_CAUSALE", "T1").toInt(), testdb::rid("Causali", testdb::code("FV")));

        // The code of an existing type loads it, causal and numerator included.
        s.screen.newRecord();
        s.enter("txtCodice", "t1");
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.shown({"cmbNumeratore", "lblCausale"}), (QStringList{"Ordini clienti", "Fattura di vendita"}));

        // The menu hears of a delete only when it is done.
        s.notices = 0;
        script.expectMessage("Eliminare il record T1?", vb::No);
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(s.notices, 0);
        script.expectMessage("Eliminare il record T1?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(s.notices, 1);
        QCOMPARE(testdb::count("TipoDocumenti", testdb::code("T1")), 0);
    }

    // Each flag alone is written 1, the others 0, shows again after a
    // refresh, and the menu leaves out the types hidden from it.
    void everyFlag_data()
    {
        QTest::addColumn<QString>("flag");
        for (const QString& f : kFlags)
            QTest::newRow(qPrintable(f)) << f;
    }
    void everyFlag()
    {
        QFETCH(QString, flag);
        Screen s;
        s.fill("FLAG");
        for (const QString& f : kFlags)
            s.tick("chk" + f, f == flag);
        QVERIFY(s.screen.saveRecord());
        s.screen.newRecord();
        s.screen.showData(0, "FLAG");
        for (const QString& f : kFlags) {
            QCOMPARE(column(f.toUpper(), "FLAG").toInt(), f == flag ? 1 : 0);
            QCOMPARE(s.shown("chk" + f), f == flag ? QStringLiteral("1") : QStringLiteral("0"));
        }
        bool inMenu = false;
        for (const DocumentMenuEntry& entry : documentMenuEntries())
            inMenu = inMenu || entry.rid == s.rid().toInt();
        QCOMPARE(inMenu, flag != "HideMenu");
    }

    // All faults at once; the withholding needs both rates while ticked, and
    // unticking it brings them back to zero.
    void faults_data()
    {
        QTest::addColumn<bool>("complete");
        QTest::addColumn<bool>("rda");
        QTest::addColumn<QString>("rda1");
        QTest::addColumn<QString>("rda2");
        QTest::addColumn<QString>("faults"); // empty: saved
        const auto row = [](const char* name, bool complete, bool rda, const char* rda1, const char* rda2,
                            const QString& faults) {
            QTest::newRow(name) << complete << rda << rda1 << rda2 << faults;
        };
        const QString rate1 = " - Campo [R.D.A. % (1)] Obbligatorio.", rate2 = " - Campo [R.D.A. % (2)] Obbligatorio.";
        row("empty", false, false, "", "",
            " - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n - Campo [Descrizione Stampa] "
            "Obbligatorio.\n - Campo [Causale] Obbligatorio.\n - Campo [Contatore] Obbligatorio.");
        row("rda with no rates", true, true, "0", "0,00", rate1 + '\n' + rate2);
        row("rda with no share", true, true, "20", "", rate2);
        row("rda with both", true, true, "20", "50", "");
        row("rda unticked", true, false, "20", "50", "");
    }
    void faults()
    {
        QFETCH(bool, complete);
        QFETCH(bool, rda);
        QFETCH(QString, rda1);
        QFETCH(QString, rda2);
        QFETCH(QString, faults);
        Screen s;
        if (complete)
            s.fill("RDA");
        s.tick("chkRDA", true);
        s.type("txtRDA1", rda1);
        s.type("txtRDA2", rda2);
        s.tick("chkRDA", rda);
        QCOMPARE(s.get("txtRDA1")->isEnabled(), rda);
        ScriptedDialogs script;
        if (!faults.isEmpty())
            script.expectMessage("Attenzione:\n" + faults, vb::OK);
        QCOMPARE(s.screen.saveRecord(), faults.isEmpty());
        QCOMPARE(s.notices, faults.isEmpty() ? 1 : 0);
        if (!faults.isEmpty()) {
            QVERIFY(s.rid().isEmpty());
            return;
        }
        QCOMPARE(column("USARDA", "RDA").toInt(), rda ? 1 : 0);
        QCOMPARE(column("RDA1", "RDA").toDouble(), rda ? 20.0 : 0.0);
        QCOMPARE(column("RDA2", "RDA").toDouble(), rda ? 50.0 : 0.0);
        s.screen.refreshRecord();
        QCOMPARE(s.shown("txtRDA1"), rda ? QStringLiteral("20,00") : QStringLiteral("0,00"));
    }

    // The printer is kept per workstation under the type's code; choosing
    // "Predefinita" stores the empty text; a stored printer shows even when
    // it is not installed here.
    void printerOfThisWorkstation()
    {
        const auto stored = [](const char* code) {
            return machineSettings().value("StampantiDocumenti/" + QString(code));
        };
        machineSettings().setValue("StampantiDocumenti/PRN", "Laser_Ufficio");
        machineSettings().setValue("StampantiDocumenti/ALTRO", "Aghi_Magazzino");
        Screen s;
        s.fill("PRN");
        QCOMPARE(s.get<QComboBox>("cmbStampante")->currentIndex(), 0);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored("PRN").toString(), QString());
        QVERIFY(stored("PRN").isValid());

        machineSettings().setValue("StampantiDocumenti/PRN", "Laser_Ufficio");
        s.screen.refreshRecord();
        QCOMPARE(s.shown("cmbStampante"), QStringLiteral("Laser_Ufficio"));
        s.type("txtDescrizione", "Con la sua stampante");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored("PRN").toString(), QStringLiteral("Laser_Ufficio"));

        s.set("cmbStampante", "Predefinita");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored("PRN").toString(), QString());
        QCOMPARE(stored("ALTRO").toString(), QStringLiteral("Aghi_Magazzino"));
        s.screen.refreshRecord();
        QCOMPARE(s.shown("cmbStampante"), QStringLiteral("Predefinita"));
    }
};

QTEST_MAIN(TestFrmTipoDocumento)
#include "tst_frmtipodocumento.moc"
