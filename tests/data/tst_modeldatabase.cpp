// The model and the databases made from it, on both back ends.
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "data/modeldatabase.h"
#include "data/modelseed.h"
#include "data/schema.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "support/testdb.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

class TestModelDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }

    // Every table of the definition can be read, the seed is all there and
    // the version row holds the schema version.
    void seededDatabase_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void seededDatabase()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend, true).isValid());
        testdb::ErrorRecorder errors;
        for (const schema::Table& t : schema::tables()) {
            RecordsetPtr rs = gAdoSqlServer().getNewRecordset(QStringLiteral("SELECT * FROM ") + t.name + QStringLiteral(" WHERE 1 = 0"),
                                                              QStringLiteral("test"));
            QVERIFY2(rs, qPrintable(t.name));
            QCOMPARE(rs->fieldCount(), int(t.columns.size()));
            gAdoSqlServer().disconnect();
        }
        for (const schema::SeedTable& seed : schema::seedData())
            QVERIFY2(testdb::number(QStringLiteral("SELECT COUNT(*) FROM ") + seed.table) == seed.rows.size(), qPrintable(seed.table));
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(testdb::value(QStringLiteral("SELECT VALORE FROM Opzioni WHERE NOME = ¤Amministratore¤")).toString(),
                 schema::defaultPassword());
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // What a file named as a database holds is told without writing to it;
    // neither the driver nor the copy of the model turns it into a database.
    // (Files only: a server has no file to look at.)
    void inspectedFiles_data()
    {
        QTest::addColumn<QString>("kind");        // what is at the path
        QTest::addColumn<QByteArray>("content");  // a file's bytes, or the table of a foreign database
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("says");
        const auto row = [](const char* name, const char* kind, const QByteArray& content, model::FileDbState state, const QString& says) {
            QTest::newRow(name) << QString::fromLatin1(kind) << content << int(state) << says;
        };
        row("missing", "missing", {}, model::FileDbState::Missing, QStringLiteral("non esiste"));
        row("0 bytes", "file", "", model::FileDbState::Empty, QStringLiteral("vuoto"));
        row("text", "file", "NOME;VALORE\nAmministratore;orvantis\n", model::FileDbState::NotADatabase, QStringLiteral("non è un database"));
        row("header, then rubbish", "file", QByteArray("SQLite format 3", 16) + QByteArray(4080, '\x5a'), model::FileDbState::NotADatabase,
            QStringLiteral("non è un database"));
        row("a folder", "folder", {}, model::FileDbState::NotADatabase, QStringLiteral("non è un file"));
        row("other tables", "sqlite", "CREATE TABLE Clienti (Nome TEXT)", model::FileDbState::Foreign, QStringLiteral("Opzioni, SchemaVersion"));
        row("options but no version", "sqlite", "CREATE TABLE Opzioni (NOME TEXT, VALORE TEXT)", model::FileDbState::Foreign,
            QStringLiteral("SchemaVersion"));
        row("the model", "model", {}, model::FileDbState::Ours, QString());
    }
    void inspectedFiles()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, content);
        QFETCH(int, state);
        QFETCH(QString, says);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Ditta.db"));
        QFile file(path);
        if (kind == QLatin1String("file")) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
            file.close();
        } else if (kind == QLatin1String("folder")) {
            QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("Ditta.db")));
        } else if (kind == QLatin1String("sqlite")) {   // made with Qt's own driver, not the program's
            {
                QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("maker"));
                db.setDatabaseName(path);
                QVERIFY(db.open() && QSqlQuery(db).exec(QString::fromLatin1(content)));
                db.close();
            }
            QSqlDatabase::removeDatabase(QStringLiteral("maker"));
        } else if (kind == QLatin1String("model")) {
            QString message;
            QVERIFY2(model::buildModelFile(path, &message), qPrintable(message));
            driver::closeIdle();
        }
        auto bytes = [&] {
            QFile f(path);
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(none)");
        };
        const QByteArray before = bytes();

        QString detail;
        QCOMPARE(int(model::inspectFileDatabase(path, &detail)), state);
        const QString problem = model::fileDbProblem(model::FileDbState(state), path, detail);
        QVERIFY2(says.isEmpty() ? problem.isEmpty() : problem.contains(path) && problem.contains(says), qPrintable(problem));
        if (says.isEmpty())
            return;

        // The copy of the model leaves an existing file alone and makes a
        // missing one, building the model first when it is missing too.
        QString message;
        const bool copied = model::ensureFileDatabase(path, dir.filePath(QStringLiteral("OModel.db")), &message);
        if (kind == QLatin1String("missing")) {
            QVERIFY2(copied, qPrintable(message));
            QCOMPARE(int(model::inspectFileDatabase(path)), int(model::FileDbState::Ours));
            QCOMPARE(int(model::inspectFileDatabase(dir.filePath(QStringLiteral("OModel.db")))), int(model::FileDbState::Ours));
            return;
        }
        QCOMPARE(copied, kind != QLatin1String("folder"));
        if (state != int(model::FileDbState::Foreign)) {
            // The driver refuses to open what is not a database (yet).
            DbError error;
            QVERIFY(!driver::acquire(TipoServer::FileDb, fileDbConnectionString(path), 5, error));
            if (!content.startsWith("SQLite"))   // that one SQLite itself refuses, in its own words
                QVERIFY2(error.description.contains(path), qPrintable(error.description));
        }
        driver::closeIdle();
        QCOMPARE(bytes(), before);
        QVERIFY(!QFileInfo::exists(path + QStringLiteral("-wal")));
        QVERIFY(!QFileInfo::exists(path + QStringLiteral("-journal")));
    }

    // A model that is not a database of this program is not copied.
    void unusableModelIsNotCopied()
    {
        QTemporaryDir dir;
        const QString model = dir.filePath(QStringLiteral("OModel.db")), firm = dir.filePath(QStringLiteral("Orvantis.db"));
        QVERIFY(QFile(model).open(QIODevice::WriteOnly));
        QString message;
        QVERIFY(!model::ensureFileDatabase(firm, model, &message));
        QVERIFY2(message.contains(model), qPrintable(message));
        QVERIFY(!QFileInfo::exists(firm));
        QCOMPARE(QFileInfo(model).size(), 0);
    }

    // A model left by an earlier release is built again before a new firm is
    // copied from it.
    void staleModelIsRebuilt()
    {
        QTemporaryDir dir;
        const QString model = dir.filePath(QStringLiteral("OModel.db")), firm = dir.filePath(QStringLiteral("Orvantis.db"));
        QString message;
        QVERIFY(model::buildModelFile(model, &message));
        gAdoSqlServer().setTipoServer(TipoServer::FileDb);
        gSession().strConnessione = fileDbConnectionString(model);
        testdb::run(QStringLiteral("UPDATE SchemaVersion SET VERSIONE = 1"));
        testdb::run(QStringLiteral("DROP TABLE AnniPrimaNota"));
        driver::closeIdle();
        QVERIFY2(model::ensureFileDatabase(firm, model, &message), qPrintable(message));
        gSession().strConnessione = fileDbConnectionString(firm);
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM AnniPrimaNota")), 0);
        driver::closeIdle();
    }

    // A server database is prepared once; a second run leaves it alone.
    void serverDatabaseTwice()
    {
        if (!testdb::backends().contains(QStringLiteral("mariadb")))
            QSKIP("no MariaDB server named");
        const QString name = QStringLiteral("orv_init_%1").arg(QCoreApplication::applicationPid());
        testdb::serverAdmin(QStringLiteral("DROP DATABASE IF EXISTS ") + name);
        const QString connection = testdb::mysqlBaseConnectionString() + QStringLiteral(";Database=") + name;
        QString message;
        QVERIFY2(model::initServerDatabase(TipoServer::MySql, connection, &message), qPrintable(message));
        QVERIFY2(model::initServerDatabase(TipoServer::MySql, connection, &message), qPrintable(message));
        QVERIFY(message.contains(QStringLiteral("già")));
        driver::closeIdle();
        testdb::serverAdmin(QStringLiteral("DROP DATABASE ") + name);
    }
};

QTEST_GUILESS_MAIN(TestModelDatabase)
#include "tst_modeldatabase.moc"
