// Yearly counters and the checks of a document's number, on both back
// ends; and two workstations taking numbers at once.
#include "data/cadosqlserver.h"
#include "common/errorlog.h"
#include "numbering/numeratore.h"
#include "support/testdb.h"

#include <QDate>
#include <QProcess>
#include <QtTest>

namespace {

int counter(int numeratore, const QString& anno)
{
    const QVariant n = testdb::value(QStringLiteral("SELECT NUMERO FROM Contatori WHERE FK_NUMERATORE = %1 AND ANNO = ¤%2¤")
                                         .arg(numeratore).arg(anno));
    return n.isValid() ? n.toInt() : -1;
}

int take(int numeratore, const QString& anno)
{
    gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
    const int n = getNewNumeratoreAnnuale(numeratore, anno);
    gAdoSqlServer().commitTrasaction(QStringLiteral("test"));
    return n;
}

// Documents of type 4 (DDT) in 2031: numbers 10 on 10 March, 20 on 20 March,
// 21 on 20 March, 30 on 30 March; type 7 shares the numerator and holds 20.
// Gives the RID of the document of type `tipo` numbered `self`, -1 for none.
int addDocuments(int tipo, int self)
{
    testdb::run(QStringLiteral("DELETE FROM Movimenti WHERE ANNO = 2031"));
    const QList<std::tuple<int, int, QDate>> documents{{4, 10, QDate(2031, 3, 10)}, {4, 20, QDate(2031, 3, 20)},
                                                        {4, 21, QDate(2031, 3, 20)}, {4, 30, QDate(2031, 3, 30)},
                                                        {7, 20, QDate(2031, 3, 5)}};
    for (const auto& [t, progressivo, date] : documents)
        testdb::run(QStringLiteral("INSERT INTO Movimenti (FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA) VALUES (%1, 2031, %2, %3)")
                        .arg(t).arg(progressivo).arg(gAdoSqlServer().getSQLDate(date)));
    return self > 0 ? testdb::number(QStringLiteral("SELECT RID FROM Movimenti WHERE ANNO = 2031 AND FK_TIPODOCUMENTO = %1 "
                                                    "AND PROGRESSIVO = %2").arg(tipo).arg(self))
                    : -1;
}

} // namespace

class TestNumeratore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    // A missing counter and one at 0 both start at 1; years are apart. Then
    // the flexible counter flag of the document types.
    void yearlyCounter_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void yearlyCounter()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::run(QStringLiteral("DELETE FROM Contatori WHERE ANNO IN (¤2040¤, ¤2041¤)"));
        testdb::run(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (1, ¤2040¤, 0, ¤n/d¤)"));
        QCOMPARE(take(1, QStringLiteral("2040")), 1);
        QCOMPARE(take(1, QStringLiteral("2040")), 2);
        QCOMPARE(take(1, QStringLiteral("2041")), 1);          // no row yet: made with 1
        QCOMPARE(counter(1, QStringLiteral("2041")), 1);
        QCOMPARE(take(2, QStringLiteral("2040")), 1);           // another numerator
        QCOMPARE(counter(1, QStringLiteral("2040")), 2);
        // Outside a transaction no number is given, and the counter stays.
        {
            testdb::ErrorRecorder errors;
            QCOMPARE(getNewNumeratoreAnnuale(1, QStringLiteral("2040")), 0);
            QCOMPARE(errors.reports.size(), 1);
            QCOMPARE(counter(1, QStringLiteral("2040")), 2);
        }
        // A save that rolls back gives its number back.
        gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
        QCOMPARE(getNewNumeratoreAnnuale(1, QStringLiteral("2040")), 3);
        gAdoSqlServer().rollbackTrasaction(QStringLiteral("test"));
        QCOMPARE(take(1, QStringLiteral("2040")), 3);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);

        testdb::run(QStringLiteral("UPDATE TipoDocumenti SET FLEXCOUNTER = 1 WHERE RID = 5"));
        QVERIFY(getFlexCounter(5));
        QVERIFY(!getFlexCounter(4));
        QVERIFY(!getFlexCounter(999));
    }

    // "number": checkNumeroDocumento (free); "order": checkNumeroData (in date order).
    void numberChecks_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("check");
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<int>("progressivo");
        QTest::addColumn<int>("self");      // the document's own number, 0 for a new one
        QTest::addColumn<bool>("ok");
        for (const QString& b : testdb::backends()) {
            const auto number = [&b](const char* name, int tipo, QDate date, int progressivo, int self, bool ok) {
                testdb::row(b, QLatin1String(name)) << QStringLiteral("number") << tipo << date << progressivo << self << ok;
            };
            const auto order = [&b](const char* name, QDate date, int progressivo, int self, bool ok) {
                testdb::row(b, QLatin1String(name)) << QStringLiteral("order") << 4 << date << progressivo << self << ok;
            };
            number("taken by another", 4, QDate(2031, 6, 1), 20, 0, false);
            number("its own number", 4, QDate(2031, 3, 20), 20, 20, true);
            number("free", 4, QDate(2031, 3, 20), 22, 20, true);
            number("shared numerator, other type", 7, QDate(2031, 3, 20), 21, 0, true);
            number("year of the date", 4, QDate(2030, 3, 20), 20, 0, true);
            order("between neighbours", QDate(2031, 3, 15), 15, 0, true);
            order("below an earlier one", QDate(2031, 3, 15), 9, 0, false);
            order("above a later one", QDate(2031, 3, 15), 25, 0, false);
            order("same day, any number", QDate(2031, 3, 20), 25, 0, true);
            order("first of the year", QDate(2031, 1, 2), 1, 0, true);
            order("last, below 65535", QDate(2031, 12, 31), 65534, 0, true);
            order("last, 65535", QDate(2031, 12, 31), 65535, 0, false);
            order("itself left out", QDate(2031, 3, 30), 31, 30, true);
        }
    }
    void numberChecks()
    {
        QFETCH(QString, backend);
        QFETCH(QString, check);
        QFETCH(int, tipo);
        QFETCH(QDate, date);
        QFETCH(int, progressivo);
        QFETCH(int, self);
        QFETCH(bool, ok);
        QVERIFY(testdb::shared(backend).isValid());
        const int rid = addDocuments(tipo, self);
        if (check == QLatin1String("number"))
            QCOMPARE(checkNumeroDocumento(tipo, date, progressivo, rid), ok);
        else
            QCOMPARE(checkNumeroData(tipo, date, progressivo, rid), ok);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // Three workstations take numbers from one numerator at once: every
    // number is handed out once, none is skipped.
    void concurrentWorkstations_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void concurrentWorkstations()
    {
        QFETCH(QString, backend);
        testdb::TestDatabase& db = testdb::shared(backend);
        QVERIFY(db.isValid());
        const int perWorker = 40;
        QList<QProcess*> workers;
        for (int w = 0; w < 3; ++w) {
            workers << new QProcess(this);
            workers.last()->start(QStringLiteral(ORVANTIS_NUMBERING_WORKER), {QString::number(db.tipoServer()), db.connectionString(),
                                  QStringLiteral("3"), QStringLiteral("2050"), QString::number(perWorker)});
        }
        QList<int> numbers, expected;
        for (QProcess* worker : std::as_const(workers)) {
            QVERIFY(worker->waitForFinished(120000));
            QCOMPARE(worker->exitCode(), 0);
            for (const QByteArray& line : worker->readAllStandardOutput().split('\n'))
                if (!line.isEmpty())
                    numbers << line.toInt();
            delete worker;
        }
        std::sort(numbers.begin(), numbers.end());
        for (int i = 1; i <= 3 * perWorker; ++i)
            expected << i;
        QCOMPARE(numbers, expected);
    }
};

QTEST_GUILESS_MAIN(TestNumeratore)
#include "tst_numeratore.moc"
