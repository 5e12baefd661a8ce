// The program itself, started as people and scripts start it.
#include "driver.h"
#include "testdb.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {
const QString kProgram = QStringLiteral(ORVANTIS_PROGRAM);

QProcessEnvironment environment(const QTemporaryDir& config)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.remove(QStringLiteral("ORVANTIS_HOME"));
    return env;
}

int run(const QStringList& arguments, const QTemporaryDir& config, QString* output = nullptr)
{
    QProcess process;
    process.setProcessEnvironment(environment(config));
    process.start(kProgram, arguments);
    if (!process.waitForFinished(60000))
        return -1;
    if (output)
        *output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
}

// The settings files under a folder, as paths relative to it.
QStringList settingsFilesUnder(const QString& folder)
{
    QStringList files;
    QDirIterator it(folder, {QStringLiteral("*.ini")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << QDir(folder).relativeFilePath(it.next());
    return files;
}

QString iniText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { driver::closeIdle(); }

    void screenshotOfAFreshStart_data()
    {
        QTest::addColumn<QString>("open");
        QTest::newRow("main window") << QString();
        QTest::newRow("server settings") << QStringLiteral("frmOptionServer");
        QTest::newRow("password change") << QStringLiteral("frmCambiaPW");
    }
    void screenshotOfAFreshStart()
    {
        QFETCH(QString, open);
        QTemporaryDir home;
        QTemporaryDir config;
        const QString picture = home.filePath(QStringLiteral("main.png"));
        QStringList arguments{QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral(" orvantis "),
                              QStringLiteral("--screenshot"), picture};
        if (!open.isEmpty())
            arguments << QStringLiteral("--open") << open;
        QString output;
        QCOMPARE(run(arguments, config, &output), 0);
        const QImage image(picture);
        QVERIFY2(!image.isNull(), qPrintable(output));
        QVERIFY(image.width() > 200 && image.height() > 100);
        QVERIFY(QFileInfo::exists(home.filePath(QStringLiteral("Orvantis.db"))));
    }

    void wrongPasswordOrUnknownScreenFail()
    {
        QTemporaryDir home;
        QTemporaryDir config;
        const QString picture = home.filePath(QStringLiteral("x.png"));
        QString output;
        QCOMPARE(run({QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("no"),
                      QStringLiteral("--screenshot"), picture},
                     config, &output),
                 1);
        QVERIFY(output.contains(QStringLiteral("Password non corretta.")));
        QCOMPARE(run({QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("orvantis"),
                      QStringLiteral("--screenshot"), picture, QStringLiteral("--open"), QStringLiteral("frmNessuno")},
                     config, &output),
                 2);
        QVERIFY(!QFileInfo::exists(picture));
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
        QTemporaryDir config;
        QStringList init{QStringLiteral("--home"), first.path(), QStringLiteral("--init-db")};
        const QString database = QStringLiteral("orv_home_%1").arg(QCoreApplication::applicationPid());
        const bool server = backend == QLatin1String("mariadb");
        if (server) {
            testdb::serverAdmin(QStringLiteral("DROP DATABASE IF EXISTS ") + database);
            init << QStringLiteral("--db-type") << QStringLiteral("2") << QStringLiteral("--connection")
                 << testdb::mysqlBaseConnectionString() + QStringLiteral(";Database=") + database;
        } else {
            init << QStringLiteral("--db-type") << QStringLiteral("1");
        }
        const auto dropDatabase = qScopeGuard([&] {
            if (server)
                testdb::serverAdmin(QStringLiteral("DROP DATABASE IF EXISTS ") + database);
        });
        QString output;
        QCOMPARE(run(init, config, &output), 0);
        QCOMPARE(settingsFilesUnder(first.path()), QStringList{QStringLiteral("prgOrvantis.ini")});
        QVERIFY2(iniText(first.filePath(QStringLiteral("prgOrvantis.ini"))).contains(server ? QStringLiteral("DBType=2") : QStringLiteral("DBType=1")),
                 qPrintable(output));
        QCOMPARE(QFileInfo::exists(first.filePath(QStringLiteral("Orvantis.db"))), !server);

        // The first folder starts on what it was prepared for ...
        const QStringList login{QStringLiteral("--password"), QStringLiteral("orvantis"), QStringLiteral("--screenshot")};
        QCOMPARE(run(QStringList{QStringLiteral("--home"), first.path()} + login + QStringList{first.filePath(QStringLiteral("a.png"))},
                     config, &output),
                 0);
        QCOMPARE(QFileInfo::exists(first.filePath(QStringLiteral("Orvantis.db"))), !server);
        // ... and the second, started for the first time, on a file of its own.
        QCOMPARE(run(QStringList{QStringLiteral("--home"), second.path()} + login + QStringList{second.filePath(QStringLiteral("b.png"))},
                     config, &output),
                 0);
        QVERIFY(QFileInfo::exists(second.filePath(QStringLiteral("Orvantis.db"))));
        QVERIFY(!iniText(second.filePath(QStringLiteral("prgOrvantis.ini"))).contains(QStringLiteral("DBType=2")));
        QCOMPARE(settingsFilesUnder(config.path()), QStringList());
    }

    // A database file that cannot be used ends a start without a person to
    // ask, and --init-db too, with the file named and left as it was; only a
    // missing file is made by --init-db.
    void badDatabaseFileIsLeftAlone_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("initDb");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");
        const QByteArray text("Cliente;Importo\nRossi;122,00\n");
        QTest::newRow("0 bytes, start") << true << QByteArray() << false << 1 << QStringLiteral("vuoto");
        QTest::newRow("0 bytes, --init-db") << true << QByteArray() << true << 1 << QStringLiteral("vuoto");
        QTest::newRow("text, start") << true << text << false << 1 << QStringLiteral("non è un database");
        QTest::newRow("text, --init-db") << true << text << true << 1 << QStringLiteral("non è un database");
        QTest::newRow("gone after a start") << false << QByteArray() << false << 1 << QStringLiteral("non esiste");
        QTest::newRow("gone, --init-db makes it") << false << QByteArray() << true << 0 << QStringLiteral("Creato il database");
    }
    void badDatabaseFileIsLeftAlone()
    {
        QFETCH(bool, exists);
        QFETCH(QByteArray, content);
        QFETCH(bool, initDb);
        QFETCH(int, exitCode);
        QFETCH(QString, says);
        QTemporaryDir home;
        QTemporaryDir config;
        const QString path = home.filePath(QStringLiteral("Orvantis.db"));
        const QStringList start{QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("orvantis"),
                                QStringLiteral("--screenshot"), home.filePath(QStringLiteral("x.png"))};
        // A start that makes the folder's database, which then goes away or is replaced.
        QCOMPARE(run(start, config), 0);
        QVERIFY(QFile::remove(path));
        if (exists) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        QString output;
        const QStringList arguments = initDb ? QStringList{QStringLiteral("--home"), home.path(), QStringLiteral("--init-db")} : start;
        QCOMPARE(run(arguments, config, &output), exitCode);
        QVERIFY2(output.contains(says) && output.contains(path), qPrintable(output));
        if (exitCode == 0)
            return;
        QCOMPARE(QFileInfo::exists(path), exists);
        if (exists) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), content);
        }
        QVERIFY(!QFileInfo::exists(path + QStringLiteral("-wal")));
    }

    // The model is rebuilt over an older model or into a new file, never over
    // the firm's database or a file that is not a database of this program.
    void buildModelReplacesOnlyAModel_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("the firm's database") << QStringLiteral("Orvantis.db") << 1;
        QTest::newRow("a text file") << QStringLiteral("note.txt") << 1;
        QTest::newRow("an older model") << QStringLiteral("OModel.db") << 0;
        QTest::newRow("a new file") << QStringLiteral("nuovo/OModel.db") << 0;
    }
    void buildModelReplacesOnlyAModel()
    {
        QFETCH(QString, target);
        QFETCH(int, exitCode);
        QTemporaryDir home;
        QTemporaryDir config;
        QCOMPARE(run({QStringLiteral("--home"), home.path(), QStringLiteral("--init-db")}, config), 0);
        {
            QFile note(home.filePath(QStringLiteral("note.txt")));
            QVERIFY(note.open(QIODevice::WriteOnly));
            note.write("da non toccare\n");
        }
        const QString path = home.filePath(target);
        auto bytes = [&path] {
            QFile f(path);
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        };
        const QByteArray before = bytes();
        QString output;
        QCOMPARE(run({QStringLiteral("--home"), home.path(), QStringLiteral("--build-model"), path}, config, &output), exitCode);
        QVERIFY2(output.contains(path), qPrintable(output));
        if (exitCode != 0)
            QCOMPARE(bytes(), before);
        else
            QVERIFY(bytes().startsWith(QByteArray("SQLite format 3", 16)));
    }

    // A second start on the same program folder brings the first copy
    // forward and ends at once, without asking for the password.
    void secondCopyEnds()
    {
        QTemporaryDir home;
        QTemporaryDir config;
        QProcess first;
        first.setProcessEnvironment(environment(config));
        first.start(kProgram, {QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("orvantis")});
        QVERIFY(first.waitForStarted());
        // The first copy is up once its database exists and a moment has passed for the login.
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(home.filePath(QStringLiteral("Orvantis.db"))), 20000);
        QTest::qWait(2500);
        QVERIFY(first.state() == QProcess::Running);

        QCOMPARE(run({QStringLiteral("--home"), home.path()}, config), 0);
        QVERIFY(first.state() == QProcess::Running);

        first.terminate();
        if (!first.waitForFinished(5000))
            first.kill();
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
