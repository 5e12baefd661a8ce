// The record screen pattern on the VAT rates screen, driven by its controls
// on both back ends.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "masterdata/frmiva.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QSignalSpy>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

struct Screen : testdb::Screen<frmIva>
{
    Screen()
        : testdb::Screen<frmIva>(false, true, 0)
    { }
};

int rowsWithCode(const QString& code) { return testdb::count("Iva", "CODICE = ¤" + code + "¤"); }

} // namespace

class TestFrmIva : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // Saving twice inserts, then updates; F5 in the rate field formats it first.
    void saveTwice()
    {
        Screen s;
        s.type("txtCodice", "x7");
        s.type("txtDescrizione", "aliquota prova");
        s.type("txtValoreIva", "7.5");
        s.key("txtValoreIva", Qt::Key_F5);
        QCOMPARE(s.shown("txtValoreIva"), QStringLiteral("7,50"));
        QVERIFY(s.rid().toInt() > 1);
        QCOMPARE(s.shown("txtCodice"), QStringLiteral("X7")); // codes are upper case
        QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("ALIQUOTA PROVA"));
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Aliquote Iva - X7"));
        const QString first = s.rid();

        s.type("txtValoreIva", "8");
        s.key("txtValoreIva", Qt::Key_F5);
        QCOMPARE(s.rid(), first);
        QCOMPARE(rowsWithCode("X7"), 1);
        QCOMPARE(testdb::value("SELECT VALORE FROM Iva WHERE RID = " + first).toDouble(), 8.0);

        // F2 starts a new record; the code of an existing one loads it back.
        s.key("txtValoreIva", Qt::Key_F2);
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Aliquote Iva"));
        s.type("txtCodice", "x7");
        s.get("txtDescrizione")->setFocus();
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.shown("txtValoreIva"), QStringLiteral("8,00"));

        // Delete asks: No keeps the row, Yes removes it and empties the screen.
        ScriptedDialogs script;
        script.expectMessage("Eliminare il record X7?", vb::No);
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(rowsWithCode("X7"), 1);
        script.expectMessage("Eliminare il record X7?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(rowsWithCode("X7"), 0);
        QVERIFY(s.rid().isEmpty());
    }

    // An unknown code loads nothing and leaves what was typed; saving names
    // every fault at once.
    void unknownCodeAndAllFaults()
    {
        Screen s;
        s.type("txtDescrizione", "scritto");
        s.type("txtCodice", "NONCE");
        s.get("txtValoreIva")->setFocus();
        QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("SCRITTO"));
        QVERIFY(s.rid().isEmpty());

        s.screen.newRecord();
        s.type("txtValoreIva", "-1");
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                             " - Campo [Valore%] Errato.",
                             vb::OK);
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(s.rid().isEmpty());
    }

    // A blank screen deletes nothing; the system's own row is refused
    // before any question.
    void deleteKeepsTheFirstRow()
    {
        Screen s;
        ScriptedDialogs script;
        QVERIFY(!s.screen.deleteRecord()); // no question
        s.screen.showData(1, QString());
        QCOMPARE(s.rid(), QStringLiteral("1"));
        script.expectMessage("Impossibile eliminare questo record", vb::OK);
        s.key("txtDescrizione", Qt::Key_F7);
        QCOMPARE(testdb::count("Iva", "RID = 1"), 1);
    }

    // F3 in the code field searches the rates; the row chosen is loaded.
    void browseFromTheCodeField()
    {
        Screen s;
        ScriptedDialogs script;
        script.expectDialog("frmRicerca", [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Ricerca - Aliquote Iva"));
            testdb::searchFor("E1")(dialog);
        });
        s.key("txtCodice", Qt::Key_F3);
        QCOMPARE(s.shown("txtCodice"), QStringLiteral("E10"));
        QCOMPARE(s.shown("txtValoreIva"), QStringLiteral("0,00"));
    }

    // Escape closes the screen and tells its record's key.
    void closingWithARecordTellsItsKey()
    {
        testdb::Screen<frmIva> s(false, false, 1);
        QSignalSpy unloaded(&s.screen, &cRecordScreen::evtUnloadWithRecord);
        s.key("txtDescrizione", Qt::Key_Escape);
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(unloaded.first().first().toInt(), 1);
        QVERIFY(!s.screen.isVisible());
    }
};

QTEST_MAIN(TestFrmIva)
#include "tst_frmiva.moc"
