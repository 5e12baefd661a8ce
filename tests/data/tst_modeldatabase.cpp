// The model and the databases made from it, on both back ends.
#include "apphome.h"
#include "cadosqlserver.h"
#include "connectionstring.h"
#include "driver.h"
#include "modeldatabase.h"
#include "modelseed.h"
#include "schema.h"
#include "session.h"
#include "sqldialect.h"
#include "testdb.h"

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
        cAdoSqlServer& db = gAdoSqlServer();
        testdb::ErrorRecorder errors;
        for (const schema::Table& t : schema::tables()) {
            RecordsetPtr rs = db.getNewRecordset(QStringLiteral("SELECT * FROM ") + t.name + QStringLiteral(" WHERE 1 = 0"),
                                                 QStringLiteral("test"));
            QVERIFY2(rs, qPrintable(t.name));
            QCOMPARE(rs->fieldCount(), int(t.columns.size()));
            db.disconnect();
        }
        for (const schema::SeedTable& seed : schema::seedData()) {
            const int count = db.getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM ") + seed.table, QStringLiteral("test")).toInt();
            QVERIFY2(count == seed.rows.size(), qPrintable(seed.table));
        }
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(db.getValueBySQL(QStringLiteral("SELECT VALORE FROM Opzioni WHERE NOME = ¤Amministratore¤"), QStringLiteral("t")).toString(),
                 schema::defaultPassword());
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(db.getConnectionCount(), 0);
    }

    // A missing firm database is copied from the model, which is built first
    // when it is missing too; an existing database is never replaced.
    void fileDatabaseFromModel()
    {
        QTemporaryDir dir;
        const QString model = dir.filePath(QStringLiteral("OModel.db"));
        const QString firm = dir.filePath(QStringLiteral("Orvantis.db"));
        QString message;
        QVERIFY2(model::ensureFileDatabase(firm, model, &message), qPrintable(message));
        QVERIFY(QFile::exists(model));
        QVERIFY(QFile::exists(firm));

        gAdoSqlServer().setTipoServer(TipoServer::FileDb);
        gSession().strConnessione = QStringLiteral("Provider=SQLite;Data Source=") + firm;
        QVERIFY(gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Opzioni SET VALORE = ¤x¤ WHERE NOME = ¤PiePagina¤"), QStringLiteral("t")));
        driver::closeIdle();
        QVERIFY(model::ensureFileDatabase(firm, model, &message));
        QCOMPARE(gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT VALORE FROM Opzioni WHERE NOME = ¤PiePagina¤"), QStringLiteral("t")).toString(),
                 QStringLiteral("x"));
        driver::closeIdle();
    }

    // What a file named as a database holds is told without writing to it;
    // neither the driver nor the copy of the model turns it into a database.
    // (Files only: a server has no file to look at.)
    void inspectedFiles_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("says");
        QTest::newRow("missing") << QStringLiteral("missing") << int(model::FileDbState::Missing) << QStringLiteral("non esiste");
        QTest::newRow("0 bytes") << QStringLiteral("empty") << int(model::FileDbState::Empty) << QStringLiteral("vuoto");
        QTest::newRow("text") << QStringLiteral("text") << int(model::FileDbState::NotADatabase) << QStringLiteral("non è un database");
        QTest::newRow("header, then rubbish") << QStringLiteral("header") << int(model::FileDbState::NotADatabase) << QStringLiteral("non è un database");
        QTest::newRow("a folder") << QStringLiteral("folder") << int(model::FileDbState::NotADatabase) << QStringLiteral("non è un file");
        QTest::newRow("other tables") << QStringLiteral("foreign") << int(model::FileDbState::Foreign) << QStringLiteral("Opzioni, SchemaVersion");
        QTest::newRow("options but no version") << QStringLiteral("options only") << int(model::FileDbState::Foreign) << QStringLiteral("SchemaVersion");
        QTest::newRow("the model") << QStringLiteral("model") << int(model::FileDbState::Ours) << QString();
    }
    void inspectedFiles()
    {
        QFETCH(QString, kind);
        QFETCH(int, state);
        QFETCH(QString, says);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Ditta.db"));
        auto sqlite = [&](const QStringList& statements) {
            {
                QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("maker"));
                db.setDatabaseName(path);
                QVERIFY(db.open());
                QSqlQuery query(db);
                for (const QString& sql : statements)
                    QVERIFY(query.exec(sql));
                query.finish();
                db.close();
            }
            QSqlDatabase::removeDatabase(QStringLiteral("maker"));
        };
        QFile file(path);
        if (kind == QLatin1String("empty") || kind == QLatin1String("text") || kind == QLatin1String("header")) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            if (kind == QLatin1String("text"))
                file.write("NOME;VALORE\nAmministratore;orvantis\n");
            if (kind == QLatin1String("header"))
                file.write(QByteArray("SQLite format 3", 16) + QByteArray(4080, '\x5a'));
            file.close();
        } else if (kind == QLatin1String("folder")) {
            QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("Ditta.db")));
        } else if (kind == QLatin1String("foreign")) {
            sqlite({QStringLiteral("CREATE TABLE Clienti (Nome TEXT)")});
        } else if (kind == QLatin1String("options only")) {
            sqlite({QStringLiteral("CREATE TABLE Opzioni (NOME TEXT, VALORE TEXT)")});
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
        if (says.isEmpty()) {
            QVERIFY(problem.isEmpty());
            return;
        }
        QVERIFY2(problem.contains(path) && problem.contains(says), qPrintable(problem));

        // The copy of the model leaves an existing file alone and makes a missing one.
        QString message;
        const bool copied = model::ensureFileDatabase(path, dir.filePath(QStringLiteral("OModel.db")), &message);
        if (kind == QLatin1String("missing")) {
            QVERIFY2(copied, qPrintable(message));
            QCOMPARE(int(model::inspectFileDatabase(path)), int(model::FileDbState::Ours));
            return;
        }
        QCOMPARE(copied, kind != QLatin1String("folder"));
        if (state != int(model::FileDbState::Foreign)) {
            // The driver refuses to open what is not a database (yet).
            DbError error;
            QVERIFY(!driver::acquire(TipoServer::FileDb, fileDbConnectionString(path), 5, error));
            if (kind != QLatin1String("header"))   // that one SQLite itself refuses, in its own words
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
        const QString model = dir.filePath(QStringLiteral("OModel.db"));
        QVERIFY(QFile(model).open(QIODevice::WriteOnly));
        const QString firm = dir.filePath(QStringLiteral("Orvantis.db"));
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
        const QString model = dir.filePath(QStringLiteral("OModel.db"));
        QString message;
        QVERIFY(model::buildModelFile(model, &message));
        gAdoSqlServer().setTipoServer(TipoServer::FileDb);
        gSession().strConnessione = QStringLiteral("Provider=SQLite;Data Source=") + model;
        QVERIFY(gAdoSqlServer().executeSQL(QStringLiteral("UPDATE SchemaVersion SET VERSIONE = 1"), QStringLiteral("t")));
        QVERIFY(gAdoSqlServer().executeSQL(QStringLiteral("DROP TABLE ContatoriPrimaNota"), QStringLiteral("t")));
        driver::closeIdle();
        const QString firm = dir.filePath(QStringLiteral("Orvantis.db"));
        QVERIFY2(model::ensureFileDatabase(firm, model, &message), qPrintable(message));
        gSession().strConnessione = QStringLiteral("Provider=SQLite;Data Source=") + firm;
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM ContatoriPrimaNota"), QStringLiteral("t")).toInt(), 0);
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
