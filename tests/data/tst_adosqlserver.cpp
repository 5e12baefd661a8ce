// cAdoSqlServer on the real back ends: connections, transactions, statements,
// failures and their reports.
#include "apphome.h"
#include "cadosqlserver.h"
#include "italiantext.h"
#include "msgbox.h"
#include "session.h"
#include "sqlliteral.h"
#include "testdb.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

using testdb::ErrorRecorder;
using testdb::ScriptedMsgBox;

class TestAdoSqlServer : public QObject
{
    Q_OBJECT

    cAdoSqlServer& db() { return gAdoSqlServer(); }

    void use(const QString& backend)
    {
        testdb::TestDatabase& t = testdb::shared(backend, false);
        QVERIFY(t.isValid());
        db().executeSQL(QStringLiteral("DELETE FROM Prodotti"), QStringLiteral("test"));
        db().executeSQL(QStringLiteral("DELETE FROM Iva"), QStringLiteral("test"));
        db().executeSQL(QStringLiteral("DELETE FROM Opzioni"), QStringLiteral("test"));
        QCOMPARE(db().getConnectionCount(), 0);
    }

    int insertIva(const QString& code, double value)
    {
        return db().getIDByInsert(QStringLiteral("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (") + sqlText(code)
                                      + QStringLiteral(", ") + sqlText(QStringLiteral("Aliquota ") + code)
                                      + QStringLiteral(", ") + getSqlNumber(value) + QLatin1Char(')'),
                                  QStringLiteral("test.insertIva"), QStringLiteral("RID"), QStringLiteral("Iva"));
    }

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    // A failed check must not leave connections behind for the next test.
    void cleanup()
    {
        while (db().getConnectionCount() > 0)
            db().disconnect();
    }

    void insertReadAndKeys_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void insertReadAndKeys()
    {
        QFETCH(QString, backend);
        use(backend);
        const int first = insertIva(QStringLiteral("22"), 22);
        const int second = insertIva(QStringLiteral("10"), 10);
        QVERIFY(first > 0);
        QCOMPARE(second, first + 1);
        QCOMPARE(db().getConnectionCount(), 0);

        const QVariant value = db().getValueBySQL(QStringLiteral("SELECT VALORE FROM Iva WHERE RID = ") + QString::number(second),
                                                  QStringLiteral("test"));
        QCOMPARE(value.toDouble(), 10.0);
        // No row is Empty; a Null column is a valid, null value.
        const QVariant none = db().getValueBySQL(QStringLiteral("SELECT VALORE FROM Iva WHERE RID = -5"), QStringLiteral("test"));
        QVERIFY(!none.isValid());
        db().executeSQL(QStringLiteral("UPDATE Iva SET DESCRIZIONE = Null WHERE RID = ") + QString::number(first), QStringLiteral("test"));
        const QVariant null = db().getValueBySQL(QStringLiteral("SELECT DESCRIZIONE FROM Iva WHERE RID = ") + QString::number(first),
                                                 QStringLiteral("test"));
        QVERIFY(null.isValid());
        QVERIFY(null.isNull());

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
        rs->close();
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 0);
    }

    void connectionStack_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void connectionStack()
    {
        QFETCH(QString, backend);
        use(backend);
        db().disconnect();   // at count 0: nothing happens
        QCOMPARE(db().getConnectionCount(), 0);
        QVERIFY(db().Connect());
        QVERIFY(db().Connect());
        QCOMPARE(db().getConnectionCount(), 2);
        QCOMPARE(db().ConnectionState(), 1);
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 1);
        // The current connection is not moved back to the earlier one.
        QCOMPARE(db().ConnectionState(), 0);
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 0);
    }

    void transactions_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void transactions()
    {
        QFETCH(QString, backend);
        use(backend);
        const QString tag = QStringLiteral("test.transactions");
        QVERIFY(!db().commitTrasaction(tag));     // nothing open: false, nothing changes
        QVERIFY(!db().rollbackTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 0);

        QVERIFY(db().beginTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 1);
        const int rid = insertIva(QStringLiteral("4"), 4);
        QVERIFY(rid > 0);
        // Readers inside the transaction share its connection and see its rows.
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Iva"), tag).toInt(), 1);
        db().disconnect();   // no effect while the transaction is open
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(db().rollbackTrasaction(tag));
        QCOMPARE(db().getConnectionCount(), 0);
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Iva"), tag).toInt(), 0);

        QVERIFY(db().beginTrasaction(tag));
        insertIva(QStringLiteral("5"), 5);
        insertIva(QStringLiteral("10"), 10);
        QVERIFY(db().commitTrasaction(tag));
        QVERIFY(!db().inTransaction());
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Iva"), tag).toInt(), 2);
    }

    void silentConnect_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void silentConnect()
    {
        QFETCH(QString, backend);
        use(backend);
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
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("Connect -> N/D"));
        QCOMPARE(errors.reports.first().information, QStringLiteral("sStrConnection=") + unreachable);
        QCOMPARE(errors.reports.first().module, QStringLiteral("cAdoSqlServer"));
        gSession().strConnessione = saved;
    }

    // A failed statement is reported once, with the statement, and written to
    // Err.log in the log's layout.
    void failedStatement_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void failedStatement()
    {
        QFETCH(QString, backend);
        use(backend);
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

        QFile log(programFile(QStringLiteral("Err.log")));
        QVERIFY(log.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'));
        QVERIFY(lines.size() >= 14);
        QCOMPARE(lines.at(7), QString(80, QLatin1Char('*')));
        QVERIFY(QRegularExpression(QStringLiteral("^Data   \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d$")).match(lines.at(8)).hasMatch());
        QCOMPARE(lines.at(9), QStringLiteral("Err.N. ") + QString::number(r.number));
        QCOMPARE(lines.at(10), QStringLiteral("Descr. ") + r.description);
        QCOMPARE(lines.at(11), QStringLiteral("Source ") + r.source);
        QCOMPARE(lines.at(12), QStringLiteral("Modulo cAdoSqlServer.executeSQL -> frmTest.saveRecord"));
        QCOMPARE(lines.at(13), QStringLiteral("Avanz. SQL=UPDATE NoTable SET A = 1"));
        // The failed statement's connection stays counted; the next ones work.
        QCOMPARE(db().getConnectionCount(), 2);
        while (db().getConnectionCount() > 0)
            db().disconnect();
        QCOMPARE(insertIva(QStringLiteral("22"), 22) > 0, true);
    }

    // Deleting a referenced row is refused by the back end and shown as the
    // integrity message, not as an error report.
    void integrityRefusal_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void integrityRefusal()
    {
        QFETCH(QString, backend);
        use(backend);
        const int iva = insertIva(QStringLiteral("22"), 22);
        QVERIFY(db().executeSQL(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_Iva) VALUES (¤P1¤, ¤Vite¤, ")
                                    + QString::number(iva) + QLatin1Char(')'),
                                QStringLiteral("test")));
        ErrorRecorder errors;
        {
            ScriptedMsgBox boxes;
            boxes.expect(QStringLiteral("L'operazione non può essere completata nel rispetto dell'integrità dei dati.\r"
                                        "E' probabile che si sta tentando di eliminare un record che risulta vincolato ai "
                                        "dati di una o più tabelle.\r\r[Messaggio Originale]:\r"),
                         vb::OK);
            boxes.expect(QStringLiteral("L'operazione non può essere completata nel rispetto dell'integrità dei dati.\r\r"
                                        "[Messaggio Originale]:\r"),
                         vb::OK);
            QVERIFY(!db().executeSQL(QStringLiteral("DELETE FROM Iva WHERE RID = ") + QString::number(iva), QStringLiteral("frmIva.deleteRecord")));
            QCOMPARE(db().executeSQLWithRA(QStringLiteral("DELETE FROM Iva WHERE RID = ") + QString::number(iva), QStringLiteral("frmIva.deleteRecord")), -1);
            QVERIFY(boxes.allAnswered());
        }
        QVERIFY(errors.reports.isEmpty());
        while (db().getConnectionCount() > 0)
            db().disconnect();
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Iva"), QStringLiteral("test")).toInt(), 1);
    }

    void datesAndServerTime_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void datesAndServerTime()
    {
        QFETCH(QString, backend);
        use(backend);
        const QDateTime server = db().getDataOraServer(QStringLiteral("test"));
        QVERIFY(server.isValid());
        QVERIFY(qAbs(server.secsTo(QDateTime::currentDateTime())) < 120);

        const QDate day(2024, 2, 29);
        const QDateTime moment(QDate(2023, 12, 31), QTime(23, 59, 58));
        QVERIFY(db().executeSQL(QStringLiteral("INSERT INTO Prodotti (CODICE, DATAULTIMOCARICO, DATAULTIMAMODIFICA) VALUES (¤D¤, ")
                                    + db().getSQLDate(day) + QStringLiteral(", ") + db().getSQLDateTime(moment) + QLatin1Char(')'),
                                QStringLiteral("test")));
        RecordsetPtr rs = db().getNewRecordset(QStringLiteral("SELECT DATAULTIMOCARICO, DATAULTIMAMODIFICA FROM Prodotti WHERE DATAULTIMOCARICO = ")
                                                   + db().getSQLDate(day),
                                               QStringLiteral("test"));
        QVERIFY(rs && !rs->eof());
        QCOMPARE(toDate(rs->value(0)), day);
        QCOMPARE(toDateTime(rs->value(1)), moment);
        db().disconnect();
    }

    // The file database runs the functions of its blocks; both back ends give
    // the same result for one statement in the mark-up.
    void dialectBlocks_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void dialectBlocks()
    {
        QFETCH(QString, backend);
        use(backend);
        insertIva(QStringLiteral("22"), 22);
        const QString sql = QStringLiteral(
            "SELECT •A•Format(RID * 0 + 7‡ ¤0000¤) & ¤/¤ & Year(#03/07/2024#)•/A•"
            "•M•CONCAT(LPAD(RID * 0 + 7‡ 4‡ ¤0¤)‡ ¤/¤‡ YEAR(¤2024-03-07¤))•/M•"
            " ¿ K FROM Iva");
        QCOMPARE(db().getValueBySQL(sql, QStringLiteral("test")).toString(), QStringLiteral("0007/2024"));
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT TOP 1 CODICE FROM Iva ORDER BY RID"), QStringLiteral("test")).toString(),
                 QStringLiteral("22"));
    }

    // Registering a screen: the row is added; on these back ends the key
    // cannot be read back without a table name, which is reported.
    void setNewTable_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void setNewTable()
    {
        QFETCH(QString, backend);
        use(backend);
        db().executeSQL(QStringLiteral("DELETE FROM ElencoTabelle"), QStringLiteral("test"));
        ErrorRecorder errors;
        db().setNewTable(QStringLiteral("frmIva"), QStringLiteral("Aliquote IVA"));
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("getIDByInsert -> cAdoSqlServer.setNewTable"));
        QVERIFY(errors.reports.first().information.contains(QStringLiteral("\r\nSQL2=SELECT MAX(ID) FROM ")));
        while (db().getConnectionCount() > 0)
            db().disconnect();
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM ElencoTabelle WHERE RifForm = ¤frmIva¤"), QStringLiteral("t")).toInt(), 1);
        QCOMPARE(db().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM GRUPPOPERMESSI"), QStringLiteral("t")).toInt(), 0);
        // A second registration of the same screen adds nothing.
        db().setNewTable(QStringLiteral("frmIva"), QStringLiteral("Aliquote IVA"));
        QCOMPARE(errors.reports.size(), 1);
        while (db().getConnectionCount() > 0)
            db().disconnect();
    }

    void emptyInsert()
    {
        testdb::shared(QStringLiteral("sqlite"), false);
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
