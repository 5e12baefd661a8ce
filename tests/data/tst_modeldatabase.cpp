// The model and the databases made from it, on both back ends.
#include "apphome.h"
#include "cadosqlserver.h"
#include "modeldatabase.h"
#include "modelseed.h"
#include "schema.h"
#include "session.h"
#include "sqldialect.h"
#include "testdb.h"

#include <QFile>
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
