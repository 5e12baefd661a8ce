// The screens that are their fields alone, banks and sales agents, as the
// menu opens them, on both back ends: a record typed, saved, changed, found
// again and deleted, and the fields they require.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "masterdata/masterdatascreens.h"
#include "screens/framework/crecordscreen.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::ScriptedDialogs;
using Screen = testdb::Screen<testdb::RegisteredScreen>;

namespace {

int rowsOf(const QString& table, const QString& code)
{
    return testdb::number("SELECT COUNT(*) FROM " + table + " WHERE CODICE = ¤" + code + "¤");
}

} // namespace

class TestTableScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        registerMasterdataScreens();
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { QCOMPARE(gAdoSqlServer().getConnectionCount(), 0); }

    // F5 inserts, then updates the same row; what was typed with blanks
    // around is stored without, the code in upper case, the description as
    // typed. F3 finds the record again, F7 deletes it after the question.
    void recordLife_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("typed"); // "control=text", in the order of the columns
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QStringList>("stored");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "banks") << "frmBanche"
                                    << "Banche"
                                    << "Banche"
                                    << QStringList{"txtABI= 03069 ",        "txtCAB=01600",          "txtCIN=X",
                                                   "txtAgenzia=Filiale 12", "txtIndirizzo=Via Roma", "txtCivico=4/b",
                                                   "txtCAP=20121",          "txtCitta=Milano",       "txtProvincia=MI",
                                                   "txtTelefono=02 123456", "txtFax= 02 654321 "}
                                    << "ABI, CAB, CIN, AGENZIA, INDIRIZZO, CIVICO, CAP, CITTA, PROVINCIA, TELEFONO, FAX"
                                    << QStringList{"03069", "01600",  "X",  "Filiale 12", "Via Roma", "4/b",
                                                   "20121", "Milano", "MI", "02 123456",  "02 654321"};
            testdb::row(b, "sales agents")
                << "frmVenditore"
                << "Venditori"
                << "Venditori" << QStringList{"txtCodiceExtra= T-0042 "} << "CODICEEXTRA" << QStringList{"T-0042"};
        }
    }
    void recordLife()
    {
        QFETCH(QString, backend);
        QFETCH(QString, screen);
        QFETCH(QString, table);
        QFETCH(QString, title);
        QFETCH(QStringList, typed);
        QFETCH(QString, columns);
        QFETCH(QStringList, stored);
        QVERIFY(testdb::shared(backend).isValid());
        const QString where = " FROM " + table + " WHERE CODICE = ¤ZT1¤";
        testdb::run("DELETE" + where);
        Screen s(screen);
        const QWidget* record = s.screen.record;
        QCOMPARE(record->windowTitle(), title);
        s.type("txtCodice", "zt1");
        s.type("txtDescrizione", "Prova di tabella");
        for (const QString& field : typed)
            s.type(field.section('=', 0, 0), field.section('=', 1));
        s.key("txtDescrizione", Qt::Key_F5);
        const QString rid = s.rid();
        QVERIFY(rid.toInt() > 0);
        QCOMPARE(record->windowTitle(), QString(title + " - ZT1"));
        QStringList written;
        for (const QVariant& value : testdb::rows("SELECT " + columns + where).value(0))
            written << value.toString();
        QCOMPARE(written, stored);

        s.type("txtDescrizione", "Cambiata");
        s.key("txtDescrizione", Qt::Key_F5);
        QCOMPARE(s.rid(), rid);
        QCOMPARE(rowsOf(table, "ZT1"), 1);
        QCOMPARE(testdb::value("SELECT DESCRIZIONE" + where).toString(), QStringLiteral("Cambiata"));

        ScriptedDialogs script;
        s.key("txtDescrizione", Qt::Key_F2);
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(s.shown(typed.last().section('=', 0, 0)), QString());
        script.expectDialog("frmRicerca", testdb::searchFor("ZT1"));
        s.key("txtCodice", Qt::Key_F3);
        QCOMPARE(s.rid(), rid);
        QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("Cambiata"));
        QCOMPARE(s.shown(typed.last().section('=', 0, 0)), stored.last());

        script.expectMessage("Eliminare il record ZT1?", vb::Yes);
        s.key("txtDescrizione", Qt::Key_F7);
        QVERIFY(script.allAnswered());
        QCOMPARE(rowsOf(table, "ZT1"), 0);
        QVERIFY(s.rid().isEmpty());
    }

    // Code and description are required, blanks count as nothing; the
    // message names what is missing and nothing is written.
    void requiredFields_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("message");
        const QString codice = "Attenzione:\n - Campo [Codice] Obbligatorio.";
        const QString descrizione = "Attenzione:\n - Campo [Descrizione] Obbligatorio.";
        const QString both = codice + descrizione.mid(11);
        const QList<std::pair<QString, QString>> screens{{"frmBanche", "Banche"}, {"frmVenditore", "Venditori"}};
        for (const QString& b : testdb::backends()) {
            for (const auto& [screen, table] : screens) {
                testdb::row(b, screen + ", nothing") << screen << table << ""
                                                     << "" << both;
                testdb::row(b, screen + ", blank code") << screen << table << "   "
                                                        << "Qualcosa" << codice;
                testdb::row(b, screen + ", no description") << screen << table << "zt2"
                                                            << "  " << descrizione;
            }
        }
    }
    void requiredFields()
    {
        QFETCH(QString, backend);
        QFETCH(QString, screen);
        QFETCH(QString, table);
        QFETCH(QString, code);
        QFETCH(QString, description);
        QFETCH(QString, message);
        QVERIFY(testdb::shared(backend).isValid());
        const int before = testdb::number("SELECT COUNT(*) FROM " + table);
        Screen s(screen);
        s.type("txtCodice", code);
        s.type("txtDescrizione", description);
        ScriptedDialogs script;
        script.expectMessage(message, vb::OK);
        s.key("txtDescrizione", Qt::Key_F5);
        QVERIFY(script.allAnswered());
        QCOMPARE(script.shown, QStringList{"message: " + message});
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(testdb::number("SELECT COUNT(*) FROM " + table), before);
    }
};

QTEST_MAIN(TestTableScreens)
#include "tst_tablescreens.moc"
