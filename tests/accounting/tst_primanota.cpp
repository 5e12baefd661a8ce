// The journal engine: the lines a document's amounts make, and the entries
// written on both back ends.
#include "data/cadosqlserver.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "accounting/primanota.h"
#include "data/recordset.h"
#include "support/testdb.h"

#include <QtTest>

namespace {

constexpr int kClienti = 3, kFornitori = 12, kRicavi = 20, kIvaDebito = 14, kAcquisti = 17, kIvaCredito = 5, kRitenute = 6;
const ContiControparti kControparti{kClienti, kFornitori};

Currency eur(const char* text)
{
    return getValoreCurrency(QString::fromLatin1(text));
}

// "conto:amount" a line, in the order Dare 1, Dare 2, Avere 1, Avere 2; "-" for no line.
QStringList describe(const RighePrimaNota& r)
{
    const auto one = [](int conto, Currency value) {
        return conto > 0 ? QString::number(conto) + QLatin1Char(':') + value.toPlainString() : QStringLiteral("-");
    };
    return {one(r.conti.dare1, r.dare1), one(r.conti.dare2, r.dare2), one(r.conti.avere1, r.avere1),
            one(r.conti.avere2, r.avere2)};
}

int count(const QString& sql)
{
    return testdb::number(sql);
}

QStringList linesOf(int entry)
{
    QStringList lines;
    for (const QVariantList& r : testdb::rows(QStringLiteral("SELECT FK_Conto, DARE, AVERE FROM PrimaNotaDettagli WHERE FK_PrimaNota = ")
                                              + QString::number(entry) + QStringLiteral(" ORDER BY RID"))) {
        const bool dare = !r.at(1).isNull();
        lines << r.at(0).toString() + (dare ? QStringLiteral(" D ") : QStringLiteral(" A ")) + getValoreCurrency(r.at(dare ? 1 : 2)).toPlainString();
    }
    return lines;
}

} // namespace

class TestPrimaNota : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    void lines_data()
    {
        QTest::addColumn<ContiCausale>("causale");
        QTest::addColumn<QString>("importo");
        QTest::addColumn<QString>("iva");
        QTest::addColumn<QString>("rda");
        QTest::addColumn<QStringList>("expected");
        const ContiCausale vendita{kClienti, 0, kRicavi, kIvaDebito};
        const ContiCausale acquisto{kAcquisti, kIvaCredito, kFornitori, 0};
        QTest::newRow("sales invoice") << vendita << "122" << "22" << "0" << QStringList{"3:122", "-", "20:100", "14:22"};
        QTest::newRow("purchase") << acquisto << "122" << "22" << "0" << QStringList{"17:100", "5:22", "12:122", "-"};
        QTest::newRow("VAT 0") << vendita << "100" << "0" << "0" << QStringList{"3:100", "-", "20:100", "14:0"};
        QTest::newRow("negative VAT keeps the whole total") << vendita << "-122" << "-22" << "0"
                                                            << QStringList{"3:-122", "-", "20:-122", "14:-22"};
        QTest::newRow("Dare 2 wins over Avere 2") << ContiCausale{kAcquisti, kIvaCredito, kFornitori, kIvaDebito} << "122" << "22"
                                                  << "0" << QStringList{"17:100", "5:22", "12:122", "-"};
        // Withholding on a causal with Dare 1 on the customers' account.
        QTest::newRow("withholding, customers on Dare 1") << ContiCausale{kClienti, kRitenute, kRicavi, kIvaDebito} << "122"
                                                          << "22" << "20" << QStringList{"3:102", "6:20", "20:100", "14:22"};
        // Avere 1 on the suppliers' account, step one not taken: Avere 1 is
        // minus the withholding, not the total less it.
        QTest::newRow("withholding, suppliers on Avere 1") << ContiCausale{kAcquisti, kIvaCredito, kFornitori, kRitenute} << "122"
                                                           << "22" << "20" << QStringList{"17:100", "5:22", "12:-20", "6:20"};
        QTest::newRow("withholding, no counterparty account") << vendita << "122" << "22" << "20"
                                                               << QStringList{"3:0", "-", "20:0", "-"};
        QTest::newRow("no accounts") << ContiCausale{} << "122" << "22" << "0" << QStringList{"-", "-", "-", "-"};
    }
    void lines()
    {
        QFETCH(ContiCausale, causale);
        QFETCH(QString, importo);
        QFETCH(QString, iva);
        QFETCH(QString, rda);
        QFETCH(QStringList, expected);
        const RighePrimaNota r = calcolaRighe(causale, getValoreCurrency(importo), getValoreCurrency(iva),
                                              getValoreCurrency(rda), kControparti);
        QCOMPARE(describe(r), expected);
    }

    // Entries of a sales invoice: numbered per year, lines rewritten on a
    // new save, the number kept when the date moves to another year.
    void entries_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void entries()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM PrimaNotaDettagli"), QStringLiteral("test"));
        gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM PrimaNota"), QStringLiteral("test"));
        const int clienti = count(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ¤01001001¤"));
        const int fornitori = count(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ¤02001001¤"));
        const ContiControparti conti{clienti, fornitori};
        DatiPrimaNota d;
        d.fkCausale = 1;   // FV: Dare customers, Avere revenue and VAT
        d.descrizione = QStringLiteral("Fattura N.0001 DEL 10/03/2026 - l'ultima");
        d.importo = eur("1220");
        d.importoIva = eur("220");
        d.data = QDate(2026, 3, 10);
        d.dataValuta = d.data;
        d.codicePartita = QStringLiteral("PARTITA-0123456789-ABCDEF");

        gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
        const int first = salvaPrimaNota(d, conti);
        const int second = salvaPrimaNota(d, conti);
        d.data = QDate(2027, 1, 2);
        const int nextYear = salvaPrimaNota(d, conti);
        gAdoSqlServer().commitTrasaction(QStringLiteral("test"));
        QVERIFY(first > 0 && second > 0 && nextYear > 0);
        QCOMPARE(getProgPrimaNotaByID(first), 1);
        QCOMPARE(getProgPrimaNotaByID(second), 2);
        QCOMPARE(getProgPrimaNotaByID(nextYear), 1);
        QCOMPARE(linesOf(first), (QStringList{QString::number(clienti) + " D 1220", QStringLiteral("20 A 1000"), QStringLiteral("14 A 220")}));
        QCOMPARE(testdb::value(QStringLiteral("SELECT CodicePartita FROM PrimaNota WHERE RID = ") + QString::number(first)).toString(),
                 QStringLiteral("PARTITA-0123456789-A"));

        // Saved again on 2027 with new amounts: number kept, lines replaced.
        d.rid = second;
        d.importo = eur("610");
        d.importoIva = eur("110");
        QCOMPARE(salvaPrimaNota(d, conti), second);
        QCOMPARE(getProgPrimaNotaByID(second), 2);
        QCOMPARE(linesOf(second), (QStringList{QString::number(clienti) + " D 610", QStringLiteral("20 A 500"), QStringLiteral("14 A 110")}));

        QCOMPARE(modificaImportoPrimaNota(second, eur("122"), eur("22"), Currency(), conti), second);
        QCOMPARE(linesOf(second), (QStringList{QString::number(clienti) + " D 122", QStringLiteral("20 A 100"), QStringLiteral("14 A 22")}));
        QCOMPARE(modificaImportoPrimaNota(0, eur("1"), Currency(), Currency(), conti), 0);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);

        // The entry moved to 2027 keeps its place in the 2026 sequence; a
        // number freed at the end of the run is given again.
        d.rid = 0;
        d.data = QDate(2026, 12, 31);
        gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
        const int third = salvaPrimaNota(d, conti);
        gAdoSqlServer().commitTrasaction(QStringLiteral("test"));
        QCOMPARE(getProgPrimaNotaByID(third), 3);
        gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota = ") + QString::number(third), QStringLiteral("test"));
        gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM PrimaNota WHERE RID = ") + QString::number(third), QStringLiteral("test"));
        gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
        QCOMPARE(getNewProgressivoPrimaNota(d.data), 3);
        gAdoSqlServer().rollbackTrasaction(QStringLiteral("test"));
    }

    // Outside a transaction no number is given: another workstation could
    // take the same one before it is written.
    void numberOutsideTransaction_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void numberOutsideTransaction()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::ErrorRecorder errors;
        QCOMPARE(getNewProgressivoPrimaNota(QDate(2026, 5, 5)), -1);
        QCOMPARE(errors.reports.size(), 1);
        DatiPrimaNota d;
        d.fkCausale = 1;
        d.data = QDate(2026, 5, 5);
        d.dataValuta = d.data;
        QCOMPARE(salvaPrimaNota(d, kControparti), -1);
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM PrimaNota WHERE DATA = ") + gAdoSqlServer().getSQLDate(d.data)), 0);
    }

    // Values that would be stored wrong, and a causal without accounts,
    // leave nothing after the rollback, and their message comes only then.
    void refusedValues_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<int>("causale");
        QTest::addColumn<QDate>("data");
        QTest::addColumn<QDate>("valuta");
        QTest::addColumn<QString>("iva");
        QTest::addColumn<QString>("message");
        const QDate ok(2026, 6, 1);
        for (const QString& b : testdb::backends()) {
            testdb::row(b, QStringLiteral("no date")) << 1 << QDate() << ok << "0" << "Data non valida: Data della registrazione";
            testdb::row(b, QStringLiteral("no value date")) << 1 << ok << QDate() << "0" << "Data non valida: Data valuta";
            testdb::row(b, QStringLiteral("date before 1753")) << 1 << QDate(1700, 1, 1) << ok << "0" << "Data non valida";
            testdb::row(b, QStringLiteral("net amount out of range")) << 1 << ok << ok << "-1" << "Importo fuori dai limiti consentiti";
            testdb::row(b, QStringLiteral("no causal")) << 0 << ok << ok << "0" << "Impossibile assegnare i conti DARE/AVERE!";
        }
    }
    void refusedValues()
    {
        QFETCH(QString, backend);
        QFETCH(int, causale);
        QFETCH(QDate, data);
        QFETCH(QDate, valuta);
        QFETCH(QString, iva);
        QFETCH(QString, message);
        QVERIFY(testdb::shared(backend).isValid());
        const int before = count(QStringLiteral("SELECT COUNT(*) FROM PrimaNota"));
        DatiPrimaNota d;
        d.fkCausale = causale;
        d.data = data;
        d.dataValuta = valuta;
        d.importo = eur("922337203685477");
        d.importoIva = eur(qPrintable(iva));
        testdb::ScriptedMsgBox boxes;
        gAdoSqlServer().beginTrasaction(QStringLiteral("test"));
        QCOMPARE(salvaPrimaNota(d, kControparti), -1);
        QCOMPARE(boxes.shown.size(), 0);
        boxes.expect(message, vb::OK);
        gAdoSqlServer().rollbackTrasaction(QStringLiteral("test"));
        QVERIFY(boxes.allAnswered());
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM PrimaNota")), before);
    }
};

QTEST_GUILESS_MAIN(TestPrimaNota)
#include "tst_primanota.moc"
