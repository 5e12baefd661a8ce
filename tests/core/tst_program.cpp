// The program itself, started as people and scripts start it.
#include "data/driver.h"
#include "support/testdb.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QString bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

// The columns of a data table, by type and name.
using testdb::columns;
// A start that logs in and leaves a picture of the window instead of staying.
QStringList start(const QTemporaryDir& home)
{
    return {u"--home"_s, home.path(), u"--password"_s, u"orvantis"_s, u"--screenshot"_s, home.filePath(u"shot.png"_s)};
}

} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_config; // the per-user settings of each test
    // Starts the program with the per-user settings of the test, offscreen.
    void launch(QProcess& process, const QStringList& arguments) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"XDG_CONFIG_HOME"_s, m_config->path());
        env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        env.remove(u"ORVANTIS_HOME"_s);
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(ORVANTIS_PROGRAM), arguments);
    }

    // Runs the program to its end: its exit code, -1 when it hangs, -2 when it crashes.
    int run(const QStringList& arguments, QString* output = nullptr) const
    {
        QProcess process;
        launch(process, arguments);
        if (!process.waitForFinished(60000))
            return -1;
        if (output)
            *output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    }

private Q_SLOTS:
    void init() { m_config = std::make_unique<QTemporaryDir>(); }
    void cleanupTestCase() { driver::closeIdle(); }
    // A fresh start leaves its picture and the folder's database; an unknown screen ends with code 2 and no picture.
    void screenshotOfAFreshStart_data()
    {
        columns<QStringList, int>("arguments", "exitCode"); // arguments besides --home and --screenshot
        const QStringList login{u"--password"_s, u" orvantis "_s};
        QTest::newRow("main window") << login << 0;
        QTest::newRow("server settings") << login + QStringList{"--open", "frmOptionServer"} << 0;
        QTest::newRow("password change") << login + QStringList{"--open", "frmCambiaPW"} << 0;
        QTest::newRow("unknown screen") << login + QStringList{"--open", "frmNessuno"} << 2;
    }

    void screenshotOfAFreshStart()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QTemporaryDir home;
        const QString picture = home.filePath(u"main.png"_s);
        QCOMPARE(run(QStringList{"--home", home.path(), "--screenshot", picture} + arguments), exitCode);
        QCOMPARE(QFileInfo::exists(picture), exitCode == 0);
        if (exitCode != 0)
            return;
        const QImage image(picture);
        QVERIFY(image.width() > 200 && image.height() > 100);
        QVERIFY(QFileInfo::exists(home.filePath(u"Orvantis.db"_s)));
    }

    // A program folder given by --home keeps its settings inside: what one folder was prepared for does not reach
    // another, and nothing goes to the per-user settings.
    void homeKeepsItsSettings_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }

    void homeKeepsItsSettings()
    {
        QFETCH(QString, backend);
        QTemporaryDir first, second;
        const bool server = backend == "mariadb"_L1;
        const QString database = u"orv_home_%1"_s.arg(QCoreApplication::applicationPid());
        QStringList init{"--home", first.path(), "--init-db", "--db-type", server ? "2" : "1"};
        const auto drop = [&] { server&& testdb::serverAdmin("DROP DATABASE IF EXISTS " + database); };
        drop();
        const auto dropAtEnd = qScopeGuard(drop);
        if (server)
            init << u"--connection"_s << testdb::mysqlBaseConnectionString() + ";Database=" + database;
        const auto settingsFiles = [](const QString& folder) {
            QStringList files;
            for (QDirIterator it(folder, {u"*.ini"_s}, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
                files << QDir(folder).relativeFilePath(it.next());
            return files;
        };
        QString output;
        QCOMPARE(run(init, &output), 0);
        QCOMPARE(settingsFiles(first.path()), QStringList{"prgOrvantis.ini"});
        QVERIFY2(bytesOf(first.filePath(u"prgOrvantis.ini"_s)).contains(server ? u"DBType=2"_s : u"DBType=1"_s),
                 qPrintable(output));
        QCOMPARE(QFileInfo::exists(first.filePath(u"Orvantis.db"_s)), !server);
        QCOMPARE(run(start(first)), 0);
        QCOMPARE(QFileInfo::exists(first.filePath(u"Orvantis.db"_s)), !server);
        // The second folder, started for the first time, starts on a file of its own.
        QCOMPARE(run(start(second)), 0);
        QVERIFY(QFileInfo::exists(second.filePath(u"Orvantis.db"_s)));
        QVERIFY(!bytesOf(second.filePath(u"prgOrvantis.ini"_s)).contains(u"DBType=2"_s));
        QCOMPARE(settingsFiles(m_config->path()), QStringList());
    }

    // An unusable database file ends a start with nobody to ask, and --init-db, naming the file and leaving it as it
    // was; --init-db makes a missing one. The model is built over an older model or into a new file, never over the
    // firm's database or a file that is not a database of this program.
    void fileIsLeftAlone_data()
    {
        // target: in the program folder, after a first start; replace: "gone", "empty", "text" or nothing.
        columns<QString, QString, QString, int, QString>("target", "replace", "command", "exitCode", "says");
        const auto row = [](const char* name, const char* target, const char* replace, const char* command,
                            int exitCode, const char* says) {
            QTest::newRow(name) << QString(target) << QString(replace) << QString(command) << exitCode << QString(says);
        };
        row("0 bytes, start", "Orvantis.db", "empty", "start", 1, "vuoto");
        row("text, --init-db", "Orvantis.db", "text", "--init-db", 1, "non è un database");
        row("gone after a start", "Orvantis.db", "gone", "start", 1, "non esiste");
        row("gone, --init-db makes it", "Orvantis.db", "gone", "--init-db", 0, "Creato il database");
        row("model over the firm's database", "Orvantis.db", "", "--build-model", 1, "");
        row("model over a text file", "note.txt", "text", "--build-model", 1, "");
        row("model over an older model", "OModel.db", "", "--build-model", 0, "");
        row("model into a new file", "nuovo/OModel.db", "", "--build-model", 0, "");
    }

    void fileIsLeftAlone()
    {
        QFETCH(QString, target);
        QFETCH(QString, replace);
        QFETCH(QString, command);
        QFETCH(int, exitCode);
        QFETCH(QString, says);
        QTemporaryDir home;
        const QString path = home.filePath(target);
        QCOMPARE(run(start(home)), 0); // makes the folder's database and its model
        if (!replace.isEmpty()) {
            QFile::remove(path);
            QFile file(path);
            QVERIFY(replace == "gone"_L1 || file.open(QIODevice::WriteOnly));
            if (replace == "text"_L1)
                file.write("Cliente;Importo\nRossi;122,00\n");
        }
        const bool existed = QFileInfo::exists(path);
        const QString before = bytesOf(path);
        QStringList arguments{"--home", home.path(), command, path};
        if (command == "start"_L1)
            arguments = start(home);
        else if (command == "--init-db"_L1)
            arguments.removeLast();
        QString output;
        QCOMPARE(run(arguments, &output), exitCode);
        QVERIFY2(output.contains(says) && output.contains(path), qPrintable(output));
        if (exitCode == 0) {
            QVERIFY(bytesOf(path).startsWith(u"SQLite format 3"_s + QChar(0)));
            return;
        }
        QCOMPARE(QFileInfo::exists(path), existed);
        QCOMPARE(bytesOf(path), before);
        for (const char* side : {"-wal", "-shm"})
            QVERIFY2(!QFileInfo::exists(path + QLatin1String(side)), side);
    }

    // A second start on the same program folder brings the first copy forward and ends at once.
    void secondCopyEnds()
    {
        QTemporaryDir home;
        QProcess first;
        launch(first, {"--home", home.path(), "--password", "orvantis"});
        QVERIFY(first.waitForStarted());
        // The first copy is up once its database exists and a moment has passed for the login.
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(home.filePath(u"Orvantis.db"_s)), 20000);
        QTest::qWait(2500);
        QVERIFY(first.state() == QProcess::Running);
        QCOMPARE(run({"--home", home.path()}), 0);
        QVERIFY(first.state() == QProcess::Running);
        first.terminate();
        if (!first.waitForFinished(5000))
            first.kill();
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
