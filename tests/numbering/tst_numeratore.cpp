// Yearly counters and the checks of a document's number, on both back ends. (Workstations taking numbers at once:
// tst_workstations.)
#include "common/errorlog.h"
#include "data/cadosqlserver.h"
#include "numbering/numeratore.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

namespace {

using testdb::columns;

int counter(int numeratore, const char* anno)
{
    return testdb::number(
        QString("SELECT NUMERO FROM Contatori WHERE FK_NUMERATORE = %1 AND ANNO = ¤%2¤").arg(numeratore).arg(anno));
}

// A number taken in a transaction of its own, committed or not.
int take(int numeratore, const char* anno, bool commit = true)
{
    gAdoSqlServer().beginTrasaction("test");
    const int n = getNewNumeratoreAnnuale(numeratore, anno);
    commit ? gAdoSqlServer().commitTrasaction("test") : gAdoSqlServer().rollbackTrasaction("test");
    return n;
}

} // namespace

class TestNumeratore : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // A missing counter and one at 0 both start at 1; years and numerators are apart. Then the flexible counter flag of
    // the document types.
    void yearlyCounter()
    {
        testdb::run("DELETE FROM Contatori WHERE ANNO IN (¤2040¤, ¤2041¤)");
        testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (1, ¤2040¤, 0, ¤n/d¤)");
        QCOMPARE(take(1, "2040"), 1);
        QCOMPARE(take(1, "2040"), 2);
        QCOMPARE(take(1, "2041"), 1); // no row yet: made with 1
        QCOMPARE(counter(1, "2041"), 1);
        QCOMPARE(take(2, "2040"), 1);
        QCOMPARE(counter(1, "2040"), 2);
        // Outside a transaction no number is given, and the counter stays.
        testdb::ErrorRecorder errors;
        QCOMPARE(getNewNumeratoreAnnuale(1, "2040"), 0);
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(counter(1, "2040"), 2);
        // A save that rolls back gives its number back.
        QCOMPARE(take(1, "2040", false), 3);
        QCOMPARE(take(1, "2040"), 3);
        testdb::run("UPDATE TipoDocumenti SET FLEXCOUNTER = 1 WHERE RID = 5");
        QVERIFY(getFlexCounter(5));
        QVERIFY(!getFlexCounter(4));
        QVERIFY(!getFlexCounter(999));
    }

    // Type 4 (DDT) in 2031: 10 on 10 March, 20 and 21 on the 20th, 30 on the 30th; type 7 shares the numerator and
    // holds 20. `order`: checkNumeroData, else checkNumeroDocumento; `self` the document's own number, 0 if new.
    void numberChecks_data()
    {
        columns<bool, int, QDate, int, int, bool>("order", "tipo", "date", "progressivo", "self", "ok");
        const auto number = [](const char* name, int tipo, QDate date, int progressivo, int self, bool ok) {
            QTest::newRow(name) << false << tipo << date << progressivo << self << ok;
        };
        const auto order = [](const char* name, QDate date, int progressivo, int self, bool ok) {
            QTest::newRow(name) << true << 4 << date << progressivo << self << ok;
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

    void numberChecks()
    {
        FETCH_EACH(bool, order, ok);
        FETCH_EACH(int, tipo, progressivo, self);
        QFETCH(QDate, date);
        testdb::run("DELETE FROM Movimenti WHERE ANNO = 2031");
        for (const auto& [t, numero, marzo] :
             {std::tuple{4, 10, 10}, {4, 20, 20}, {4, 21, 20}, {4, 30, 30}, {7, 20, 5}})
            testdb::run(
                QString("INSERT INTO Movimenti (FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA) VALUES (%1, 2031, %2, %3)")
                    .arg(QString::number(t), QString::number(numero),
                         gAdoSqlServer().getSQLDate(QDate(2031, 3, marzo))));
        const QString own = QString("ANNO = 2031 AND FK_TIPODOCUMENTO = %1 AND PROGRESSIVO = %2").arg(tipo).arg(self);
        const int rid = self ? testdb::rid("Movimenti", own) : -1;
        QCOMPARE(order ? checkNumeroData(tipo, date, progressivo, rid)
                       : checkNumeroDocumento(tipo, date, progressivo, rid),
                 ok);
    }
};

QTEST_GUILESS_MAIN(TestNumeratore)
#include "tst_numeratore.moc"
