// The mark-up rewriting, as text, on the three back ends.
#include "data/sqldialect.h"

#include <QtTest>

namespace {
const int S = TipoServer::SqlServer, A = TipoServer::FileDb, M = TipoServer::MySql;
}

class TestSqlDialect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statement_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");

        // Apostrophes: doubled only when the statement uses the delimiter.
        const QString plain = QStringLiteral("SELECT * FROM T WHERE A = 'x' AND B = 'y'");
        for (int t : {S, A, M})
            QTest::addRow("plain apostrophes %d", t) << t << plain << plain;
        for (int t : {S, A, M})
            QTest::addRow("delimited apostrophe %d", t)
                << t << QStringLiteral("UPDATE T SET A = ¤O'Brien¤ WHERE B = 'k'")
                << QStringLiteral("UPDATE T SET A = 'O''Brien' WHERE B = ''k''");

        // TOP: kept on SQL Server and the file database, moved to LIMIT on MySQL.
        QTest::newRow("top S") << S << "SELECT TOP 5 A FROM T"
                               << "SELECT TOP 5 A FROM T";
        QTest::newRow("top A") << A << "SELECT TOP 5 A FROM T"
                               << "SELECT TOP 5 A FROM T";
        QTest::newRow("top M") << M << "SELECT TOP 5 A FROM T"
                               << "SELECT A FROM T LIMIT 5";
        QTest::newRow("top M order") << M << "SELECT TOP 10 A, B FROM T ORDER BY A"
                                     << "SELECT A, B FROM T ORDER BY A LIMIT 10";
        QTest::newRow("top M lower case keeps the word") << M << "select top 3 a from t"
                                                         << "select a from t top 3";
        QTest::newRow("top M only first") << M << "SELECT TOP 1 A FROM (SELECT TOP 2 B FROM T) X"
                                          << "SELECT A FROM (SELECT TOP 2 B FROM T) X LIMIT 1";

        // Blocks: the foreign ones go, the own one loses its marks (the file
        // database's and MySQL's run for real in tst_adosqlserver).
        const QString three = "SELECT •A•Format(P‡ \"00000\")•/A••M•CONCAT(P)•/M••S•CAST(P AS Varchar(20))•/S• AS K "
                              "FROM T";
        QTest::newRow("three spellings S") << S << three << "SELECT CAST(P AS Varchar(20)) AS K FROM T";
        QTest::newRow("repeated block removed twice") << M << "SELECT •S•X•/S• A, •S•X•/S• B"
                                                      << "SELECT  A,  B";
        QTest::newRow("different second block stays") << M << "SELECT •S•X•/S• A, •S•Y•/S• B"
                                                      << "SELECT  A, •S•Y•/S• B";
        QTest::newRow("opening mark alone A") << A << "SELECT •A•X FROM T"
                                              << "SELECT X FROM T";
        QTest::newRow("opening mark alone M") << M << "SELECT •A•X FROM T"
                                              << "SELECT •A•X FROM T";
        QTest::newRow("opening mark alone S") << S << "SELECT •A•X FROM T"
                                              << "SELECT •A•X FROM T";
        QTest::newRow("marks found in any case") << M << "SELECT 1•s•, 2•/s• FROM T"
                                                 << "SELECT 1 FROM T";

        // "‡" and "¿" on every back end; backticks only on SQL Server.
        for (int t : {S, A, M})
            QTest::addRow("comma and as %d", t) << t << "SELECT A‡ B ¿ C FROM T"
                                                << "SELECT A, B AS C FROM T";
        QTest::newRow("backtick S") << S << "SELECT `NOTE` FROM T"
                                    << "SELECT \"NOTE\" FROM T";
        QTest::newRow("backtick M") << M << "SELECT `NOTE` FROM T"
                                    << "SELECT `NOTE` FROM T";
        QTest::newRow("backtick A") << A << "SELECT `NOTE` FROM T"
                                    << "SELECT `NOTE` FROM T";

        // The old FORMAT( treatment on MySQL.
        QTest::newRow("format M") << M << "SELECT FORMAT(X, 'yyyy') FROM T"
                                  << "SELECT FX FROM T";
        QTest::newRow("format A untouched") << A << "SELECT FORMAT(X, 'yy') FROM T"
                                            << "SELECT FORMAT(X, 'yy') FROM T";

        // An unknown back end only gets the common steps.
        QTest::newRow("unknown back end") << 7 << "SELECT TOP 1 •A•X•/A•‡ `Y`"
                                          << "SELECT TOP 1 •A•X•/A•, `Y`";
    }

    void statement()
    {
        QFETCH(int, tipo);
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        const DialectResult r = rewriteStatement(sql, tipo);
        QVERIFY(r.ok);
        QCOMPARE(r.text, expected);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::newRow("top without anything after the number") << "SELECT TOP 5";
        QTest::newRow("format without comma") << "SELECT FORMAT(X) FROM T";
        QTest::newRow("closing mark before opening") << "SELECT •/A• X •A• FROM T";
    }

    void failures()
    {
        QFETCH(QString, sql);
        const DialectResult r = rewriteStatement(sql, M);
        QVERIFY(!r.ok);
        QVERIFY(r.text.isEmpty());
    }

    void fragment_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        const QString f = QStringLiteral("•A•Year(D)•/A••M•YEAR(D)•/M••S•DATEPART(yy‡ D)•/S• ¿ Y, 'x', `N`, TOP 1");
        QTest::newRow("A") << A << f << "Year(D) ¿ Y, 'x', `N`, TOP 1";
        QTest::newRow("M") << M << f << "YEAR(D) ¿ Y, 'x', `N`, TOP 1";
        QTest::newRow("S") << S << f << "DATEPART(yy‡ D) ¿ Y, 'x', `N`, TOP 1";
        QTest::newRow("M format") << M << "FORMAT(X, 'yyyy')"
                                  << "FX";
        QTest::newRow("delimiter untouched") << A << "A = ¤x¤"
                                             << "A = ¤x¤";
    }

    void fragment()
    {
        QFETCH(int, tipo);
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QCOMPARE(rewriteFragment(sql, tipo).text, expected);
    }

    void withoutSP() { QCOMPARE(getPartSQLWithoutSP(QStringLiteral("A‡ B‡C ¿ D")), QStringLiteral("A, B,C ¿ D")); }
};

QTEST_GUILESS_MAIN(TestSqlDialect)
#include "tst_sqldialect.moc"
