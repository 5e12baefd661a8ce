// SQL Server through ODBC and FreeTDS: the driver loads and answers; with a
// server named in ORVANTIS_TEST_MSSQL, the data layer runs on it for real.
#include "data/cadosqlserver.h"
#include "data/modeldatabase.h"
#include "data/schema.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QSqlDatabase>
#include <QtTest>

class TestSqlServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }

    // The FreeTDS driver is installed and registered: an unreachable server
    // is refused by FreeTDS itself, not by the driver manager.
    void driverLoads()
    {
        QVERIFY(QSqlDatabase::isDriverAvailable(QStringLiteral("QODBC")));
        DbError error;
        const QString unreachable =
            QStringLiteral("DRIVER={FreeTDS};SERVER=127.0.0.1;PORT=1;DATABASE=orvantis;UID=sa;PWD=x;TDS_Version=7.4");
        PhysicalConnectionPtr c = driver::acquire(TipoServer::SqlServer, unreachable, 2, error);
        QVERIFY(!c);
        QVERIFY2(error.description.contains(QStringLiteral("[FreeTDS]")), qPrintable(error.description));
        QCOMPARE(error.source, QStringLiteral("SQL Server"));
    }

    void ddlForEveryTable()
    {
        const QStringList ddl = schema::createStatements(TipoServer::SqlServer);
        for (const schema::Table& t : schema::tables())
            QVERIFY2(ddl.filter("CREATE TABLE [" + t.name + ']').size() == 1, qPrintable(t.name));
        QVERIFY(ddl.filter("IDENTITY(1,1)").size() > 10);
        QVERIFY(ddl.filter("FOREIGN KEY").size() > 10);
    }

    // A live server: a fresh database, the seed, a text round trip and the
    // integrity refusal.
    void live()
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
        const QString sql = "SELECT DESCRIZIONE FROM Iva WHERE RID = " + QString::number(id);
        QCOMPARE(gAdoSqlServer().getValueBySQL(sql, "test").toString(), value);
    }
};

QTEST_GUILESS_MAIN(TestSqlServer)
#include "tst_sqlserver.moc"
