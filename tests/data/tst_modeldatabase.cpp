// The model and the databases made from it: on both back ends, from files
// that are not databases, and on SQL Server through ODBC and FreeTDS (for
// real only with a server named in ORVANTIS_TEST_MSSQL).
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "data/modeldatabase.h"
#include "data/modelseed.h"
#include "data/schema.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray bytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(none)");
}

} // namespace

class TestModelDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }

    // Every table can be read, the seed is all there, the version is stored.
    void seededDatabase_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void seededDatabase()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend, true).isValid());
        testdb::ErrorRecorder errors;
        for (const schema::Table& t : schema::tables()) {
            RecordsetPtr rs = gAdoSqlServer().getNewRecordset("SELECT * FROM " + t.name + " WHERE 1 = 0", "test");
            QVERIFY2(rs, qPrintable(t.name));
            QCOMPARE(rs->fieldCount(), int(t.columns.size()));
            gAdoSqlServer().disconnect();
        }
        for (const schema::SeedTable& seed : schema::seedData())
            QVERIFY2(testdb::count(seed.table) == seed.rows.size(), qPrintable(seed.table));
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(testdb::value("SELECT VALORE FROM Opzioni WHERE NOME = ¤Amministratore¤").toString(),
                 schema::defaultPassword());
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // What is at a database's path is told without writing to it; neither the
    // driver nor the copy of the model turns it into a database.
    void inspectedFiles_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("says");
        using S = model::FileDbState;
        const auto row = [](const char* name, const char* kind, const QByteArray& content, S state, const char* says) {
            QTest::newRow(name) << QString(kind) << content << int(state) << QString(says);
        };
        row("missing", "missing", {}, S::Missing, "non esiste");
        row("0 bytes", "file", "", S::Empty, "vuoto");
        row("text", "file", "NOME;VALORE\nAmministratore;orvantis\n", S::NotADatabase, "non è un database");
        const QByteArray rubbish = QByteArray("SQLite format 3", 16) + QByteArray(4080, '\x5a');
        row("header, then rubbish", "file", rubbish, S::NotADatabase, "non è un database");
        row("a folder", "folder", {}, S::NotADatabase, "non è un file");
        row("other tables", "sqlite", "CREATE TABLE Clienti (Nome TEXT)", S::Foreign, "Opzioni, SchemaVersion");
        row("options but no version", "sqlite", "CREATE TABLE Opzioni (NOME TEXT, VALORE TEXT)", S::Foreign,
            "SchemaVersion");
        row("the model", "model", {}, S::Ours, "");
    }
    void inspectedFiles()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, content);
        QFETCH(int, state);
        QFETCH(QString, says);
        QTemporaryDir dir;
        const QString path = dir.filePath("Ditta.db");
        QFile file(path);
        QString message;
        if (kind == "file") {
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
            file.close();
        } else if (kind == "folder") {
            QVERIFY(QDir(dir.path()).mkdir("Ditta.db"));
        } else if (kind == "sqlite") { // made with Qt's own driver, not the program's
            {
                QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "maker");
                db.setDatabaseName(path);
                QVERIFY(db.open() && QSqlQuery(db).exec(QString::fromLatin1(content)));
            }
            QSqlDatabase::removeDatabase("maker");
        } else if (kind == "model") {
            QVERIFY2(model::buildModelFile(path, &message), qPrintable(message));
            driver::closeIdle();
        }
        const QByteArray before = bytes(path);
        QString detail;
        QCOMPARE(int(model::inspectFileDatabase(path, &detail)), state);
        const QString problem = model::fileDbProblem(model::FileDbState(state), path, detail);
        QVERIFY2(says.isEmpty() ? problem.isEmpty() : problem.contains(path) && problem.contains(says),
                 qPrintable(problem));
        if (says.isEmpty())
            return;
        // The copy leaves an existing file alone and makes a missing one (and the model).
        const QString model = dir.filePath("OModel.db");
        const bool copied = model::ensureFileDatabase(path, model, &message);
        if (kind == "missing") {
            QVERIFY2(copied, qPrintable(message));
            QCOMPARE(int(model::inspectFileDatabase(path)), int(model::FileDbState::Ours));
            QCOMPARE(int(model::inspectFileDatabase(model)), int(model::FileDbState::Ours));
            return;
        }
        QCOMPARE(copied, kind != "folder");
        if (state != int(model::FileDbState::Foreign)) {
            // The driver refuses to open what is not a database (yet).
            DbError error;
            QVERIFY(!driver::acquire(TipoServer::FileDb, fileDbConnectionString(path), 5, error));
            if (!content.startsWith("SQLite")) // that one SQLite itself refuses, in its own words
                QVERIFY2(error.description.contains(path), qPrintable(error.description));
        }
        driver::closeIdle();
        QCOMPARE(bytes(path), before);
        QVERIFY(!QFileInfo::exists(path + "-wal") && !QFileInfo::exists(path + "-journal"));
    }

    // A model that is not a database of this program is not copied; one left
    // by an earlier release is built again before a new firm is copied from it.
    void unusableModelIsNotCopied()
    {
        QTemporaryDir dir;
        const QString model = dir.filePath("OModel.db"), firm = dir.filePath("Orvantis.db");
        QVERIFY(QFile(model).open(QIODevice::WriteOnly));
        QString message;
        QVERIFY(!model::ensureFileDatabase(firm, model, &message));
        QVERIFY2(message.contains(model), qPrintable(message));
        QVERIFY(!QFileInfo::exists(firm));
        QCOMPARE(QFileInfo(model).size(), 0);
    }
    void staleModelIsRebuilt()
    {
        QTemporaryDir dir;
        const QString model = dir.filePath("OModel.db"), firm = dir.filePath("Orvantis.db");
        QString message;
        QVERIFY(model::buildModelFile(model, &message));
        gAdoSqlServer().setTipoServer(TipoServer::FileDb);
        gSession().strConnessione = fileDbConnectionString(model);
        testdb::run("UPDATE SchemaVersion SET VERSIONE = 1");
        testdb::run("DROP TABLE AnniPrimaNota");
        driver::closeIdle();
        QVERIFY2(model::ensureFileDatabase(firm, model, &message), qPrintable(message));
        gSession().strConnessione = fileDbConnectionString(firm);
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(testdb::count("AnniPrimaNota"), 0);
        driver::closeIdle();
    }

    // A server database is prepared once; a second run leaves it alone.
    void serverDatabaseTwice()
    {
        if (!testdb::backends().contains("mariadb"))
            QSKIP("no MariaDB server named");
        const QString name = QString("orv_init_%1").arg(QCoreApplication::applicationPid());
        testdb::serverAdmin("DROP DATABASE IF EXISTS " + name);
        const QString connection = testdb::mysqlBaseConnectionString() + ";Database=" + name;
        QString message;
        QVERIFY2(model::initServerDatabase(TipoServer::MySql, connection, &message), qPrintable(message));
        QVERIFY2(model::initServerDatabase(TipoServer::MySql, connection, &message), qPrintable(message));
        QVERIFY(message.contains("già"));
        driver::closeIdle();
        testdb::serverAdmin("DROP DATABASE " + name);
    }

    // FreeTDS is installed: an unreachable server is refused by FreeTDS itself.
    void sqlServerDriverLoads()
    {
        QVERIFY(QSqlDatabase::isDriverAvailable("QODBC"));
        DbError error;
        const QString unreachable = "DRIVER={FreeTDS};SERVER=127.0.0.1;PORT=1;DATABASE=orvantis;UID=sa;PWD=x;"
                                    "TDS_Version=7.4";
        QVERIFY(!driver::acquire(TipoServer::SqlServer, unreachable, 2, error));
        QVERIFY2(error.description.contains("[FreeTDS]"), qPrintable(error.description));
        QCOMPARE(error.source, "SQL Server");
    }

    // A live SQL Server: a fresh seeded database, and a text back as it was.
    void sqlServerLive()
    {
        const QString server = qEnvironmentVariable("ORVANTIS_TEST_MSSQL");
        if (server.isEmpty())
            QSKIP("no SQL Server named in ORVANTIS_TEST_MSSQL");
        const QString connection = server + ";DATABASE=orvantis_test";
        QString message;
        QVERIFY2(model::initServerDatabase(TipoServer::SqlServer, connection, &message), qPrintable(message));
        gAdoSqlServer().setTipoServer(TipoServer::SqlServer);
        gSession().strConnessione = connection;
        const QString value = QStringLiteral("l'\u00A4\u2021\u00BF`\\ \u00E0 \U0001F600");
        const int id = gAdoSqlServer().getIDByInsert("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (¤X¤, "
                                                         + sqlText(value) + ", 1)",
                                                     "test", "RID", "Iva");
        QVERIFY(id > 0);
        QCOMPARE(testdb::value("SELECT DESCRIZIONE FROM Iva WHERE RID = " + QString::number(id)).toString(), value);
    }
};

QTEST_GUILESS_MAIN(TestModelDatabase)
#include "tst_modeldatabase.moc"
