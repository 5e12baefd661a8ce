// Literal builders and the protection of text values, without a database.
#include "driver.h"
#include "sqldialect.h"
#include "sqlliteral.h"

#include <QDateTime>
#include <QLocale>
#include <QtTest>

#include "localerows.h"

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
        for (const QString& locale : {QStringLiteral("en_US"), QStringLiteral("it_IT")}) {
            auto row = [&](const char* name, const QVariant& v, const char* n, const char* z) {
                QTest::addRow("%s %s", qPrintable(locale), name) << locale << v << QString::fromUtf8(n) << QString::fromUtf8(z);
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
        }
    }

    void numbers()
    {
        QFETCH(QString, locale);
        QFETCH(QVariant, value);
        QFETCH(QString, number);
        QFETCH(QString, orZero);
        const ProcessLocale scope(locale);
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
        const QVariant when = QDateTime(QDate(2024, 3, 7), QTime(9, 5, 4));
        QTest::newRow("S") << S << when << "{ d ¤2024-03-07¤ }" << "¤2024-03-07 09:05:04¤" << "{ t ¤09:05:04¤ }";
        QTest::newRow("A") << A << when << "#03/07/2024#" << "#03/07/2024 09:05:04#" << "#09:05:04#";
        QTest::newRow("M") << M << when << "¤2024-03-07¤" << "¤2024-03-07 09:05:04¤" << "¤09:05:04¤";
        QTest::newRow("italian text") << M << QVariant(QStringLiteral("07/03/2024")) << "¤2024-03-07¤"
                                      << "¤2024-03-07 00:00:00¤" << "¤00:00:00¤";
        for (int t : {S, A, M}) {
            QTest::addRow("empty %d", t) << t << QVariant(QString()) << "Null" << "Null" << "Null";
            QTest::addRow("not a date %d", t) << t << QVariant(QStringLiteral("31/02/2024")) << "Null" << "Null" << "Null";
            QTest::addRow("null %d", t) << t << QVariant() << "Null" << "Null" << "Null";
        }
        QTest::newRow("unknown back end") << 5 << when << "" << "" << "";
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
        QTest::newRow("apostrophe") << "l'albero";
        QTest::newRow("delimiter") << "10 ¤ al kg";
        QTest::newRow("mark-up characters") << "a‡b¿c•A•d•/A•e•M•f•/M•";
        QTest::newRow("backticks and backslash") << "`x` C:\\dir\\";
        QTest::newRow("top clause") << "SELECT TOP 5 righe";
        QTest::newRow("format call") << "FORMAT(x, 'yyyy')";
        QTest::newRow("date literal shape") << "#01/02/2024# & #12/31/1999 10:00:00#";
        QTest::newRow("private use") << QString::fromUtf16(u"\uE000\uE101\uE1FF\uF8FF");
        QTest::newRow("lines and emoji") << QString::fromUtf8("riga 1\r\nriga 2\tà è ì ò ù € 😀");
        QTest::newRow("placeholder") << "@01 SET NOCOUNT OFF";
    }

    void protectedValues()
    {
        QFETCH(QString, value);
        const QString doubled = QString(value).replace(QLatin1Char('\''), QStringLiteral("''"));
        for (int t : {S, A, M}) {
            const DialectResult r = rewriteStatement(QStringLiteral("SELECT TOP 1 ") + sqlText(value) + QStringLiteral(" FROM T"), t);
            QVERIFY(r.ok);
            const QString sent = driver::finalSql(r.text, t);
            QVERIFY2(sent.contains(QLatin1Char('\'') + doubled + QLatin1Char('\'')), qPrintable(sent));
        }
    }

    void fileDbLiterals_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        QTest::newRow("date") << "WHERE D = #03/07/2024#" << "WHERE D = '2024-03-07'";
        QTest::newRow("date time") << "WHERE D >= #3/7/2024 9:05:04#" << "WHERE D >= '2024-03-07 09:05:04'";
        QTest::newRow("inside quotes untouched") << "WHERE N = '#03/07/2024#'" << "WHERE N = '#03/07/2024#'";
        QTest::newRow("concatenation") << "SELECT A & 'x&y' & B" << "SELECT A || 'x&y' || B";
        QTest::newRow("not a date") << "WHERE N = #abc#" << "WHERE N = #abc#";
        QTest::newRow("top") << "SELECT TOP 5 A FROM T ORDER BY A" << "SELECT A FROM T ORDER BY A LIMIT 5";
        QTest::newRow("top in a sub-select") << "SELECT X FROM (SELECT TOP 2 B FROM T ORDER BY B) Q WHERE X > 'a)'"
                                             << "SELECT X FROM (SELECT B FROM T ORDER BY B LIMIT 2) Q WHERE X > 'a)'";
        QTest::newRow("top distinct") << "select distinct top 1 A from T" << "SELECT distinct A from T LIMIT 1";
        QTest::newRow("top quoted") << "SELECT 'SELECT TOP 1 ' FROM T" << "SELECT 'SELECT TOP 1 ' FROM T";
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
