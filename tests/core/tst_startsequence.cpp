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

#include <QtSql>
#include <QtTest>
#include <QtWidgets>

using namespace Qt::StringLiterals;
using testdb::ScriptedDialogs;

namespace {

const QString kSaved = u"Le impostazioni correnti sono state salvate."_s;
const QString kWrongPassword = u"Password non corretta."_s;

// No pause, a key of its own; a password, when given, answers the login.
ShellOptions quickStart(const QString& password = QString())
{
    static int counter = 0;
    return {.hasPassword = !password.isNull(),
            .password = password,
            .pauseMs = 0,
            .instanceKey = u"orv-test-%1-%2"_s.arg(QCoreApplication::applicationPid()).arg(++counter)};
}

ScriptedDialogs::Driver press(const QString& button)
{
    return [button](QDialog& d) { testdb::click(d, button); };
}

// The login dialog answered with `password`.
ScriptedDialogs::Driver typePassword(const QString& password = schema::defaultPassword())
{
    return [password](QDialog& d) {
        testdb::typeInto(d, u"txtPassword"_s, password);
        testdb::click(d, u"cmdOK"_s);
    };
}

// The error report of `module` (or of a module it begins), confirmed.
ScriptedDialogs::Driver warningOf(const QString& module, bool whole = true)
{
    return [module, whole](QDialog& d) {
        const QString shown = d.findChild<QLineEdit*>(u"txtModulo"_s)->text();
        QVERIFY2(whole ? shown == module : shown.startsWith(module), qPrintable(shown));
        testdb::click(d, u"cmdOK"_s);
    };
}

// The database of the running test, and the settings that name it.
testdb::TestDatabase& db() { return testdb::shared(testdb::BackendTest::backend()); }
void useDatabase() { saveServerConnection(db().tipoServer(), db().connectionString()); }

// The connection settings answered with a database file or a server connection.
ScriptedDialogs::Driver chooseDatabase(int tipoServer, const QString& connection)
{
    return [tipoServer, connection](QDialog& d) {
        const bool file = tipoServer == TipoServer::FileDb;
        testdb::click(d, file ? u"optAccess"_s : u"optMySql"_s);
        testdb::typeInto(d, file ? u"txtFileDBAccess"_s : u"txtConnectionString"_s,
                         file ? fileDbPath(connection) : connection);
        testdb::click(d, u"cmdOk"_s);
    };
}
ScriptedDialogs::Driver chooseDatabase() { return chooseDatabase(db().tipoServer(), db().connectionString()); }

// Everything that makes up a file database on disk: the file's bytes (null
// when it does not exist) and the journal files SQLite would leave beside it.
QStringList diskState(const QString& path)
{
    QFile file(path);
    QStringList state{file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().toHex()) : u"(none)"_s};
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        state << u"%1: %2"_s.arg(QLatin1String(suffix)).arg(QFileInfo::exists(path + QLatin1String(suffix)));
    return state;
}

// A SQLite database of someone else: a table of its own, none of this program's.
bool writeForeignDatabase(const QString& path)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"foreign"_s);
        db.setDatabaseName(path);
        ok = db.open() && QSqlQuery(db).exec(u"CREATE TABLE Clienti (Nome TEXT)"_s)
            && QSqlQuery(db).exec(u"INSERT INTO Clienti VALUES ('Rossi')"_s);
    }
    QSqlDatabase::removeDatabase(u"foreign"_s);
    return ok;
}

} // namespace

class TestStartSequence : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        frmWarning::install();
        gError().setLeaveHook({});
    }
    void cleanup()
    {
        BackendTest::cleanup();
        machineSettings().remove(u"Server"_s);
    }

    void firstRunUsesTheFileBesideTheProgram()
    {
        QTemporaryDir folder;
        const auto restoreFolder = qScopeGuard([home = programFolder()] { setProgramFolder(home); });
        setProgramFolder(folder.path());
        const QString file = programFile(u"Orvantis.db"_s);
        ScriptedDialogs script;
        script.expectDialog(u"frmPw"_s, [file](QDialog& d) {
            // The login shows the file it is about to open.
            QVERIFY(d.findChild<QLabel*>(u"lblDB"_s)->text().contains(file));
            typePassword()(d);
        });
        StartSequence start(quickStart());
        std::unique_ptr<frmMain> main = start.run();
        QVERIFY(main && main->isVisible());
        QCOMPARE(gSession().tipoServer, TipoServer::FileDb);
        QCOMPARE(fileDbPath(gSession().strConnessione), file);
        QVERIFY(QFileInfo(file).size() > 0);
        QCOMPARE(machineSettings().value(QString(QChar(0)) + u"/path"_s).toString(), programFolder());
        QCOMPARE(gOptions().amministratore, schema::defaultPassword()); // option globals loaded
    }

    // Every attempt but the last is refused. Without its row, or with a Null
    // value, the password option lets nobody in: the empty text and the
    // default password are refused like any other, each after the report of
    // the unreadable option, until the login is cancelled.
    void login_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QStringList>("typed");
        const QString pw = schema::defaultPassword();
        const QStringList anything{QString(), u"   "_s, pw, u"Null"_s};
        const QString option = u" WHERE NOME = ¤Amministratore¤"_s;
        QTest::newRow("wrong, then right with blanks") << pw << QString() << QStringList{"sbagliata", "  " + pw + " "};
        QTest::newRow("empty refused") << pw << QString() << QStringList{QString(), pw};
        QTest::newRow("empty option takes empty") << QString() << QString() << QStringList{"   "};
        QTest::newRow("case matters") << pw << QString() << QStringList{pw.toUpper(), pw};
        QTest::newRow("no option row") << pw << "DELETE FROM Opzioni" + option << anything;
        QTest::newRow("Null option") << pw << "UPDATE Opzioni SET VALORE = Null" + option << anything;
    }
    void login()
    {
        QFETCH(QString, stored);
        QFETCH(QString, damage);
        QFETCH(QStringList, typed);
        useDatabase();
        setOpzione(u"Amministratore"_s, stored);
        const auto restore = qScopeGuard([] { setOpzione(u"Amministratore"_s, schema::defaultPassword()); });
        const bool damaged = !damage.isEmpty();
        if (damaged)
            testdb::run(damage);

        ScriptedDialogs script;
        for (qsizetype i = 0; i < typed.size(); ++i) {
            script.expectDialog(u"frmPw"_s, typePassword(typed.at(i)));
            if (damaged)
                script.expectDialog(u"frmWarning"_s, warningOf(u"bOrvantis.getOpzione"_s));
            if (damaged || i + 1 < typed.size())
                script.expectMessage(kWrongPassword, vb::OK);
        }
        if (damaged)
            script.expectDialog(u"frmPw"_s, press(u"cmdAnnulla"_s));
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
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("says"); // empty: no message before the settings
        const auto row = [](const char* name, const char* kind, const char* says) {
            QTest::newRow(name) << QString(kind) << QString(says);
        };
        row("no server", "no server", "");
        row("mistyped path", "missing", "non esiste");
        row("default file gone after a start", "default gone", "non esiste");
        row("default file, back end chosen before", "default chosen", "non esiste");
        row("0 bytes", "empty", "vuoto (0 byte)");
        row("a text file", "text", "non è un database");
        row("another program's database", "foreign", "non di Orvantis");
    }
    void refusedDatabase()
    {
        QFETCH(QString, kind);
        QFETCH(QString, says);
        const int tipoServer = db().tipoServer();
        QTemporaryDir folder;
        QString path = folder.filePath(u"Ditta.db"_s);
        const auto restoreFolder = qScopeGuard([home = programFolder()] { setProgramFolder(home); });
        if (kind == "no server"_L1) {
            machineSettings().setValue(u"Server/DBType"_s, u"2"_s); // the expert prompt: no server
        } else if (kind.startsWith("default"_L1)) {
            // A program folder of its own, without its file.
            setProgramFolder(folder.path());
            path = programFile(u"Orvantis.db"_s);
            if (kind == "default gone"_L1)
                saveRunningInfo(u"0.0.0"_s); // an earlier start on this folder
            else
                machineSettings().setValue(u"Server/DBType"_s, u"1"_s);
        } else {
            if (kind == "foreign"_L1) {
                QVERIFY(writeForeignDatabase(path));
            } else if (kind != "missing"_L1) {
                QFile file(path);
                QVERIFY(file.open(QIODevice::WriteOnly));
                if (kind == "text"_L1)
                    file.write("Fattura n. 1 del 02/01/2024\nTotale 122,00\n");
            }
            saveServerConnection(TipoServer::FileDb, fileDbConnectionString(path));
        }
        const QStringList before = diskState(path);

        ScriptedDialogs script;
        if (!says.isEmpty())
            script.expectMessage(path, vb::OK);
        script.expectDialog(u"frmOptionServer"_s, chooseDatabase());
        script.expectMessage(kSaved, vb::OK);
        script.expectDialog(u"frmPw"_s, typePassword());
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        if (!says.isEmpty())
            QVERIFY2(script.shown.first().contains(says), qPrintable(script.shown.first()));
        QVERIFY(!script.shown.join(u'\n').contains(u"riavviare"_s));
        QCOMPARE(gSession().tipoServer, tipoServer);
        QCOMPARE(diskState(path), before);
    }

    // A file chosen from the login's settings is checked before the password
    // is: an empty one is named, left alone, and the login comes back.
    void fileChosenAtLoginIsChecked()
    {
        useDatabase();
        QTemporaryDir folder;
        const QString empty = folder.filePath(u"Vuoto.db"_s);
        QVERIFY(QFile(empty).open(QIODevice::WriteOnly));
        auto advancedThenPassword = [](QDialog& d) {
            testdb::click(d, u"cmdAdvanced"_s);
            typePassword()(d);
        };
        ScriptedDialogs script;
        script.expectDialog(u"frmPw"_s, advancedThenPassword);
        script.expectDialog(u"frmOptionServer"_s, chooseDatabase(TipoServer::FileDb, fileDbConnectionString(empty)));
        script.expectMessage(kSaved, vb::OK);
        script.expectMessage(empty, vb::OK);
        script.expectDialog(u"frmPw"_s, advancedThenPassword);
        script.expectDialog(u"frmOptionServer"_s, chooseDatabase());
        script.expectMessage(kSaved, vb::OK);
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        QCOMPARE(QFileInfo(empty).size(), 0);
        QVERIFY(!QFileInfo::exists(empty + u"-wal"_s));
    }

    void secondFailureEnds()
    {
        machineSettings().setValue(u"Server/DBType"_s, u"2"_s);
        ScriptedDialogs script;
        script.expectDialog(u"frmOptionServer"_s, press(u"cmdCancel"_s));
        // The second attempt is not silent: its failure is reported first.
        script.expectDialog(u"frmWarning"_s, warningOf(u"cAdoSqlServer.Connect -> N/D"_s, false));
        script.expectMessage(u"Impossibile connettere il DataBase!"_s, vb::OK);
        StartSequence start(quickStart());
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 1);
    }

    // --password answers the first login: a wrong one, with nobody to ask
    // again, ends the run; the right one starts a copy that later starts
    // bring forward.
    void passwordSwitchAndOneCopy()
    {
        useDatabase();
        ShellOptions wrong = quickStart(u"sbagliata"_s);
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
