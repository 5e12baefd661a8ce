// The start of the program, offscreen: settings, connection, the settings
// dialog after a failed connection or a database file that cannot be used,
// the login, one copy per program folder.
#include "common/apphome.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/modelseed.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "shell/frmmain.h"
#include "shell/frmwarning.h"
#include "shell/singleinstance.h"
#include "shell/startsequence.h"
#include "support/scripteddialogs.h"
#include "support/testdb.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

const QString kSaved = QStringLiteral("Le impostazioni correnti sono state salvate.");
const QString kWrongPassword = QStringLiteral("Password non corretta.");

// No pause, a key of its own; a password, when given, answers the login.
ShellOptions quickStart(const QString& password = QString())
{
    static int counter = 0;
    ShellOptions options;
    options.pauseMs = 0;
    options.instanceKey = QStringLiteral("orv-test-%1-%2").arg(QCoreApplication::applicationPid()).arg(++counter);
    options.hasPassword = !password.isNull();
    options.password = password;
    return options;
}

ScriptedDialogs::Driver press(const QString& button)
{
    return [button](QDialog& d) { testdb::click(d, button); };
}

// The login dialog answered with `password`.
ScriptedDialogs::Driver typePassword(const QString& password = schema::defaultPassword())
{
    return [password](QDialog& d) {
        testdb::typeInto(d, QStringLiteral("txtPassword"), password);
        testdb::click(d, QStringLiteral("cmdOK"));
    };
}

// The error report of `module` (or of a module it begins), confirmed.
ScriptedDialogs::Driver warningOf(const QString& module, bool whole = true)
{
    return [module, whole](QDialog& d) {
        const QString shown = d.findChild<QLineEdit*>(QStringLiteral("txtModulo"))->text();
        if (whole)
            QCOMPARE(shown, module);
        else
            QVERIFY2(shown.startsWith(module), qPrintable(shown));
        testdb::click(d, QStringLiteral("cmdOK"));
    };
}

void useDatabase(const testdb::TestDatabase& db)
{
    machineSettings().remove(QStringLiteral("Server"));
    saveServerConnection(db.tipoServer(), db.connectionString());
}

// The connection settings answered with a database file or a server connection.
ScriptedDialogs::Driver chooseDatabase(int tipoServer, const QString& connection)
{
    return [tipoServer, connection](QDialog& d) {
        const bool file = tipoServer == TipoServer::FileDb;
        testdb::click(d, file ? QStringLiteral("optAccess") : QStringLiteral("optMySql"));
        testdb::typeInto(d, file ? QStringLiteral("txtFileDBAccess") : QStringLiteral("txtConnectionString"),
                         file ? fileDbPath(connection) : connection);
        testdb::click(d, QStringLiteral("cmdOk"));
    };
}
ScriptedDialogs::Driver chooseDatabase(const testdb::TestDatabase& db)
{
    return chooseDatabase(db.tipoServer(), db.connectionString());
}

// Everything that makes up a file database on disk: the file's bytes (null
// when it does not exist) and the journal files SQLite would leave beside it.
QStringList diskState(const QString& path)
{
    QFile file(path);
    QStringList state{file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().toHex())
                                                     : QStringLiteral("(none)")};
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        state
            << QStringLiteral("%1: %2").arg(QLatin1String(suffix)).arg(QFileInfo::exists(path + QLatin1String(suffix)));
    return state;
}

// A SQLite database of someone else: a table of its own, none of this program's.
bool writeForeignDatabase(const QString& path)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
        db.setDatabaseName(path);
        ok = db.open() && QSqlQuery(db).exec(QStringLiteral("CREATE TABLE Clienti (Nome TEXT)"))
            && QSqlQuery(db).exec(QStringLiteral("INSERT INTO Clienti VALUES ('Rossi')"));
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
        const QString file = programFile(QStringLiteral("Orvantis.db"));
        QVERIFY(!QFileInfo::exists(file));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmPw"), [file](QDialog& d) {
            // The login shows the file it is about to open.
            QVERIFY(d.findChild<QLabel*>(QStringLiteral("lblDB"))->text().contains(file));
            typePassword()(d);
        });
        StartSequence start(quickStart());
        std::unique_ptr<frmMain> main = start.run();
        QVERIFY(main);
        QCOMPARE(gSession().tipoServer, TipoServer::FileDb);
        QCOMPARE(fileDbPath(gSession().strConnessione), file);
        QVERIFY(QFileInfo(file).size() > 0);
        QCOMPARE(machineSettings().value(QString(QChar(0)) + QStringLiteral("/path")).toString(), programFolder());
        QCOMPARE(gOptions().amministratore, schema::defaultPassword()); // option globals loaded
        QVERIFY(main->isVisible());
    }

    // Every attempt but the last is refused. Without its row, or with a Null
    // value, the password option lets nobody in: the empty text and the
    // default password are refused like any other, each after the report of
    // the unreadable option, until the login is cancelled.
    void login_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QStringList>("typed");
        const QString pw = schema::defaultPassword();
        for (const QString& b : testdb::backends()) {
            testdb::row(b, QStringLiteral("wrong, then right with blanks"))
                << pw << QString()
                << QStringList{QStringLiteral("sbagliata"), QStringLiteral("  ") + pw + QStringLiteral(" ")};
            testdb::row(b, QStringLiteral("empty refused")) << pw << QString() << QStringList{QString(), pw};
            testdb::row(b, QStringLiteral("empty option takes empty"))
                << QString() << QString() << QStringList{QStringLiteral("   ")};
            testdb::row(b, QStringLiteral("case matters")) << pw << QString() << QStringList{pw.toUpper(), pw};
            const QStringList anything{QString(), QStringLiteral("   "), pw, QStringLiteral("Null")};
            testdb::row(b, QStringLiteral("no option row"))
                << pw << QStringLiteral("DELETE FROM Opzioni WHERE NOME = ¤Amministratore¤") << anything;
            testdb::row(b, QStringLiteral("Null option"))
                << pw << QStringLiteral("UPDATE Opzioni SET VALORE = Null WHERE NOME = ¤Amministratore¤") << anything;
        }
    }
    void login()
    {
        QFETCH(QString, backend);
        QFETCH(QString, stored);
        QFETCH(QString, damage);
        QFETCH(QStringList, typed);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        useDatabase(db);
        setOpzione(QStringLiteral("Amministratore"), stored);
        const auto restore =
            qScopeGuard([] { setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword()); });
        const bool damaged = !damage.isEmpty();
        if (damaged)
            testdb::run(damage);

        ScriptedDialogs script;
        for (qsizetype i = 0; i < typed.size(); ++i) {
            script.expectDialog(QStringLiteral("frmPw"), typePassword(typed.at(i)));
            if (damaged)
                script.expectDialog(QStringLiteral("frmWarning"), warningOf(QStringLiteral("bOrvantis.getOpzione")));
            if (damaged || i + 1 < typed.size())
                script.expectMessage(kWrongPassword, vb::OK);
        }
        if (damaged)
            script.expectDialog(QStringLiteral("frmPw"), press(QStringLiteral("cmdAnnulla")));
        StartSequence start(quickStart());
        QCOMPARE(bool(start.run()), !damaged);
        QVERIFY(script.allAnswered());
        if (damaged)
            QCOMPARE(start.exitCode(), 0);
    }

    // A back end that cannot be reached, or a database file that is missing
    // (but for the first start on the program folder), empty, not a database
    // or someone else's database, opens the connection settings: a file is
    // named in a message first and left exactly as it was. The database
    // chosen there is used at once, without the advice to restart.
    void refusedDatabase_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("says"); // empty: no message before the settings
        for (const QString& b : testdb::backends()) {
            testdb::row(b, QStringLiteral("no server")) << QStringLiteral("no server") << QString();
            testdb::row(b, QStringLiteral("mistyped path"))
                << QStringLiteral("missing") << QStringLiteral("non esiste");
            testdb::row(b, QStringLiteral("default file gone after a start"))
                << QStringLiteral("default gone") << QStringLiteral("non esiste");
            testdb::row(b, QStringLiteral("default file, back end chosen before"))
                << QStringLiteral("default chosen") << QStringLiteral("non esiste");
            testdb::row(b, QStringLiteral("0 bytes")) << QStringLiteral("empty") << QStringLiteral("vuoto (0 byte)");
            testdb::row(b, QStringLiteral("a text file"))
                << QStringLiteral("text") << QStringLiteral("non è un database");
            testdb::row(b, QStringLiteral("another program's database"))
                << QStringLiteral("foreign") << QStringLiteral("non di Orvantis");
        }
    }
    void refusedDatabase()
    {
        QFETCH(QString, backend);
        QFETCH(QString, kind);
        QFETCH(QString, says);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());

        QTemporaryDir folder;
        QString path = folder.filePath(QStringLiteral("Ditta.db"));
        const auto restoreFolder = qScopeGuard([home = programFolder()] { setProgramFolder(home); });
        if (kind == QLatin1String("no server")) {
            machineSettings().setValue(QStringLiteral("Server/DBType"),
                                       QStringLiteral("2")); // the expert prompt: no server
        } else if (kind.startsWith(QLatin1String("default"))) {
            // A program folder of its own, without its file.
            setProgramFolder(folder.path());
            path = programFile(QStringLiteral("Orvantis.db"));
            if (kind == QLatin1String("default gone"))
                saveRunningInfo(QStringLiteral("0.0.0")); // an earlier start on this folder
            else
                machineSettings().setValue(QStringLiteral("Server/DBType"), QStringLiteral("1"));
        } else {
            if (kind == QLatin1String("foreign")) {
                QVERIFY(writeForeignDatabase(path));
            } else if (kind != QLatin1String("missing")) {
                QFile file(path);
                QVERIFY(file.open(QIODevice::WriteOnly));
                if (kind == QLatin1String("text"))
                    file.write("Fattura n. 1 del 02/01/2024\nTotale 122,00\n");
            }
            saveServerConnection(TipoServer::FileDb, fileDbConnectionString(path));
        }
        const QStringList before = diskState(path);

        ScriptedDialogs script;
        if (!says.isEmpty())
            script.expectMessage(path, vb::OK);
        script.expectDialog(QStringLiteral("frmOptionServer"), chooseDatabase(db));
        script.expectMessage(kSaved, vb::OK);
        script.expectDialog(QStringLiteral("frmPw"), typePassword());
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        if (!says.isEmpty())
            QVERIFY2(script.shown.first().contains(says), qPrintable(script.shown.first()));
        QVERIFY(!script.shown.join(QLatin1Char('\n')).contains(QStringLiteral("riavviare")));
        QCOMPARE(gSession().tipoServer, db.tipoServer());
        QCOMPARE(diskState(path), before);
    }

    // A file chosen from the login's settings is checked before the password
    // is: an empty one is named, left alone, and the login comes back.
    void fileChosenAtLoginIsChecked_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
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
            typePassword()(d);
        };
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmPw"), advancedThenPassword);
        script.expectDialog(QStringLiteral("frmOptionServer"),
                            chooseDatabase(TipoServer::FileDb, fileDbConnectionString(empty)));
        script.expectMessage(kSaved, vb::OK);
        script.expectMessage(empty, vb::OK);
        script.expectDialog(QStringLiteral("frmPw"), advancedThenPassword);
        script.expectDialog(QStringLiteral("frmOptionServer"), chooseDatabase(db));
        script.expectMessage(kSaved, vb::OK);
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        QCOMPARE(QFileInfo(empty).size(), 0);
        QVERIFY(!QFileInfo::exists(empty + QStringLiteral("-wal")));
    }

    void secondFailureEnds()
    {
        machineSettings().setValue(QStringLiteral("Server/DBType"), QStringLiteral("2"));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmOptionServer"), press(QStringLiteral("cmdCancel")));
        // The second attempt is not silent: its failure is reported first.
        script.expectDialog(QStringLiteral("frmWarning"),
                            warningOf(QStringLiteral("cAdoSqlServer.Connect -> N/D"), false));
        script.expectMessage(QStringLiteral("Impossibile connettere il DataBase!"), vb::OK);
        StartSequence start(quickStart());
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 1);
    }

    // --password answers the first login: a wrong one, with nobody to ask
    // again, ends the run; the right one starts a copy that later starts
    // bring forward.
    void passwordSwitchAndOneCopy()
    {
        useDatabase(testdb::shared(QStringLiteral("sqlite")));
        ShellOptions wrong = quickStart(QStringLiteral("sbagliata"));
        wrong.interactive = false;
        ScriptedDialogs script;
        script.expectMessage(kWrongPassword, vb::OK);
        StartSequence refused(wrong);
        QVERIFY(!refused.run());
        QCOMPARE(refused.exitCode(), 1);

        const ShellOptions options = quickStart(schema::defaultPassword());
        auto first = std::make_unique<StartSequence>(options);
        std::unique_ptr<frmMain> main = first->run();
        QVERIFY(main);
        QSignalSpy raised(first->instance(), &SingleInstance::raiseRequested);

        // The second start finds the first and ends before any splash or login.
        ShellOptions again = options;
        again.hasPassword = false; // a login would fail the script
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
