// Yearly counters and the checks of a document's number, on both back
// ends; and two workstations taking numbers at once.
#include "cadosqlserver.h"
#include "errorlog.h"
#include "numeratore.h"
#include "testdb.h"

#include <QDate>
#include <QProcess>
#include <QtTest>

namespace {

void run(const QString& sql)
{
    QVERIFY2(gAdoSqlServer().executeSQL(sql, QStringLiteral("test")), qPrintable(sql));
}

int counter(int numeratore, const QString& anno)
{
    const QVariant n = gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT NUMERO FROM Contatori WHERE FK_NUMERATORE = ")
                                                         + QString::number(numeratore) + QStringLiteral(" AND ANNO = ¤") + anno
                                                         + QStringLiteral("¤"),
                                                     QStringLiteral("test"));
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
void addDocuments()
{
    run(QStringLiteral("DELETE FROM Movimenti WHERE ANNO = 2031"));
    const auto add = [](int tipo, int progressivo, const QString& date) {
        run(QStringLiteral("INSERT INTO Movimenti (FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA) VALUES (") + QString::number(tipo)
            + QStringLiteral(", 2031, ") + QString::number(progressivo) + QStringLiteral(", ")
            + gAdoSqlServer().getSQLDate(QDate::fromString(date, Qt::ISODate)) + QLatin1Char(')'));
    };
    add(4, 10, QStringLiteral("2031-03-10"));
    add(4, 20, QStringLiteral("2031-03-20"));
    add(4, 21, QStringLiteral("2031-03-20"));
    add(4, 30, QStringLiteral("2031-03-30"));
    add(7, 20, QStringLiteral("2031-03-05"));
}

int ridOf(int tipo, int progressivo)
{
    return gAdoSqlServer()
        .getValueBySQL(QStringLiteral("SELECT RID FROM Movimenti WHERE ANNO = 2031 AND FK_TIPODOCUMENTO = ") + QString::number(tipo)
                           + QStringLiteral(" AND PROGRESSIVO = ") + QString::number(progressivo),
                       QStringLiteral("test"))
        .toInt();
}

} // namespace

class TestNumeratore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup()
    {
        gAdoSqlServer().closeAll();
    }

    // A missing counter and one at 0 both start at 1; years are apart.
    void yearlyCounter_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void yearlyCounter()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        run(QStringLiteral("DELETE FROM Contatori WHERE ANNO IN (¤2040¤, ¤2041¤)"));
        run(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (1, ¤2040¤, 0, ¤n/d¤)"));
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
    }

    void numberTaken_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("date");
        QTest::addColumn<int>("progressivo");
        QTest::addColumn<int>("self");      // the document's own number, 0 for a new one
        QTest::addColumn<bool>("libero");
        for (const QString& b : testdb::backends()) {
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("taken by another") << 4 << "2031-06-01" << 20 << 0 << false;
            row("its own number") << 4 << "2031-03-20" << 20 << 20 << true;
            row("free") << 4 << "2031-03-20" << 22 << 20 << true;
            row("shared numerator, other type") << 7 << "2031-03-20" << 21 << 0 << true;
            row("year of the date") << 4 << "2030-03-20" << 20 << 0 << true;
        }
    }
    void numberTaken()
    {
        QFETCH(QString, backend);
        QFETCH(int, tipo);
        QFETCH(QString, date);
        QFETCH(int, progressivo);
        QFETCH(int, self);
        QFETCH(bool, libero);
        QVERIFY(testdb::shared(backend).isValid());
        addDocuments();
        const int rid = self > 0 ? ridOf(tipo, self) : -1;
        QCOMPARE(checkNumeroDocumento(tipo, QDate::fromString(date, Qt::ISODate), progressivo, rid), libero);
    }

    void dateOrder_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("date");
        QTest::addColumn<int>("progressivo");
        QTest::addColumn<int>("self");
        QTest::addColumn<bool>("inOrdine");
        for (const QString& b : testdb::backends()) {
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("between neighbours") << "2031-03-15" << 15 << 0 << true;
            row("below an earlier one") << "2031-03-15" << 9 << 0 << false;
            row("above a later one") << "2031-03-15" << 25 << 0 << false;
            row("same day, any number") << "2031-03-20" << 25 << 0 << true;
            row("first of the year") << "2031-01-02" << 1 << 0 << true;
            row("last, below 65535") << "2031-12-31" << 65534 << 0 << true;
            row("last, 65535") << "2031-12-31" << 65535 << 0 << false;
            row("itself left out") << "2031-03-30" << 31 << 30 << true;
        }
    }
    void dateOrder()
    {
        QFETCH(QString, backend);
        QFETCH(QString, date);
        QFETCH(int, progressivo);
        QFETCH(int, self);
        QFETCH(bool, inOrdine);
        QVERIFY(testdb::shared(backend).isValid());
        addDocuments();
        const int rid = self > 0 ? ridOf(4, self) : -1;
        QCOMPARE(checkNumeroData(4, QDate::fromString(date, Qt::ISODate), progressivo, rid), inOrdine);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    void flexCounter_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void flexCounter()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        run(QStringLiteral("UPDATE TipoDocumenti SET FLEXCOUNTER = 1 WHERE RID = 5"));
        QVERIFY(getFlexCounter(5));
        QVERIFY(!getFlexCounter(4));
        QVERIFY(!getFlexCounter(999));
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
            auto* worker = new QProcess(this);
            worker->start(QStringLiteral(ORVANTIS_NUMBERING_WORKER),
                          {QString::number(db.tipoServer()), db.connectionString(), QStringLiteral("3"), QStringLiteral("2050"),
                           QString::number(perWorker)});
            workers << worker;
        }
        QList<int> numbers;
        for (QProcess* worker : std::as_const(workers)) {
            QVERIFY(worker->waitForFinished(120000));
            QCOMPARE(worker->exitCode(), 0);
            for (const QByteArray& line : worker->readAllStandardOutput().split('\n'))
                if (!line.isEmpty())
                    numbers << line.toInt();
            delete worker;
        }
        std::sort(numbers.begin(), numbers.end());
        QCOMPARE(numbers.size(), 3 * perWorker);
        for (int i = 0; i < numbers.size(); ++i)
            QCOMPARE(numbers.at(i), i + 1);
    }
};

QTEST_GUILESS_MAIN(TestNumeratore)
#include "tst_numeratore.moc"
