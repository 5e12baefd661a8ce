// The causal screen on both back ends: how its flags, kinds, warehouses and
// accounts reach the table, and the fields that depend on its choices.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "masterdata/frmcausali.h"
#include "masterdata/masterdatascreens.h"
#include "screens/framework/frmsimpleform.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QtTest>

using Screen = testdb::Screen<frmCausali>;

class TestFrmCausali : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        registerMasterdataScreens();
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    // Flags -1/0 and MOSTRAVB 0/1; negative due dates only with due dates;
    // a warehouse only on a warehouse side. An unknown account shows the box
    // and empties field and label.
    void writing_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<bool>("generaScad");
        QTest::addColumn<QString>("origine");
        QTest::addColumn<QVariantList>("expected");
        const QVariant null;
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "due dates, warehouse side")
                << true << "optOrigine_3" << QVariantList{-1, 3, 1, 1, null, -1, -1, -1, 0, 1, 3, 20};
            testdb::row(b, "no due dates, customer side")
                << false << "optOrigine_1" << QVariantList{-1, 1, 1, null, null, -1, 0, 0, 0, 1, 3, 20};
        }
    }
    void writing()
    {
        QFETCH(QString, backend);
        QFETCH(bool, generaScad);
        QFETCH(QString, origine);
        QFETCH(QVariantList, expected);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::run("DELETE FROM Causali WHERE CODICE = ¤ZC¤");
        Screen s(true, true, 0);
        s.enter("txtCodice", "zc");
        s.enter("txtDescrizione", "Causale di prova");
        s.tick("chkOperazione", true);
        s.tick("chkMostraVB", true);
        s.tick("optOrigine_3", true);
        s.enter("txtMagazzinoOrig", "sede");
        QCOMPARE(s.shown("lblMagazzinoOrig"), QStringLiteral("Magazzino Sede"));
        s.tick("optDestinazione_1", true);
        QVERIFY(!s.get("txtMagazzinoDest")->isEnabled());
        s.tick(origine, true);

        QVERIFY(!s.get("txtDare1")->isEnabled());
        s.tick("chkGeneraPN", true);
        QVERIFY(s.get("txtDare1")->isEnabled());
        s.enter("txtDare2", "01003001");
        QCOMPARE(s.shown("lblDare2"), QStringLiteral("Cassa"));
        {
            testdb::ScriptedDialogs script;
            script.expectMessage("Codice: 77777777 inesistente!", vb::OK);
            s.enter("txtDare2", "77777777");
            QVERIFY(script.allAnswered());
        }
        QCOMPARE(s.shown("txtDare2"), QString());
        QCOMPARE(s.shown("lblDare2"), QString());
        s.enter("txtDare1", "01001001");
        QCOMPARE(s.shown("lblDare1"), QStringLiteral("Clienti Italia"));
        s.enter("txtAvere1", "04001001");
        // Negative due dates ticked first, then due dates taken away again.
        s.tick("chkGeneraScad", true);
        s.tick("chkScadenzeNegative", true);
        s.tick("chkGeneraScad", generaScad);
        QVERIFY(s.screen.saveRecord());
        QVariantList stored =
            testdb::rows("SELECT Operazione, ORIGINE, DESTINAZIONE, FK_MagazzinoOrig, FK_MagazzinoDest, "
                         "GENERAPN, GENERASCAD, SCADENZENEGATIVE, TAGLIO, MOSTRAVB, FK_CONTODARE1, "
                         "FK_ContoAvere1 FROM Causali WHERE CODICE = ¤ZC¤")
                .value(0);
        for (QVariant& v : stored)
            v = v.isNull() ? QVariant() : QVariant(v.toInt());
        QCOMPARE(stored, expected);

        // Shown again as stored.
        s.screen.newRecord();
        QCOMPARE(s.shown("chkGeneraPN"), QStringLiteral("0"));
        s.enter("txtCodice", "ZC");
        QCOMPARE(s.shown(origine), QStringLiteral("1"));
        QCOMPARE(s.shown("txtAvere1"), QStringLiteral("04001001"));
        QCOMPARE(s.shown("chkScadenzeNegative"), QString::number(generaScad));
    }

    // The button beside a warehouse opens the warehouses on a new record;
    // the warehouse saved there comes back into the field on closing.
    void createWhileTyping_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void createWhileTyping()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s(true, true, 0);
        s.tick("optDestinazione_3", true);
        testdb::click(s.screen, "cmdNuovoMagazzinoDest");
        frmSimpleForm* editor = nullptr;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* form = qobject_cast<frmSimpleForm*>(window); form && form->isVisible())
                editor = form;
        QVERIFY(editor);
        QCOMPARE(editor->tabella(), QStringLiteral("Magazzini"));
        testdb::typeInto(*editor, "txtCodice", "NEG2");
        testdb::typeInto(*editor, "txtDescrizione", "Negozio due");
        QVERIFY(editor->saveRecord());
        editor->close();
        QCOMPARE(s.shown("txtMagazzinoDest"), QStringLiteral("NEG2"));
        QCOMPARE(s.shown("lblMagazzinoDest"), QStringLiteral("Negozio due"));
    }

    // A field that cannot be changed does not look like one that can.
    void disabledFieldsLookDisabled()
    {
        QVERIFY(testdb::shared("sqlite").isValid());
        Screen s(true, true, 0);
        const auto ground = [&s](const char* name) {
            QWidget* field = s.get(name);
            return field->grab().toImage().pixelColor(field->width() - 6, field->height() / 2);
        };
        QVERIFY(!s.get("txtDare1")->isEnabled() && s.get("txtDescrizione")->isEnabled());
        QVERIFY(ground("txtDare1") != ground("txtDescrizione"));
    }
};

QTEST_MAIN(TestFrmCausali)
#include "tst_frmcausali.moc"
