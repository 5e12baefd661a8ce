// The arithmetic of document rows and totals to the cent: the worked
// examples of discounts in cascade, VAT included and excluded, quantities
// with decimals, the withholding.
#include "common/italiantext.h"
#include "documents/calcoloriga.h"
#include "documents/totalidocumento.h"

#include <QTest>

namespace {

EditorRiga riga(const QString& listino, const QString& s1, const QString& s2, const QString& s3, const QString& q,
                const QString& aliquota)
{
    EditorRiga r;
    r.prezzoListino = listino;
    r.sconto1 = s1;
    r.sconto2 = s2;
    r.sconto3 = s3;
    r.quantita = q;
    r.aliquota = aliquota;
    return r;
}

} // namespace

class TestCalcoloRiga : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // calcolaPrezzoNetto: the discount value passes through a Single, so a
    // large price loses digits in its net price, as it always has.
    void prezzoNetto_data()
    {
        QTest::addColumn<QStringList>("dati");   // listino, s1, s2, s3, quantita, aliquota
        QTest::addColumn<QStringList>("attesi"); // netto, scNetto, totPrezzoNetto, ivaProdotto, totIva, totRiga
        QTest::newRow("10+5+2 on 100") << QStringList{"100", "10", "5", "2", "1", "22"}
                                       << QStringList{"83,79",     "16,210000", "83,790000",
                                                      "18,433800", "18,433800", "102,223800"};
        QTest::newRow("quantity 2,5") << QStringList{"100", "10", "5", "2", "2,5", "22"}
                                      << QStringList{"83,79",     "16,210000", "209,475000",
                                                     "18,433800", "46,084500", "255,559500"};
        QTest::newRow("large price, 33%") << QStringList{"123456,78", "33", "0", "0", "1", "10"}
                                          << QStringList{"82716,0417",   "40.740,737400", "82.716,041700",
                                                         "8.271,604170", "8.271,604000",  "90.987,645700"};
        QTest::newRow("no discount, exempt")
            << QStringList{"19,99", "0", "0", "0", "3", "0"}
            << QStringList{"19,99", "0,000000", "59,970000", "0,000000", "0,000000", "59,970000"};
    }
    void prezzoNetto()
    {
        QFETCH(QStringList, dati);
        QFETCH(QStringList, attesi);
        EditorRiga r = riga(dati[0], dati[1], dati[2], dati[3], dati[4], dati[5]);
        const Currency netto = calcolaPrezzoNetto(r, getValoreCurrency(dati[0]), getValoreSingle(dati[5]));
        QCOMPARE((QStringList{plainTextIt(netto), r.scNetto, r.totPrezzoNetto, r.ivaProdotto, r.totIva, r.totRiga}),
                 attesi);
    }

    // Leaving the list price: the net price, the VAT-included price and the
    // row's taxable amount follow; a list price of 0 or no rate stops there.
    void listino()
    {
        EditorRiga r = riga("100", "10", "5", "2", "2,5", "22");
        QVERIFY(prezzoListinoLasciato(r, 2));
        QCOMPARE((QStringList{r.prezzoNetto, r.tagPrezzoListino, r.prezzoIvaInclusa, r.totRigaImponibile,
                              r.ultimoListino}),
                 (QStringList{"83,79", "83,79", "102,22", "209,48", "100"}));

        for (const auto& [listino, aliquota] : {std::pair{"0", "22"}, std::pair{"", "22"}, std::pair{"50", ""}}) {
            EditorRiga zero = riga(listino, "10", "5", "", "1", aliquota);
            QVERIFY(!prezzoListinoLasciato(zero, 2));
            QCOMPARE((QStringList{zero.prezzoListino, zero.sconto1, zero.sconto3, zero.prezzoIvaInclusa}),
                     (QStringList{"0,00", "0,00", "0,00", "0,00"}));
            QVERIFY(zero.scNetto.isEmpty()); // never computed
        }
        // Three decimals for prices: the formats follow.
        EditorRiga tre = riga("10,1235", "0", "0", "0", "1", "22");
        QVERIFY(prezzoListinoLasciato(tre, 3));
        QCOMPARE(tre.prezzoNetto, QStringLiteral("10,124"));
        QCOMPARE(tre.prezzoIvaInclusa, QStringLiteral("12,35"));
    }

    // A discount left blank becomes 0; without a list price nothing moves.
    void sconto()
    {
        EditorRiga r = riga("200", "50", "", "", "1", "22");
        scontoLasciato(r, 2);
        QCOMPARE((QStringList{r.sconto2, r.sconto3, r.prezzoNetto, r.prezzoIvaInclusa}),
                 (QStringList{"0,00", "0,00", "100,00", "122,00"}));
        EditorRiga vuota = riga("0", "50", "", "", "1", "22");
        scontoLasciato(vuota, 2);
        QVERIFY(vuota.sconto2.isEmpty());
    }

    // A net price typed over the computed one wipes the discounts; a
    // VAT-included price typed does the same through the net price.
    void prezzoDigitato()
    {
        EditorRiga r = riga("100", "10", "5", "2", "2", "22");
        prezzoListinoLasciato(r, 2);
        r.prezzoNetto = "90";
        prezzoNettoLasciato(r, 2);
        QCOMPARE((QStringList{r.sconto1, r.sconto2, r.prezzoListino, r.prezzoIvaInclusa, r.totRigaImponibile}),
                 (QStringList{"0,00", "0,00", "90,00", "109,80", "180,00"}));

        // Unchanged, the computed net price keeps its discounts.
        EditorRiga same = riga("100", "10", "0", "0", "1", "22");
        prezzoListinoLasciato(same, 2);
        prezzoNettoLasciato(same, 2);
        QCOMPARE(same.sconto1, QStringLiteral("10"));

        EditorRiga ivato = riga("100", "10", "0", "0", "1", "22");
        prezzoListinoLasciato(ivato, 2);
        ivato.prezzoIvaInclusa = "61";
        prezzoIvaInclusaLasciato(ivato, 2);
        QCOMPARE((QStringList{ivato.prezzoNetto, ivato.sconto1, ivato.prezzoListino, ivato.prezzoIvaInclusa}),
                 (QStringList{"50,00", "0,00", "50,00", "61,00"}));
    }

    // With prices entered VAT included, a new rate keeps the VAT-included
    // price and works the list price back through the discounts.
    void prezziIvaInclusa()
    {
        EditorRiga r = riga("111,11", "10", "0", "0", "1", "22");
        r.prezzoIvaInclusa = "122,00";
        QVERIFY(setPrezzi(r, true, 2));
        QCOMPARE((QStringList{r.tagPrezzoNetto, r.prezzoNetto, r.prezzoListino, r.ultimoListino}),
                 (QStringList{"100,00", "100,00", "111,11", "111,11"}));
        r.aliquota = "10";
        QVERIFY(aliquotaCambiata(r, true, 2));
        QCOMPARE((QStringList{r.prezzoIvaInclusa, r.prezzoNetto, r.prezzoListino}),
                 (QStringList{"122,00", "110,91", "123,23"}));

        // A discount of 100 cannot be worked back: nothing moves.
        EditorRiga cento = riga("50", "100", "0", "0", "1", "22");
        cento.prezzoIvaInclusa = "10,00";
        QVERIFY(!setPrezzi(cento, true, 2));
        QCOMPARE(cento.prezzoListino, QStringLiteral("50"));
    }

    void ricalcolo()
    {
        EditorRiga r = riga("100", "0", "0", "0", "1", "22");
        r.prezzoNetto = "83,79";
        ricalcolaSconti(r, 2);
        QCOMPARE((QStringList{r.sconto1, r.sconto2, r.sconto3}), (QStringList{"16,21", "0,00", "0,00"}));
        r.prezzoListino = "0";
        ricalcolaSconti(r, 2);
        QCOMPARE(r.sconto1, QStringLiteral("0,00"));
    }

    // The cells of a confirmed row: the total with VAT is worked from the
    // list price, not from the rounded net price.
    void celle()
    {
        EditorRiga r = riga("100", "10", "5", "2", "2,5", "22");
        confermaRiga(r, 2);
        const CelleRiga c = celleRiga(r, 2.5f, 2);
        QCOMPARE((QStringList{c.quantita, c.listino, c.sconti, c.sc1, c.netto, c.nettoEsteso, c.imponibile, c.iva,
                              c.importo, c.scNetto, c.ivaProd, c.totIvaProd}),
                 (QStringList{"2,50", "100,00", "10+5+2", "10", "83,79", "83,79", "209,48", "22,00", "255,56", "16,21",
                              "18,4338", "46,0845"}));
    }

    // Totals from the rows: each taxable amount rounded to two decimals
    // through its format, VAT at four, the document's VAT the difference;
    // kit parents and deleted rows left out; the withholding on its share.
    void totali()
    {
        const QList<RigaPerTotali> righe{{"2,500", "209,48", "22", true},
                                         {"1,000", "0,005", "22", true},
                                         {"4,000", "999,99", "22", false}};
        const TotaliDocumento t = calcolaTotali(righe, 3, "20", "50");
        QCOMPARE((QStringList{t.imponibile, t.iva, t.importo, t.righe, t.quantita, t.rda, t.daPagare}),
                 (QStringList{"209,49", "46,09", "255,58", "2", "3,500", "20,95", "234,63"}));
        QCOMPARE(t.totDocumento, Currency::fromRaw(2555778));

        // One row whose VAT has four decimals: the VAT shown is the
        // difference of the totals.
        const TotaliDocumento una = calcolaTotali({{"1", "10,15", "22", true}}, 2, "0", "0");
        QCOMPARE((QStringList{una.imponibile, una.iva, una.importo}), (QStringList{"10,15", "2,23", "12,38"}));
        QVERIFY(una.rda.isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestCalcoloRiga)
#include "tst_calcoloriga.moc"
