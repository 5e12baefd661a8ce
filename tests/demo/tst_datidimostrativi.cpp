// Demo data on both back ends: a small firm made once per back end, then what the firm must hold for a user to try the
// program on it: every document type with the journal, due dates and stock its causal asks for, numbers in date
// order, codes that pass the program's own checks, stock rows equal to a recalculation from the documents, and no
// second run over it.
#include "common/codicefiscale.h"
#include "common/currency.h"
#include "common/ean13.h"
#include "core/optionstore.h"
#include "demo/datidimostrativi.h"
#include "stock/ricalcologiacenze.h"
#include "support/testdb.h"

#include <QtTest>

#include <map>
#include <tuple>

using namespace Qt::StringLiterals;
using testdb::number;
using testdb::rows;

namespace {

constexpr int kDocumenti = 30;

// The firm of the running back end gets its demo data on first use; every step of the progress is kept.
QList<std::pair<int, int>> g_passi;

bool prepara()
{
    static QSet<QString> fatti;
    if (fatti.contains(testdb::BackendTest::backend()))
        return true;
    g_passi.clear();
    testdb::ErrorRecorder segnalazioni;
    QString errore;
    const bool fatto = generaDatiDimostrativi(
        kDocumenti,
        [](int f, int t, const QString&) {
            g_passi << std::pair{f, t};
            return true;
        },
        &errore);
    if (!fatto || !segnalazioni.reports.isEmpty()) {
        qWarning() << errore << (segnalazioni.reports.isEmpty() ? QString() : segnalazioni.reports.first().information);
        return false;
    }
    fatti.insert(testdb::BackendTest::backend());
    return true;
}

QString ofType(const QString& codice)
{
    return QStringLiteral("FROM Movimenti M INNER JOIN TipoDocumenti T ON M.FK_TIPODOCUMENTO = T.RID WHERE "
                          "T.CODICE = ¤%1¤")
        .arg(codice);
}

} // namespace

class TestDatiDimostrativi : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        loadOptionGlobals();
        QVERIFY(prepara());
    }

    // The progress starts at 0, never goes back and ends at its total.
    void progress()
    {
        if (g_passi.isEmpty())
            QSKIP("made by an earlier test of this back end");
        QCOMPARE(g_passi.first().first, 0);
        QCOMPARE(g_passi.last().first, g_passi.last().second);
        for (int i = 1; i < g_passi.size(); ++i) {
            QVERIFY(g_passi.at(i).first >= g_passi.at(i - 1).first);
            QCOMPARE(g_passi.at(i).second, g_passi.first().second);
        }
    }

    void documentTypes_data()
    {
        testdb::columns<QString>({"code"});
        testdb::columns<bool>({"journal", "stock"});
        for (const auto& [codice, primaNota, magazzino] :
             {std::tuple{"FV", true, true}, std::tuple{"FD", true, false}, std::tuple{"NC", true, false},
              std::tuple{"DDT", false, true}, std::tuple{"OC", false, false}, std::tuple{"CF", true, true},
              std::tuple{"TM", false, true}})
            QTest::newRow(codice) << QString(codice) << primaNota << magazzino;
    }

    // Each type is there; an invoice (or load) has its entry and its due dates, other types none; a type that
    // moves goods names its warehouse; numbers follow the dates, within the current year.
    void documentTypes()
    {
        QFETCH(QString, code);
        FETCH_EACH(bool, journal, stock);
        const QString from = ofType(code);
        const int documenti = number("SELECT COUNT(*) " + from);
        QVERIFY(documenti > 0);
        const int conScrittura =
            number("SELECT COUNT(*) " + from + " AND EXISTS (SELECT 1 FROM PrimaNota P WHERE P.RID = M.FK_PrimaNota)");
        const int conScadenze = number(
            "SELECT COUNT(*) " + from + " AND EXISTS (SELECT 1 FROM Scadenze S WHERE S.FK_PrimaNota = M.FK_PrimaNota)");
        QCOMPARE(conScrittura, journal ? documenti : 0);
        QCOMPARE(conScadenze, journal ? documenti : 0);
        const int conMagazzino =
            number("SELECT COUNT(*) " + from + " AND (M.FK_ORIGINE IS NOT NULL OR M.FK_DESTINAZIONE IS NOT NULL)");
        QCOMPARE(conMagazzino, stock ? documenti : 0);
        QDate precedente(QDate::currentDate().year(), 1, 1);
        for (const QVariantList& r : rows("SELECT M.DATA, M.ANNO " + from + " ORDER BY M.PROGRESSIVO")) {
            const QDate data = r.at(0).toDate();
            QVERIFY2(data >= precedente, qPrintable(data.toString()));
            QCOMPARE(r.at(1).toInt(), QDate::currentDate().year());
            precedente = data;
        }
    }

    void codes_data()
    {
        testdb::columns<QString>({"sql", "check"});
        testdb::columns<int>({"least"});
        QTest::newRow("tax codes") << "SELECT CFISCALE FROM Anagrafiche WHERE CFISCALE IS NOT NULL"
                                   << "fiscale" << 30;
        QTest::newRow("VAT numbers") << "SELECT PIVA FROM Anagrafiche WHERE PIVA IS NOT NULL"
                                     << "iva" << 15;
        QTest::newRow("product barcodes") << "SELECT BARCODE FROM Prodotti WHERE BARCODE IS NOT NULL"
                                          << "ean" << 200;
        QTest::newRow("kit barcodes") << "SELECT BARCODE FROM DistintaBase"
                                      << "ean" << 3;
    }

    // Every code passes the check the program applies to it (a numeric tax code is a firm's VAT number), and no
    // two are equal.
    void codes()
    {
        FETCH_EACH(QString, sql, check);
        QFETCH(int, least);
        QStringList sbagliati;
        QSet<QString> visti;
        for (const QVariantList& r : rows(sql)) {
            const QString codice = r.at(0).toString();
            bool valido = false;
            if (check == "ean"_L1)
                valido = codice.size() == 13 && codice.right(1).toInt() == getEAN13ChekDigit(codice);
            else if (check == "iva"_L1 || codice.at(0).isDigit())
                valido = codice.size() == 11 && checkPartitaIva(codice);
            else
                valido = codice.size() == 16 && checkCodiceFiscale(codice);
            if (!valido || visti.contains(codice))
                sbagliati << codice;
            visti.insert(codice);
        }
        QCOMPARE(sbagliati, QStringList());
        QVERIFY2(visti.size() >= least, qPrintable(QString::number(visti.size())));
    }

    void masterData_data()
    {
        testdb::columns<QString>({"sql"});
        testdb::columns<bool>({"some"});
        const auto riga = [](const char* nome, const char* sql, bool some) {
            QTest::newRow(nome) << QString(sql) << some;
        };
        riga("kits with fewer than two parts",
             "SELECT COUNT(*) FROM DistintaBase D WHERE (SELECT COUNT(*) FROM DistintaBaseDettagli R WHERE "
             "R.FK_DISTINTABASE = D.RID) < 2",
             false);
        riga("kits without their product",
             "SELECT COUNT(*) FROM DistintaBase D WHERE NOT EXISTS (SELECT 1 FROM Prodotti P WHERE P.CODICE = "
             "D.CODICE AND P.DISTINTABASE = 1)",
             false);
        riga("sales ranges", "SELECT COUNT(*) FROM CatScVenditeSconti WHERE Sconto1 > 0", true);
        riga("purchase ranges", "SELECT COUNT(*) FROM CatScAcquistoSconti WHERE Sconto1 > 0", true);
        riga("cards without payment term", "SELECT COUNT(*) FROM Anagrafiche WHERE FK_PAGAMENTO IS NULL", false);
        riga("suppliers", "SELECT COUNT(*) FROM Anagrafiche WHERE TIPO = ¤F¤", true);
        riga("documents without rows",
             "SELECT COUNT(*) FROM Movimenti M WHERE NOT EXISTS (SELECT 1 FROM DettagliMovimento D WHERE "
             "D.FK_MOVIMENTO = M.RID)",
             false);
        riga("documents without a payment term", "SELECT COUNT(*) FROM Movimenti WHERE FK_PAGAMENTO IS NULL", false);
        riga("loads kept by cost lot", "SELECT COUNT(DISTINCT TAGLIO) FROM DettagliProdotto WHERE QUANTITA > 0", true);
    }

    void masterData()
    {
        QFETCH(QString, sql);
        QFETCH(bool, some);
        QCOMPARE(number(sql) > 0, some);
    }

    // Every lot holds what the document rows moved into and out of it, no lot is below zero (sales take only what
    // is there), and each product's stock is the sum of its lots.
    void stockMatchesDocuments()
    {
        using Lotto = std::tuple<int, int, qint64>; // product, warehouse, lot
        std::map<Lotto, double> atteso, lotti;
        for (const QVariantList& r : rows("SELECT D.FK_PRODOTTO, D.TAGLIO, D.QUANTITA, M.FK_ORIGINE, M.FK_DESTINAZIONE "
                                          "FROM DettagliMovimento D INNER JOIN Movimenti M ON D.FK_MOVIMENTO = M.RID "
                                          "INNER JOIN Prodotti P ON D.FK_PRODOTTO = P.RID WHERE P.SETGIACENZA <> 0")) {
            const qint64 taglio = Currency::fromDouble(r.at(1).toDouble()).raw();
            if (!r.at(3).isNull())
                atteso[{r.at(0).toInt(), r.at(3).toInt(), taglio}] -= r.at(2).toDouble();
            if (!r.at(4).isNull())
                atteso[{r.at(0).toInt(), r.at(4).toInt(), taglio}] += r.at(2).toDouble();
        }
        QMap<int, double> perProdotto;
        for (const QVariantList& r : rows("SELECT FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA FROM DettagliProdotto")) {
            lotti[{r.at(0).toInt(), r.at(1).toInt(), Currency::fromDouble(r.at(2).toDouble()).raw()}] +=
                r.at(3).toDouble();
            perProdotto[r.at(0).toInt()] += r.at(3).toDouble();
        }
        QVERIFY(atteso.size() > 50);
        QStringList diversi;
        for (const auto& [lotto, quantita] : lotti)
            if (const double a = atteso.count(lotto) ? atteso.at(lotto) : 0.0;
                std::abs(a - quantita) > 1e-6 || quantita < 0)
                diversi << QStringLiteral("%1/%2/%3: %4 (%5)")
                               .arg(std::get<0>(lotto))
                               .arg(std::get<1>(lotto))
                               .arg(std::get<2>(lotto))
                               .arg(quantita)
                               .arg(a);
        for (const auto& [lotto, quantita] : atteso)
            if (!lotti.count(lotto) && std::abs(quantita) > 1e-6)
                diversi << QStringLiteral("%1/%2/%3 missing")
                               .arg(std::get<0>(lotto))
                               .arg(std::get<1>(lotto))
                               .arg(std::get<2>(lotto));
        QCOMPARE(diversi, QStringList());
        for (const QVariantList& r : rows("SELECT RID, GIACENZA FROM Prodotti WHERE SETGIACENZA <> 0"))
            QVERIFY2(std::abs(r.at(1).toDouble() - perProdotto.value(r.at(0).toInt())) < 1e-6,
                     qPrintable(r.at(0).toString()));
    }

    // The stock the saves wrote is the stock a standard recalculation rebuilds from the documents: it changes
    // nothing.
    void recalculationChangesNothing()
    {
        const auto stato = [] {
            QStringList righe;
            for (const QVariantList& r : rows("SELECT RID, FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA FROM "
                                              "DettagliProdotto ORDER BY RID"))
                righe << QStringLiteral("%1 %2 %3 %4 %5")
                             .arg(r.at(0).toInt())
                             .arg(r.at(1).toInt())
                             .arg(r.at(2).toInt())
                             .arg(r.at(3).toDouble(), 0, 'f', 4)
                             .arg(r.at(4).toDouble(), 0, 'f', 4);
            for (const QVariantList& r : rows("SELECT RID, GIACENZA FROM Prodotti ORDER BY RID"))
                righe << QStringLiteral("%1 %2").arg(r.at(0).toInt()).arg(r.at(1).toDouble(), 0, 'f', 4);
            return righe;
        };
        const QStringList prima = stato();
        OpzioniRicalcolo opzioni;
        opzioni.distintaBase = gOptions().distintaBase;
        QVERIFY(ricalcoloStandard(0, opzioni));
        QCOMPARE(stato(), prima);
    }

    // A firm with data is left alone: nothing is written and nothing runs.
    void secondRunRefused()
    {
        const QString conteggi = "SELECT (SELECT COUNT(*) FROM Movimenti) + (SELECT COUNT(*) FROM Anagrafiche) + "
                                 "(SELECT COUNT(*) FROM Prodotti)";
        const int prima = number(conteggi);
        bool chiamato = false;
        QString errore;
        QVERIFY(!generaDatiDimostrativi(
            kMinimoDocumentiDemo, [&](int, int, const QString&) { return chiamato = true; }, &errore));
        QVERIFY2(errore.contains("ditta vuota"_L1), qPrintable(errore));
        QVERIFY(!chiamato);
        QCOMPARE(number(conteggi), prima);
        QVERIFY(!dittaNonVuota().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDatiDimostrativi)
#include "tst_datidimostrativi.moc"
