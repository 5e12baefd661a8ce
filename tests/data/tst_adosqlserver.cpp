// cAdoSqlServer on the real back ends: connections, transactions, statements,
// failures and their reports; random texts come back byte for byte.
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "data/schema.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QRandomGenerator>
#include <QtTest>

using testdb::ErrorRecorder;

namespace {

cAdoSqlServer& db() { return gAdoSqlServer(); }

int insertIva(const QString& code, double value)
{
    const QString sql = "INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (%1, %2, %3)";
    return db().getIDByInsert(sql.arg(sqlText(code), sqlText("Aliquota " + code), getSqlNumber(value)), "test", "RID",
                              "Iva");
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

QString half(char16_t unit) { return QString(QChar(unit)); }

// Pieces the rewriting or the drivers could take for their own, and halves of characters.
const QStringList kTraps =
    QString("' '' ¤ ‡ ¿ • •A• •/A• •M• •/M• •S• •/S• ` \\ \\' \" # #01/02/2024# & FORMAT( @01 ; -- /* "
            "% _ ( ) , àèéìòù € ß 😀 👍🏽 \uE000 \uE101 \uF8FF ? :name")
        .split(' ')
    + QString("\n|\r\n|\t| |SELECT TOP 5 ").split('|')
    + QStringList{half(0xD83D), half(0xDE00), half(0xDE00) + half(0xD83D), half(0xDBFF) + "'"};

qsizetype characters(const QString& text) { return text.toUcs4().size(); }

QString randomText(QRandomGenerator& rng)
{
    QString s;
    for (int pieces = int(rng.bounded(1, 12)); pieces > 0; --pieces) {
        switch (rng.bounded(4)) {
        case 0: s += kTraps.at(int(rng.bounded(qsizetype(kTraps.size())))); break;
        case 1: // printable ASCII
            for (int n = int(rng.bounded(1, 6)); n > 0; --n)
                s += QChar(char16_t(rng.bounded(0x20, 0x7F)));
            break;
        case 2: { // any character of the basic plane but NUL and surrogates
            char16_t c = 0;
            while (c == 0 || QChar::isSurrogate(c) || c >= 0xFFFE)
                c = char16_t(rng.bounded(1, 0x10000));
            s += QChar(c);
            break;
        }
        default: { // beyond the basic plane
            const char32_t c = char32_t(rng.bounded(0x10000, 0x10FFFF));
            s += QString::fromUcs4(&c, 1);
        }
        }
    }
    return s;
}

// Over `length` + 2 characters, many beyond the basic plane, for cuts to fall on.
QString longText(QRandomGenerator& rng, int length)
{
    QString s;
    while (characters(s) < length + 3)
        s += rng.bounded(3) == 0 ? randomText(rng) : QString::fromUtf8(rng.bounded(2) ? "😀" : "𝄞a");
    return s;
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
    void init()
    {
        BackendTest::init();
        testdb::empty({"Prodotti", "Iva"});
        QCOMPARE(db().getConnectionCount(), 0);
    }

    void insertReadAndKeys()
    {
        const int first = insertIva("22", 22), second = insertIva("10", 10);
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
        QCOMPARE(rs->text("CODICE"), "22");
        QCOMPARE(rs->value(2).toDouble(), 23.0);
        QCOMPARE(rs->amount("valore"), Currency::fromUnits(23));
        rs->moveNext();
        QCOMPARE(rs->integer("RID"), qint64(second));
        rs->moveNext();
        QVERIFY(rs->eof());
        db().disconnect();
        db().disconnect(); // at count 0: nothing happens
        QCOMPARE(db().getConnectionCount(), 0);
        // Connections stack; the current one is not moved back to the earlier one.
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
        const QString tag = "test";
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

    // Scoped readers give their connection back, also failed; an uncommitted transaction rolls back.
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
        QCOMPARE(errors.reports.first().procedure, "Connect -> N/D");
        QCOMPARE(errors.reports.first().information, "sStrConnection=" + unreachable);
        QCOMPARE(errors.reports.first().module, "cAdoSqlServer");
    }

    // A failed statement is reported once, as it was sent; its connection is
    // given back, and the next statements work.
    void failedStatement()
    {
        ErrorRecorder errors;
        QString sql = "SELECT NOCOLUMN FROM Iva WHERE CODICE = ¤x¤";
        QVERIFY(!db().getNewRecordset(sql, "frmTest.showData"));
        QCOMPARE(sql, "SELECT NOCOLUMN FROM Iva WHERE CODICE = 'x'"); // rewritten in place
        QVERIFY(!db().executeSQL("UPDATE NoTable SET A = 1", "frmTest.saveRecord"));
        QCOMPARE(errors.reports.size(), 2);
        const ErrorReport& r = errors.reports.at(1);
        QCOMPARE(r.procedure, "executeSQL -> frmTest.saveRecord");
        QCOMPARE(r.information, "SQL=UPDATE NoTable SET A = 1");
        QVERIFY(!r.description.isEmpty());
        QCOMPARE(db().getLastSQLCommand(), "UPDATE NoTable SET A = 1");
        QCOMPARE(db().getConnectionCount(), 0);
        QVERIFY(insertIva("22", 22) > 0);
    }

    // A referenced row's deletion is refused and shown as the integrity message, not reported.
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

    // Boxes and reports wait for the transaction's end, in order; a question
    // takes its default button and is reported as a fault.
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
        QCOMPARE(errors.reports.at(0).procedure, "executeSQL -> test");
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
        const QList<QVariantList> rows =
            testdb::rows("SELECT DATAULTIMOCARICO, DATAULTIMAMODIFICA FROM Prodotti WHERE DATAULTIMOCARICO = "
                         + db().getSQLDate(day));
        QCOMPARE(rows.size(), 1);
        QCOMPARE(toDate(rows.first().at(0)), day);
        QCOMPARE(toDateTime(rows.first().at(1)), moment);
    }

    // Both back ends give the same result for one statement in the mark-up.
    void dialectBlocks()
    {
        insertIva("22", 22);
        const QString sql = "SELECT •A•Format(RID * 0 + 7‡ ¤0000¤) & ¤/¤ & Year(#03/07/2024#)•/A•"
                            "•M•CONCAT(LPAD(RID * 0 + 7‡ 4‡ ¤0¤)‡ ¤/¤‡ YEAR(¤2024-03-07¤))•/M• ¿ K FROM Iva";
        QCOMPARE(testdb::value(sql).toString(), "0007/2024");
        QCOMPARE(testdb::value("SELECT TOP 1 CODICE FROM Iva ORDER BY RID").toString(), "22");
    }

    // Registering a screen adds its row; its key cannot be read back here, which is reported.
    void setNewTable()
    {
        testdb::run("DELETE FROM ElencoTabelle");
        ErrorRecorder errors;
        db().setNewTable("frmIva", "Aliquote IVA");
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, "getIDByInsert -> cAdoSqlServer.setNewTable");
        QVERIFY(errors.reports.first().information.contains("\r\nSQL2=SELECT MAX(ID) FROM "));
        disconnectAll();
        QCOMPARE(testdb::count("ElencoTabelle", "RifForm = ¤frmIva¤"), 1);
        QCOMPARE(testdb::count("GRUPPOPERMESSI"), 0);
        // A second registration adds nothing and gives its connection back.
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
        QCOMPARE(errors.reports.first().source, "TLSOFT::cAdoSqlServer");
        QCOMPARE(errors.reports.first().description, "Testo del Comando SQL non impostato in getIDByInsert");
    }

    // The driver's trace: what the engine received, between its transaction's marks.
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

    // Fields by name in any case, the last of equal names winning, in few columns as in many.
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

    void fuzz()
    {
        testdb::empty({"Opzioni"});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261122);
        constexpr int kCount = 3000;
        // First, half characters before the closing apostrophe, not taken for their other half.
        QStringList values{"Caff" + half(0xD83D), half(0xDE00) + "x", half(0xDE00) + half(0xD83D), "x" + half(0xDBFF)};
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        for (int i = 0; i < kCount; ++i) {
            if (i >= values.size())
                values.append(randomText(rng));
            testdb::run(sqlInsert("Opzioni", {"NOME", "VALORE"}, {sqlText(QString::number(i)), sqlText(values.at(i))}));
        }
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        const QList<QVariantList> back = testdb::rows("SELECT NOME, VALORE FROM Opzioni");
        QCOMPARE(back.size(), kCount);
        for (const QVariantList& row : back)
            QCOMPARE(row.at(1).toString(), testdb::asStored(values.at(row.at(0).toInt())));
        // The same values as look-up keys find their own row, and only it.
        const QString lookUp = "SELECT NOME FROM Opzioni WHERE VALORE = %1 AND NOME = %2";
        for (int i = 0; i < 300; ++i)
            QCOMPARE(testdb::value(lookUp.arg(sqlText(values.at(i)), sqlText(QString::number(i)))).toString(),
                     QString::number(i));
        QVERIFY(errors.reports.isEmpty());
    }

    // leftChars keeps a character across the cut whole or leaves it out; every
    // server takes the result (MariaDB counts characters) and gives it back.
    void cutTexts()
    {
        testdb::empty({"Banche"});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261123);
        QList<schema::Column> columns; // the text columns but the code
        QStringList names{"CODICE"};
        for (const schema::Column& c : schema::findTable("Banche")->columns)
            if (c.kind == schema::ColKind::Text && c.name != names.first()) {
                columns << c;
                names << c.name;
            }
        QVERIFY(columns.size() >= 5);
        constexpr int kRows = 300;
        QList<QStringList> cuts;
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        for (int i = 0; i < kRows; ++i) {
            QStringList values, literals{sqlText(QString("CUT%1").arg(i))};
            for (const schema::Column& c : columns) {
                // Every fourth row puts an emoji exactly across the cut.
                const QString text =
                    i % 4 == 0 ? QString(c.length - 1, 'a') + QString::fromUtf8("😀b") : longText(rng, c.length);
                const QString cut = leftChars(text, c.length);
                QVERIFY(text.startsWith(cut));
                QCOMPARE(characters(cut), qsizetype(c.length));
                values << cut;
                literals << sqlText(cut);
            }
            cuts << values;
            testdb::run(sqlInsert("Banche", names, literals));
        }
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));
        const QList<QVariantList> back = testdb::rows("SELECT " + names.join(", ") + " FROM Banche");
        QCOMPARE(back.size(), kRows);
        for (const QVariantList& row : back)
            for (qsizetype c = 0; c < columns.size(); ++c)
                QCOMPARE(row.at(c + 1).toString(),
                         testdb::asStored(cuts.at(row.at(0).toString().mid(3).toInt()).at(c)));
    }
};

QTEST_GUILESS_MAIN(TestAdoSqlServer)
#include "tst_adosqlserver.moc"
