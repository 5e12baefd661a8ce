// Document rows without a window. The arithmetic of a row and of the totals to the cent: the worked examples of
// discounts in cascade, VAT included and excluded, quantities with decimals, the withholding. Row entry: rows written,
// merged, inserted, deleted and brought back, with the state the save reads, and the totals that follow.
#include "common/italiantext.h"
#include "documents/calcoloriga.h"
#include "documents/editordocumento.h"
#include "documents/totalidocumento.h"
#include "support/columns.h"

#include <QTest>

namespace {

// The words of a text: "83,79 100" is {"83,79", "100"}.
QStringList words(const QString& text) { return text.split(u' '); }
// A row of "listino sconto1 sconto2 sconto3 quantita aliquota"; two blanks in a row leave a field empty.
EditorRiga riga(const QString& dati)
{
    const QStringList d = words(dati);
    EditorRiga r;
    std::tie(r.prezzoListino, r.sconto1, r.sconto2, r.sconto3, r.quantita, r.aliquota) =
        std::tie(d[0], d[1], d[2], d[3], d[4], d[5]);
    return r;
}

// The columns of a data table, by type and name.
using testdb::columns;
// The editor holding a product at a list price, as row entry fills it.
void prodotto(EditorDocumento& e, int key, const QString& codice, const QString& listino, const QString& quantita,
              const QString& sconto1 = QStringLiteral("0"))
{
    e.pulisciRiga();
    std::tie(e.dati.prodotto, e.dati.codice, e.dati.descrizione, e.dati.iva) =
        std::tuple(key, codice, "Articolo " + codice, 1);
    std::tie(e.riga.prezzoListino, e.riga.quantita, e.riga.sconto1, e.riga.aliquota) =
        std::tuple(listino, quantita, sconto1, "22");
}

} // namespace

class TestDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // calcolaPrezzoNetto: the discount passes through a Single, so a large price loses digits in its net price.
    void prezzoNetto_data()
    {
        QTest::addColumn<QString>("dati");   // listino, s1, s2, s3, quantita, aliquota
        QTest::addColumn<QString>("attesi"); // netto, scNetto, totPrezzoNetto, ivaProdotto, totIva, totRiga
        QTest::newRow("10+5+2 on 100") << "100 10 5 2 1 22"
                                       << "83,79 16,210000 83,790000 18,433800 18,433800 102,223800";
        QTest::newRow("quantity 2,5") << "100 10 5 2 2,5 22"
                                      << "83,79 16,210000 209,475000 18,433800 46,084500 255,559500";
        QTest::newRow("large price, 33%")
            << "123456,78 33 0 0 1 10"
            << "82716,0417 40.740,737400 82.716,041700 8.271,604170 8.271,604000 90.987,645700";
        QTest::newRow("no discount, exempt") << "19,99 0 0 0 3 0"
                                             << "19,99 0,000000 59,970000 0,000000 0,000000 59,970000";
    }

    void prezzoNetto()
    {
        QFETCH(QString, dati);
        QFETCH(QString, attesi);
        EditorRiga r = riga(dati);
        const Currency netto = calcolaPrezzoNetto(r, getValoreCurrency(r.prezzoListino), getValoreSingle(r.aliquota));
        QCOMPARE((QStringList{plainTextIt(netto), r.scNetto, r.totPrezzoNetto, r.ivaProdotto, r.totIva, r.totRiga}),
                 words(attesi));
    }

    // Leaving the list price: the net and VAT-included prices and the taxable amount follow; no price or rate stops.
    void listino()
    {
        EditorRiga r = riga("100 10 5 2 2,5 22");
        QVERIFY(prezzoListinoLasciato(r, 2));
        QCOMPARE((QStringList{r.prezzoNetto, r.tagPrezzoListino, r.prezzoIvaInclusa, r.totRigaImponibile,
                              r.ultimoListino}),
                 words("83,79 83,79 102,22 209,48 100"));
        for (const char* dati : {"0 10 5  1 22", " 10 5  1 22", "50 10 5  1 "}) {
            EditorRiga zero = riga(dati);
            QVERIFY(!prezzoListinoLasciato(zero, 2));
            QCOMPARE((QStringList{zero.prezzoListino, zero.sconto1, zero.sconto3, zero.prezzoIvaInclusa}),
                     words("0,00 0,00 0,00 0,00"));
            QVERIFY(zero.scNetto.isEmpty()); // never computed
        }
        // Three decimals for prices: the formats follow.
        EditorRiga tre = riga("10,1235 0 0 0 1 22");
        QVERIFY(prezzoListinoLasciato(tre, 3));
        QCOMPARE((QStringList{tre.prezzoNetto, tre.prezzoIvaInclusa}), words("10,124 12,35"));
    }

    // A discount left blank becomes 0; without a list price nothing moves.
    void sconto()
    {
        EditorRiga r = riga("200 50   1 22");
        scontoLasciato(r, 2);
        QCOMPARE((QStringList{r.sconto2, r.sconto3, r.prezzoNetto, r.prezzoIvaInclusa}),
                 words("0,00 0,00 100,00 122,00"));
        r = riga("0 50   1 22");
        scontoLasciato(r, 2);
        QVERIFY(r.sconto2.isEmpty());
    }

    // A net price typed over the computed one wipes the discounts; a VAT-included price does so through the net price.
    void prezzoDigitato()
    {
        EditorRiga r = riga("100 10 5 2 2 22");
        prezzoListinoLasciato(r, 2);
        r.prezzoNetto = "90";
        prezzoNettoLasciato(r, 2);
        QCOMPARE((QStringList{r.sconto1, r.sconto2, r.prezzoListino, r.prezzoIvaInclusa, r.totRigaImponibile}),
                 words("0,00 0,00 90,00 109,80 180,00"));
        // Unchanged, the computed net price keeps its discounts.
        EditorRiga same = riga("100 10 0 0 1 22");
        prezzoListinoLasciato(same, 2);
        prezzoNettoLasciato(same, 2);
        QCOMPARE(same.sconto1, QStringLiteral("10"));
        EditorRiga ivato = riga("100 10 0 0 1 22");
        prezzoListinoLasciato(ivato, 2);
        ivato.prezzoIvaInclusa = "61";
        prezzoIvaInclusaLasciato(ivato, 2);
        QCOMPARE((QStringList{ivato.prezzoNetto, ivato.sconto1, ivato.prezzoListino, ivato.prezzoIvaInclusa}),
                 words("50,00 0,00 50,00 61,00"));
        // Worked back from a net price, the discount goes all to the first; without a list price it is 0.
        r = riga("100 0 0 0 1 22");
        r.prezzoNetto = "83,79";
        ricalcolaSconti(r, 2);
        QCOMPARE((QStringList{r.sconto1, r.sconto2, r.sconto3}), words("16,21 0,00 0,00"));
        r.prezzoListino = "0";
        ricalcolaSconti(r, 2);
        QCOMPARE(r.sconto1, QStringLiteral("0,00"));
    }

    // Prices VAT included: a new rate keeps the VAT-included price and works the list price back through the discounts.
    void prezziIvaInclusa()
    {
        EditorRiga r = riga("111,11 10 0 0 1 22");
        r.prezzoIvaInclusa = "122,00";
        QVERIFY(setPrezzi(r, true, 2));
        QCOMPARE((QStringList{r.tagPrezzoNetto, r.prezzoNetto, r.prezzoListino, r.ultimoListino}),
                 words("100,00 100,00 111,11 111,11"));
        r.aliquota = "10";
        QVERIFY(aliquotaCambiata(r, true, 2));
        QCOMPARE((QStringList{r.prezzoIvaInclusa, r.prezzoNetto, r.prezzoListino}), words("122,00 110,91 123,23"));
        // A discount of 100 cannot be worked back: nothing moves.
        EditorRiga cento = riga("50 100 0 0 1 22");
        cento.prezzoIvaInclusa = "10,00";
        QVERIFY(!setPrezzi(cento, true, 2));
        QCOMPARE(cento.prezzoListino, QStringLiteral("50"));
    }

    // The cells of a confirmed row: the total with VAT is worked from the list price, not from the rounded net price.
    void celle()
    {
        EditorRiga r = riga("100 10 5 2 2,5 22");
        confermaRiga(r, 2);
        const CelleRiga c = celleRiga(r, 2.5f, 2);
        QCOMPARE((QStringList{c.quantita, c.listino, c.sconti, c.sc1, c.netto, c.nettoEsteso, c.imponibile, c.iva,
                              c.importo, c.scNetto, c.ivaProd, c.totIvaProd}),
                 words("2,50 100,00 10+5+2 10 83,79 83,79 209,48 22,00 255,56 16,21 18,4338 46,0845"));
    }

    // Totals from the rows: each taxable amount rounded to two decimals through its format, VAT at four, the document's
    // VAT the difference; kit parents and deleted rows left out; the withholding on its share.
    void totali()
    {
        const QList<RigaPerTotali> righe{{"2,500", "209,48", "22", true},
                                         {"1,000", "0,005", "22", true},
                                         {"4,000", "999,99", "22", false}};
        const TotaliDocumento t = calcolaTotali(righe, 3, "20", "50");
        QCOMPARE((QStringList{t.imponibile, t.iva, t.importo, t.righe, t.quantita, t.rda, t.daPagare}),
                 words("209,49 46,09 255,58 2 3,500 20,95 234,63"));
        QCOMPARE(t.totDocumento, Currency::fromRaw(2555778));
        // One row whose VAT has four decimals: the VAT shown is the difference of the totals.
        const TotaliDocumento una = calcolaTotali({{"1", "10,15", "22", true}}, 2, "0", "0");
        QCOMPARE((QStringList{una.imponibile, una.iva, una.importo}), words("10,15 2,23 12,38"));
        QVERIFY(una.rda.isEmpty());
    }

    // Three rows as read with a stored document, then one change: inserting after the current row or deleting a row
    // marks the unchanged rows below it changed; a deleted row stays, hidden, out of the totals; a stored row confirmed
    // again is changed.
    void stati_data()
    {
        columns<QString, QString, QString>("azione", "attesi", "imponibile");
        const auto row = [](const char* azione, const char* attesi, const char* imponibile) {
            QTest::newRow(azione) << QString(azione) << QString(attesi) << QString(imponibile);
        };
        row("append", "0 0 0 1", "40,00");
        row("insert after the first", "0 1 2 2", "40,00");
        row("delete the second", "0 3 2", "20,00");
        row("delete the last", "0 0 3", "20,00");
        row("bring back and confirm", "0 2 0", "30,00");
    }

    void stati()
    {
        QFETCH(QString, azione);
        QFETCH(QString, attesi);
        QFETCH(QString, imponibile);
        EditorDocumento e;
        for (int i = 1; i <= 3; ++i) {
            prodotto(e, i, QStringLiteral("P%1").arg(i), QStringLiteral("10"), QStringLiteral("1"));
            const int r = e.confermaRiga();
            e.griglia().setCella(r, colonna::Rid, QString::number(100 + i));
            e.griglia().setCella(r, colonna::Gestione, QStringLiteral("0"));
        }
        e.corrente = -1;
        const bool insert = azione.startsWith("insert");
        if (insert || azione == "append") {
            e.corrente = insert ? 0 : -1;
            prodotto(e, 9, "NUOVO", "10", "1");
            QCOMPARE(e.confermaRiga(), insert ? 1 : 3);
        } else if (azione.startsWith("delete")) {
            const int deleted = azione.endsWith("second") ? 1 : 2;
            e.eliminaRiga(deleted);
            QVERIFY(!e.griglia().visibile(deleted));
        } else {
            QVERIFY(e.getRowFromGrid(1));
            QCOMPARE(e.confermaRiga(), 1);
        }
        QStringList stati;
        for (int i = 0; i < e.griglia().righe(); ++i)
            stati << QString::number(e.griglia().stato(i));
        QCOMPARE(stati.join(u' '), attesi);
        QCOMPARE(e.totali().imponibile, imponibile);
    }

    // Adding to the previous row: an equal row takes the quantity and its amounts follow; other discounts, a "/" code
    // or the box off make a row of their own.
    void aggiungiPrecedente_data()
    {
        // attesi: quantity, taxable amount and amount of each row, then the document's taxable amount.
        columns<QString, QString, bool, QString>("codice", "sconto", "spunta", "attesi");
        const auto row = [](const char* name, const char* codice, const char* sconto, bool spunta, const char* attesi) {
            QTest::newRow(name) << QString(codice) << QString(sconto) << spunta << QString(attesi);
        };
        row("merged", "VITE", "10", true, "5,00 45,00 54,90 45,00");
        row("other discount", "VITE", "5", true, "2,00 18,00 21,96 3,00 28,50 34,77 46,50");
        row("box off", "VITE", "10", false, "2,00 18,00 21,96 3,00 27,00 32,94 45,00");
        row("free row", "/NOTA", "10", true, "2,00 18,00 21,96 3,00 27,00 32,94 45,00");
    }

    void aggiungiPrecedente()
    {
        QFETCH(QString, codice);
        QFETCH(QString, sconto);
        QFETCH(bool, spunta);
        QFETCH(QString, attesi);
        EditorDocumento e;
        prodotto(e, 7, codice, "10", "2", "10");
        e.confermaRiga();
        prodotto(e, 7, codice, "10", "3", sconto);
        e.aggiungiPrecedente = spunta;
        e.confermaRiga();
        QStringList cells;
        for (int i = 0; i < e.griglia().righe(); ++i)
            for (int c : {colonna::Quantita, colonna::Imponibile, colonna::Importo})
                cells << e.griglia().cella(i, c);
        QCOMPARE(cells << e.totali().imponibile, words(attesi));
    }

    // A row brought back shows what was confirmed; a deleted row can't be.
    void rigaRiportata()
    {
        EditorDocumento e;
        prodotto(e, 3, "DADO", "100", "2,5", "10");
        e.riga.sconto2 = "5";
        e.riga.sconto3 = "2";
        e.confermaRiga();
        QVERIFY(e.getRowFromGrid(0));
        QCOMPARE((QStringList{e.riga.prezzoListino, e.riga.prezzoNetto, e.riga.prezzoIvaInclusa,
                              e.riga.totRigaImponibile, e.riga.sconto1, e.riga.quantita}),
                 words("100,00 83,79 102,22 209,48 10 2,50"));
        QCOMPARE(e.posizione, 0);
        e.eliminaRiga(0);
        QVERIFY(!e.getRowFromGrid(0));
        QCOMPARE(e.totali().righe, QStringLiteral("0"));
    }

    // A kit row is left out of the totals and its components count; they stay hidden until opened, can't be copied,
    // and keep naming their kit when a row is inserted above it.
    void distinta()
    {
        EditorDocumento e(2, "*");
        prodotto(e, 1, "P0", "10", "1");
        e.confermaRiga();
        prodotto(e, 2, "*KIT", "0", "1");
        confermaRiga(e.riga, 2);
        QCOMPARE(e.griglia().addElement(-1, e.dati, celleRiga(e.riga, 1, 2), false, 0, true), 1);
        prodotto(e, 3, "VITE", "10", "4");
        std::tie(e.dati.padre, e.corrente) = std::tuple("*1", 1);
        QCOMPARE(e.confermaRiga(), 2);
        e.corrente = 0;
        prodotto(e, 4, "DADO", "10", "1");
        QCOMPARE(e.confermaRiga(), 1);
        QCOMPARE((QStringList{e.griglia().cella(2, colonna::Codice), e.griglia().cella(3, colonna::IdDistintaBase),
                              e.totali().righe, e.totali().imponibile}),
                 words("*KIT *2 3 60,00"));
        QVERIFY(!e.griglia().visibile(3));
        QCOMPARE(e.griglia().icona(2, "*"), IconaRiga::PadreChiuso);
        QVERIFY(e.griglia().apriChiudiFigli(2));
        QVERIFY(e.griglia().visibile(3) && e.griglia().figliAperti(2));
        QCOMPARE(e.griglia().icona(3, "*"), IconaRiga::Figlio);
        QVERIFY(e.griglia().copiaRiga(3).isEmpty());
    }

    // A copied row comes back as a new row with the same amounts.
    void copiaIncolla()
    {
        EditorDocumento e;
        QVERIFY(!e.incollaRiga(QString()));
        prodotto(e, 5, "BULLONE", "3,50", "10");
        e.confermaRiga();
        e.griglia().setCella(0, colonna::Rid, "55");
        QVERIFY(e.incollaRiga(e.griglia().copiaRiga(0)));
        QCOMPARE(e.griglia().righe(), 2);
        QCOMPARE(e.griglia().stato(1), 1);
        QVERIFY(e.griglia().cella(1, colonna::Rid).isEmpty());
        QCOMPARE(e.griglia().cella(1, colonna::Imponibile), e.griglia().cella(0, colonna::Imponibile));
        QCOMPARE(e.totali().imponibile, QStringLiteral("70,00"));
    }
};

QTEST_APPLESS_MAIN(TestDocuments)
#include "tst_documents.moc"
