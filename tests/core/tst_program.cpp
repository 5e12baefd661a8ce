// The program itself, started as people and scripts start it.
#include "data/driver.h"
#include "support/testdb.h"

#include <QDirIterator>
#include <QImage>
#include <QProcess>
#include <QtTest>

namespace {
const QString kProgram = QStringLiteral(ORVANTIS_PROGRAM);

QString bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

// A start that logs in and leaves a picture of the window instead of staying.
QStringList start(const QTemporaryDir& home)
{
    return {QStringLiteral("--home"),       home.path(),
            QStringLiteral("--password"),   QStringLiteral("orvantis"),
            QStringLiteral("--screenshot"), home.filePath(QStringLiteral("shot.png"))};
}
} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_config; // the per-user settings of each test

    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_config->path());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.remove(QStringLiteral("ORVANTIS_HOME"));
        return env;
    }

    int run(const QStringList& arguments, QString* output = nullptr) const
    {
        QProcess process;
        process.setProcessEnvironment(environment());
        process.start(kProgram, arguments);
        if (!process.waitForFinished(60000))
            return -1;
        if (output)
            *output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    }

private Q_SLOTS:
    void init() { m_config = std::make_unique<QTemporaryDir>(); }
    void cleanupTestCase() { driver::closeIdle(); }

    // A fresh start leaves its picture and the folder's database; a wrong
    // password or an unknown screen ends with its own code and no picture.
    void screenshotOfAFreshStart_data()
    {
        QTest::addColumn<QStringList>("arguments"); // besides --home and --screenshot
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");
        const QStringList login{QStringLiteral("--password"), QStringLiteral(" orvantis ")};
        const QString open = QStringLiteral("--open");
        QTest::newRow("main window") << login << 0 << QString();
        QTest::newRow("server settings") << login + QStringList{open, QStringLiteral("frmOptionServer")} << 0
                                         << QString();
        QTest::newRow("password change") << login + QStringList{open, QStringLiteral("frmCambiaPW")} << 0 << QString();
        QTest::newRow("wrong password") << QStringList{login.first(), QStringLiteral("no")} << 1
                                        << QStringLiteral("Password non corretta.");
        QTest::newRow("unknown screen") << login + QStringList{open, QStringLiteral("frmNessuno")} << 2 << QString();
    }
    void screenshotOfAFreshStart()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, says);
        QTemporaryDir home;
        const QString picture = home.filePath(QStringLiteral("main.png"));
        QString output;
        QCOMPARE(run(QStringList{QStringLiteral("--home"), home.path(), QStringLiteral("--screenshot"), picture}
                         + arguments,
                     &output),
                 exitCode);
        QVERIFY2(output.contains(says), qPrintable(output));
        if (exitCode != 0) {
            QVERIFY(!QFileInfo::exists(picture));
            return;
        }
        const QImage image(picture);
        QVERIFY2(!image.isNull(), qPrintable(output));
        QVERIFY(image.width() > 200 && image.height() > 100);
        QVERIFY(QFileInfo::exists(home.filePath(QStringLiteral("Orvantis.db"))));
    }

    // A program folder given by --home keeps its settings inside: what one
    // folder was prepared for does not reach another, and nothing is written
    // to the per-user settings.
    void homeKeepsItsSettings_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void homeKeepsItsSettings()
    {
        QFETCH(QString, backend);
        QTemporaryDir first;
        QTemporaryDir second;
        const bool server = backend == QLatin1String("mariadb");
        const QString database = QStringLiteral("orv_home_%1").arg(QCoreApplication::applicationPid());
        const QString drop = QStringLiteral("DROP DATABASE IF EXISTS ") + database;
        QStringList init{QStringLiteral("--home"), first.path(), QStringLiteral("--init-db"),
                         QStringLiteral("--db-type"), server ? QStringLiteral("2") : QStringLiteral("1")};
        if (server) {
            testdb::serverAdmin(drop);
            init << QStringLiteral("--connection")
                 << testdb::mysqlBaseConnectionString() + QStringLiteral(";Database=") + database;
        }
        const auto dropDatabase = qScopeGuard([&] {
            if (server)
                testdb::serverAdmin(drop);
        });
        auto settingsFiles = [](const QString& folder) {
            QStringList files;
            for (QDirIterator it(folder, {QStringLiteral("*.ini")}, QDir::Files, QDirIterator::Subdirectories);
                 it.hasNext();)
                files << QDir(folder).relativeFilePath(it.next());
            return files;
        };
        QString output;
        QCOMPARE(run(init, &output), 0);
        QCOMPARE(settingsFiles(first.path()), QStringList{QStringLiteral("prgOrvantis.ini")});
        QVERIFY2(bytesOf(first.filePath(QStringLiteral("prgOrvantis.ini")))
                     .contains(server ? QStringLiteral("DBType=2") : QStringLiteral("DBType=1")),
                 qPrintable(output));
        QCOMPARE(QFileInfo::exists(first.filePath(QStringLiteral("Orvantis.db"))), !server);

        // The first folder starts on what it was prepared for ...
        QCOMPARE(run(start(first)), 0);
        QCOMPARE(QFileInfo::exists(first.filePath(QStringLiteral("Orvantis.db"))), !server);
        // ... and the second, started for the first time, on a file of its own.
        QCOMPARE(run(start(second)), 0);
        QVERIFY(QFileInfo::exists(second.filePath(QStringLiteral("Orvantis.db"))));
        QVERIFY(!bytesOf(second.filePath(QStringLiteral("prgOrvantis.ini"))).contains(QStringLiteral("DBType=2")));
        QCOMPARE(settingsFiles(m_config->path()), QStringList());
    }

    // A database file that cannot be used ends a start without a person to
    // ask, and --init-db too, with the file named and left as it was; only a
    // missing file is made by --init-db. The model is rebuilt over an older
    // model or into a new file, never over the firm's database or a file that
    // is not a database of this program.
    void fileIsLeftAlone_data()
    {
        QTest::addColumn<QString>("target");  // in the program folder, after a first start
        QTest::addColumn<QString>("replace"); // "gone", "empty", "text"; empty: as it is
        QTest::addColumn<QString>("command"); // "start", "--init-db", "--build-model"
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");
        const QString db = QStringLiteral("Orvantis.db");
        const QString start = QStringLiteral("start");
        const QString init = QStringLiteral("--init-db");
        const QString model = QStringLiteral("--build-model");
        QTest::newRow("0 bytes, start") << db << QStringLiteral("empty") << start << 1 << QStringLiteral("vuoto");
        QTest::newRow("0 bytes, --init-db") << db << QStringLiteral("empty") << init << 1 << QStringLiteral("vuoto");
        QTest::newRow("text, start") << db << QStringLiteral("text") << start << 1
                                     << QStringLiteral("non è un database");
        QTest::newRow("text, --init-db") << db << QStringLiteral("text") << init << 1
                                         << QStringLiteral("non è un database");
        QTest::newRow("gone after a start")
            << db << QStringLiteral("gone") << start << 1 << QStringLiteral("non esiste");
        QTest::newRow("gone, --init-db makes it")
            << db << QStringLiteral("gone") << init << 0 << QStringLiteral("Creato il database");
        QTest::newRow("model over the firm's database") << db << QString() << model << 1 << QString();
        QTest::newRow("model over a text file")
            << QStringLiteral("note.txt") << QStringLiteral("text") << model << 1 << QString();
        QTest::newRow("model over an older model")
            << QStringLiteral("OModel.db") << QString() << model << 0 << QString();
        QTest::newRow("model into a new file")
            << QStringLiteral("nuovo/OModel.db") << QString() << model << 0 << QString();
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
        // A start that makes the folder's database (and its model) ...
        QCOMPARE(run(start(home)), 0);
        // ... after which the file goes away or is replaced.
        if (!replace.isEmpty()) {
            QFile::remove(path);
            QFile file(path);
            QVERIFY(replace == QLatin1String("gone") || file.open(QIODevice::WriteOnly));
            if (replace == QLatin1String("text"))
                file.write("Cliente;Importo\nRossi;122,00\n");
        }
        const bool existed = QFileInfo::exists(path);
        const QString before = bytesOf(path);
        QStringList arguments{QStringLiteral("--home"), home.path(), command, path};
        if (command == QLatin1String("start"))
            arguments = start(home);
        else if (command == QLatin1String("--init-db"))
            arguments.removeLast();
        QString output;
        QCOMPARE(run(arguments, &output), exitCode);
        QVERIFY2(output.contains(says) && output.contains(path), qPrintable(output));
        if (exitCode == 0) {
            QVERIFY(bytesOf(path).startsWith(QStringLiteral("SQLite format 3") + QChar(0)));
            return;
        }
        QCOMPARE(QFileInfo::exists(path), existed);
        QCOMPARE(bytesOf(path), before);
        for (const char* side : {"-wal", "-shm"})
            QVERIFY2(!QFileInfo::exists(path + QLatin1String(side)), side);
    }

    // A second start on the same program folder brings the first copy
    // forward and ends at once, without asking for the password.
    void secondCopyEnds()
    {
        QTemporaryDir home;
        QProcess first;
        first.setProcessEnvironment(environment());
        first.start(kProgram,
                    {QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("orvantis")});
        QVERIFY(first.waitForStarted());
        // The first copy is up once its database exists and a moment has passed for the login.
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(home.filePath(QStringLiteral("Orvantis.db"))), 20000);
        QTest::qWait(2500);
        QVERIFY(first.state() == QProcess::Running);

        QCOMPARE(run({QStringLiteral("--home"), home.path()}), 0);
        QVERIFY(first.state() == QProcess::Running);

        first.terminate();
        if (!first.waitForFinished(5000))
            first.kill();
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
