// The journal engine: the lines a document's amounts make, and the entries
// written on both back ends.
#include "accounting/primanota.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "support/testdb.h"

#include <QtTest>

namespace {

constexpr int kClienti = 3, kFornitori = 12, kRicavi = 20, kIvaDebito = 14;
constexpr int kAcquisti = 17, kIvaCredito = 5, kRitenute = 6;
const ContiControparti kControparti{kClienti, kFornitori};

Currency eur(const QString& text) { return getValoreCurrency(text); }

// "conto:amount" a line, in the order Dare 1, Dare 2, Avere 1, Avere 2; "-" for no line.
QStringList describe(const RighePrimaNota& r)
{
    const auto one = [](int conto, Currency value) {
        return conto > 0 ? QString::number(conto) + ':' + value.toPlainString() : QStringLiteral("-");
    };
    return {one(r.conti.dare1, r.dare1), one(r.conti.dare2, r.dare2), one(r.conti.avere1, r.avere1),
            one(r.conti.avere2, r.avere2)};
}

// The lines written for an entry, "conto D|A amount"; the customers' account is "C".
QStringList linesOf(int entry, int clienti)
{
    QStringList lines;
    const QString sql = "SELECT FK_Conto, DARE, AVERE FROM PrimaNotaDettagli WHERE FK_PrimaNota = %1 ORDER BY RID";
    for (const QVariantList& r : testdb::rows(sql.arg(entry))) {
        const bool dare = !r.at(1).isNull();
        lines << (r.at(0).toInt() == clienti ? QStringLiteral("C") : r.at(0).toString()) + (dare ? " D " : " A ")
                + getValoreCurrency(r.at(dare ? 1 : 2)).toPlainString();
    }
    return lines;
}

} // namespace

class TestPrimaNota : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<ContiCausale>("causale");
        QTest::addColumn<QString>("importo");
        QTest::addColumn<QString>("iva");
        QTest::addColumn<QString>("rda");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const ContiCausale& causale, const char* importo, const char* iva,
                            const char* rda, const QStringList& expected) {
            QTest::newRow(name) << causale << QString(importo) << QString(iva) << QString(rda) << expected;
        };
        const ContiCausale vendita{kClienti, 0, kRicavi, kIvaDebito};
        row("sales invoice", vendita, "122", "22", "0", {"3:122", "-", "20:100", "14:22"});
        row("purchase", {kAcquisti, kIvaCredito, kFornitori, 0}, "122", "22", "0", {"17:100", "5:22", "12:122", "-"});
        row("VAT 0", vendita, "100", "0", "0", {"3:100", "-", "20:100", "14:0"});
        row("negative VAT keeps the whole total", vendita, "-122", "-22", "0", {"3:-122", "-", "20:-122", "14:-22"});
        row("Dare 2 wins over Avere 2", {kAcquisti, kIvaCredito, kFornitori, kIvaDebito}, "122", "22", "0",
            {"17:100", "5:22", "12:122", "-"});
        // Withholding on a causal with Dare 1 on the customers' account.
        row("withholding, customers on Dare 1", {kClienti, kRitenute, kRicavi, kIvaDebito}, "122", "22", "20",
            {"3:102", "6:20", "20:100", "14:22"});
        // Avere 1 on the suppliers' account, step one not taken: Avere 1 is
        // minus the withholding, not the total less it.
        row("withholding, suppliers on Avere 1", {kAcquisti, kIvaCredito, kFornitori, kRitenute}, "122", "22", "20",
            {"17:100", "5:22", "12:-20", "6:20"});
        row("withholding, no counterparty account", vendita, "122", "22", "20", {"3:0", "-", "20:0", "-"});
        row("no accounts", {}, "122", "22", "0", {"-", "-", "-", "-"});
    }
    void lines()
    {
        QFETCH(ContiCausale, causale);
        QFETCH(QString, importo);
        QFETCH(QString, iva);
        QFETCH(QString, rda);
        QFETCH(QStringList, expected);
        QCOMPARE(describe(calcolaRighe(causale, eur(importo), eur(iva), eur(rda), kControparti)), expected);
    }

    // Entries of a sales invoice: numbered per year, lines rewritten on a
    // new save, the number kept when the date moves to another year.
    void entries()
    {
        testdb::empty({"PrimaNotaDettagli", "PrimaNota"});
        const int clienti = testdb::rid("PianoConti", "CODICE = ¤01001001¤");
        const ContiControparti conti{clienti, testdb::rid("PianoConti", "CODICE = ¤02001001¤")};
        DatiPrimaNota d;
        d.fkCausale = 1; // FV: Dare customers, Avere revenue and VAT
        d.descrizione = "Fattura N.0001 DEL 10/03/2026 - l'ultima";
        d.importo = eur("1220");
        d.importoIva = eur("220");
        d.data = QDate(2026, 3, 10);
        d.dataValuta = d.data;
        d.codicePartita = "PARTITA-0123456789-ABCDEF";

        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        const int first = salvaPrimaNota(d, conti);
        const int second = salvaPrimaNota(d, conti);
        d.data = QDate(2027, 1, 2);
        const int nextYear = salvaPrimaNota(d, conti);
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        QVERIFY(first > 0 && second > 0 && nextYear > 0);
        QCOMPARE(getProgPrimaNotaByID(first), 1);
        QCOMPARE(getProgPrimaNotaByID(second), 2);
        QCOMPARE(getProgPrimaNotaByID(nextYear), 1);
        QCOMPARE(linesOf(first, clienti), (QStringList{"C D 1220", "20 A 1000", "14 A 220"}));
        QCOMPARE(testdb::value("SELECT CodicePartita FROM PrimaNota WHERE RID = " + QString::number(first)).toString(),
                 QStringLiteral("PARTITA-0123456789-A"));

        // Saved again on 2027 with new amounts: number kept, lines replaced.
        d.rid = second;
        d.importo = eur("610");
        d.importoIva = eur("110");
        QCOMPARE(salvaPrimaNota(d, conti), second);
        QCOMPARE(getProgPrimaNotaByID(second), 2);
        QCOMPARE(linesOf(second, clienti), (QStringList{"C D 610", "20 A 500", "14 A 110"}));
        QCOMPARE(modificaImportoPrimaNota(second, eur("122"), eur("22"), Currency(), conti), second);
        QCOMPARE(linesOf(second, clienti), (QStringList{"C D 122", "20 A 100", "14 A 22"}));
        QCOMPARE(modificaImportoPrimaNota(0, eur("1"), Currency(), Currency(), conti), 0);

        // The entry moved to 2027 keeps its place in the 2026 sequence; a
        // number freed at the end of the run is given again.
        d.rid = 0;
        d.data = QDate(2026, 12, 31);
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        const int third = salvaPrimaNota(d, conti);
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        QCOMPARE(getProgPrimaNotaByID(third), 3);
        testdb::run("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota = " + QString::number(third));
        testdb::run("DELETE FROM PrimaNota WHERE RID = " + QString::number(third));
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        QCOMPARE(getNewProgressivoPrimaNota(d.data), 3);
        QVERIFY(gAdoSqlServer().rollbackTrasaction("test"));
    }

    // Outside a transaction no number is given: another workstation could
    // take the same one before it is written.
    void numberOutsideTransaction()
    {
        testdb::ErrorRecorder errors;
        QCOMPARE(getNewProgressivoPrimaNota(QDate(2026, 5, 5)), -1);
        QCOMPARE(errors.reports.size(), 1);
        DatiPrimaNota d;
        d.fkCausale = 1;
        d.data = QDate(2026, 5, 5);
        d.dataValuta = d.data;
        QCOMPARE(salvaPrimaNota(d, kControparti), -1);
        QCOMPARE(testdb::count("PrimaNota", "DATA = " + gAdoSqlServer().getSQLDate(d.data)), 0);
    }

    // Values that would be stored wrong, and a causal without accounts,
    // leave nothing after the rollback, and their message comes only then.
    void refusedValues_data()
    {
        QTest::addColumn<int>("causale");
        QTest::addColumn<QDate>("data");
        QTest::addColumn<QDate>("valuta");
        QTest::addColumn<QString>("iva");
        QTest::addColumn<QString>("message");
        const QDate ok(2026, 6, 1);
        QTest::newRow("no date") << 1 << QDate() << ok << "0"
                                 << "Data non valida: Data della registrazione";
        QTest::newRow("no value date") << 1 << ok << QDate() << "0"
                                       << "Data non valida: Data valuta";
        QTest::newRow("date before 1753") << 1 << QDate(1700, 1, 1) << ok << "0"
                                          << "Data non valida";
        QTest::newRow("net amount out of range") << 1 << ok << ok << "-1"
                                                 << "Importo fuori dai limiti consentiti";
        QTest::newRow("no causal") << 0 << ok << ok << "0"
                                   << "Impossibile assegnare i conti DARE/AVERE!";
    }
    void refusedValues()
    {
        QFETCH(int, causale);
        QFETCH(QDate, data);
        QFETCH(QDate, valuta);
        QFETCH(QString, iva);
        QFETCH(QString, message);
        const int before = testdb::count("PrimaNota");
        DatiPrimaNota d;
        d.fkCausale = causale;
        d.data = data;
        d.dataValuta = valuta;
        d.importo = eur("922337203685477");
        d.importoIva = eur(iva);
        testdb::ScriptedMsgBox boxes;
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        QCOMPARE(salvaPrimaNota(d, kControparti), -1);
        QCOMPARE(boxes.shown.size(), 0);
        boxes.expect(message, vb::OK);
        QVERIFY(gAdoSqlServer().rollbackTrasaction("test"));
        QVERIFY(boxes.allAnswered());
        QCOMPARE(testdb::count("PrimaNota"), before);
    }
};

QTEST_GUILESS_MAIN(TestPrimaNota)
#include "tst_primanota.moc"
