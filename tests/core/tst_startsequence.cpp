// The start of the program, offscreen: settings, connection, the settings
// dialog after a failed connection, the login, one copy per program folder.
#include "apphome.h"
#include "cadosqlserver.h"
#include "connectionstring.h"
#include "frmmain.h"
#include "frmwarning.h"
#include "modelseed.h"
#include "msgbox.h"
#include "optionstore.h"
#include "scripteddialogs.h"
#include "serversettings.h"
#include "session.h"
#include "singleinstance.h"
#include "sqldialect.h"
#include "startsequence.h"
#include "testdb.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QFileInfo>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

ShellOptions quickStart()
{
    static int counter = 0;
    ShellOptions options;
    options.pauseMs = 0;
    options.instanceKey = QStringLiteral("orv-test-%1-%2").arg(QCoreApplication::applicationPid()).arg(++counter);
    return options;
}

// The login dialog answered with `password`.
ScriptedDialogs::Driver typePassword(const QString& password)
{
    return [password](QDialog& d) {
        testdb::typeInto(d, QStringLiteral("txtPassword"), password);
        testdb::click(d, QStringLiteral("cmdOK"));
    };
}

void useDatabase(const testdb::TestDatabase& db)
{
    machineSettings().remove(QStringLiteral("Server"));
    saveServerConnection(db.tipoServer(), db.connectionString());
}

} // namespace

class TestStartSequence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        frmWarning::install();
        gError().setLeaveHook({});
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup()
    {
        gAdoSqlServer().closeAll();
        machineSettings().remove(QStringLiteral("Server"));
    }

    void firstRunUsesTheFileBesideTheProgram()
    {
        QVERIFY(!QFileInfo::exists(programFile(QStringLiteral("Orvantis.db"))));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmPw"), [](QDialog& d) {
            // The login shows the file it is about to open.
            QVERIFY(d.findChild<QLabel*>(QStringLiteral("lblDB"))->text().contains(programFile(QStringLiteral("Orvantis.db"))));
            typePassword(schema::defaultPassword())(d);
        });
        StartSequence start(quickStart());
        std::unique_ptr<frmMain> main = start.run();
        QVERIFY(main);
        QCOMPARE(gSession().tipoServer, TipoServer::FileDb);
        QCOMPARE(fileDbPath(gSession().strConnessione), programFile(QStringLiteral("Orvantis.db")));
        QVERIFY(QFileInfo(programFile(QStringLiteral("Orvantis.db"))).size() > 0);
        QCOMPARE(machineSettings().value(QString(QChar(0)) + QStringLiteral("/path")).toString(), programFolder());
        QCOMPARE(gOptions().amministratore, schema::defaultPassword());   // option globals loaded
        QVERIFY(main->isVisible());
    }

    void login_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QStringList>("typed");   // every attempt; all but the last are refused
        for (const QString& b : testdb::backends()) {
            const QString pw = schema::defaultPassword();
            QTest::newRow(qPrintable(b + ": wrong, then right with blanks")) << b << pw << QStringList{QStringLiteral("sbagliata"), QStringLiteral("  ") + pw + QStringLiteral(" ")};
            QTest::newRow(qPrintable(b + ": empty refused")) << b << pw << QStringList{QString(), pw};
            QTest::newRow(qPrintable(b + ": empty option takes empty")) << b << QString() << QStringList{QStringLiteral("   ")};
            QTest::newRow(qPrintable(b + ": case matters")) << b << pw << QStringList{pw.toUpper(), pw};
        }
    }
    void login()
    {
        QFETCH(QString, backend);
        QFETCH(QString, stored);
        QFETCH(QStringList, typed);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        useDatabase(db);
        setOpzione(QStringLiteral("Amministratore"), stored);

        ScriptedDialogs script;
        for (qsizetype i = 0; i < typed.size(); ++i) {
            script.expectDialog(QStringLiteral("frmPw"), typePassword(typed.at(i)));
            if (i + 1 < typed.size())
                script.expectMessage(QStringLiteral("Password non corretta."), vb::OK);
        }
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword());
    }

    void passwordSwitchAnswersTheFirstLogin()
    {
        testdb::TestDatabase& db = testdb::shared(QStringLiteral("sqlite"));
        useDatabase(db);
        ShellOptions options = quickStart();
        options.hasPassword = true;
        options.password = QStringLiteral("sbagliata");
        options.interactive = false;   // nobody to ask the second time: the run ends
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Password non corretta."), vb::OK);
        StartSequence start(options);
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 1);

        options = quickStart();
        options.hasPassword = true;
        options.password = schema::defaultPassword();
        StartSequence second(options);
        QVERIFY(second.run());
    }

    void cancelAtLoginEnds()
    {
        useDatabase(testdb::shared(QStringLiteral("sqlite")));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmPw"), [](QDialog& d) { testdb::click(d, QStringLiteral("cmdAnnulla")); });
        StartSequence start(quickStart());
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 0);
    }

    // A back end that cannot be reached opens the settings; what is saved
    // there is used at once, without the advice to restart.
    void failedConnectionOpensTheSettings_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void failedConnectionOpensTheSettings()
    {
        QFETCH(QString, backend);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        machineSettings().setValue(QStringLiteral("Server/DBType"), QStringLiteral("2"));   // the expert prompt: no server

        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmOptionServer"), [&db](QDialog& d) {
            if (db.tipoServer() == TipoServer::FileDb) {
                testdb::click(d, QStringLiteral("optAccess"));
                testdb::typeInto(d, QStringLiteral("txtFileDBAccess"), fileDbPath(db.connectionString()));
            } else {
                testdb::click(d, QStringLiteral("optMySql"));
                testdb::typeInto(d, QStringLiteral("txtConnectionString"), db.connectionString());
            }
            testdb::click(d, QStringLiteral("cmdOk"));
        });
        script.expectMessage(QStringLiteral("Le impostazioni correnti sono state salvate."), vb::OK);
        script.expectDialog(QStringLiteral("frmPw"), typePassword(schema::defaultPassword()));
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(!script.shown.join(QLatin1Char('\n')).contains(QStringLiteral("riavviare")));
        QCOMPARE(gSession().tipoServer, db.tipoServer());
    }

    void secondFailureEnds()
    {
        machineSettings().setValue(QStringLiteral("Server/DBType"), QStringLiteral("2"));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmOptionServer"), [](QDialog& d) { testdb::click(d, QStringLiteral("cmdCancel")); });
        // The second attempt is not silent: its failure is reported first.
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) {
            QVERIFY(d.findChild<QLineEdit*>(QStringLiteral("txtModulo"))->text().startsWith(QStringLiteral("cAdoSqlServer.Connect -> N/D")));
            testdb::click(d, QStringLiteral("cmdOK"));
        });
        script.expectMessage(QStringLiteral("Impossibile connettere il DataBase!"), vb::OK);
        StartSequence start(quickStart());
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 1);
    }

    void secondCopyBringsTheFirstForward()
    {
        useDatabase(testdb::shared(QStringLiteral("sqlite")));
        ShellOptions options = quickStart();
        options.hasPassword = true;
        options.password = schema::defaultPassword();
        auto first = std::make_unique<StartSequence>(options);
        std::unique_ptr<frmMain> main = first->run();
        QVERIFY(main);
        QSignalSpy raised(first->instance(), &SingleInstance::raiseRequested);

        // The second start finds the first and ends before any splash or login.
        ShellOptions again = options;
        again.hasPassword = false;   // a login would fail the script below
        ScriptedDialogs script;
        StartSequence second(again);
        QVERIFY(!second.run());
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(raised.wait(3000));

        // When the first copy is gone, the next start is a first copy again.
        main.reset();
        first.reset();
        SingleInstance third(options.instanceKey);
        QVERIFY(third.claim());
    }
};

QTEST_MAIN(TestStartSequence)
#include "tst_startsequence.moc"
