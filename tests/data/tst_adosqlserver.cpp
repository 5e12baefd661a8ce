// cAdoSqlServer on the real back ends: connections, transactions, statements,
// failures and their reports.
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::ErrorRecorder;

namespace {

cAdoSqlServer& db() { return gAdoSqlServer(); }

int insertIva(const QString& code, double value)
{
    return db().getIDByInsert(QString("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (%1, %2, %3)")
                                  .arg(sqlText(code), sqlText("Aliquota " + code), getSqlNumber(value)),
                              "test.insertIva", "RID", "Iva");
}

// A rate and a product that holds it: the rate cannot be deleted.
QString heldRate()
{
    const QString iva = QString::number(insertIva("22", 22));
    testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_Iva) VALUES (¤P1¤, ¤Vite¤, " + iva + ")");
    return iva;
}

void disconnectAll()
{
    while (db().getConnectionCount() > 0)
        db().disconnect();
}

} // namespace

class TestAdoSqlServer : public testdb::BackendTest
{
    Q_OBJECT

public:
    TestAdoSqlServer()
        : BackendTest(false)
    { }

private Q_SLOTS:
    // Every test starts on emptied tables, with no connection open.
    void init()
    {
        BackendTest::init();
        testdb::empty({"Prodotti", "Iva"});
        QCOMPARE(db().getConnectionCount(), 0);
    }

    void insertReadAndKeys()
    {
        const int first = insertIva("22", 22);
        const int second = insertIva("10", 10);
        QVERIFY(first > 0);
        QCOMPARE(second, first + 1);
        QCOMPARE(db().getConnectionCount(), 0);

        QCOMPARE(testdb::value("SELECT VALORE FROM Iva WHERE RID = " + QString::number(second)).toDouble(), 10.0);
        // No row is Empty; a Null column is a valid, null value.
        QVERIFY(!testdb::value("SELECT VALORE FROM Iva WHERE RID = -5").isValid());
        testdb::run("UPDATE Iva SET DESCRIZIONE = Null WHERE RID = " + QString::number(first));
        const QVariant null = testdb::value("SELECT DESCRIZIONE FROM Iva WHERE RID = " + QString::number(first));
        QVERIFY(null.isValid() && null.isNull());
        QCOMPARE(db().executeSQLWithRA("UPDATE Iva SET VALORE = VALORE + 1", "test"), 2);

        // A reader keeps its connection until the caller disconnects.
        RecordsetPtr rs = db().getNewRecordset("SELECT RID, codice, VALORE FROM Iva ORDER BY RID", "test");
        QVERIFY(rs);
        QCOMPARE(db().getConnectionCount(), 1);
        QCOMPARE(rs->recordCount(), 2);
        QCOMPARE(rs->text("CODICE"), QStringLiteral("22"));
        QCOMPARE(rs->value(2).toDouble(), 23.0);
        QCOMPARE(rs->amount("valore"), Currency::fromUnits(23));
        rs->moveNext();
        QCOMPARE(rs->integer("RID"), qint64(second));
        rs->moveNext();
        QVERIFY(rs->eof());
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 0);

        // Connections stack; the current one is not moved back to the earlier one.
        db().disconnect(); // at count 0: nothing happens
        QCOMPARE(db().getConnectionCount(), 0);
        QVERIFY(db().Connect() && db().Connect());
        QCOMPARE(db().getConnectionCount(), 2);
        QCOMPARE(db().ConnectionState(), 1);
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 1);
        QCOMPARE(db().ConnectionState(), 0);
        db().disconnect();
    }

    void transactions()
    {
        const QString tag = "test.transactions";
        QVERIFY(!db().commitTrasaction(tag)); // nothing open: false, nothing changes
        QVERIFY(!db().rollbackTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 0);

        QVERIFY(db().beginTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(insertIva("4", 4) > 0);
        // Readers inside the transaction share its connection and see its rows.
        QCOMPARE(testdb::count("Iva"), 1);
        db().disconnect(); // no effect while the transaction is open
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(db().rollbackTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 0);
        QCOMPARE(testdb::count("Iva"), 0);

        QVERIFY(db().beginTrasaction(tag));
        insertIva("5", 5);
        insertIva("10", 10);
        QVERIFY(db().commitTrasaction(tag));
        QVERIFY(!db().inTransaction());
        QCOMPARE(testdb::count("Iva"), 2);
    }

    // A reader gives its connection back at the end of its scope, also when
    // its statement failed; a transaction not committed is rolled back.
    void scopedWork()
    {
        {
            const cReader rs("SELECT COUNT(*) FROM Iva", "test");
            QVERIFY(rs);
            QCOMPARE(rs.firstValue().toInt(), 0);
            QCOMPARE(db().getConnectionCount(), 1);
        }
        QCOMPARE(db().getConnectionCount(), 0);
        {
            ErrorRecorder errors;
            const cReader rs("SELECT NOCOLUMN FROM Iva", "test");
            QVERIFY(!rs);
            QCOMPARE(errors.reports.size(), 1);
        }
        QCOMPARE(db().getConnectionCount(), 0);
        {
            cTransaction t("test");
            QVERIFY(t);
            QVERIFY(insertIva("22", 22) > 0);
        }
        QVERIFY(!db().inTransaction());
        QCOMPARE(db().getConnectionCount(), 0);
        QCOMPARE(testdb::count("Iva"), 0);
        {
            cTransaction t("test");
            QVERIFY(insertIva("22", 22) > 0);
            QVERIFY(t.commit());
        }
        QCOMPARE(testdb::count("Iva"), 1);
    }

    void silentConnect()
    {
        const QString unreachable = backend() == "sqlite" ? "Provider=SQLite;Data Source=/nonexistent/Orvantis.db"
                                                          : "Server=127.0.0.1;Port=1;Uid=root;Pwd=;Database=none";
        const QString saved = gSession().strConnessione;
        gSession().strConnessione = unreachable;
        ErrorRecorder errors;
        QVERIFY(!db().Connect("N/D", 5, 0, true));
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(db().getConnectionCount(), 0);

        QVERIFY(!db().Connect("N/D", 5, 0, false));
        gSession().strConnessione = saved;
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("Connect -> N/D"));
        QCOMPARE(errors.reports.first().information, QString("sStrConnection=" + unreachable));
        QCOMPARE(errors.reports.first().module, QStringLiteral("cAdoSqlServer"));
    }

    // A failed statement is reported once, with the statement as it was
    // sent; its connection stays counted, and the next statements work.
    // (That a report reaches Err.log in its layout, tst_errorlog shows.)
    void failedStatement()
    {
        ErrorRecorder errors;
        QString sql = "SELECT NOCOLUMN FROM Iva WHERE CODICE = ¤x¤";
        QVERIFY(!db().getNewRecordset(sql, "frmTest.showData"));
        QCOMPARE(sql, QStringLiteral("SELECT NOCOLUMN FROM Iva WHERE CODICE = 'x'")); // rewritten in place
        QVERIFY(!db().executeSQL("UPDATE NoTable SET A = 1", "frmTest.saveRecord"));
        QCOMPARE(errors.reports.size(), 2);
        const ErrorReport& r = errors.reports.at(1);
        QCOMPARE(r.procedure, QStringLiteral("executeSQL -> frmTest.saveRecord"));
        QCOMPARE(r.information, QStringLiteral("SQL=UPDATE NoTable SET A = 1"));
        QVERIFY(!r.description.isEmpty());
        QCOMPARE(db().getLastSQLCommand(), QStringLiteral("UPDATE NoTable SET A = 1"));
        QCOMPARE(db().getConnectionCount(), 2);
        disconnectAll();
        QVERIFY(insertIva("22", 22) > 0);
    }

    // Deleting a referenced row is refused by the back end and shown as the
    // integrity message, not as an error report.
    void integrityRefusal()
    {
        const QString iva = heldRate();
        ErrorRecorder errors;
        {
            const QString refused = "L'operazione non può essere completata nel rispetto dell'integrità dei dati.\r";
            testdb::ScriptedMsgBox boxes;
            boxes.expect(refused
                             + "E' probabile che si sta tentando di eliminare un record che risulta vincolato ai "
                               "dati di una o più tabelle.\r\r[Messaggio Originale]:\r",
                         vb::OK);
            boxes.expect(refused + "\r[Messaggio Originale]:\r", vb::OK);
            QVERIFY(!db().executeSQL("DELETE FROM Iva WHERE RID = " + iva, "frmIva.deleteRecord"));
            QCOMPARE(db().executeSQLWithRA("DELETE FROM Iva WHERE RID = " + iva, "frmIva.deleteRecord"), -1);
        }
        QVERIFY(errors.reports.isEmpty());
        disconnectAll();
        QCOMPARE(testdb::count("Iva"), 1);
    }

    // No box and no error report opens while a transaction holds its locks:
    // they wait for its end, in order. A question cannot wait: it takes its
    // default button and is reported as a fault.
    void noBoxWhileTransactionOpen()
    {
        const QString iva = heldRate();
        ErrorRecorder errors;
        testdb::ScriptedMsgBox boxes;
        boxes.expect("L'operazione non può essere completata nel rispetto dell'integrità dei dati.", vb::OK);
        {
            cTransaction t("test");
            QVERIFY(!db().executeSQL("DELETE FROM Iva WHERE RID = " + iva, "frmIva.deleteRecord"));
            QVERIFY(!db().executeSQL("UPDATE NoTable SET A = 1", "test"));
            QCOMPARE(msgBox("Continuare?", vb::YesNo | vb::Question | vb::DefaultButton2), vb::No);
            QVERIFY(boxes.shown.isEmpty());
            QVERIFY(errors.reports.isEmpty());
        }
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 2);
        QCOMPARE(errors.reports.at(0).procedure, QStringLiteral("executeSQL -> test"));
        QVERIFY(errors.reports.at(1).description.contains("Continuare?"));
        QCOMPARE(testdb::count("Iva"), 1);
    }

    void datesAndServerTime()
    {
        const QDateTime server = db().getDataOraServer("test");
        QVERIFY(server.isValid());
        QVERIFY(qAbs(server.secsTo(QDateTime::currentDateTime())) < 120);

        const QDate day(2024, 2, 29);
        const QDateTime moment(QDate(2023, 12, 31), QTime(23, 59, 58));
        testdb::run("INSERT INTO Prodotti (CODICE, DATAULTIMOCARICO, DATAULTIMAMODIFICA) VALUES (¤D¤, "
                    + db().getSQLDate(day) + ", " + db().getSQLDateTime(moment) + ")");
        const QList<QVariantList> rows = testdb::rows("SELECT DATAULTIMOCARICO, DATAULTIMAMODIFICA FROM Prodotti "
                                                      "WHERE DATAULTIMOCARICO = "
                                                      + db().getSQLDate(day));
        QCOMPARE(rows.size(), 1);
        QCOMPARE(toDate(rows.first().at(0)), day);
        QCOMPARE(toDateTime(rows.first().at(1)), moment);
    }

    // The file database runs the functions of its blocks; both back ends give
    // the same result for one statement in the mark-up.
    void dialectBlocks()
    {
        insertIva("22", 22);
        const QString sql = "SELECT •A•Format(RID * 0 + 7‡ ¤0000¤) & ¤/¤ & Year(#03/07/2024#)•/A•"
                            "•M•CONCAT(LPAD(RID * 0 + 7‡ 4‡ ¤0¤)‡ ¤/¤‡ YEAR(¤2024-03-07¤))•/M• ¿ K FROM Iva";
        QCOMPARE(testdb::value(sql).toString(), QStringLiteral("0007/2024"));
        QCOMPARE(testdb::value("SELECT TOP 1 CODICE FROM Iva ORDER BY RID").toString(), QStringLiteral("22"));
    }

    // Registering a screen: the row is added; on these back ends the key
    // cannot be read back without a table name, which is reported.
    void setNewTable()
    {
        testdb::run("DELETE FROM ElencoTabelle");
        ErrorRecorder errors;
        db().setNewTable("frmIva", "Aliquote IVA");
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("getIDByInsert -> cAdoSqlServer.setNewTable"));
        QVERIFY(errors.reports.first().information.contains("\r\nSQL2=SELECT MAX(ID) FROM "));
        disconnectAll();
        QCOMPARE(testdb::count("ElencoTabelle", "RifForm = ¤frmIva¤"), 1);
        QCOMPARE(testdb::count("GRUPPOPERMESSI"), 0);
        // A second registration of the same screen adds nothing, and gives
        // back the connection it took.
        db().setNewTable("frmIva", "Aliquote IVA");
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(db().getConnectionCount(), 0);
        disconnectAll();
    }

    void emptyInsert()
    {
        ErrorRecorder errors;
        QCOMPARE(db().getIDByInsert(QString(), "test", "RID", "Iva"), -1);
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().number, qint64(9999));
        QCOMPARE(errors.reports.first().source, QStringLiteral("TLSOFT::cAdoSqlServer"));
        QCOMPARE(errors.reports.first().description, "Testo del Comando SQL non impostato in getIDByInsert");
    }

    // The driver's trace holds what the engine received, between the marks
    // of the transaction it ran in.
    void driverTrace_data()
    {
        QTest::addColumn<bool>("commit");
        QTest::newRow("committed") << true;
        QTest::newRow("rolled back") << false;
    }
    void driverTrace()
    {
        QFETCH(bool, commit);
        static QStringList seen;
        seen.clear();
        driver::setTraceHook([](driver::TraceEvent event, const QString& sql) {
            const char* marks[] = {nullptr, "begin", "commit", "rollback"};
            seen << (event == driver::TraceEvent::Statement ? sql : QString(marks[int(event)]));
        });
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(insertIva("a b", 4) > 0);
        QVERIFY(commit ? db().commitTrasaction("test") : db().rollbackTrasaction("test"));
        QCOMPARE(db().getValueBySQL("SELECT " + db().getSQLDate(QDate(2024, 3, 7)), "test").toString(), "2024-03-07");
        driver::setTraceHook(nullptr);
        QCOMPARE(seen,
                 QStringList({"begin",
                              "INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES ('a b', 'Aliquota a b', 4)",
                              commit ? "commit" : "rollback", "SELECT '2024-03-07'"}));
    }

    // Fields are found by name in any case, the last of equal names winning,
    // in a few columns as in many.
    void fieldsByName_data()
    {
        QTest::addColumn<int>("columns");
        QTest::newRow("few") << 3;
        QTest::newRow("many") << 20;
    }
    void fieldsByName()
    {
        QFETCH(int, columns);
        QStringList fields;
        for (int i = 0; i < columns; ++i)
            fields << QString("%1 AS C%1").arg(i);
        RecordsetPtr rs = db().getNewRecordset("SELECT " + fields.join(", ") + ", 99 AS c1", "test");
        QVERIFY(rs);
        QCOMPARE(rs->fieldCount(), columns + 1);
        QCOMPARE(rs->integer("c0"), 0);
        QCOMPARE(rs->integer("C2"), 2);
        QCOMPARE(rs->integer("C1"), 99);
        QCOMPARE(rs->fieldIndex("c1"), columns);
        QCOMPARE(rs->fieldIndex("C30"), -1);
        QVERIFY(!rs->value("C30").isValid());
        disconnectAll();
    }
};

QTEST_GUILESS_MAIN(TestAdoSqlServer)
#include "tst_adosqlserver.moc"
