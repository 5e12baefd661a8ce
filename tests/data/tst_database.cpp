// cAdoSqlServer on the real back ends: connections, transactions, failures and their reports, several workstations on
// one database, random texts back byte for byte; the model and the databases made from it, also from files that are
// not databases, and SQL Server through ODBC and FreeTDS (live only with a server named in ORVANTIS_TEST_MSSQL).
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "data/modeldatabase.h"
#include "data/modelseed.h"
#include "data/nextnumber.h"
#include "data/schema.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QDir>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

using testdb::ErrorRecorder;
using testdb::ScriptedMsgBox;

namespace {

using testdb::columns;

cAdoSqlServer& db() { return gAdoSqlServer(); }
bool onSqlite() { return testdb::BackendTest::backend() == "sqlite"; }
QString ivaRow(const QString& code, double value)
{
    return sqlInsert("Iva", {"CODICE", "DESCRIZIONE", "VALORE"},
                     {sqlText(code), sqlText("Aliquota " + code), getSqlNumber(value)});
}

int insertIva(const QString& code, double value = 4)
{
    return db().getIDByInsert(ivaRow(code, value), "test", "RID", "Iva");
}

bool addIva(const QString& code) { return db().executeSQL(ivaRow(code, 4), "test"); }
void disconnectAll()
{
    while (db().getConnectionCount() > 0)
        db().disconnect();
}

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
        if (onSqlite())
            c->close();
        else if (c->execute("SELECT CONNECTION_ID()", &q, error) && q.next())
            kill(q.value(0).toLongLong());
    }
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
// Traps, printable ASCII, characters of the basic plane (not NUL, halves or non-characters) and beyond it.
QString randomText(QRandomGenerator& rng)
{
    QString s;
    for (int pieces = int(rng.bounded(1, 12)); pieces > 0; --pieces) {
        const quint32 kind = rng.bounded(4);
        if (kind == 0)
            s += kTraps.at(int(rng.bounded(qsizetype(kTraps.size()))));
        for (int n = kind == 1 ? int(rng.bounded(1, 6)) : 0; n > 0; --n)
            s += QChar(char16_t(rng.bounded(0x20, 0x7F)));
        char32_t c = 0;
        while (kind >= 2 && (c == 0 || QChar::isSurrogate(c) || (c >= 0xFFFE && c < 0x10000)))
            c = char32_t(kind == 2 ? rng.bounded(1, 0x10000) : rng.bounded(0x10000, 0x10FFFF));
        s += c ? QString::fromUcs4(&c, 1) : QString();
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

QByteArray bytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(none)");
}

} // namespace

class TestDatabase : public testdb::BackendTest
{
    Q_OBJECT

public:
    TestDatabase()
        : BackendTest(false)
    { }
private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        testdb::empty({"DettagliProdotto", "Prodotti", "Iva"});
    }

    void insertReadAndKeys()
    {
        const int first = insertIva("22", 22), second = insertIva("10", 10);
        QVERIFY(first > 0);
        QCOMPARE(second, first + 1);
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
        // Connections stack; the current one is not moved back to the earlier one.
        QVERIFY(db().Connect() && db().Connect());
        QCOMPARE(db().getConnectionCount(), 2);
        QCOMPARE(db().ConnectionState(), 1);
        db().disconnect();
        QCOMPARE(db().getConnectionCount(), 1);
        QCOMPARE(db().ConnectionState(), 0);
        db().disconnect();
    }

    // By hand and scoped: readers inside a transaction share its connection, scoped readers give theirs back (also
    // failed), an uncommitted scoped transaction rolls back.
    void transactions()
    {
        QVERIFY(!db().commitTrasaction("test")); // nothing open: false, nothing changes
        QVERIFY(!db().rollbackTrasaction("test"));
        QVERIFY(db().beginTrasaction("test"));
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(insertIva("4") > 0);
        QCOMPARE(testdb::count("Iva"), 1);
        db().disconnect(); // no effect while the transaction is open
        QCOMPARE(db().getConnectionCount(), 1);
        QVERIFY(db().rollbackTrasaction("test"));
        QCOMPARE(testdb::count("Iva"), 0);
        {
            const cReader rs("SELECT COUNT(*) FROM Iva", "test");
            QVERIFY(rs);
            QCOMPARE(rs.firstValue().toInt(), 0);
            QCOMPARE(db().getConnectionCount(), 1);
        }
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
            QVERIFY(insertIva("22") > 0);
        }
        QVERIFY(!db().inTransaction());
        QCOMPARE(testdb::count("Iva"), 0);
        {
            cTransaction t("test");
            QVERIFY(insertIva("5") > 0 && insertIva("10") > 0);
            QVERIFY(t.commit());
        }
        QCOMPARE(testdb::count("Iva"), 2);
    }

    // A connection that fails silently is not reported, otherwise once. A failed statement is reported once, as it
    // was sent; its connection is given back, and the next statements work. An empty insert is refused.
    void failures()
    {
        const QString unreachable = onSqlite() ? "Provider=SQLite;Data Source=/nonexistent/Orvantis.db"
                                               : "Server=127.0.0.1;Port=1;Uid=root;Pwd=;Database=none";
        const QString saved = gSession().strConnessione;
        gSession().strConnessione = unreachable;
        ErrorRecorder errors;
        QVERIFY(!db().Connect("N/D", 5, 0, true));
        QVERIFY(errors.reports.isEmpty());
        QVERIFY(!db().Connect("N/D", 5, 0, false));
        gSession().strConnessione = saved;
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().procedure, "Connect -> N/D");
        QCOMPARE(errors.reports.first().information, "sStrConnection=" + unreachable);
        QCOMPARE(errors.reports.first().module, "cAdoSqlServer");
        QString sql = "SELECT NOCOLUMN FROM Iva WHERE CODICE = ¤x¤";
        QVERIFY(!db().getNewRecordset(sql, "frmTest.showData"));
        QCOMPARE(sql, "SELECT NOCOLUMN FROM Iva WHERE CODICE = 'x'"); // rewritten in place
        QVERIFY(!db().executeSQL("UPDATE NoTable SET A = 1", "frmTest.saveRecord"));
        QCOMPARE(errors.reports.size(), 3);
        const ErrorReport& r = errors.reports.at(2);
        QCOMPARE(r.procedure, "executeSQL -> frmTest.saveRecord");
        QCOMPARE(r.information, "SQL=UPDATE NoTable SET A = 1");
        QVERIFY(!r.description.isEmpty());
        QCOMPARE(db().getLastSQLCommand(), "UPDATE NoTable SET A = 1");
        QVERIFY(insertIva("22", 22) > 0);
        QCOMPARE(db().getIDByInsert(QString(), "test", "RID", "Iva"), -1);
        QCOMPARE(errors.reports.size(), 4);
        QCOMPARE(errors.reports.last().number, qint64(9999));
        QCOMPARE(errors.reports.last().source, "TLSOFT::cAdoSqlServer");
        QCOMPARE(errors.reports.last().description, "Testo del Comando SQL non impostato in getIDByInsert");
    }

    // A referenced row's deletion is refused and shown as the integrity message, not reported. In a transaction boxes
    // and reports wait for its end, in order; a question takes its default button and is reported.
    void integrityRefusal()
    {
        const QString iva = QString::number(insertIva("22", 22)), deletion = "DELETE FROM Iva WHERE RID = " + iva;
        testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_Iva) VALUES (¤P1¤, ¤Vite¤, " + iva + ")");
        const QString refused = "L'operazione non può essere completata nel rispetto dell'integrità dei dati.\r";
        {
            ErrorRecorder errors;
            ScriptedMsgBox boxes;
            boxes.expect(refused
                             + "E' probabile che si sta tentando di eliminare un record che risulta vincolato ai "
                               "dati di una o più tabelle.\r\r[Messaggio Originale]:\r",
                         vb::OK);
            boxes.expect(refused + "\r[Messaggio Originale]:\r", vb::OK);
            QVERIFY(!db().executeSQL(deletion, "frmIva.deleteRecord"));
            QCOMPARE(db().executeSQLWithRA(deletion, "frmIva.deleteRecord"), -1);
            QVERIFY(errors.reports.isEmpty());
        }
        disconnectAll();
        ErrorRecorder errors;
        ScriptedMsgBox boxes;
        boxes.expect(refused, vb::OK);
        {
            cTransaction t("test");
            QVERIFY(!db().executeSQL(deletion, "frmIva.deleteRecord"));
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

    // Dates written and read back the same on both back ends, and so is one statement in the mark-up.
    void datesAndDialect()
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
    }

    // The driver's trace: what the engine received, between its transaction's marks.
    void driverTrace()
    {
        static QStringList seen;
        const QString insert = "INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES ('a b', 'Aliquota a b', 4)";
        driver::setTraceHook([](driver::TraceEvent event, const QString& sql) {
            const char* marks[] = {nullptr, "begin", "commit", "rollback"};
            seen << (event == driver::TraceEvent::Statement ? sql : QString(marks[int(event)]));
        });
        for (const bool commit : {true, false}) {
            seen.clear();
            QVERIFY(db().beginTrasaction("test"));
            QVERIFY(insertIva("a b") > 0);
            QVERIFY(commit ? db().commitTrasaction("test") : db().rollbackTrasaction("test"));
            QCOMPARE(db().getValueBySQL("SELECT " + db().getSQLDate(QDate(2024, 3, 7)), "test").toString(),
                     "2024-03-07");
            QCOMPARE(seen, QStringList({"begin", insert, commit ? "commit" : "rollback", "SELECT '2024-03-07'"}));
        }
        driver::setTraceHook(nullptr);
    }

    // Fields by name in any case, the last of equal names winning, in few columns as in many.
    void fieldsByName()
    {
        for (const int columns : {3, 20}) {
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
    }

    void fuzz()
    {
        testdb::empty({"Opzioni"});
        ErrorRecorder errors;
        QRandomGenerator rng(20261122);
        constexpr int kCount = 3000;
        // First, half characters before the closing apostrophe, not taken for their other half.
        QStringList values{"Caff" + half(0xD83D), half(0xDE00) + "x", half(0xDE00) + half(0xD83D), "x" + half(0xDBFF)};
        QVERIFY(db().beginTrasaction("test"));
        for (int i = 0; i < kCount; ++i) {
            if (i >= values.size())
                values.append(randomText(rng));
            testdb::run(sqlInsert("Opzioni", {"NOME", "VALORE"}, {sqlText(QString::number(i)), sqlText(values.at(i))}));
        }
        QVERIFY(db().commitTrasaction("test"));
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

    // leftChars keeps a character across the cut whole or leaves it out; every server takes the result (MariaDB counts
    // characters) and gives it back.
    void cutTexts()
    {
        testdb::empty({"Banche"});
        ErrorRecorder errors;
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
        QVERIFY(db().beginTrasaction("test"));
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
        QVERIFY(db().commitTrasaction("test"));
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));
        const QList<QVariantList> back = testdb::rows("SELECT " + names.join(", ") + " FROM Banche");
        QCOMPARE(back.size(), kRows);
        for (const QVariantList& row : back)
            for (qsizetype c = 0; c < columns.size(); ++c)
                QCOMPARE(row.at(c + 1).toString(),
                         testdb::asStored(cuts.at(row.at(0).toString().mid(3).toInt()).at(c)));
    }

    // Outside a transaction a statement on a dead connection runs again on a new one, silently. Inside, the work is
    // lost: nothing more runs in it, the rollback tells the user, and the next attempt works.
    void deadConnections()
    {
        ErrorRecorder errors;
        QVERIFY(addIva("A"));
        killIdleConnections();
        QVERIFY(addIva("B"));
        ScriptedMsgBox boxes;
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(addIva("C"));
        if (onSqlite())
            db().getActiveConnection()->physical()->close();
        else
            kill(testdb::number("SELECT CONNECTION_ID()"));
        QVERIFY(!addIva("D"));
        QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::ConnectionLost));
        QVERIFY(!addIva("E"));
        QVERIFY(!db().commitTrasaction("test"));
        QCOMPARE(boxes.shown.size(), 0); // nothing shown while the transaction is open
        boxes.expect("La connessione al database si è interrotta", vb::OK);
        QVERIFY(db().rollbackTrasaction("test"));
        QVERIFY(boxes.allAnswered());
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(addIva("F"));
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(testdb::value("SELECT CODICE FROM Iva WHERE CODICE NOT IN (¤A¤, ¤B¤)").toString(), "F");
        QCOMPARE(testdb::count("Iva"), 3);
        QCOMPARE(errors.reports.size(), 0);
    }

    // Another workstation holds the lock past the wait: the save fails whole, the busy message comes after the
    // rollback, and a later save works.
    void busyDatabase()
    {
        QVERIFY(addIva("22"));
        const QString update =
            "UPDATE Iva SET VALORE = %1 WHERE RID = " + testdb::value("SELECT RID FROM Iva").toString();
        // The other workstation: its own connection, in a transaction that wrote the row.
        testdb::OtherWorkstation other;
        QVERIFY(other.isValid() && other.execute(update.arg(21)));
        ErrorRecorder errors;
        ScriptedMsgBox boxes;
        boxes.expect(cAdoSqlServer::busyMessage(), vb::OK);
        // The file database locks the whole file: the wait is at the start.
        if (db().beginTrasaction("test")) {
            QVERIFY(addIva("10"));
            QVERIFY(!db().executeSQL(update.arg(23), "test"));
            QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::Busy));
            QCOMPARE(boxes.shown.size(), 0);
            QVERIFY(!addIva("5")); // refused: the transaction is lost
            QVERIFY(db().rollbackTrasaction("test"));
        } else {
            QVERIFY(onSqlite());
            QCOMPARE(int(db().lastFailure()), int(cAdoSqlServer::Failure::Busy));
        }
        QVERIFY(boxes.allAnswered());
        QCOMPARE(errors.reports.size(), 0);
        QVERIFY(other.commit());
        QCOMPARE(testdb::count("Iva"), 1); // nothing half-written
        QVERIFY(db().beginTrasaction("test"));
        QVERIFY(db().executeSQL(update.arg(23), "test"));
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(testdb::number("SELECT VALORE FROM Iva"), 23);
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
        testdb::empty({"PrimaNota", "AnniPrimaNota", "Magazzini", "Opzioni"});
        testdb::run("DELETE FROM Contatori WHERE ANNO = 2031");
        testdb::run("INSERT INTO Magazzini (RID, CODICE) VALUES (1, ¤SEDE¤)");
        testdb::run("INSERT INTO Prodotti (RID, CODICE) VALUES (1, ¤A¤)");
        testdb::run(insert);
        ErrorRecorder errors;
        QVERIFY(!db().executeSQL(insert, "test"));
        QCOMPARE(errors.reports.size(), 1);
    }

    // The seeded database: every table can be read, the seed is all there, the version is stored; on the server a
    // second preparation leaves it alone.
    // The first number of an empty table: a second workstation drawing it at
    // the same moment waits for the first to commit (here it gives up busy),
    // then draws the next one. Before, both drew 1 and the second save failed
    // on the unique index.
    void firstNumberTakesTurns()
    {
        testdb::empty({"Rubrica"});
        if (testdb::count("SchemaVersion") == 0)
            testdb::run("INSERT INTO SchemaVersion (VERSIONE) VALUES (1)");
        cAdoSqlServer& db = gAdoSqlServer();
        testdb::OtherWorkstation other;
        QVERIFY(other.isValid());
        // The other workstation draws 1 as nextNumber does, and has not committed yet.
        if (db.TipoServer() == TipoServer::MySql)
            QVERIFY(other.execute("SELECT VERSIONE FROM SchemaVersion FOR UPDATE"));
        QVERIFY(other.execute("INSERT INTO Rubrica (NUMERO, DENOMINAZIONE) VALUES (1, 'Altra postazione')"));
        {
            testdb::ErrorRecorder errors;
            cTransaction transaction(QStringLiteral("test"));
            if (transaction) // the file database waits at the transaction's start already
                QCOMPARE(nextNumber(QStringLiteral("Rubrica"), QStringLiteral("NUMERO"), QStringLiteral("test")), -1);
            QCOMPARE(db.lastFailure(), cAdoSqlServer::Failure::Busy);
        }
        QVERIFY(other.commit());
        cTransaction transaction(QStringLiteral("test"));
        QVERIFY(transaction);
        QCOMPARE(nextNumber(QStringLiteral("Rubrica"), QStringLiteral("NUMERO"), QStringLiteral("test")), 2);
    }

    void seededDatabase()
    {
        QVERIFY(testdb::shared(backend(), true).isValid());
        ErrorRecorder errors;
        for (const schema::Table& t : schema::tables()) {
            RecordsetPtr rs = db().getNewRecordset("SELECT * FROM " + t.name + " WHERE 1 = 0", "test");
            QVERIFY2(rs, qPrintable(t.name));
            QCOMPARE(rs->fieldCount(), int(t.columns.size()));
            db().disconnect();
        }
        for (const schema::SeedTable& seed : schema::seedData())
            QVERIFY2(testdb::count(seed.table) == seed.rows.size(), qPrintable(seed.table));
        QCOMPARE(model::storedSchemaVersion(), schema::schemaVersion());
        QCOMPARE(testdb::value("SELECT VALORE FROM Opzioni WHERE NOME = ¤Amministratore¤").toString(),
                 schema::defaultPassword());
        QVERIFY(errors.reports.isEmpty());
        if (onSqlite())
            return;
        // A server database is prepared once; a second run leaves it alone.
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

    // What is at a file database's path is told without writing to it; neither the driver nor the copy of the model
    // turns it into a database.
    void inspectedFiles_data()
    {
        columns<QString, QByteArray, int, QString>("kind", "content", "state", "says");
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
        FETCH_EACH(QString, kind, says);
        QFETCH(QByteArray, content);
        QFETCH(int, state);
        if (!onSqlite())
            QSKIP("file databases");
        QTemporaryDir dir;
        const QString path = dir.filePath("Ditta.db");
        QString message;
        if (kind == "file") {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
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

    // A model that is not a database of this program is not copied; one left by an earlier release is built again
    // before a new firm is copied from it.
    void modelCopies()
    {
        if (!onSqlite())
            QSKIP("file databases");
        QTemporaryDir dir;
        const QString model = dir.filePath("OModel.db"), firm = dir.filePath("Orvantis.db");
        QVERIFY(QFile(model).open(QIODevice::WriteOnly));
        QString message;
        QVERIFY(!model::ensureFileDatabase(firm, model, &message));
        QVERIFY2(message.contains(model), qPrintable(message));
        QVERIFY(!QFileInfo::exists(firm));
        QCOMPARE(QFileInfo(model).size(), 0);
        QVERIFY(QFile::remove(model) && model::buildModelFile(model, &message));
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

    // FreeTDS is installed: an unreachable server is refused by FreeTDS itself. A live SQL Server, when
    // ORVANTIS_TEST_MSSQL names one: a fresh seeded database, and a text back as it was.
    void sqlServer()
    {
        if (!onSqlite())
            QSKIP("once, on the sqlite row");
        QVERIFY(QSqlDatabase::isDriverAvailable("QODBC"));
        DbError error;
        const QString unreachable = "DRIVER={FreeTDS};SERVER=127.0.0.1;PORT=1;DATABASE=orvantis;UID=sa;PWD=x;"
                                    "TDS_Version=7.4";
        QVERIFY(!driver::acquire(TipoServer::SqlServer, unreachable, 2, error));
        QVERIFY2(error.description.contains("[FreeTDS]"), qPrintable(error.description));
        QCOMPARE(error.source, "SQL Server");
        const QString server = qEnvironmentVariable("ORVANTIS_TEST_MSSQL");
        if (server.isEmpty())
            return;
        const QString connection = server + ";DATABASE=orvantis_test";
        QString message;
        QVERIFY2(model::initServerDatabase(TipoServer::SqlServer, connection, &message), qPrintable(message));
        db().setTipoServer(TipoServer::SqlServer);
        gSession().strConnessione = connection;
        const QString value = QStringLiteral("l'\u00A4\u2021\u00BF`\\ \u00E0 \U0001F600");
        const int id =
            db().getIDByInsert(sqlInsert("Iva", {"CODICE", "DESCRIZIONE", "VALORE"}, {"¤X¤", sqlText(value), "1"}),
                               "test", "RID", "Iva");
        QCOMPARE(testdb::value("SELECT DESCRIZIONE FROM Iva WHERE RID = " + QString::number(id)).toString(), value);
    }
};

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
