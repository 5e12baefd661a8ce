// Document rows that read the database, on both back ends: a product found by code, bar code or extra code fills the
// row for a customer and for a supplier; free rows; a product already in the grid; several products chosen at once;
// kits expanded into their components, rescaled and deleted with their kit; the sums of stored components; the
// purchase-price question.
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "documents/editordocumento.h"
#include "documents/righekit.h"
#include "lookups/lookups.h"
#include "support/testdb.h"

#include <QtTest>

#include <optional>

using testdb::run;

namespace {

constexpr int kMagazzino = 9901, kRossi = 9901, kFornitore = 9902, kIva10 = 9902;

void prepare()
{
    if (testdb::count("Prodotti", "RID = 9901") > 0)
        return;
    run("INSERT INTO Iva (RID, CODICE, DESCRIZIONE, VALORE) VALUES (9901, ¤T22¤, ¤Ventidue¤, 22), "
        "(9902, ¤T10¤, ¤Dieci¤, 10)");
    run("INSERT INTO UnitaMisura (RID, CODICE, DESCRIZIONE) VALUES (9901, ¤PZ¤, ¤Pezzi¤)");
    run("INSERT INTO Marche (RID, CODICE, DESCRIZIONE) VALUES (9901, ¤ACME¤, ¤Acme¤)");
    run("INSERT INTO Magazzini (RID, CODICE, DESCRIZIONE) VALUES (9901, ¤M1¤, ¤Centrale¤)");
    run("INSERT INTO Anagrafiche (RID, NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO) VALUES "
        "(9901, 9901, ¤Rossi¤, ¤C¤, 1, 0), (9902, 9902, ¤Fornitore¤, ¤F¤, NULL, 0)");
    // A screw with a discount of its own, a nut, a free row, two kits, a product bought.
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, BARCODE, EXTRACODICE, LISTINO1, PREZZOACQUISTO, SCONTO, "
        "FK_Iva, "
        "FK_UNITAMISURA, FK_MARCA) VALUES "
        "(9901, ¤VT01¤, ¤Vite¤, ¤800001¤, ¤XV1¤, 10, 6, 5, 9901, 9901, 9901), "
        "(9902, ¤VT02¤, ¤Dado¤, NULL, NULL, 20, 12, 0, 9902, 9901, NULL), "
        "(9903, ¤#LIB¤, ¤Riga libera¤, NULL, NULL, 0, 0, 0, NULL, NULL, NULL), "
        "(9904, ¤*KIT¤, ¤Kit¤, NULL, NULL, 0, 0, 0, 9901, 9901, NULL), "
        "(9905, ¤*VUOTO¤, ¤Kit vuoto¤, NULL, NULL, 0, 0, 0, 9901, 9901, NULL), "
        "(9906, ¤ACQ¤, ¤Acquisto¤, NULL, NULL, 10, 6, 0, 9901, 9901, NULL)");
    run("INSERT INTO DettagliProdotto (RID, FK_MAGAZZINO, FK_PRODOTTO, QUANTITA, TAGLIO) VALUES (9901, 9901, 9901, 12, "
        "0)");
    // The kit: two screws at 100 each, one nut at the price of the document's side.
    run("INSERT INTO DistintaBase (RID, CODICE, DESCRIZIONE) VALUES (9901, ¤*KIT¤, ¤Kit¤), (9902, ¤*VUOTO¤, ¤Vuoto¤)");
    run("INSERT INTO DistintaBaseDettagli (RID, FK_DISTINTABASE, FK_PRODOTTO, CODPRODOTTO, DESCPRODOTTO, QUANTITA, "
        "PREZZO, FK_Iva, VALOREIVA, POS, FK_UM) VALUES (9901, 9901, 9901, ¤VT01¤, ¤Vite¤, 2, 100, 9901, 22, 1, 9901), "
        "(9902, 9901, 9902, ¤VT02¤, ¤Dado¤, 1, 0, 9902, 10, 2, 9901)");
    // Stored components of the stored kit row 9900.
    run("INSERT INTO DettagliMovimento (RID, IK_DETTAGLIOMOVIMENTO, QUANTITA, PREZZO, PREZZONETTO, VALOREIVA) VALUES "
        "(9901, 9900, 6, 100, 83.79, 22), (9902, 9900, 3, 20, 16.758, 10)");
}

// A sale from the warehouse to Rossi, or a purchase from the supplier into the warehouse.
void lato(EditorDocumento& e, bool vendita)
{
    e.carattereRigaLibera = "#";
    e.ivaRigaLibera = kIva10;
    e.ignoraVerificaCodice = false;
    e.prezzi = DocumentoPrezzi();
    std::tie(e.prezzi.tipoOrigine, e.prezzi.origine, e.prezzi.tipoDestinazione, e.prezzi.destinazione) =
        vendita ? std::tuple(3, kMagazzino, 1, kRossi) : std::tuple(2, kFornitore, 3, kMagazzino);
}

// The cells of each row: code, quantity, list price, net price, taxable amount, amount, kit key, shown.
QStringList righe(const GrigliaDocumento& g)
{
    QStringList list;
    for (int i = 0; i < g.righe(); ++i) {
        QStringList c;
        for (int col : {colonna::Codice, colonna::Quantita, colonna::PrezzoListino, colonna::PrezzoNetto,
                        colonna::Imponibile, colonna::Importo, colonna::IdDistintaBase})
            c << g.cella(i, col);
        list << c.join(u'|') + (g.visibile(i) ? "|1" : "|0");
    }
    return list;
}

QStringList totali(const EditorDocumento& e)
{
    return {e.totali().righe, e.totali().imponibile, e.totali().iva, e.totali().importo};
}

// A kit of `quantita` with the discounts given, confirmed; the list price it showed before.
QString kit(EditorDocumento& e, const QString& codice, const QString& quantita, const QString& sconti)
{
    e.prodottoLasciato(codice, false);
    const QString listino = e.riga.prezzoListino;
    e.riga.quantita = quantita;
    std::tie(e.riga.sconto1, e.riga.sconto2, e.riga.sconto3) =
        std::tuple(sconti.section(' ', 0, 0), sconti.section(' ', 1, 1), sconti.section(' ', 2, 2));
    e.confermaRiga();
    return listino;
}

} // namespace

class TestRigheDocumento : public testdb::BackendTest
{
    Q_OBJECT

    std::optional<testdb::ErrorRecorder> m_errori;

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        prepare();
        m_errori.emplace();
    }

    void cleanup()
    {
        const QList<ErrorReport> errori = m_errori->reports;
        m_errori.reset();
        QVERIFY2(errori.isEmpty(), qPrintable(errori.value(0).information));
        BackendTest::cleanup();
    }

    // What the editor holds once the product field is left: code, text, VAT, unit, brand, list price, discounts, net
    // price, stock of the warehouse side.
    void prodotto_data()
    {
        testdb::columns<bool, QString, QString, QString>("vendita", "codice", "digitato", "attesi");
        const auto row = [](const char* name, bool vendita, const char* codice, const char* digitato, const char* a) {
            QTest::newRow(name) << vendita << QString(codice) << QString(digitato) << QString(a);
        };
        const char* vite = "VT01|Vite|T22|22|PZ|ACME|10,00|5,00 0,00 0,00|9,50|12,00";
        row("code, customer", true, "VT01", "", vite);
        row("bar code, customer", true, "800001", "", vite);
        row("extra code, supplier", false, "XV1", "", "VT01|Vite|T22|22|PZ|ACME|6,00|0,00 0,00 0,00|6,00|12,00");
        row("no discount, other rate", true, "VT02", "", "VT02|Dado|T10|10|PZ||20,00|0,00 0,00 0,00|20,00|0,00");
        row("free row keeps the text typed, rate of the option", true, "#LIB", "Trasporto",
            "#LIB|Trasporto|T10|10|||0,00|0,00 0,00 0,00|0,00|0,00");
        row("free row without text", true, "#LIB", "", "#LIB|Riga libera|T10|10|||0,00|0,00 0,00 0,00|0,00|0,00");
    }

    void prodotto()
    {
        QFETCH(bool, vendita);
        FETCH_EACH(QString, codice, digitato, attesi);
        testdb::ScriptedMsgBox box;
        EditorDocumento e(2, "*");
        lato(e, vendita);
        e.dati.descrizione = digitato;
        QCOMPARE(e.prodottoLasciato(codice, false).tipo, EsitoProdotto::Compilato);
        const QStringList shown{e.dati.codice,        e.dati.descrizione,
                                e.dati.codIva,        e.riga.aliquota,
                                e.dati.codUM,         e.dati.marca,
                                e.riga.prezzoListino, e.riga.sconto1 + ' ' + e.riga.sconto2 + ' ' + e.riga.sconto3,
                                e.riga.prezzoNetto,   e.giacenza()};
        QCOMPARE(shown, attesi.split('|'));
        QCOMPARE(e.prodottoLasciato(e.dati.codice, false).tipo, EsitoProdotto::Invariato);
        QCOMPARE(e.prodottoLasciato(QString(), false).tipo, EsitoProdotto::Svuotato);
        QVERIFY(e.dati.prodotto == 0 && e.giacenza().isEmpty());
    }

    // With the screw in the grid: typing it again brings its row back (unless the check is off); another product on
    // the row under edit is refused; a code not found may become a new product.
    void rigaEsistente_data()
    {
        testdb::columns<bool, bool, QString, int, int, QString, int>("ignora", "inModifica", "codice", "esito",
                                                                     "posizione", "box", "risposta");
        const auto row = [](const char* name, bool ignora, bool inModifica, const char* codice, EsitoProdotto::Tipo t,
                            int posizione, const char* box, int risposta) {
            QTest::newRow(name) << ignora << inModifica << QString(codice) << int(t) << posizione << QString(box)
                                << risposta;
        };
        row("duplicate brings its row", false, false, "800001", EsitoProdotto::RigaEsistente, 0, "", 0);
        row("check off: a second row", true, false, "VT01", EsitoProdotto::Compilato, -1, "", 0);
        row("another product on the row under edit", false, true, "VT02", EsitoProdotto::Rifiutato, -1,
            "Attenzione non è possibile continuare con la modifica \ndi un prodotto diverso da quello selezionato \n"
            "Per procedere sarà necessario rimuovere il prodotto selezionato.",
            vb::OK);
        row("not found", false, false, "NOPE", EsitoProdotto::Rifiutato, -1, "Codice: NOPE inesistente!", vb::No);
        row("not found, created", false, false, "NOPE", EsitoProdotto::NuovoProdotto, -1, "Creare un nuovo Prodotto?",
            vb::Yes);
    }

    void rigaEsistente()
    {
        FETCH_EACH(bool, ignora, inModifica);
        FETCH_EACH(QString, codice, box);
        FETCH_EACH(int, esito, posizione, risposta);
        testdb::ScriptedMsgBox boxes;
        if (!box.isEmpty())
            boxes.expect(box, risposta);
        EditorDocumento e(2, "*");
        lato(e, true);
        e.prodottoLasciato("VT01", false);
        e.riga.quantita = "4";
        e.confermaRiga();
        e.ignoraVerificaCodice = ignora;
        if (inModifica)
            QVERIFY(e.getRowFromGrid(0));
        const EsitoProdotto r = e.prodottoLasciato(codice, false);
        QCOMPARE(int(r.tipo), esito);
        QCOMPARE(e.posizione, posizione);
        QCOMPARE(r.codice, r.tipo == EsitoProdotto::NuovoProdotto ? codice : QString());
        if (r.tipo == EsitoProdotto::RigaEsistente)
            QCOMPARE((QStringList{QString::number(r.riga), e.riga.quantita}), (QStringList{"0", "4,00"}));
        QCOMPARE(e.confermaRiga(),
                 r.tipo == EsitoProdotto::Compilato           ? 1
                     : r.tipo == EsitoProdotto::RigaEsistente ? 0
                                                              : -1);
    }

    // Two products chosen at once become two rows; chosen again, they are the rows already there.
    void multipla()
    {
        testdb::ScriptedMsgBox box;
        const ElementChooser previous = setElementChooser([](const QString&, const Recordset&, bool, bool) {
            return QStringList{"E_9901", "E_9902"};
        });
        EditorDocumento e(2, "*");
        lato(e, true);
        QCOMPARE(e.prodottoLasciato("VT0", true).tipo, EsitoProdotto::Multipla);
        QCOMPARE(righe(e.griglia()),
                 (QStringList{"VT01|1,00|10,00|9,50|9,50|11,59||1", "VT02|1,00|20,00|20,00|20,00|22,00||1"}));
        QCOMPARE(totali(e), (QStringList{"2", "29,50", "4,09", "33,59"}));
        QVERIFY(!e.multiselezione && e.posizione == -1);
        e.multiselezioneProdotti({"9901", "9902"});
        QCOMPARE(e.griglia().righe(), 2);
        QCOMPARE(e.posizione, 1);
        e.multiselezioneProdotti({"9901", "0"});
        QVERIFY(e.nuovoProdottoChiesto());
        setElementChooser(previous);
    }

    // A kit becomes its row and its components (hidden, quantities multiplied, the kit's discounts, a component without
    // a price of its own priced by the document's side); the kit row shows their sums and only they are counted.
    void kit_data()
    {
        testdb::columns<QString>({"codice", "quantita", "sconti", "listino", "righe", "totali"});
        QTest::newRow("two components, 10+5+2, three kits")
            << "*KIT"
            << "3"
            << "10 5 2"
            << "220,00"
            << "*KIT|3,00|220,00|184,34|553,01|222,88||1 VT01|6,00|100,00|83,79|502,74|613,34|*0|0 "
               "VT02|3,00|20,00|16,76|50,27|55,30|*0|0"
            << "2 553,01 115,63 668,64";
        QTest::newRow("no components: the kit alone at 0") << "*VUOTO"
                                                           << "2"
                                                           << "0 0 0"
                                                           << "0,00"
                                                           << "*VUOTO|2,00|0,00|0,00|0,00|0,00||1"
                                                           << "0 0,00 0,00 0,00";
    }

    void kit()
    {
        FETCH_EACH(QString, codice, quantita, sconti, listino, righe, totali);
        testdb::ScriptedMsgBox box;
        EditorDocumento e(2, "*");
        lato(e, true);
        QCOMPARE(::kit(e, codice, quantita, sconti), listino);
        QCOMPARE(::righe(e.griglia()), righe.split(' '));
        QCOMPARE(::totali(e), totali.split(' '));
    }

    // A stored kit: a new quantity rescales its components, which are marked changed; deleting it deletes them.
    void kitSalvato_data()
    {
        testdb::columns<QString>({"azione", "stati", "quantita", "imponibile"});
        QTest::newRow("quantity 3 to 6") << "6"
                                         << "2 2 2"
                                         << "6,00 12,00 6,00"
                                         << "1.106,04";
        QTest::newRow("deleted") << ""
                                 << "3 3 3"
                                 << "3,00 6,00 3,00"
                                 << "0,00";
    }

    void kitSalvato()
    {
        FETCH_EACH(QString, azione, stati, quantita, imponibile);
        testdb::ScriptedMsgBox box;
        EditorDocumento e(2, "*");
        lato(e, true);
        ::kit(e, "*KIT", "3", "10 5 2");
        GrigliaDocumento& g = e.griglia();
        for (int i = 0; i < 3; ++i) {
            g.setCella(i, colonna::Rid, QString::number(701 + i));
            g.setCella(i, colonna::Gestione, "0");
            if (i > 0)
                g.setCella(i, colonna::IdDistintaBase, "701");
        }
        if (azione.isEmpty()) {
            e.eliminaRiga(0);
        } else {
            QVERIFY(e.getRowFromGrid(0));
            QVERIFY(!e.getRowFromGrid(1)); // a component of a stored kit stays with its kit
            e.riga.quantita = azione;
            QCOMPARE(e.confermaRiga(), 0);
        }
        QStringList s, q;
        for (int i = 0; i < g.righe(); ++i) {
            s << QString::number(g.stato(i));
            q << g.cella(i, colonna::Quantita);
        }
        QCOMPARE(s.join(' '), stati);
        QCOMPARE(q.join(' '), quantita);
        QCOMPARE(e.totali().imponibile, imponibile);
        QCOMPARE(g.visibile(0), !azione.isEmpty());
        QVERIFY(!g.visibile(1) && !g.visibile(2));
    }

    // The sums of a stored kit's components, for one kit; none for a row without components.
    void totaliFigli()
    {
        const TotaliFigli t = getTotaliFigli(9900);
        QCOMPARE((QStringList{t.prezzo.toPlainString(), t.netto.toPlainString(), t.ivato.toPlainString()}),
                 (QStringList{"660", "553.014", "668.6442"}));
        QCOMPARE(getTotaliFigli(9999).ivato, Currency());
    }

    // A list price other than the purchase price shown asks whether the product's purchase price changes, its sales
    // list price keeping the mark-up (10 on 6: 66,67%).
    void prezzoAcquisto_data()
    {
        testdb::columns<QString, int, double, double>("listino", "risposta", "listino1", "acquisto");
        QTest::newRow("yes") << "9" << int(vb::Yes) << 15.0 << 9.0;
        QTest::newRow("no") << "9" << int(vb::No) << 10.0 << 6.0;
        QTest::newRow("same price: no question") << "6" << 0 << 10.0 << 6.0;
    }

    void prezzoAcquisto()
    {
        QFETCH(QString, listino);
        QFETCH(int, risposta);
        FETCH_EACH(double, listino1, acquisto);
        run("UPDATE Prodotti SET LISTINO1 = 10, PREZZOACQUISTO = 6 WHERE RID = 9906");
        testdb::ScriptedMsgBox box;
        if (risposta)
            box.expect("Il Prezzo di Acquisto è diverso rispetto a quello impostato in Anagrafica Prodotti [6,00].\n"
                       "Si desidera modificare il Prezzo di Acquisto in Anagrafica Prodotti e ricalcolare il Prezzo di "
                       "Vendita?",
                       risposta);
        EditorDocumento e(2, "*");
        lato(e, false);
        QCOMPARE(e.prodottoLasciato("ACQ", false).tipo, EsitoProdotto::Compilato);
        e.riga.prezzoListino = listino;
        QVERIFY(e.prezzoListinoLasciato(true));
        QCOMPARE(e.riga.prezzoNetto, listino + ",00");
        const QList<QVariantList> p = testdb::rows("SELECT LISTINO1, PREZZOACQUISTO FROM Prodotti WHERE RID = 9906");
        QCOMPARE((QList<double>{p.value(0).value(0).toDouble(), p.value(0).value(1).toDouble()}),
                 (QList<double>{listino1, acquisto}));
    }
};

QTEST_GUILESS_MAIN(TestRigheDocumento)
#include "tst_righedocumento.moc"
