// Literal builders and the protection of text values, without a database.
#include "data/driver.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/localerows.h"

#include <QDateTime>
#include <QLocale>
#include <QtTest>

namespace {
const int S = TipoServer::SqlServer, A = TipoServer::FileDb, M = TipoServer::MySql;
} // namespace

class TestSqlLiteral : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("orZero");
        const auto row = [](const char* name, const QVariant& v, const char* n, const char* z) {
            addRows(name, v, QString::fromUtf8(n), QString::fromUtf8(z));
        };
        row("dot decimal", QStringLiteral("12.5"), "12.5", "12.5");
        row("comma decimal", QStringLiteral("12,5"), "12.5", "12.5");
        row("thousands and comma", QStringLiteral("1.234,50"), "1234.5", "1234.5");
        row("dot alone stays decimal", QStringLiteral("1.234"), "1.234", "1.234");
        row("empty", QStringLiteral(""), "Null", "0");
        row("letters", QStringLiteral("abc"), "Null", "0");
        row("negative", QStringLiteral("-3,75"), "-3.75", "-3.75");
        row("null", QVariant(), "Null", "0");
        row("double", 0.1 + 0.2, "0.3", "0.3");
        row("integer", 42, "42", "42");
        row("two commas", QStringLiteral("1,2,3"), "Null", "0");
        // Written from their digits up to eleven of them and four decimals,
        // beyond by fifteen significant digits.
        row("four decimals", QStringLiteral("0,0001"), "0.0001", "0.0001");
        row("five decimals", 0.00005, "5e-05", "5e-05");
        row("negative fraction", -0.5, "-0.5", "-0.5");
        row("widest with decimals", 99999999999.9999, "99999999999.9999", "99999999999.9999");
        row("twelve digits", 100000000000.0, "100000000000", "100000000000");
        row("a third", 1.0 / 3, "0.333333333333333", "0.333333333333333");
        row("large", 1e15, "1e+15", "1e+15");
    }

    void numbers()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QString, number);
        QFETCH(QString, orZero);
        QCOMPARE(getSqlNumber(value), number);
        QCOMPARE(getSqlNumberOrZero(value), orZero);
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
        for (int t : {S, A, M}) {
            QTest::addRow("invalid date %d", t) << t << QVariant(QDate()) << "Null"
                                                << "Null"
                                                << "Null";
            QTest::addRow("empty %d", t) << t << QVariant(QString()) << "Null"
                                         << "Null"
                                         << "Null";
            QTest::addRow("not a date %d", t) << t << QVariant("31/02/2024") << "Null"
                                              << "Null"
                                              << "Null";
            QTest::addRow("null %d", t) << t << QVariant() << "Null"
                                        << "Null"
                                        << "Null";
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
        same("apostrophe", QStringLiteral("l'albero"));
        same("delimiter", QStringLiteral("10 ¤ al kg"));
        same("mark-up characters", QStringLiteral("a‡b¿c•A•d•/A•e•M•f•/M•"));
        same("backticks and backslash", QStringLiteral("`x` C:\\dir\\"));
        same("top clause", QStringLiteral("SELECT TOP 5 righe"));
        same("format call", QStringLiteral("FORMAT(x, 'yyyy')"));
        same("date literal shape", QStringLiteral("#01/02/2024# & #12/31/1999 10:00:00#"));
        same("private use", QString::fromUtf16(u"\uE000\uE101\uE1FF\uF8FF"));
        same("lines and emoji", QString::fromUtf8("riga 1\r\nriga 2\tà è ì ò ù € 😀"));
        same("placeholder", QStringLiteral("@01 SET NOCOUNT OFF"));
        // Half a character (a cut in the middle of an emoji) is sent as
        // U+FFFD, and the apostrophe after it stays the closing one.
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
        const QString doubled = QString(sentValue).replace(QLatin1Char('\''), QStringLiteral("''"));
        for (int t : {S, A, M}) {
            const DialectResult r = rewriteStatement("SELECT TOP 1 " + sqlText(value) + " FROM T", t);
            QVERIFY(r.ok);
            const QString sent = driver::finalSql(r.text, t);
            QVERIFY2(sent.contains(QLatin1Char('\'') + doubled + QLatin1Char('\'')), qPrintable(sent));
            QVERIFY2(sent.endsWith(" FROM T") || sent.endsWith(" FROM T LIMIT 1"), qPrintable(sent));
        }
    }

    // A statement written by hand, not through sqlText, with half a
    // character in it: the driver's last step mends it too.
    void halfCharacterOutsideValues()
    {
        const QString high(QChar(char16_t(0xD83D)));
        const QString fffd(QChar(QChar::ReplacementCharacter));
        for (int t : {A, M}) {
            QCOMPARE(driver::finalSql(QStringLiteral("SELECT 'a") + high + QStringLiteral("' FROM T"), t),
                     QStringLiteral("SELECT 'a") + fffd + QStringLiteral("' FROM T"));
            QCOMPARE(driver::finalSql(QStringLiteral("SELECT '") + QString::fromUtf8("😀") + QStringLiteral("'"), t),
                     QStringLiteral("SELECT '") + QString::fromUtf8("😀") + QStringLiteral("'"));
        }
    }

    void fileDbLiterals_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        QTest::newRow("date") << "WHERE D = #03/07/2024#"
                              << "WHERE D = '2024-03-07'";
        QTest::newRow("date time") << "WHERE D >= #3/7/2024 9:05:04#"
                                   << "WHERE D >= '2024-03-07 09:05:04'";
        QTest::newRow("time") << "SET T = #9:05:04#, U = #00:00:00#"
                              << "SET T = '09:05:04', U = '00:00:00'";
        QTest::newRow("inside quotes untouched") << "WHERE N = '#03/07/2024#'"
                                                 << "WHERE N = '#03/07/2024#'";
        QTest::newRow("concatenation") << "SELECT A & 'x&y' & B"
                                       << "SELECT A || 'x&y' || B";
        QTest::newRow("not a date") << "WHERE N = #abc#"
                                    << "WHERE N = #abc#";
        QTest::newRow("top") << "SELECT TOP 5 A FROM T ORDER BY A"
                             << "SELECT A FROM T ORDER BY A LIMIT 5";
        QTest::newRow("top in a sub-select") << "SELECT X FROM (SELECT TOP 2 B FROM T ORDER BY B) Q WHERE X > 'a)'"
                                             << "SELECT X FROM (SELECT B FROM T ORDER BY B LIMIT 2) Q WHERE X > 'a)'";
        QTest::newRow("top distinct") << "select distinct top 1 A from T"
                                      << "SELECT distinct A from T LIMIT 1";
        QTest::newRow("top quoted") << "SELECT 'SELECT TOP 1 ' FROM T"
                                    << "SELECT 'SELECT TOP 1 ' FROM T";
        QTest::newRow("top after tabs") << "SELECT\tTOP\t3\tA FROM T"
                                        << "SELECT A FROM T LIMIT 3";
        QTest::newRow("top of both selects") << "SELECT TOP 1 A FROM (SELECT TOP 2 B FROM T) Q"
                                             << "SELECT A FROM (SELECT B FROM T LIMIT 2) Q LIMIT 1";
        QTest::newRow("select inside a word") << "SELECT XSELECT TOP 1 A"
                                              << "SELECT XSELECT TOP 1 A";
        QTest::newRow("date time without seconds") << "WHERE D = #1/2/2024  10:30#"
                                                   << "WHERE D = '2024-01-02 10:30:00'";
        QTest::newRow("blanks inside the marks") << "WHERE D = # 03/07/2024 #"
                                                 << "WHERE D = '2024-03-07'";
        QTest::newRow("five-digit year") << "WHERE D = #1/2/20245#"
                                         << "WHERE D = #1/2/20245#";
        QTest::newRow("three-digit day") << "WHERE D = #1/123/2024#"
                                         << "WHERE D = #1/123/2024#";
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
