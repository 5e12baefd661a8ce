// The record screen pattern on the VAT rates screen, driven by its controls
// on both back ends.
#include "cadosqlserver.h"
#include "frmiva.h"
#include "msgbox.h"
#include "scripteddialogs.h"
#include "testdb.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

QString field(QWidget& screen, const char* name)
{
    return screen.findChild<QLineEdit*>(QString::fromLatin1(name))->text();
}

QString rid(QWidget& screen)
{
    return screen.findChild<QLabel*>(QStringLiteral("lblRID"))->text();
}

int rowsWithCode(const QString& code)
{
    return gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Iva WHERE CODICE = ¤") + code + QStringLiteral("¤"),
                                         QStringLiteral("test")).toInt();
}

struct Screen
{
    frmIva screen;
    Screen()
    {
        screen.startMe(false, true, 0);
        testdb::showActive(screen);
    }
    void key(const char* name, Qt::Key key)
    {
        edit(name)->setFocus();
        QTest::keyClick(edit(name), key);
    }
    void type(const char* name, const QString& text) { testdb::typeInto(screen, QString::fromLatin1(name), text); }
    QLineEdit* edit(const char* name) { return screen.findChild<QLineEdit*>(QString::fromLatin1(name)); }
};

} // namespace

class TestFrmIva : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { QCOMPARE(gAdoSqlServer().getConnectionCount(), 0); }

    // Saving twice inserts, then updates; F5 in the rate field formats it first.
    void saveTwice_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void saveTwice()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        s.type("txtCodice", QStringLiteral("x7"));
        s.type("txtDescrizione", QStringLiteral("aliquota prova"));
        s.type("txtValoreIva", QStringLiteral("7.5"));
        s.key("txtValoreIva", Qt::Key_F5);
        QCOMPARE(field(s.screen, "txtValoreIva"), QStringLiteral("7,50"));
        QVERIFY(rid(s.screen).toInt() > 1);
        QCOMPARE(field(s.screen, "txtCodice"), QStringLiteral("X7"));               // codes are upper case
        QCOMPARE(field(s.screen, "txtDescrizione"), QStringLiteral("ALIQUOTA PROVA"));
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Aliquote Iva - X7"));
        const QString first = rid(s.screen);

        s.type("txtValoreIva", QStringLiteral("8"));
        s.key("txtValoreIva", Qt::Key_F5);
        QCOMPARE(rid(s.screen), first);
        QCOMPARE(rowsWithCode(QStringLiteral("X7")), 1);
        QCOMPARE(gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT VALORE FROM Iva WHERE RID = ") + first, QStringLiteral("test")).toDouble(), 8.0);

        // F2 starts a new record; the code of an existing one loads it back.
        s.key("txtValoreIva", Qt::Key_F2);
        QVERIFY(rid(s.screen).isEmpty());
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Aliquote Iva"));
        s.type("txtCodice", QStringLiteral("x7"));
        s.edit("txtDescrizione")->setFocus();
        QCOMPARE(rid(s.screen), first);
        QCOMPARE(field(s.screen, "txtValoreIva"), QStringLiteral("8,00"));
        gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM Iva WHERE RID = ") + first, QStringLiteral("test"));
    }

    void unknownCodeLeavesTheFields()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        Screen s;
        s.type("txtDescrizione", QStringLiteral("scritto"));
        s.type("txtCodice", QStringLiteral("NONCE"));
        s.edit("txtValoreIva")->setFocus();
        QCOMPARE(field(s.screen, "txtDescrizione"), QStringLiteral("SCRITTO"));
        QVERIFY(rid(s.screen).isEmpty());
    }

    void allFaultsAtOnce()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        Screen s;
        s.type("txtValoreIva", QStringLiteral("-1"));
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                                            " - Campo [Valore%] Errato."),
                             vb::OK);
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(rid(s.screen).isEmpty());
    }

    void deleteAsksAndKeepsTheFirstRow_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void deleteAsksAndKeepsTheFirstRow()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        ScriptedDialogs script;
        QVERIFY(!s.screen.deleteRecord());   // a blank screen: no question

        // The system's own row: asked, then refused.
        s.screen.showData(1, QString());
        QCOMPARE(rid(s.screen), QStringLiteral("1"));
        const QString code = field(s.screen, "txtCodice");
        script.expectMessage(QStringLiteral("Eliminare il record ") + code + QStringLiteral("?"), vb::Yes);
        script.expectMessage(QStringLiteral("Impossibile eliminare questo record"), vb::OK);
        s.key("txtDescrizione", Qt::Key_F7);
        QCOMPARE(rowsWithCode(code), 1);

        s.screen.newRecord();
        s.type("txtCodice", QStringLiteral("DEL"));
        s.type("txtDescrizione", QStringLiteral("da eliminare"));
        QVERIFY(s.screen.saveRecord());
        script.expectMessage(QStringLiteral("Eliminare il record DEL?"), vb::No);
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(rowsWithCode(QStringLiteral("DEL")), 1);
        script.expectMessage(QStringLiteral("Eliminare il record DEL?"), vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(rowsWithCode(QStringLiteral("DEL")), 0);
        QVERIFY(rid(s.screen).isEmpty());
    }

    // F3 in the code field searches the rates; the row chosen is loaded.
    void browseFromTheCodeField_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void browseFromTheCodeField()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmRicerca"), [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Ricerca - Aliquote Iva"));
            auto* filtro = dialog.findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
            QTest::keyClicks(filtro, QStringLiteral("E1"));
            QTest::keyClick(filtro, Qt::Key_Return);
        });
        s.key("txtCodice", Qt::Key_F3);
        QCOMPARE(field(s.screen, "txtCodice"), QStringLiteral("E10"));
        QCOMPARE(field(s.screen, "txtValoreIva"), QStringLiteral("0,00"));
        QVERIFY(script.allAnswered());
    }

    void closingWithARecordTellsItsKey()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        frmIva screen;
        screen.startMe(false, false, 1);
        testdb::showActive(screen);
        QSignalSpy unloaded(&screen, &cRecordScreen::evtUnloadWithRecord);
        auto* description = screen.findChild<QLineEdit*>(QStringLiteral("txtDescrizione"));
        description->setFocus();
        QTest::keyClick(description, Qt::Key_Escape);
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(unloaded.first().first().toInt(), 1);
        QVERIFY(!screen.isVisible());
    }
};

QTEST_MAIN(TestFrmIva)
#include "tst_frmiva.moc"
