// Workstations saving documents with stock, journal entries and due dates
// at once, and saving processes killed at random moments: the stress
// program checks the database afterwards (numbers given once and without
// holes, every entry whole, stock equal to its lots and to a
// recalculation); here it must find everything in order and no save failed.
#include "support/testdb.h"

#include <QProcess>
#include <QtTest>

class TestWorkstations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }

    void stress_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QStringList>("arguments");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "4 workstations") << QStringList{"--processes", "4", "--seconds", "4"};
            // At least 25 kills on the file database, 8 on the server.
            const QString kills = b == "sqlite" ? "25" : "8";
            testdb::row(b, "killed while saving") << QStringList{"--processes", "2", "--kill", kills};
        }
    }

    void stress()
    {
        QFETCH(QString, backend);
        QFETCH(QStringList, arguments);
        QProcess p;
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.start(ORVANTIS_STRESS, QStringList{"--backend", backend} + arguments);
        QVERIFY(p.waitForFinished(300000));
        const QString output = QString::fromUtf8(p.readAll());
        qInfo().noquote() << output;
        QVERIFY2(output.contains("RESULT: every check holds"), qPrintable(output));
        QCOMPARE(p.exitCode(), 0);
        QVERIFY(!output.contains("saves reported 0 "));
    }
};

QTEST_GUILESS_MAIN(TestWorkstations)
#include "tst_workstations.moc"
