// The start of the program, offscreen: settings, connection, the settings
// dialog after a failed connection or a database file that cannot be used,
// the login, one copy per program folder.
#include "apphome.h"
#include "cadosqlserver.h"
#include "connectionstring.h"
#include "driver.h"
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
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
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

// The connection settings answered with the test database of a back end.
ScriptedDialogs::Driver chooseDatabase(const testdb::TestDatabase& db)
{
    return [&db](QDialog& d) {
        if (db.tipoServer() == TipoServer::FileDb) {
            testdb::click(d, QStringLiteral("optAccess"));
            testdb::typeInto(d, QStringLiteral("txtFileDBAccess"), fileDbPath(db.connectionString()));
        } else {
            testdb::click(d, QStringLiteral("optMySql"));
            testdb::typeInto(d, QStringLiteral("txtConnectionString"), db.connectionString());
        }
        testdb::click(d, QStringLiteral("cmdOk"));
    };
}

// The connection settings answered with a database file.
ScriptedDialogs::Driver chooseFile(const QString& path)
{
    return [path](QDialog& d) {
        testdb::click(d, QStringLiteral("optAccess"));
        testdb::typeInto(d, QStringLiteral("txtFileDBAccess"), path);
        testdb::click(d, QStringLiteral("cmdOk"));
    };
}

// Everything that makes up a file database on disk: the file's bytes (null
// when it does not exist) and the journal files SQLite would leave beside it.
QStringList diskState(const QString& path)
{
    QStringList state;
    QFile file(path);
    state << (file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().toHex()) : QStringLiteral("(none)"));
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        state << QStringLiteral("%1: %2").arg(QLatin1String(suffix)).arg(QFileInfo::exists(path + QLatin1String(suffix)));
    return state;
}

// A SQLite database of someone else: a table of its own, none of this program's.
bool writeForeignDatabase(const QString& path)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
        db.setDatabaseName(path);
        QSqlQuery query(db);
        ok = db.open() && query.exec(QStringLiteral("CREATE TABLE Clienti (Nome TEXT)"))
            && query.exec(QStringLiteral("INSERT INTO Clienti VALUES ('Rossi')"));
        query.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("foreign"));
    return ok;
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

    // Without its row, or with a Null value, the password option lets nobody
    // in: the empty text and the default password are refused like any other,
    // each after the report of the unreadable option.
    void passwordOptionMissingOrNull_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("damage");
        for (const QString& b : testdb::backends()) {
            QTest::newRow(qPrintable(b + ": no row")) << b << QStringLiteral("DELETE FROM Opzioni WHERE NOME = ¤Amministratore¤");
            QTest::newRow(qPrintable(b + ": Null")) << b << QStringLiteral("UPDATE Opzioni SET VALORE = Null WHERE NOME = ¤Amministratore¤");
        }
    }
    void passwordOptionMissingOrNull()
    {
        QFETCH(QString, backend);
        QFETCH(QString, damage);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        useDatabase(db);
        QVERIFY(gAdoSqlServer().executeSQL(damage, QStringLiteral("test")));
        const auto restore = qScopeGuard([] { setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword()); });

        ScriptedDialogs script;
        for (const QString& typed : {QString(), QStringLiteral("   "), schema::defaultPassword(), QStringLiteral("Null")}) {
            script.expectDialog(QStringLiteral("frmPw"), typePassword(typed));
            script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) {
                QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("txtModulo"))->text(), QStringLiteral("bOrvantis.getOpzione"));
                testdb::click(d, QStringLiteral("cmdOK"));
            });
            script.expectMessage(QStringLiteral("Password non corretta."), vb::OK);
        }
        script.expectDialog(QStringLiteral("frmPw"), [](QDialog& d) { testdb::click(d, QStringLiteral("cmdAnnulla")); });
        StartSequence start(quickStart());
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 0);
    }

    // A database file that is missing (but for the first start on the program
    // folder), empty, not a database or someone else's database is named in a
    // message, left exactly as it was, and the connection settings open; the
    // database chosen there is used.
    void refusedDatabaseFile_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("says");
        for (const QString& b : testdb::backends()) {
            QTest::newRow(qPrintable(b + ": mistyped path")) << b << QStringLiteral("missing") << QStringLiteral("non esiste");
            QTest::newRow(qPrintable(b + ": default file gone after a start")) << b << QStringLiteral("default gone") << QStringLiteral("non esiste");
            QTest::newRow(qPrintable(b + ": default file, back end chosen before")) << b << QStringLiteral("default chosen") << QStringLiteral("non esiste");
            QTest::newRow(qPrintable(b + ": 0 bytes")) << b << QStringLiteral("empty") << QStringLiteral("vuoto (0 byte)");
            QTest::newRow(qPrintable(b + ": a text file")) << b << QStringLiteral("text") << QStringLiteral("non è un database");
            QTest::newRow(qPrintable(b + ": another program's database")) << b << QStringLiteral("foreign") << QStringLiteral("non di Orvantis");
        }
    }
    void refusedDatabaseFile()
    {
        QFETCH(QString, backend);
        QFETCH(QString, kind);
        QFETCH(QString, says);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());

        QTemporaryDir folder;
        QString path = folder.filePath(QStringLiteral("Ditta.db"));
        const QString defaultFile = programFile(QStringLiteral("Orvantis.db"));
        const QString parked = folder.filePath(QStringLiteral("parked.db"));
        const auto unpark = qScopeGuard([&] {
            if (QFileInfo::exists(parked)) {
                QFile::remove(defaultFile);
                QFile::rename(parked, defaultFile);
            }
        });
        if (kind.startsWith(QLatin1String("default"))) {
            // The program folder's own file, away for the test.
            path = defaultFile;
            gAdoSqlServer().closeAll();
            driver::closeIdle();
            if (QFileInfo::exists(defaultFile))
                QVERIFY(QFile::rename(defaultFile, parked));
            machineSettings().remove(QString(QChar(0)));
            if (kind == QLatin1String("default gone"))
                saveRunningInfo(QStringLiteral("0.0.0"));   // an earlier start on this folder
            else
                machineSettings().setValue(QStringLiteral("Server/DBType"), QStringLiteral("1"));
        } else {
            if (kind == QLatin1String("empty") || kind == QLatin1String("text")) {
                QFile file(path);
                QVERIFY(file.open(QIODevice::WriteOnly));
                if (kind == QLatin1String("text"))
                    file.write("Fattura n. 1 del 02/01/2024\nTotale 122,00\n");
            } else if (kind == QLatin1String("foreign")) {
                QVERIFY(writeForeignDatabase(path));
            }
            saveServerConnection(TipoServer::FileDb, fileDbConnectionString(path));
        }
        const QStringList before = diskState(path);

        ScriptedDialogs script;
        script.expectMessage(path, vb::OK);
        script.expectDialog(QStringLiteral("frmOptionServer"), chooseDatabase(db));
        script.expectMessage(QStringLiteral("Le impostazioni correnti sono state salvate."), vb::OK);
        script.expectDialog(QStringLiteral("frmPw"), typePassword(schema::defaultPassword()));
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        QVERIFY2(script.shown.first().contains(says), qPrintable(script.shown.first()));
        QCOMPARE(gSession().tipoServer, db.tipoServer());
        QCOMPARE(diskState(path), before);
    }

    // A file chosen from the login's settings is checked before the password
    // is: an empty one is named, left alone, and the login comes back.
    void fileChosenAtLoginIsChecked_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void fileChosenAtLoginIsChecked()
    {
        QFETCH(QString, backend);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        useDatabase(db);
        QTemporaryDir folder;
        const QString empty = folder.filePath(QStringLiteral("Vuoto.db"));
        QVERIFY(QFile(empty).open(QIODevice::WriteOnly));

        auto advancedThenPassword = [](QDialog& d) {
            testdb::click(d, QStringLiteral("cmdAdvanced"));
            typePassword(schema::defaultPassword())(d);
        };
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmPw"), advancedThenPassword);
        script.expectDialog(QStringLiteral("frmOptionServer"), chooseFile(empty));
        script.expectMessage(QStringLiteral("Le impostazioni correnti sono state salvate."), vb::OK);
        script.expectMessage(empty, vb::OK);
        script.expectDialog(QStringLiteral("frmPw"), advancedThenPassword);
        script.expectDialog(QStringLiteral("frmOptionServer"), chooseDatabase(db));
        script.expectMessage(QStringLiteral("Le impostazioni correnti sono state salvate."), vb::OK);
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        QCOMPARE(QFileInfo(empty).size(), 0);
        QVERIFY(!QFileInfo::exists(empty + QStringLiteral("-wal")));
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
        script.expectDialog(QStringLiteral("frmOptionServer"), chooseDatabase(db));
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
