// Without a database: the mark-up rewriting, the literal builders and the protection of text values on the three back
// ends; the table definitions and the seed rows (their DDL runs wherever a test builds a database).
#include "data/driver.h"
#include "data/modelseed.h"
#include "data/schema.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/columns.h"
#include "support/localerows.h"

#include <QDateTime>
#include <QSet>
#include <QtTest>

using namespace schema;

namespace {

using testdb::columns;
const int S = TipoServer::SqlServer, A = TipoServer::FileDb, M = TipoServer::MySql;
const QString kHigh(QChar(char16_t(0xD83D))), kFffd(QChar(QChar::ReplacementCharacter)); // a first half, and U+FFFD
void row(const char* name, int tipo, const QString& sql, const QString& expected, bool fragment = false)
{
    QTest::addRow("%s %d", name, tipo) << tipo << sql << expected << fragment;
}

// The seed rows of a table, each by its columns' names in capitals.
QList<QVariantMap> seed(const QString& table)
{
    QList<QVariantMap> rows;
    for (const SeedTable& t : seedData())
        if (t.table.compare(table, Qt::CaseInsensitive) == 0)
            for (const QVariantList& row : t.rows) {
                QVariantMap& m = rows.emplace_back();
                for (int i = 0; i < t.columns.size(); ++i)
                    m.insert(t.columns.at(i).toUpper(), row.value(i));
            }
    return rows;
}

// The values of a seed column, as text.
QStringList column(const QString& table, const QString& name)
{
    QStringList values;
    for (const QVariantMap& row : seed(table))
        values << row.value(name.toUpper()).toString();
    return values;
}

QString option(const QString& nome)
{
    return column("Opzioni", "VALORE").value(column("Opzioni", "NOME").indexOf(nome));
}

bool isIntegral(const QVariant& v)
{
    const int id = v.typeId();
    return id == QMetaType::Int || id == QMetaType::LongLong || id == QMetaType::UInt || id == QMetaType::ULongLong;
}

} // namespace

class TestSqlText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A statement, or a fragment of one (the blocks and FORMAT alone); no `expected` text: refused.
    void statement_data()
    {
        columns<int, QString, QString, bool>("tipo", "sql", "expected", "fragment");
        // Apostrophes: doubled only when the statement uses the delimiter; "‡" and "¿" on every back end.
        const QString plain = "SELECT * FROM T WHERE A = 'x' AND B = 'y'";
        for (int t : {S, A, M}) {
            row("plain apostrophes", t, plain, plain);
            row("delimited apostrophe", t, "UPDATE T SET A = ¤O'Brien¤ WHERE B = 'k'",
                "UPDATE T SET A = 'O''Brien' WHERE B = ''k''");
            row("comma and as", t, "SELECT A‡ B ¿ C FROM T", "SELECT A, B AS C FROM T");
        }
        // TOP: kept on SQL Server and the file database, moved to LIMIT on MySQL.
        for (int t : {S, A})
            row("top", t, "SELECT TOP 5 A FROM T", "SELECT TOP 5 A FROM T");
        row("top", M, "SELECT TOP 5 A FROM T", "SELECT A FROM T LIMIT 5");
        row("top order", M, "SELECT TOP 10 A, B FROM T ORDER BY A", "SELECT A, B FROM T ORDER BY A LIMIT 10");
        row("top lower case keeps the word", M, "select top 3 a from t", "select a from t top 3");
        row("top only first", M, "SELECT TOP 1 A FROM (SELECT TOP 2 B FROM T) X",
            "SELECT A FROM (SELECT TOP 2 B FROM T) X LIMIT 1");
        // Blocks: the foreign ones go, the own one loses its marks.
        row("three spellings", S,
            "SELECT •A•Format(P‡ \"00000\")•/A••M•CONCAT(P)•/M••S•CAST(P AS Varchar(20))•/S• AS K FROM T",
            "SELECT CAST(P AS Varchar(20)) AS K FROM T");
        row("repeated block removed twice", M, "SELECT •S•X•/S• A, •S•X•/S• B", "SELECT  A,  B");
        row("different second block stays", M, "SELECT •S•X•/S• A, •S•Y•/S• B", "SELECT  A, •S•Y•/S• B");
        row("opening mark alone", A, "SELECT •A•X FROM T", "SELECT X FROM T");
        for (int t : {M, S})
            row("opening mark alone", t, "SELECT •A•X FROM T", "SELECT •A•X FROM T");
        row("marks found in any case", M, "SELECT 1•s•, 2•/s• FROM T", "SELECT 1 FROM T");
        // Backticks only on SQL Server; the old FORMAT( treatment on MySQL.
        row("backtick", S, "SELECT `NOTE` FROM T", "SELECT \"NOTE\" FROM T");
        for (int t : {M, A})
            row("backtick", t, "SELECT `NOTE` FROM T", "SELECT `NOTE` FROM T");
        row("format", M, "SELECT FORMAT(X, 'yyyy') FROM T", "SELECT FX FROM T");
        row("format untouched", A, "SELECT FORMAT(X, 'yy') FROM T", "SELECT FORMAT(X, 'yy') FROM T");
        row("unknown back end", 7, "SELECT TOP 1 •A•X•/A•‡ `Y`", "SELECT TOP 1 •A•X•/A•, `Y`");
        row("top without anything after the number", M, "SELECT TOP 5", "");
        row("format without comma", M, "SELECT FORMAT(X) FROM T", "");
        row("closing mark before opening", M, "SELECT •/A• X •A• FROM T", "");
        const QString f = "•A•Year(D)•/A••M•YEAR(D)•/M••S•DATEPART(yy‡ D)•/S• ¿ Y, 'x', `N`, TOP 1";
        row("fragment blocks", A, f, "Year(D) ¿ Y, 'x', `N`, TOP 1", true);
        row("fragment blocks", M, f, "YEAR(D) ¿ Y, 'x', `N`, TOP 1", true);
        row("fragment blocks", S, f, "DATEPART(yy‡ D) ¿ Y, 'x', `N`, TOP 1", true);
        row("fragment format", M, "FORMAT(X, 'yyyy')", "FX", true);
        row("fragment delimiter untouched", A, "A = ¤x¤", "A = ¤x¤", true);
    }

    void statement()
    {
        QFETCH(int, tipo);
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QFETCH(bool, fragment);
        const DialectResult r = fragment ? rewriteFragment(sql, tipo) : rewriteStatement(sql, tipo);
        QCOMPARE(r.ok, !expected.isEmpty());
        QCOMPARE(r.text, expected);
    }

    void withoutSP() { QCOMPARE(getPartSQLWithoutSP("A‡ B‡C ¿ D"), "A, B,C ¿ D"); }
    void numbers_data()
    {
        columns<QString, QVariant, QString>("locale", "value", "number");
        const auto row = [](const char* name, const QVariant& v, const char* n) { addRows(name, v, QString(n)); };
        row("dot decimal", QString("12.5"), "12.5");
        row("comma decimal", QString("12,5"), "12.5");
        row("thousands and comma", QString("1.234,50"), "1234.5");
        row("dot alone stays decimal", QString("1.234"), "1.234");
        row("empty", QString(""), "Null");
        row("letters", QString("abc"), "Null");
        row("negative", QString("-3,75"), "-3.75");
        row("null", QVariant(), "Null");
        row("double", 0.1 + 0.2, "0.3");
        row("integer", 42, "42");
        row("two commas", QString("1,2,3"), "Null");
        // Written from their digits up to eleven of them and four decimals, beyond by fifteen significant digits.
        row("four decimals", QString("0,0001"), "0.0001");
        row("five decimals", 0.00005, "5e-05");
        row("negative fraction", -0.5, "-0.5");
        row("widest with decimals", 99999999999.9999, "99999999999.9999");
        row("twelve digits", 100000000000.0, "100000000000");
        row("a third", 1.0 / 3, "0.333333333333333");
        row("large", 1e15, "1e+15");
    }

    void numbers()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QString, number);
        QCOMPARE(getSqlNumber(value), number);
        QCOMPARE(getSqlNumberOrZero(value), number == "Null" ? "0" : number);
    }

    void dates_data()
    {
        columns<int, QVariant, QStringList>("tipo", "value", "expected"); // date, date-time, time
        const auto row = [](const char* name, int tipo, const QVariant& v, const char* date, const char* dateTime,
                            const char* time) {
            QTest::newRow(name) << tipo << v << QStringList{date, dateTime, time};
        };
        const QVariant when = QDateTime(QDate(2024, 3, 7), QTime(9, 5, 4)), day = QDate(2024, 3, 7);
        row("S", S, when, "{ d ¤2024-03-07¤ }", "¤2024-03-07 09:05:04¤", "{ t ¤09:05:04¤ }");
        row("A", A, when, "#03/07/2024#", "#03/07/2024 09:05:04#", "#09:05:04#");
        row("M", M, when, "¤2024-03-07¤", "¤2024-03-07 09:05:04¤", "¤09:05:04¤");
        row("italian text", M, "07/03/2024", "¤2024-03-07¤", "¤2024-03-07 00:00:00¤", "¤00:00:00¤");
        // A date alone is its midnight, as a date-time and as a time.
        row("date alone M", M, day, "¤2024-03-07¤", "¤2024-03-07 00:00:00¤", "¤00:00:00¤");
        row("ISO date text", S, "2024-03-07", "{ d ¤2024-03-07¤ }", "¤2024-03-07 00:00:00¤", "{ t ¤00:00:00¤ }");
        row("date text as bytes", A, QByteArray("07/03/2024"), "#03/07/2024#", "#03/07/2024 00:00:00#", "#00:00:00#");
        const QStringList null{"Null", "Null", "Null"};
        for (int t : {S, A, M}) {
            QTest::addRow("invalid date %d", t) << t << QVariant(QDate()) << null;
            QTest::addRow("empty %d", t) << t << QVariant(QString()) << null;
            QTest::addRow("not a date %d", t) << t << QVariant("31/02/2024") << null;
            QTest::addRow("null %d", t) << t << QVariant() << null;
        }
        row("unknown back end", 5, when, "", "", "");
    }

    void dates()
    {
        QFETCH(int, tipo);
        QFETCH(QVariant, value);
        QFETCH(QStringList, expected);
        QCOMPARE(QStringList({sqlDateFor(value, tipo), sqlDateTimeFor(value, tipo), sqlTimeFor(value, tipo)}),
                 expected);
    }

    // A text value survives the whole rewrite on every back end: what reaches the driver is the value between
    // apostrophes, its apostrophes doubled.
    void protectedValues_data()
    {
        columns<QString, QString>("value", "sentValue"); // the value as the engine receives it
        const auto same = [](const char* name, const QString& value) { QTest::newRow(name) << value << value; };
        same("apostrophe", "l'albero");
        same("delimiter", "10 ¤ al kg");
        same("mark-up characters", "a‡b¿c•A•d•/A•e•M•f•/M•");
        same("backticks and backslash", "`x` C:\\dir\\");
        same("top clause", "SELECT TOP 5 righe");
        same("format call", "FORMAT(x, 'yyyy')");
        same("date literal shape", "#01/02/2024# & #12/31/1999 10:00:00#");
        same("private use", QString::fromUtf16(u"\uE000\uE101\uE1FF\uF8FF"));
        same("lines and emoji", "riga 1\r\nriga 2\tà è ì ò ù € 😀");
        same("placeholder", "@01 SET NOCOUNT OFF");
        // Half a character is sent as U+FFFD; the apostrophe after it still closes.
        const QString low(QChar(char16_t(0xDE00)));
        QTest::newRow("first half at the end") << "Caff" + kHigh << "Caff" + kFffd;
        QTest::newRow("second half alone") << low + "x" << kFffd + "x";
        QTest::newRow("halves reversed") << low + kHigh << kFffd + kFffd;
        QTest::newRow("first half before a protected character")
            << kHigh + "¤" + kHigh + " " << kFffd + "¤" + kFffd + " ";
        QTest::newRow("first half before a private-use character")
            << kHigh + QChar(char16_t(0xE000)) << kFffd + QChar(char16_t(0xE000));
    }

    void protectedValues()
    {
        QFETCH(QString, value);
        QFETCH(QString, sentValue);
        const QString doubled = QString(sentValue).replace("'", "''");
        for (int t : {S, A, M}) {
            const DialectResult r = rewriteStatement("SELECT TOP 1 " + sqlText(value) + " FROM T", t);
            QVERIFY(r.ok);
            const QString sent = driver::finalSql(r.text, t);
            QVERIFY2(sent.contains("'" + doubled + "'"), qPrintable(sent));
            QVERIFY2(sent.endsWith(" FROM T") || sent.endsWith(" FROM T LIMIT 1"), qPrintable(sent));
        }
    }

    // Half a character in a statement written by hand: the driver mends it too.
    void halfCharacterOutsideValues()
    {
        for (int t : {A, M}) {
            QCOMPARE(driver::finalSql("SELECT 'a" + kHigh + "' FROM T", t), "SELECT 'a" + kFffd + "' FROM T");
            QCOMPARE(driver::finalSql("SELECT '😀'", t), "SELECT '😀'");
        }
    }

    // The file database's literals and TOP, for SQLite; MySQL's statement goes as it is.
    void fileDbLiterals_data()
    {
        columns<QString, QString>("sql", "expected");
        const auto row = [](const char* name, const char* sql, const char* e) { QTest::newRow(name) << sql << e; };
        row("date", "WHERE D = #03/07/2024#", "WHERE D = '2024-03-07'");
        row("date time", "WHERE D >= #3/7/2024 9:05:04#", "WHERE D >= '2024-03-07 09:05:04'");
        row("time", "SET T = #9:05:04#, U = #00:00:00#", "SET T = '09:05:04', U = '00:00:00'");
        row("inside quotes untouched", "WHERE N = '#03/07/2024#'", "WHERE N = '#03/07/2024#'");
        row("concatenation", "SELECT A & 'x&y' & B", "SELECT A || 'x&y' || B");
        row("not a date", "WHERE N = #abc#", "WHERE N = #abc#");
        row("top", "SELECT TOP 5 A FROM T ORDER BY A", "SELECT A FROM T ORDER BY A LIMIT 5");
        row("top in a sub-select", "SELECT X FROM (SELECT TOP 2 B FROM T ORDER BY B) Q WHERE X > 'a)'",
            "SELECT X FROM (SELECT B FROM T ORDER BY B LIMIT 2) Q WHERE X > 'a)'");
        row("top distinct", "select distinct top 1 A from T", "SELECT distinct A from T LIMIT 1");
        row("top quoted", "SELECT 'SELECT TOP 1 ' FROM T", "SELECT 'SELECT TOP 1 ' FROM T");
        row("top after tabs", "SELECT\tTOP\t3\tA FROM T", "SELECT A FROM T LIMIT 3");
        row("top of both selects", "SELECT TOP 1 A FROM (SELECT TOP 2 B FROM T) Q",
            "SELECT A FROM (SELECT B FROM T LIMIT 2) Q LIMIT 1");
        row("select inside a word", "SELECT XSELECT TOP 1 A", "SELECT XSELECT TOP 1 A");
        row("date time without seconds", "WHERE D = #1/2/2024  10:30#", "WHERE D = '2024-01-02 10:30:00'");
        row("blanks inside the marks", "WHERE D = # 03/07/2024 #", "WHERE D = '2024-03-07'");
        row("five-digit year", "WHERE D = #1/2/20245#", "WHERE D = #1/2/20245#");
        row("three-digit day", "WHERE D = #1/123/2024#", "WHERE D = #1/123/2024#");
    }

    void fileDbLiterals()
    {
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QCOMPARE(driver::finalSql(sql, A), expected);
        QCOMPARE(driver::finalSql(sql, M), sql);
    }

    // The key is RID and first; a text has a length; a reference names a keyed table defined before it; look-up and
    // reference columns lead an index.
    void tableDefinition_data()
    {
        QTest::addColumn<int>("position");
        for (int i = 0; i < tables().size(); ++i)
            QTest::newRow(qPrintable(tables().at(i).name)) << i;
    }

    void tableDefinition()
    {
        QFETCH(int, position);
        const Table& t = tables().at(position);
        QCOMPARE(findTable(t.name.toLower()), &t);
        QVERIFY(!t.columns.isEmpty());
        const auto indexed = [&t](const QString& column) {
            return std::any_of(t.indexes.begin(), t.indexes.end(), [&](const Index& ix) {
                return ix.columns.value(0).compare(column, Qt::CaseInsensitive) == 0;
            });
        };
        for (int i = 0; i < t.columns.size(); ++i) {
            const Column& c = t.columns.at(i);
            if (c.kind == ColKind::Key || c.name.compare("RID", Qt::CaseInsensitive) == 0)
                QVERIFY2(i == 0 && c.kind == ColKind::Key, qPrintable(c.name));
            QCOMPARE(c.length > 0, c.kind == ColKind::Text);
            if (c.kind == ColKind::Ref || c.name.compare("CODICE", Qt::CaseInsensitive) == 0)
                QVERIFY2(indexed(c.name), qPrintable(c.name + " leads no index"));
            if (!c.refTable.isEmpty()) {
                QCOMPARE(c.kind, ColKind::Ref);
                const Table* target = findTable(c.refTable);
                QVERIFY2(target && target->hasKey() && target <= &t, qPrintable(c.name + " -> " + c.refTable));
            }
        }
    }

    // Every seed value has the type its column's kind is read as; keys are given.
    void seedTable_data()
    {
        QTest::addColumn<int>("position");
        for (int i = 0; i < seedData().size(); ++i)
            QTest::newRow(qPrintable(seedData().at(i).table)) << i;
    }

    void seedTable()
    {
        QFETCH(int, position);
        const SeedTable& s = seedData().at(position);
        const Table* t = findTable(s.table);
        QVERIFY2(t && !s.rows.isEmpty(), qPrintable(s.table));
        if (t->hasKey())
            QVERIFY2(s.columns.contains(t->columns.first().name, Qt::CaseInsensitive), "keys are given explicitly");
        for (const QVariantList& row : s.rows) {
            for (int i = 0; i < row.size(); ++i) {
                const Column* c = nullptr;
                for (const Column& column : t->columns)
                    c = column.name.compare(s.columns.value(i), Qt::CaseInsensitive) == 0 ? &column : c;
                QVERIFY2(c, qPrintable(s.table + '.' + s.columns.value(i)));
                const QVariant& v = row.at(i);
                bool fits = false;
                switch (c->kind) {
                case ColKind::Key:
                case ColKind::Ref: fits = isIntegral(v) && v.toInt() > 0; break;
                case ColKind::Flag: fits = isIntegral(v) && v.toInt() >= -1 && v.toInt() <= 1; break;
                case ColKind::Int: fits = isIntegral(v); break;
                case ColKind::Text:
                case ColKind::Memo: fits = v.typeId() == QMetaType::QString; break;
                case ColKind::Amount:
                case ColKind::Quantity:
                case ColKind::Percent:
                case ColKind::Number: fits = v.typeId() == QMetaType::Double; break;
                case ColKind::Date: fits = v.typeId() == QMetaType::QDate; break;
                case ColKind::DateTime: fits = v.typeId() == QMetaType::QDateTime; break;
                }
                // A Null fits any column but the key.
                QVERIFY2(fits || (v.isNull() && c->kind != ColKind::Key),
                         qPrintable(s.table + '.' + c->name + " = " + v.toString()));
            }
        }
    }

    // An option that names a row ("=Table") names a seeded one, or none (0).
    void options()
    {
        const QStringList seeded = column("Opzioni", "NOME");
        for (const QString& o :
             QString("IvaPredRigaLibera=Iva CatPrezziNetti=CategorieSconti ClientePredefinito=Anagrafiche "
                     "TipoDocVb=TipoDocumenti CausalePagVb=Causali ContoClienti=PianoConti ContoFornitori=PianoConti "
                     "GruppoPredefinito=Gruppi GruppoProdInteg=Gruppi GruppoProdCL=Gruppi Marca=Marche "
                     "Fornitore=Anagrafiche TipoDocProd=TipoDocumenti DocConversione=TipoDocumenti "
                     "DocConversioneDDT=TipoDocumenti PagamentoVB=Pagamenti RidIvaProdotti=Iva "
                     "RidUMProdotti=UnitaMisura RidMarcaProdotti=Marche RidCollezioneProdotti=Collezioni "
                     "NumeratoreElencoSpeciale=Numeratori")
                 .split(' ')) {
            const QString nome = o.section('=', 0, 0);
            bool numeric = false;
            const int key = option(nome).toInt(&numeric);
            QVERIFY2(seeded.count(nome) == 1 && numeric
                         && (key == 0 || column(o.section('=', 1), "RID").contains(QString::number(key))),
                     qPrintable(nome + ' ' + option(nome)));
        }
        // The free-row character is the one statements write; the kit one differs.
        QCOMPARE(option("RigaLibera"), "/");
        QCOMPARE(option("DistintaBase").size(), 1);
        QVERIFY(option("DistintaBase") != option("RigaLibera"));
        QVERIFY(defaultPassword().size() >= 8); // what the password change demands
    }

    // SQL Server's DDL, which no test runs here: every table, identities, foreign keys.
    void sqlServerDdl()
    {
        const QStringList ddl = createStatements(TipoServer::SqlServer);
        for (const Table& t : tables())
            QVERIFY2(ddl.filter("CREATE TABLE [" + t.name + ']').size() == 1, qPrintable(t.name));
        QVERIFY(ddl.filter("IDENTITY(1,1)").size() > 10);
        QVERIFY(ddl.filter("FOREIGN KEY").size() > 10);
    }

    // The chart is a tree of 2, 5 and 8 characters; the control accounts are sub-accounts the invoice and purchase
    // causals post on.
    void chartOfAccounts()
    {
        const QStringList codes = column("PianoConti", "CODICE"), rids = column("PianoConti", "RID");
        for (const QString& code : codes) {
            QVERIFY2(code.size() == 2 || code.size() == 5 || code.size() == 8, qPrintable(code));
            QVERIFY2(codes.contains(code.left(2)) && codes.contains(code.left(qMin(code.size(), 5))), qPrintable(code));
        }
        const QStringList posted = column("Causali", "FK_CONTODARE1") + column("Causali", "FK_ContoAvere1");
        for (const char* o : {"ContoClienti", "ContoFornitori"}) {
            QCOMPARE(codes.value(rids.indexOf(option(o))).size(), 8);
            QVERIFY2(posted.contains(option(o)), o);
        }
    }

    // Instalments as many as NRATE; their shares plus the down payment make 100.
    void paymentTerms()
    {
        for (const QVariantMap& p : seed("Pagamenti")) {
            int count = 0;
            qint64 cents = qRound64(p.value("ACCONTO").toDouble() * 100);
            for (const QVariantMap& r : seed("DettagliPagamenti"))
                if (r.value("FK_PAGAMENTO").toInt() == p.value("RID").toInt()) {
                    ++count;
                    cents += qRound64(r.value("PERCENTUALE").toDouble() * 100);
                }
            QCOMPARE(count, p.value("NRATE").toInt());
            QCOMPARE(cents, qint64(10000));
        }
    }

    // A document type has a document report and a numerator counting this year; causal flags are -1 or 0, a warehouse
    // only for a movement of kind 3.
    void documentTypes()
    {
        QSet<QString> documentReports, countedThisYear;
        for (const QVariantMap& r : seed("FunzionalitaReport"))
            if (r.value("FUNZIONALITA").toInt() == 1)
                documentReports.insert(r.value("REPORT").toString());
        for (const QVariantMap& c : seed("Contatori"))
            if (c.value("ANNO").toString() == option("AnnoCorrente"))
                countedThisYear.insert(c.value("FK_NUMERATORE").toString());
        for (const QVariantMap& td : seed("TipoDocumenti")) {
            const QByteArray codice = td.value("CODICE").toString().toUtf8();
            QVERIFY2(documentReports.contains(td.value("REPORT").toString()), codice);
            QVERIFY2(countedThisYear.contains(td.value("NCONTATORE").toString()), codice);
        }
        for (const QVariantMap& c : seed("Causali")) {
            const QString codice = c.value("CODICE").toString();
            for (const char* b : {"OPERAZIONE", "GENERAPN", "GENERASCAD", "SCADENZENEGATIVE", "TAGLIO"})
                QVERIFY2(c.value(b).toInt() == -1 || c.value(b).toInt() == 0, qPrintable(codice + ' ' + b));
            if (c.value("GENERASCAD").toInt() == 0)
                QCOMPARE(c.value("SCADENZENEGATIVE").toInt(), 0);
            for (const auto& [kind, warehouse] :
                 {std::pair{"ORIGINE", "FK_MAGAZZINOORIG"}, {"DESTINAZIONE", "FK_MAGAZZINODEST"}}) {
                QVERIFY2(c.value(kind).toInt() >= 0 && c.value(kind).toInt() <= 3, qPrintable(codice));
                if (c.value(kind).toInt() != 3)
                    QVERIFY2(c.value(warehouse).isNull(), qPrintable(codice + ' ' + warehouse));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestSqlText)
#include "tst_sqltext.moc"
