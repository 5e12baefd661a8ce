// cAdoSqlServer on the real back ends: connections, transactions, statements,
// failures and their reports.
#include "common/apphome.h"
#include "data/cadosqlserver.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QFile>
#include <QtTest>

using testdb::ErrorRecorder;

class TestAdoSqlServer : public QObject
{
    Q_OBJECT

    cAdoSqlServer& db() { return gAdoSqlServer(); }

    // Every test runs on each back end (the global rows), on its emptied tables.
    void use()
    {
        QFETCH_GLOBAL(QString, backend);
        QVERIFY(testdb::shared(backend, false).isValid());
        for (const char* table : {"Prodotti", "Iva"})
            testdb::run(QStringLiteral("DELETE FROM ") + QLatin1String(table));
        QCOMPARE(db().getConnectionCount(), 0);
    }

    int insertIva(const QString& code, double value)
    {
        return db().getIDByInsert(QStringLiteral("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (") + sqlText(code)
                                      + QStringLiteral(", ") + sqlText(QStringLiteral("Aliquota ") + code)
                                      + QStringLiteral(", ") + getSqlNumber(value) + QLatin1Char(')'),
                                  QStringLiteral("test.insertIva"), QStringLiteral("RID"), QStringLiteral("Iva"));
    }

    void disconnectAll()
    {
        while (db().getConnectionCount() > 0)
            db().disconnect();
    }

private Q_SLOTS:
    void initTestCase_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    // A failed check must not leave connections behind for the next test.
    void cleanup() { disconnectAll(); }

    void insertReadAndKeys()
    {
        use();
        const int first = insertIva(QStringLiteral("22"), 22);
        const int second = insertIva(QStringLiteral("10"), 10);
        QVERIFY(first > 0);
        QCOMPARE(second, first + 1);
        QCOMPARE(db().getConnectionCount(), 0);

        QCOMPARE(testdb::value(QStringLiteral("SELECT VALORE FROM Iva WHERE RID = ") + QString::number(second)).toDouble(), 10.0);
        // No row is Empty; a Null column is a valid, null value.
        QVERIFY(!testdb::value(QStringLiteral("SELECT VALORE FROM Iva WHERE RID = -5")).isValid());
        testdb::run(QStringLiteral("UPDATE Iva SET DESCRIZIONE = Null WHERE RID = ") + QString::number(first));
        const QVariant null = testdb::value(QStringLiteral("SELECT DESCRIZIONE FROM Iva WHERE RID = ") + QString::number(first));
        QVERIFY(null.isValid() && null.isNull());
        QCOMPARE(db().executeSQLWithRA(QStringLiteral("UPDATE Iva SET VALORE = VALORE + 1"), QStringLiteral("test")), 2);

        // A reader keeps its connection until the caller disconnects.
        RecordsetPtr rs = db().getNewRecordset(QStringLiteral("SELECT RID, codice, VALORE FROM Iva ORDER BY RID"), QStringLiteral("test"));
        QVERIFY(rs);
        QCOMPARE(db().getConnectionCount(), 1);
        QCOMPARE(rs->recordCount(), 2);
        QCOMPARE(rs->text(QStringLiteral("CODICE")), QStringLiteral("22"));
        QCOMPARE(rs->value(2).toDouble(), 23.0);
        QCOMPARE(rs->amount(QStringLiteral("valore")), Currency::fromUnits(23));
        rs->moveNext();
        QCOMPARE(rs->integer(QStringLiteral("RID")), qint64(second));
        rs->moveNext();
        QVERIFY(rs->eof());
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 0);

        // Connections stack; the current one is not moved back to the earlier one.
        db().disconnect();   // at count 0: nothing happens
        QCOMPARE(db().getConnectionCount(), 0);
        QVERIFY(db().Connect() && db().Connect());
        QCOMPARE(db().getConnectionCount(), 2);
        QCOMPARE(db().ConnectionState(), 1);
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 1);
        QCOMPARE(db().ConnectionState(), 0);
    }

    void transactions()
    {
        use();
        const QString tag = QStringLiteral("test.transactions");
        QVERIFY(!db().commitTrasaction(tag));     // nothing open: false, nothing changes
        QVERIFY(!db().rollbackTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 0);

        QVERIFY(db().beginTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(insertIva(QStringLiteral("4"), 4) > 0);
        // Readers inside the transaction share its connection and see its rows.
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 1);
        db().disconnect();   // no effect while the transaction is open
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(db().rollbackTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 0);
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 0);

        QVERIFY(db().beginTrasaction(tag));
        insertIva(QStringLiteral("5"), 5);
        insertIva(QStringLiteral("10"), 10);
        QVERIFY(db().commitTrasaction(tag));
        QVERIFY(!db().inTransaction());
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 2);
    }

    void silentConnect()
    {
        use();
        QFETCH_GLOBAL(QString, backend);
        const QString unreachable = backend == QLatin1String("sqlite")
            ? QStringLiteral("Provider=SQLite;Data Source=/nonexistent/folder/Orvantis.db")
            : QStringLiteral("Server=127.0.0.1;Port=1;Uid=root;Pwd=;Database=none");
        const QString saved = gSession().strConnessione;
        gSession().strConnessione = unreachable;
        ErrorRecorder errors;
        QVERIFY(!db().Connect(QStringLiteral("N/D"), 5, 0, true));
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(db().getConnectionCount(), 0);

        QVERIFY(!db().Connect(QStringLiteral("N/D"), 5, 0, false));
        gSession().strConnessione = saved;
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("Connect -> N/D"));
        QCOMPARE(errors.reports.first().information, QStringLiteral("sStrConnection=") + unreachable);
        QCOMPARE(errors.reports.first().module, QStringLiteral("cAdoSqlServer"));
    }

    // A failed statement is reported once, with the statement, and written to
    // Err.log in the log's layout.
    void failedStatement()
    {
        use();
        QFile::remove(programFile(QStringLiteral("Err.log")));
        ErrorRecorder errors;
        QString sql = QStringLiteral("SELECT NOCOLUMN FROM Iva WHERE CODICE = ¤x¤");
        QVERIFY(!db().getNewRecordset(sql, QStringLiteral("frmTest.showData")));
        QCOMPARE(sql, QStringLiteral("SELECT NOCOLUMN FROM Iva WHERE CODICE = 'x'"));   // rewritten in place
        QVERIFY(!db().executeSQL(QStringLiteral("UPDATE NoTable SET A = 1"), QStringLiteral("frmTest.saveRecord")));
        QCOMPARE(errors.reports.size(), 2);
        const ErrorReport& r = errors.reports.at(1);
        QCOMPARE(r.procedure, QStringLiteral("executeSQL -> frmTest.saveRecord"));
        QCOMPARE(r.information, QStringLiteral("SQL=UPDATE NoTable SET A = 1"));
        QVERIFY(!r.description.isEmpty());
        QCOMPARE(db().getLastSQLCommand(), QStringLiteral("UPDATE NoTable SET A = 1"));

        // Both are in Err.log (its layout is tst_errorlog's).
        QFile log(programFile(QStringLiteral("Err.log")));
        QVERIFY(log.open(QIODevice::ReadOnly | QIODevice::Text));
        const QString text = QString::fromUtf8(log.readAll());
        QCOMPARE(text.count(QString(80, QLatin1Char('*'))), 2);
        QVERIFY2(text.contains(QStringLiteral("\nErr.N. ") + QString::number(r.number) + QStringLiteral("\nDescr. ") + r.description
                               + QStringLiteral("\nSource ") + r.source
                               + QStringLiteral("\nModulo cAdoSqlServer.executeSQL -> frmTest.saveRecord\nAvanz. SQL=UPDATE NoTable SET A = 1\n")),
                 qPrintable(text));
        // The failed statement's connection stays counted; the next ones work.
        QCOMPARE(db().getConnectionCount(), 2);
        disconnectAll();
        QVERIFY(insertIva(QStringLiteral("22"), 22) > 0);
    }

    // Deleting a referenced row is refused by the back end and shown as the
    // integrity message, not as an error report.
    void integrityRefusal()
    {
        use();
        const QString iva = QString::number(insertIva(QStringLiteral("22"), 22));
        testdb::run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_Iva) VALUES (¤P1¤, ¤Vite¤, ") + iva + QLatin1Char(')'));
        ErrorRecorder errors;
        {
            const QString refused = QStringLiteral("L'operazione non può essere completata nel rispetto dell'integrità dei dati.\r");
            testdb::ScriptedMsgBox boxes;
            boxes.expect(refused + QStringLiteral("E' probabile che si sta tentando di eliminare un record che risulta vincolato ai "
                                                  "dati di una o più tabelle.\r\r[Messaggio Originale]:\r"),
                         vb::OK);
            boxes.expect(refused + QStringLiteral("\r[Messaggio Originale]:\r"), vb::OK);
            QVERIFY(!db().executeSQL(QStringLiteral("DELETE FROM Iva WHERE RID = ") + iva, QStringLiteral("frmIva.deleteRecord")));
            QCOMPARE(db().executeSQLWithRA(QStringLiteral("DELETE FROM Iva WHERE RID = ") + iva, QStringLiteral("frmIva.deleteRecord")), -1);
            QVERIFY(boxes.allAnswered());
        }
        QVERIFY(errors.reports.isEmpty());
        disconnectAll();
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 1);
    }

    // A reader gives its connection back at the end of its scope, also when
    // its statement failed; a transaction not committed is rolled back.
    void scopedWork()
    {
        use();
        {
            const cReader rs(QStringLiteral("SELECT COUNT(*) FROM Iva"), QStringLiteral("test"));
            QVERIFY(rs);
            QCOMPARE(rs.firstValue().toInt(), 0);
            QCOMPARE(db().getConnectionCount(), 1);
        }
        QCOMPARE(db().getConnectionCount(), 0);
        {
            ErrorRecorder errors;
            const cReader rs(QStringLiteral("SELECT NOCOLUMN FROM Iva"), QStringLiteral("test"));
            QVERIFY(!rs);
            QCOMPARE(errors.reports.size(), 1);
        }
        QCOMPARE(db().getConnectionCount(), 0);
        {
            cTransaction t(QStringLiteral("test"));
            QVERIFY(t);
            QVERIFY(insertIva(QStringLiteral("22"), 22) > 0);
        }
        QVERIFY(!db().inTransaction());
        QCOMPARE(db().getConnectionCount(), 0);
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 0);
        {
            cTransaction t(QStringLiteral("test"));
            QVERIFY(insertIva(QStringLiteral("22"), 22) > 0);
            QVERIFY(t.commit());
        }
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 1);
    }

    // No box and no error report opens while a transaction holds its locks:
    // they wait for its end, in order. A question cannot wait: it takes its
    // default button and is reported as a fault.
    void noBoxWhileTransactionOpen()
    {
        use();
        const QString iva = QString::number(insertIva(QStringLiteral("22"), 22));
        testdb::run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_Iva) VALUES (¤P1¤, ¤Vite¤, ") + iva + QLatin1Char(')'));
        ErrorRecorder errors;
        testdb::ScriptedMsgBox boxes;
        boxes.expect(QStringLiteral("L'operazione non può essere completata nel rispetto dell'integrità dei dati."), vb::OK);
        {
            cTransaction t(QStringLiteral("test"));
            QVERIFY(!db().executeSQL(QStringLiteral("DELETE FROM Iva WHERE RID = ") + iva, QStringLiteral("frmIva.deleteRecord")));
            QVERIFY(!db().executeSQL(QStringLiteral("UPDATE NoTable SET A = 1"), QStringLiteral("test")));
            QCOMPARE(msgBox(QStringLiteral("Continuare?"), vb::YesNo | vb::Question | vb::DefaultButton2), vb::No);
            QVERIFY(boxes.shown.isEmpty());
            QVERIFY(errors.reports.isEmpty());
        }
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 2);
        QCOMPARE(errors.reports.at(0).procedure, QStringLiteral("executeSQL -> test"));
        QVERIFY(errors.reports.at(1).description.contains(QStringLiteral("Continuare?")));
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Iva")), 1);
    }

    void datesAndServerTime()
    {
        use();
        const QDateTime server = db().getDataOraServer(QStringLiteral("test"));
        QVERIFY(server.isValid());
        QVERIFY(qAbs(server.secsTo(QDateTime::currentDateTime())) < 120);

        const QDate day(2024, 2, 29);
        const QDateTime moment(QDate(2023, 12, 31), QTime(23, 59, 58));
        testdb::run(QStringLiteral("INSERT INTO Prodotti (CODICE, DATAULTIMOCARICO, DATAULTIMAMODIFICA) VALUES (¤D¤, ")
                    + db().getSQLDate(day) + QStringLiteral(", ") + db().getSQLDateTime(moment) + QLatin1Char(')'));
        const QList<QVariantList> rows = testdb::rows(QStringLiteral("SELECT DATAULTIMOCARICO, DATAULTIMAMODIFICA FROM Prodotti WHERE DATAULTIMOCARICO = ")
                                                      + db().getSQLDate(day));
        QCOMPARE(rows.size(), 1);
        QCOMPARE(toDate(rows.first().at(0)), day);
        QCOMPARE(toDateTime(rows.first().at(1)), moment);
    }

    // The file database runs the functions of its blocks; both back ends give
    // the same result for one statement in the mark-up.
    void dialectBlocks()
    {
        use();
        insertIva(QStringLiteral("22"), 22);
        QCOMPARE(testdb::value(QStringLiteral("SELECT •A•Format(RID * 0 + 7‡ ¤0000¤) & ¤/¤ & Year(#03/07/2024#)•/A•"
                                              "•M•CONCAT(LPAD(RID * 0 + 7‡ 4‡ ¤0¤)‡ ¤/¤‡ YEAR(¤2024-03-07¤))•/M•"
                                              " ¿ K FROM Iva")).toString(),
                 QStringLiteral("0007/2024"));
        QCOMPARE(testdb::value(QStringLiteral("SELECT TOP 1 CODICE FROM Iva ORDER BY RID")).toString(), QStringLiteral("22"));
    }

    // Registering a screen: the row is added; on these back ends the key
    // cannot be read back without a table name, which is reported.
    void setNewTable()
    {
        use();
        testdb::run(QStringLiteral("DELETE FROM ElencoTabelle"));
        ErrorRecorder errors;
        db().setNewTable(QStringLiteral("frmIva"), QStringLiteral("Aliquote IVA"));
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("getIDByInsert -> cAdoSqlServer.setNewTable"));
        QVERIFY(errors.reports.first().information.contains(QStringLiteral("\r\nSQL2=SELECT MAX(ID) FROM ")));
        disconnectAll();
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM ElencoTabelle WHERE RifForm = ¤frmIva¤")), 1);
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM GRUPPOPERMESSI")), 0);
        // A second registration of the same screen adds nothing.
        db().setNewTable(QStringLiteral("frmIva"), QStringLiteral("Aliquote IVA"));
        QCOMPARE(errors.reports.size(), 1);
    }

    void emptyInsert()
    {
        use();
        ErrorRecorder errors;
        QCOMPARE(db().getIDByInsert(QString(), QStringLiteral("test"), QStringLiteral("RID"), QStringLiteral("Iva")), -1);
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().number, qint64(9999));
        QCOMPARE(errors.reports.first().source, QStringLiteral("TLSOFT::cAdoSqlServer"));
        QCOMPARE(errors.reports.first().description, QStringLiteral("Testo del Comando SQL non impostato in getIDByInsert"));
    }
};

QTEST_GUILESS_MAIN(TestAdoSqlServer)
#include "tst_adosqlserver.moc"
