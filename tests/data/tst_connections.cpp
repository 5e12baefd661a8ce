// Several workstations on one database: dead connections, locks held by
// another workstation, and the unique meanings the database itself refuses.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QSqlQuery>
#include <QtTest>

using testdb::ErrorRecorder;
using testdb::number;
using testdb::ScriptedMsgBox;

namespace {

cAdoSqlServer& db() { return gAdoSqlServer(); }

// Ends a session of the server as a restart or an administrator would.
void kill(qint64 id) { QVERIFY(testdb::serverAdmin("KILL " + QString::number(id))); }

// Every idle connection of the pool dies (a file database's handle is closed).
void killIdleConnections()
{
    const QList<PhysicalConnectionPtr> idle = driver::idleConnections(db().TipoServer(), gSession().strConnessione);
    QVERIFY(!idle.isEmpty());
    for (const PhysicalConnectionPtr& c : idle) {
        QSqlQuery q;
        DbError error;
        if (testdb::BackendTest::backend() == "sqlite")
            c->close();
        else if (c->execute("SELECT CONNECTION_ID()", &q, error) && q.next())
            kill(q.value(0).toLongLong());
    }
}

bool insertIva(const QString& code)
{
    return db().executeSQL("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (" + sqlText(code) + ", ¤x¤, 4)",
                           "test");
}

} // namespace

class TestConnections : public testdb::BackendTest
{
    Q_OBJECT

public:
    TestConnections()
        : BackendTest(false)
    { }

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        // A lock held by the test's other workstation is given up on soon.
        driver::setBusyTimeout(1);
    }
    void init()
    {
        BackendTest::init();
        testdb::empty({"Iva"});
    }

    // Outside a transaction the statement runs again on a new connection, silently.
    void deadConnectionReplaced()
    {
        ErrorRecorder errors;
        QVERIFY(insertIva("A"));
        killIdleConnections();
        QVERIFY(insertIva("B"));
        QCOMPARE(testdb::count("Iva"), 2);
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(insertIva("C"));
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(testdb::count("Iva"), 3);
        QCOMPARE(errors.reports.size(), 0);
    }

    // Inside a transaction the work is lost: nothing more runs in it, the
    // rollback tells the user, and the next attempt works.
    void deadConnectionInTransaction()
    {
        ErrorRecorder errors;
        ScriptedMsgBox boxes;
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(insertIva("A"));
        if (backend() == "sqlite")
            db().getActiveConnection()->physical()->close();
        else
            kill(number("SELECT CONNECTION_ID()"));
        QVERIFY(!insertIva("B"));
        QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::ConnectionLost));
        QVERIFY(!insertIva("C"));
        QVERIFY(!db().commitTrasaction("test"));
        QCOMPARE(boxes.shown.size(), 0); // nothing shown while the transaction is open
        boxes.expect("La connessione al database si è interrotta", vb::OK);
        QVERIFY(db().rollbackTrasaction("test"));
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 0);
        QCOMPARE(db().getConnectionCount(), 0);
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(insertIva("D"));
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(testdb::value("SELECT CODICE FROM Iva").toString(), QStringLiteral("D"));
        QCOMPARE(testdb::count("Iva"), 1);
    }

    // Another workstation holds the lock past the wait: the save fails whole,
    // the busy message comes after the rollback, and a later save works.
    void busyDatabase()
    {
        QVERIFY(insertIva("22"));
        const QString rid = testdb::value("SELECT RID FROM Iva").toString();
        const QString update = "UPDATE Iva SET VALORE = %1 WHERE RID = " + rid;
        // The other workstation: its own connection, in a transaction that wrote the row.
        DbError error;
        PhysicalConnectionPtr other = driver::acquire(db().TipoServer(), gSession().strConnessione, 10, error);
        QVERIFY(other);
        QVERIFY(other->begin(error));
        QVERIFY(other->execute(update.arg(21), nullptr, error));
        ErrorRecorder errors;
        ScriptedMsgBox boxes;
        boxes.expect(cAdoSqlServer::busyMessage(), vb::OK);
        // The file database locks the whole file: the wait is at the start.
        if (db().beginTrasaction("test")) {
            QVERIFY(insertIva("10"));
            QVERIFY(!db().executeSQL(update.arg(23), "test"));
            QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::Busy));
            QCOMPARE(boxes.shown.size(), 0);
            QVERIFY(!insertIva("5")); // refused: the transaction is lost
            QVERIFY(db().rollbackTrasaction("test"));
        } else {
            QCOMPARE(backend(), QStringLiteral("sqlite"));
            QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::Busy));
        }
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 0);
        QVERIFY(other->commit(error));
        driver::release(other);
        QCOMPARE(testdb::count("Iva"), 1); // nothing half-written
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(db().executeSQL(update.arg(23), "test"));
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(number("SELECT VALORE FROM Iva"), 23);
    }

    // The database itself refuses a second row with a unique meaning.
    void uniqueMeanings_data()
    {
        QTest::addColumn<QString>("insert");
        QTest::newRow("stock lot")
            << "INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA) VALUES (1, 1, 5.25, 1)";
        QTest::newRow("journal number of a year")
            << "INSERT INTO PrimaNota (ANNO, PROGRESSIVO, DESCRIZIONE) VALUES (2026, 7, ¤x¤)";
        QTest::newRow("document counter") << "INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (1, 2031, 1)";
        QTest::newRow("journal year") << "INSERT INTO AnniPrimaNota (ANNO) VALUES (2031)";
        QTest::newRow("option name") << "INSERT INTO Opzioni (NOME, VALORE) VALUES (¤Doppia¤, ¤1¤)";
    }
    void uniqueMeanings()
    {
        QFETCH(QString, insert);
        testdb::empty({"DettagliProdotto", "PrimaNota", "AnniPrimaNota", "Prodotti", "Magazzini", "Opzioni"});
        testdb::run("DELETE FROM Contatori WHERE ANNO = 2031");
        testdb::run("INSERT INTO Magazzini (RID, CODICE) VALUES (1, ¤SEDE¤)");
        testdb::run("INSERT INTO Prodotti (RID, CODICE) VALUES (1, ¤A¤)");
        testdb::run(insert);
        ErrorRecorder errors;
        QVERIFY(!db().executeSQL(insert, "test"));
        QCOMPARE(errors.reports.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestConnections)
#include "tst_connections.moc"
