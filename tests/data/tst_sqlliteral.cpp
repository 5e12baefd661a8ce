// The mark-up rewriting, the literal builders and the protection of text
// values, as text, on the three back ends.
#include "data/driver.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/localerows.h"

#include <QDateTime>
#include <QLocale>
#include <QtTest>

namespace {
const int S = TipoServer::SqlServer, A = TipoServer::FileDb, M = TipoServer::MySql;

void row(const char* name, int tipo, const QString& sql, const QString& expected)
{
    QTest::addRow("%s %d", name, tipo) << tipo << sql << expected;
}
} // namespace

class TestSqlLiteral : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statement_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        // Apostrophes: doubled only when the statement uses the delimiter;
        // "‡" and "¿" on every back end.
        const QString plain = "SELECT * FROM T WHERE A = 'x' AND B = 'y'";
        for (int t : {S, A, M}) {
            row("plain apostrophes", t, plain, plain);
            row("delimited apostrophe", t, "UPDATE T SET A = ¤O'Brien¤ WHERE B = 'k'",
                "UPDATE T SET A = 'O''Brien' WHERE B = ''k''");
            row("comma and as", t, "SELECT A‡ B ¿ C FROM T", "SELECT A, B AS C FROM T");
        }
        // TOP: kept on SQL Server and the file database, moved to LIMIT on MySQL.
        row("top", S, "SELECT TOP 5 A FROM T", "SELECT TOP 5 A FROM T");
        row("top", A, "SELECT TOP 5 A FROM T", "SELECT TOP 5 A FROM T");
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
        row("opening mark alone", M, "SELECT •A•X FROM T", "SELECT •A•X FROM T");
        row("opening mark alone", S, "SELECT •A•X FROM T", "SELECT •A•X FROM T");
        row("marks found in any case", M, "SELECT 1•s•, 2•/s• FROM T", "SELECT 1 FROM T");
        // Backticks only on SQL Server; the old FORMAT( treatment on MySQL.
        row("backtick", S, "SELECT `NOTE` FROM T", "SELECT \"NOTE\" FROM T");
        row("backtick", M, "SELECT `NOTE` FROM T", "SELECT `NOTE` FROM T");
        row("backtick", A, "SELECT `NOTE` FROM T", "SELECT `NOTE` FROM T");
        row("format", M, "SELECT FORMAT(X, 'yyyy') FROM T", "SELECT FX FROM T");
        row("format untouched", A, "SELECT FORMAT(X, 'yy') FROM T", "SELECT FORMAT(X, 'yy') FROM T");
        // An unknown back end only gets the common steps.
        row("unknown back end", 7, "SELECT TOP 1 •A•X•/A•‡ `Y`", "SELECT TOP 1 •A•X•/A•, `Y`");
        // Refused, with no text.
        row("top without anything after the number", M, "SELECT TOP 5", "");
        row("format without comma", M, "SELECT FORMAT(X) FROM T", "");
        row("closing mark before opening", M, "SELECT •/A• X •A• FROM T", "");
    }
    void statement()
    {
        QFETCH(int, tipo);
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        const DialectResult r = rewriteStatement(sql, tipo);
        QCOMPARE(r.ok, !expected.isEmpty());
        QCOMPARE(r.text, expected);
    }

    void fragment_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        const QString f = "•A•Year(D)•/A••M•YEAR(D)•/M••S•DATEPART(yy‡ D)•/S• ¿ Y, 'x', `N`, TOP 1";
        row("blocks", A, f, "Year(D) ¿ Y, 'x', `N`, TOP 1");
        row("blocks", M, f, "YEAR(D) ¿ Y, 'x', `N`, TOP 1");
        row("blocks", S, f, "DATEPART(yy‡ D) ¿ Y, 'x', `N`, TOP 1");
        row("format", M, "FORMAT(X, 'yyyy')", "FX");
        row("delimiter untouched", A, "A = ¤x¤", "A = ¤x¤");
    }
    void fragment()
    {
        QFETCH(int, tipo);
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QCOMPARE(rewriteFragment(sql, tipo).text, expected);
    }

    void withoutSP() { QCOMPARE(getPartSQLWithoutSP("A‡ B‡C ¿ D"), "A, B,C ¿ D"); }

    void numbers_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("number");
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
        // Written from their digits up to eleven of them and four decimals,
        // beyond by fifteen significant digits.
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
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("dateTime");
        QTest::addColumn<QString>("time");
        const auto row = [](const char* name, int tipo, const QVariant& v, const char* date, const char* dateTime,
                            const char* time) {
            QTest::newRow(name) << tipo << v << QString(date) << QString(dateTime) << QString(time);
        };
        const QVariant when = QDateTime(QDate(2024, 3, 7), QTime(9, 5, 4)), day = QDate(2024, 3, 7);
        row("S", S, when, "{ d ¤2024-03-07¤ }", "¤2024-03-07 09:05:04¤", "{ t ¤09:05:04¤ }");
        row("A", A, when, "#03/07/2024#", "#03/07/2024 09:05:04#", "#09:05:04#");
        row("M", M, when, "¤2024-03-07¤", "¤2024-03-07 09:05:04¤", "¤09:05:04¤");
        row("italian text", M, "07/03/2024", "¤2024-03-07¤", "¤2024-03-07 00:00:00¤", "¤00:00:00¤");
        // A date alone is its midnight, as a date-time and as a time.
        row("date alone S", S, day, "{ d ¤2024-03-07¤ }", "¤2024-03-07 00:00:00¤", "{ t ¤00:00:00¤ }");
        row("date alone A", A, day, "#03/07/2024#", "#03/07/2024 00:00:00#", "#00:00:00#");
        row("date alone M", M, day, "¤2024-03-07¤", "¤2024-03-07 00:00:00¤", "¤00:00:00¤");
        row("ISO date text", S, "2024-03-07", "{ d ¤2024-03-07¤ }", "¤2024-03-07 00:00:00¤", "{ t ¤00:00:00¤ }");
        row("date text as bytes", A, QByteArray("07/03/2024"), "#03/07/2024#", "#03/07/2024 00:00:00#", "#00:00:00#");
        const QString null = "Null";
        for (int t : {S, A, M}) {
            QTest::addRow("invalid date %d", t) << t << QVariant(QDate()) << null << null << null;
            QTest::addRow("empty %d", t) << t << QVariant(QString()) << null << null << null;
            QTest::addRow("not a date %d", t) << t << QVariant("31/02/2024") << null << null << null;
            QTest::addRow("null %d", t) << t << QVariant() << null << null << null;
        }
        row("unknown back end", 5, when, "", "", "");
    }

    void dates()
    {
        QFETCH(int, tipo);
        QFETCH(QVariant, value);
        QFETCH(QString, date);
        QFETCH(QString, dateTime);
        QFETCH(QString, time);
        QCOMPARE(sqlDateFor(value, tipo), date);
        QCOMPARE(sqlDateTimeFor(value, tipo), dateTime);
        QCOMPARE(sqlTimeFor(value, tipo), time);
    }

    // A text value survives the whole rewrite on every back end: what reaches
    // the driver is the value between apostrophes, its apostrophes doubled.
    void protectedValues_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("sentValue"); // as the engine receives it
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
        const QString high(QChar(char16_t(0xD83D))), low(QChar(char16_t(0xDE00)));
        const QString fffd(QChar(QChar::ReplacementCharacter));
        QTest::newRow("first half at the end") << "Caff" + high << "Caff" + fffd;
        QTest::newRow("second half alone") << low + "x" << fffd + "x";
        QTest::newRow("halves reversed") << low + high << fffd + fffd;
        QTest::newRow("first half before a protected character") << high + "¤" + high + " " << fffd + "¤" + fffd + " ";
        QTest::newRow("first half before a private-use character")
            << high + QChar(char16_t(0xE000)) << fffd + QChar(char16_t(0xE000));
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
        const QString high(QChar(char16_t(0xD83D)));
        const QString fffd(QChar(QChar::ReplacementCharacter));
        for (int t : {A, M}) {
            QCOMPARE(driver::finalSql("SELECT 'a" + high + "' FROM T", t), "SELECT 'a" + fffd + "' FROM T");
            QCOMPARE(driver::finalSql("SELECT '😀'", t), "SELECT '😀'");
        }
    }

    // The file database's literals and TOP, for SQLite; MySQL's statement goes as it is.
    void fileDbLiterals_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const char* sql, const char* expected) {
            QTest::newRow(name) << QString(sql) << QString(expected);
        };
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
};

QTEST_GUILESS_MAIN(TestSqlLiteral)
#include "tst_sqlliteral.moc"
