// Several workstations on one database: a connection that dies is replaced,
// a lock held by another workstation gives its message after the rollback
// and the next attempt works, and the unique meanings are refused twice
// whoever writes them.
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "common/msgbox.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

using testdb::ErrorRecorder;
using testdb::ScriptedMsgBox;

namespace {

cAdoSqlServer& db()
{
    return gAdoSqlServer();
}

const QString kTag = QStringLiteral("test");
using testdb::number;

// Ends sessions of the server as a restart or an administrator would.
void killSessions(const QList<qint64>& ids)
{
    const MySqlParams p = mySqlParams(qEnvironmentVariable("ORVANTIS_TEST_MYSQL"));
    {
        QSqlDatabase admin = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), QStringLiteral("killer"));
        admin.setHostName(p.host);
        admin.setPort(p.port);
        admin.setUserName(p.user);
        admin.setPassword(p.password);
        QVERIFY(admin.open());
        for (const qint64 id : ids) {
            QSqlQuery q(admin);
            QVERIFY2(q.exec(QStringLiteral("KILL ") + QString::number(id)), qPrintable(q.lastError().text()));
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("killer"));
}

qint64 sessionOf(PhysicalConnection* c)
{
    QSqlQuery q;
    DbError error;
    return c->execute(QStringLiteral("SELECT CONNECTION_ID()"), &q, error) && q.next() ? q.value(0).toLongLong() : -1;
}

// Every idle connection of the pool dies: the server went away meanwhile
// (on the file database its handle is closed).
void killIdleConnections(const QString& backend)
{
    const QList<PhysicalConnectionPtr> idle = driver::idleConnections(db().TipoServer(), gSession().strConnessione);
    QVERIFY(!idle.isEmpty());
    if (backend == QLatin1String("sqlite")) {
        for (const PhysicalConnectionPtr& c : idle)
            c->close();
        return;
    }
    QList<qint64> ids;
    for (const PhysicalConnectionPtr& c : idle)
        ids << sessionOf(c.get());
    killSessions(ids);
}

// The connection of the open transaction dies.
void killTransactionConnection(const QString& backend)
{
    PhysicalConnection* c = db().getActiveConnection()->physical();
    if (backend == QLatin1String("sqlite"))
        c->close();
    else
        killSessions({number(QStringLiteral("SELECT CONNECTION_ID()"))});
}

bool insertIva(const QString& code)
{
    return db().executeSQL(QStringLiteral("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (") + sqlText(code)
                               + QStringLiteral(", ") + sqlText(QStringLiteral("Aliquota ") + code) + QStringLiteral(", 4)"),
                           kTag);
}

} // namespace

class TestConnections : public QObject
{
    Q_OBJECT

    void use(const QString& backend)
    {
        QVERIFY(testdb::shared(backend, false).isValid());
        db().executeSQL(QStringLiteral("DELETE FROM Iva"), kTag);
    }

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        // A lock held by the test's other workstation is given up on soon.
        driver::setBusyTimeout(1);
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup()
    {
        if (db().inTransaction())
            db().rollbackTrasaction(kTag);
        while (db().getConnectionCount() > 0)
            db().disconnect();
    }

    // Outside a transaction the statement runs again on a new connection:
    // the user sees nothing of the restart.
    void deadConnectionReplaced_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void deadConnectionReplaced()
    {
        QFETCH(QString, backend);
        use(backend);
        ErrorRecorder errors;
        QVERIFY(insertIva(QStringLiteral("A")));
        killIdleConnections(backend);
        QVERIFY(insertIva(QStringLiteral("B")));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 2);
        QVERIFY(db().beginTrasaction(kTag));
        QVERIFY(insertIva(QStringLiteral("C")));
        QVERIFY(db().commitTrasaction(kTag));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 3);
        QCOMPARE(errors.reports.size(), 0);
    }

    // Inside a transaction the work is lost: the statement fails, nothing
    // more runs in it, the rollback tells the user, and the next attempt
    // works.
    void deadConnectionInTransaction_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void deadConnectionInTransaction()
    {
        QFETCH(QString, backend);
        use(backend);
        ErrorRecorder errors;
        ScriptedMsgBox boxes;
        QVERIFY(db().beginTrasaction(kTag));
        QVERIFY(insertIva(QStringLiteral("A")));
        killTransactionConnection(backend);
        QVERIFY(!insertIva(QStringLiteral("B")));
        QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::ConnectionLost));
        QVERIFY(!insertIva(QStringLiteral("C")));
        QVERIFY(!db().commitTrasaction(kTag));
        QCOMPARE(boxes.shown.size(), 0);   // nothing shown while the transaction is open
        boxes.expect(QStringLiteral("La connessione al database si è interrotta"), vb::OK);
        QVERIFY(db().rollbackTrasaction(kTag));
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 0);
        QCOMPARE(db().getConnectionCount(), 0);

        QVERIFY(db().beginTrasaction(kTag));
        QVERIFY(insertIva(QStringLiteral("D")));
        QVERIFY(db().commitTrasaction(kTag));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 1);
        QCOMPARE(testdb::value(QStringLiteral("SELECT CODICE FROM Iva")).toString(), QStringLiteral("D"));
    }

    // Another workstation holds the lock past the wait: the save fails whole
    // with the message of a busy database, shown after the rollback, and
    // works once the other one is done.
    void busyDatabase_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void busyDatabase()
    {
        QFETCH(QString, backend);
        use(backend);
        QVERIFY(insertIva(QStringLiteral("22")));
        const int rid = number(QStringLiteral("SELECT RID FROM Iva"));

        // The other workstation: a connection of its own in a transaction
        // that has written the row.
        DbError error;
        PhysicalConnectionPtr other = driver::acquire(db().TipoServer(), gSession().strConnessione, 10, error);
        QVERIFY(other);
        QVERIFY(other->begin(error));
        QVERIFY(other->execute(QStringLiteral("UPDATE Iva SET VALORE = 21 WHERE RID = ") + QString::number(rid), nullptr, error));

        ErrorRecorder errors;
        ScriptedMsgBox boxes;
        boxes.expect(cAdoSqlServer::busyMessage(), vb::OK);
        // The file database locks the whole file: the wait is at the start.
        const bool begun = db().beginTrasaction(kTag);
        if (begun) {
            QVERIFY(insertIva(QStringLiteral("10")));
            QVERIFY(!db().executeSQL(QStringLiteral("UPDATE Iva SET VALORE = 23 WHERE RID = ") + QString::number(rid), kTag));
            QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::Busy));
            QCOMPARE(boxes.shown.size(), 0);
            QVERIFY(!insertIva(QStringLiteral("5")));   // refused: the transaction is lost
            QVERIFY(db().rollbackTrasaction(kTag));
        } else {
            QVERIFY(backend == QLatin1String("sqlite"));
            QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::Busy));
        }
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 0);
        QVERIFY(other->commit(error));
        driver::release(other);

        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 1);   // nothing half-written
        QVERIFY(db().beginTrasaction(kTag));
        QVERIFY(db().executeSQL(QStringLiteral("UPDATE Iva SET VALORE = 23 WHERE RID = ") + QString::number(rid), kTag));
        QVERIFY(db().commitTrasaction(kTag));
        QCOMPARE(number(QStringLiteral("SELECT VALORE FROM Iva")), 23);
    }

    // The database itself refuses a second row with a unique meaning.
    void uniqueMeanings_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<QString>("insert");
        const QList<QPair<const char*, const char*>> cases{
            {"stock lot", "INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA) VALUES (%1, 1, 5.25, 1)"},
            {"journal number of a year", "INSERT INTO PrimaNota (ANNO, PROGRESSIVO, DESCRIZIONE) VALUES (2026, 7, %1)"},
            {"document counter", "INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (1, 2031, %1)"},
            {"journal year", "INSERT INTO AnniPrimaNota (ANNO) VALUES (203%1)"},
        };
        for (const QString& b : testdb::backends())
            for (const auto& [name, sql] : cases)
                testdb::row(b, QLatin1String(name)) << QString::fromLatin1(sql);
    }
    void uniqueMeanings()
    {
        QFETCH(QString, backend);
        QFETCH(QString, insert);
        QVERIFY(testdb::shared(backend, false).isValid());
        for (const char* table : {"DettagliProdotto", "PrimaNota", "AnniPrimaNota", "Prodotti", "Magazzini"})
            db().executeSQL(QStringLiteral("DELETE FROM ") + QLatin1String(table), kTag);
        db().executeSQL(QStringLiteral("DELETE FROM Contatori WHERE ANNO = 2031"), kTag);
        testdb::run(QStringLiteral("INSERT INTO Magazzini (RID, CODICE) VALUES (1, ¤SEDE¤)"));
        testdb::run(QStringLiteral("INSERT INTO Prodotti (RID, CODICE) VALUES (1, ¤A¤)"));
        testdb::run(insert.arg(1));
        ErrorRecorder errors;
        QVERIFY(!db().executeSQL(insert.arg(1), kTag));
        QCOMPARE(errors.reports.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestConnections)
#include "tst_connections.moc"
