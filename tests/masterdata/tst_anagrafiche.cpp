// Customer, supplier and product cards, the address book, discount ranges; both back ends.
#include "common/ean13.h"
#include "core/optionstore.h"
#include "masterdata/anagrafica.h"
#include "masterdata/frmanagrafica.h"
#include "masterdata/frmcategoriasconti.h"
#include "masterdata/frmprodotto.h"
#include "masterdata/frmrangesconti.h"
#include "masterdata/frmrubrica.h"
#include "pricing/prezzi.h"
#include "screens/framework/cgrid.h"
#include "support/screendriver.h"

#include <QDateTime>
#include <QListWidget>
#include <QtTest>

using testdb::ScriptedDialogs;
using Card = testdb::Screen<frmAnagrafica>;
using Product = testdb::Screen<frmProdotto>;

// The screen of a category's net prices.
struct RangePrezzi : frmRangeSconti
{
    RangePrezzi()
        : frmRangeSconti(TipoRange::Prezzi)
    { }
};

class TestAnagrafiche : public testdb::BackendTest
{
    Q_OBJECT

    int m_categoria = 0, m_fascia = 0;

    // A new card of the kind, saved; its number as shown.
    static QString nuova(Card& s, const QString& tipo, const QString& nome, const QString& cf = {},
                         const QString& piva = {})
    {
        s.screen.newRecord();
        s.set("cmbTipo", tipo);
        s.type({"txtDenominazione=" + nome, "txtCodifeFiscale=" + cf, "txtPartitaIVA=" + piva});
        s.screen.saveRecord();
        return s.shown("txtNumero");
    }

    // A new product card saved; `stessoCodice` keeps the code of the card shown.
    static bool nuovo(Product& s, const QString& codice, const QString& marca, const QString& descrizione,
                      bool stessoCodice = false)
    {
        if (stessoCodice) {
            s.screen.cmdAdd_Click();
        } else {
            s.screen.newRecord();
            s.type("txtCodice1", codice);
        }
        s.set({"txtMarca=" + marca, "txtUnitaMisura=PZ", "txtDescrizione=" + descrizione});
        return s.screen.saveRecord();
    }

private Q_SLOTS:
    // No card, product or range; two brands, a net price category, a band of customers.
    void init()
    {
        BackendTest::init();
        loadOptionGlobals();
        testdb::empty({"CatScAcquistoSconti", "CatScAcquisto", "CatScVenditeSconti", "CatScVendita", "CatScVenditaProd",
                       "CatScProdVendita", "PrimaNota", "Anagrafiche", "Rubrica", "ProdottiAlternativi",
                       "DettagliProdotto", "Listini", "Prodotti"});
        if (testdb::count("Marche", testdb::code("ACME")) == 0) {
            testdb::run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤), (¤BETA¤, ¤Beta¤)");
            testdb::run("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (¤NET¤, ¤Prezzi netti¤)");
            testdb::run("INSERT INTO FasceClienti (CODICE, DESCRIZIONE) VALUES (¤ORO¤, ¤Clienti oro¤)");
        }
        m_categoria = testdb::rid("CategorieSconti", testdb::code("NET"));
        m_fascia = testdb::rid("FasceClienti", testdb::code("ORO"));
    }

    // One sequence for both kinds; a tax code in use is refused to a new card of the same kind only.
    void numbersAndDuplicates()
    {
        Card s(true, true, 0);
        QCOMPARE(nuova(s, "Cliente", "Rossi S.r.l.", "RSSMRA85T10A562S"), QStringLiteral("0001"));
        QCOMPARE(nuova(s, "Fornitore", "Bianchi S.p.A.", "RSSMRA85T10A562S"), QStringLiteral("0002"));
        QCOMPARE(testdb::count("Anagrafiche", "CFISCALE = ¤RSSMRA85T10A562S¤"), 2);
        ScriptedDialogs script;
        script.expectMessage("Attenzione il Cod.Fiscale o la P.Iva inseriti sono già in uso:\r0001 - Rossi S.r.l.\r");
        QVERIFY(nuova(s, "Cliente", "Neri", "RSSMRA85T10A562S").isEmpty());
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(nuova(s, "Cliente", "Verdi", QString(), "00743110157"), QStringLiteral("0003"));
        script.expectMessage("0003 - Verdi\r");
        QVERIFY(nuova(s, "Cliente", "Neri", "RSSMRA85T10A562X", "00743110157").isEmpty());
        QCOMPARE(testdb::count("Anagrafiche"), 3);
        s.screen.newRecord(); // found by number within its kind, it saves again
        s.set("cmbTipo", "Cliente");
        s.lookUp("txtNumero", "3", "txtDenominazione");
        QCOMPARE(s.shown({"txtNumero", "txtDenominazione"}), (QStringList{"0003", "Verdi"}));
        s.type("txtCodifeFiscale", "RSSMRA85T10A562S");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("Anagrafiche", "CFISCALE = ¤RSSMRA85T10A562S¤ AND TIPO = ¤C¤"), 2);
        s.screen.newRecord(); // a supplier's number is not a customer's
        s.set("cmbTipo", "Cliente");
        s.lookUp("txtNumero", "2", "txtDenominazione");
        QVERIFY(s.rid().isEmpty());
    }

    // A wrong control character asks when the field is left: No stays, Yes goes on.
    void fieldChecks_data()
    {
        testdb::columns<QString>({"campo", "valore", "messaggio"}); // no message: no question
        const auto row = [](const char* name, const char* campo, const char* valore, const QString& messaggio) {
            QTest::newRow(name) << campo << valore << messaggio;
        };
        const QString cf = "Attenzione! Codice Fiscale errato.\rContinuare?";
        row("right tax code", "txtCodifeFiscale", "rssmra85t10a562s", "");
        row("wrong tax code", "txtCodifeFiscale", "RSSMRA85T10A562T", cf);
        row("firm's number in tax code", "txtCodifeFiscale", "00743110157", "");
        row("wrong number in tax code", "txtCodifeFiscale", "00743110158", cf);
        row("right VAT number", "txtPartitaIVA", "00743110157", "");
        row("VAT control digit 0", "txtPartitaIVA", "01234560090", "Attenzione! Partita IVA errata.\rContinuare?");
    }

    void fieldChecks()
    {
        FETCH_EACH(QString, campo, valore, messaggio);
        Card s(true, true, 0);
        s.set(campo, valore);
        ScriptedDialogs script;
        if (!messaggio.isEmpty()) {
            script.expectMessage(messaggio, vb::No);
            s.get("txtEmail")->setFocus();
            QVERIFY(s.get(campo)->hasFocus());
            script.expectMessage(messaggio, vb::Yes);
        }
        s.get("txtEmail")->setFocus();
        QVERIFY(s.get("txtEmail")->hasFocus());
        QCOMPARE(s.shown(campo), valore.toUpper() == valore ? valore : s.shown(campo));
    }

    // A card that an entry refers to stays, with the data layer's message.
    void deleteInUse()
    {
        Card s(true, true, 0);
        nuova(s, "Cliente", "Rossi");
        const QString rid = s.rid();
        testdb::run("INSERT INTO PrimaNota (FK_Anagrafe, PROGRESSIVO, ANNO) VALUES (" + rid + ", 1, 2026)");
        ScriptedDialogs script;
        script.expectMessage("Eliminare il record con progressivo 0001?", vb::Yes);
        script.expectMessage("nel rispetto dell'integrità dei dati");
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(testdb::count("Anagrafiche"), 1);
        QCOMPARE(s.rid(), rid);
        testdb::run("DELETE FROM PrimaNota");
        script.expectMessage("Eliminare il record con progressivo 0001?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("Anagrafiche"), 0);
    }

    // The notice takes the card's data, and is kept with the card.
    void informativa()
    {
        const DatiInformativa dati{"Rossi S.r.l.", "Via Roma", "1", "20100", "Milano", "MI", ""};
        QCOMPARE(preparaRichText("Spett. @NOMINATIVO, @INDIRIZZO @CIVICO, @CAP @CITTA (@PROV) P.I. @PI - @DATA: "
                                 "cos\\'ec, citt\\'e0, perch\\'e8, pu\\'f2, pi\\'f9",
                                 dati, QDate(2026, 3, 5)),
                 QStringLiteral("Spett. Rossi S.r.l., Via Roma 1, 20100 Milano (MI) P.I.  - 05/03/2026: "
                                "cosi', citta', perche', puo', piu'"));
        Card s(true, true, 0);
        testdb::run("UPDATE Informativa SET INFORMATIVA = ¤Gentile @NOMINATIVO (@CITTA)¤");
        s.set("cmbTipo", "Cliente");
        s.type({"txtDenominazione=Rossi", "txtCitta=Lodi"});
        s.screen.cmdCommandExtra_Click(6); // unsaved: nothing
        QVERIFY(s.screen.saveRecord());
        s.screen.cmdCommandExtra_Click(6);
        QCOMPARE(testdb::text("SELECT INFORMATIVA FROM Anagrafiche WHERE RID = " + s.rid()),
                 QStringLiteral("Gentile Rossi (Lodi)"));
    }

    // A discount category that a product uses stays, with both messages.
    void categoriaInUso()
    {
        testdb::Screen<frmCategoriaSconti> s(false, true, 0);
        s.type({"txtCodice=csx", "txtDescrizione=viteria"});
        QVERIFY(s.screen.saveRecord());
        testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_CATSCOVEN) VALUES (¤CSX1¤, ¤V¤, " + s.rid() + ")");
        ScriptedDialogs script;
        script.expectMessage("Eliminare il record CSX?", vb::Yes);
        script.expectMessage("nel rispetto dell'integrità dei dati");
        script.expectMessage("Impossibile eliminare questo record");
        QVERIFY(!s.screen.deleteRecord());
        testdb::run("DELETE FROM Prodotti WHERE CODICE = ¤CSX1¤");
        script.expectMessage("Eliminare il record CSX?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("CategorieSconti", testdb::code("CSX")), 0);
    }

    // The address book numbers its entries in its own sequence.
    void rubrica()
    {
        testdb::Screen<frmRubrica> s(true, true, 0);
        for (const char* nome : {"Studio Gialli", "Avv. Viola"}) {
            s.screen.newRecord();
            s.type("txtDenominazione", nome);
            QVERIFY(s.screen.saveRecord());
        }
        QCOMPARE(s.shown("txtNumero"), QStringLiteral("0002"));
        s.screen.newRecord();
        s.lookUp("txtNumero", "1", "txtDenominazione");
        QCOMPARE(s.shown({"txtNumero", "txtDenominazione"}), (QStringList{"0001", "Studio Gialli"}));
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - Campo [Denominazione] Obbligatorio.");
        s.screen.newRecord();
        QVERIFY(!s.screen.saveRecord());
    }

    // Step -1: prices from the markup, -2: markup from the prices, else the price changed.
    void markup_data()
    {
        QTest::addColumn<int>("passo");
        QTest::addColumn<QString>("prima"); // acquisto|listino1|listino1Lordo|ricarico|pListino
        QTest::addColumn<double>("iva");
        QTest::addColumn<QString>("dopo"); // acquisto|acquistoLordo|listino1|listino1Lordo|ricarico|pListino
        const auto row = [](const char* name, auto passo, const char* prima, double iva, const char* dopo) {
            QTest::newRow(name) << int(passo) << QString(prima) << iva << QString(dopo);
        };
        using enum PrezzoCambiato;
        row("purchase 10, markup 50", -1, "10,00|0,00|0,00|50|0,00", 22, "10,00||15,00|18,30|50,00|18,30");
        row("gross 18,30 back to net", Listino1Lordo, "10,00||18,30||0,00", 22, "10,00||15,00|18,30|50,00|18,30");
        row("markup 0 leaves the list price", -1, "10,00|12||0|0,00", 22, "10,00||12,00||0|0,00");
        row("purchase 0 leaves the markup", -2, "0|15,00||30|0,00", 22, "0||15,00||30,00|0,00");
        row("markup on cost", Listino1, "8,00|10,00|||0,00", 22, "8,00||10,00|12,20|25,00|12,20");
        row("indicative price kept", Listino1, "8,00|10,00|||20,00", 22, "8,00||10,00|12,20|25,00|20,00");
        row("purchase gross", Acquisto, "10,00|0,00|||0,00", 22, "10,00|12,20|0,00||0,00|0,00");
        row("another rate", Iva, "100,00|150,00|||0,00", 10, "100,00|110,00|150,00|165,00|50,00|165,00");
        // The VAT of a net price is rounded to four decimals before the sum.
        row("VAT rounded", Listino1, "0,00|0,33335|||0,00", 22, "0,00||0,33335|0,41|0,00|0,41");
    }

    void markup()
    {
        QFETCH(int, passo);
        FETCH_EACH(QString, prima, dopo);
        QFETCH(double, iva);
        const QStringList v = prima.split('|');
        PrezziProdotto p{v.at(0), QString(), v.at(1), v.at(2), v.at(3), v.at(4), iva, 2};
        if (passo < 0)
            calcolaRicarico(p, passo == -1);
        else
            ricalcolaPrezzi(p, PrezzoCambiato(passo));
        QCOMPARE((QStringList{p.acquisto, p.acquistoLordo, p.listino1, p.listino1Lordo, p.ricarico, p.pListino}),
                 dopo.split('|'));
    }

    void barcode()
    {
        QCOMPARE(erroreCheckCode("4006381333932"), QStringLiteral("Il Check Code corretto è: 1\r"));
        QCOMPARE(erroreCheckCode("4006381333931"), QString());
        QCOMPARE(erroreCheckCode("400638133393"), QString()); // 12 digits: not checked
        QCOMPARE(erroreCheckCode("40063813339X1"), QString());
        const QDateTime adesso(QDate(2026, 11, 23), QTime(10, 20, 30));
        const auto ean = [](const QString& code) -> QString { return code + QString::number(getEAN13ChekDigit(code)); };
        QCOMPARE(nuovoBarcode(adesso), ean("261123102030"));
        QCOMPARE(barcodeVariante(adesso, 2), ean("261123102062"));
    }

    // Code plus brand is a card's identity; any of the three codes finds it; a barcode is generated.
    void identity()
    {
        Product s(true, true, 0);
        QVERIFY(nuovo(s, "VITE8", "ACME", "Vite 8 mm"));
        QVERIFY(nuovo(s, "VITE8", "BETA", "Vite 8 mm Beta", true));
        QVERIFY(nuovo(s, "VITE8", "", "Vite 8 mm senza marca", true));
        ScriptedDialogs script;
        script.expectMessage(
            "Attenzione:\n - La combinazione Marca/Codice crea un duplicato nell'indice della chiave.");
        QVERIFY(!nuovo(s, "VITE8", "ACME", "Doppione", true));
        script.expectMessage("crea un duplicato");
        s.set("txtMarca", "");
        QVERIFY(!s.screen.saveRecord());
        QCOMPARE(testdb::count("Prodotti"), 3);
        // An existing card saves over itself after the question.
        s.screen.showData(testdb::rid("Prodotti", "FK_MARCA IS NULL"), QString());
        script.expectMessage("Sovrascrivere la scheda del Prodotto corrente?", vb::Yes);
        QVERIFY(s.screen.saveRecord());
        s.screen.newRecord();
        s.set("txtCodice2", "");
        s.get("txtCodice3")->setFocus();
        const QString generated = s.shown("txtCodice2");
        QCOMPARE(generated.size(), 13);
        QCOMPARE(generated.right(1).toInt(), int(getEAN13ChekDigit(generated)));
        testdb::run("UPDATE Prodotti SET BARCODE = ¤8001234567890¤, EXTRACODICE = ¤V-8¤ WHERE FK_MARCA IS NULL");
        for (const char* code : {"8001234567890", "V-8"}) {
            s.screen.newRecord();
            s.lookUp("txtCodice1", code, "txtCodice2");
            QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("Vite 8 mm senza marca"));
        }
    }

    // A new card takes the options' VAT and unit; a gross price asks before replacing the indicative one.
    void grossPriceOnTheCard()
    {
        Product s(true, true, 0);
        QCOMPARE(s.shown({"txtIva", "lblIva", "txtUnitaMisura"}), (QStringList{"22", "22,00", "PZ"}));
        s.set({"txtPListino=20", "txtListino1Lordo=18,30"});
        ScriptedDialogs script;
        script.expectMessage("Si desidera aggiornare il Prezzo di Listino?", vb::Yes);
        s.get("txtRicarico")->setFocus();
        QCOMPARE(s.shown({"txtListino1", "txtPListino"}), (QStringList{"15,00", "18,30"}));
        s.set("txtPrezzoAcquisto", "10");
        s.get("txtRicarico")->setFocus();
        QCOMPARE(s.shown({"txtPrezzoAcquistoLordo", "txtRicarico"}), (QStringList{"12,20", "50,00"}));
    }

    // Stock above 0 forbids the delete; none lets the product go with its lots.
    void deleteInStock()
    {
        Product s(true, true, 0);
        QVERIFY(nuovo(s, "DADO", "", "Dado"));
        const QString rid = s.rid();
        testdb::run("INSERT INTO DettagliProdotto (FK_MAGAZZINO, FK_PRODOTTO, QUANTITA, TAGLIO) VALUES (1, " + rid
                    + ", 5, 1)");
        ScriptedDialogs script;
        script.expectMessage("Impossibile seguire la cancellazione. Il prodotto risulta in giacenza");
        QVERIFY(!s.screen.deleteRecord());
        testdb::run("UPDATE DettagliProdotto SET QUANTITA = -2 WHERE FK_PRODOTTO = " + rid);
        script.expectMessage("Eliminare il prodotto [DADO - Dado]?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("Prodotti", "RID = " + rid), 0);
        QCOMPARE(testdb::count("DettagliProdotto", "FK_PRODOTTO = " + rid), 0);
    }

    // A pair shows from both sides; saved from the other side it stands twice.
    void alternatives()
    {
        Product s(true, true, 0);
        QVERIFY(nuovo(s, "B", "", "Prodotto B"));
        const int b = s.rid().toInt();
        QVERIFY(nuovo(s, "A", "", "Prodotto A"));
        s.screen.addAlternativo(b);
        ScriptedDialogs script;
        script.expectMessage("già presente");
        s.screen.addAlternativo(b);
        script.expectMessage("Sovrascrivere", vb::Yes);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("ProdottiAlternativi"), 1);
        s.screen.showData(b, QString());
        QCOMPARE(s.screen.alternativi().size(), 1);
        QCOMPARE(s.screen.alternativi().at(0).codice, QStringLiteral("A"));
        script.expectMessage("Sovrascrivere", vb::Yes);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("ProdottiAlternativi"), 2);
        QCOMPARE(s.screen.alternativi().size(), 2);
    }

    // Variants with the origin updated: the card becomes the first, the rest are new.
    void variants()
    {
        Product s(true, true, 0);
        QVERIFY(nuovo(s, "MAGLIA", "", "Maglia"));
        const QString origine = s.rid();
        ScriptedDialogs script;
        script.expectMessage("Sovrascrivere", vb::Yes);
        QVERIFY(s.screen.duplicaVarianti({{2, "-M"}, {5, "-XL"}}, true));
        QCOMPARE(testdb::count("Prodotti"), 2);
        QCOMPARE(testdb::text("SELECT CODICE FROM Prodotti WHERE RID = " + origine), QStringLiteral("MAGLIA-M"));
        QCOMPARE(testdb::text("SELECT DESCRIZIONE FROM Prodotti WHERE CODICE = ¤MAGLIA-XL¤"),
                 QStringLiteral("Maglia -XL"));
        const QString barcode = testdb::text("SELECT BARCODE FROM Prodotti WHERE CODICE = ¤MAGLIA-XL¤");
        QCOMPARE(barcode.mid(10, 2), QStringLiteral("65"));
        QCOMPARE(barcode.right(1).toInt(), int(getEAN13ChekDigit(barcode)));
        // Without the origin updated, every variant is a new product.
        QVERIFY(s.screen.duplicaVarianti({{1, "/A"}}, false));
        QCOMPARE(testdb::count("Prodotti"), 3);
        QCOMPARE(testdb::count("Prodotti", testdb::code("MAGLIA-XL/A")), 1);
    }

    // First digit: no counterparty; second: ranges with a gap or an overlap.
    void rangeIntegrity_data()
    {
        QTest::addColumn<int>("id");
        testdb::columns<QString>({"ranges", "esito"});
        const auto row = [](const char* name, int id, const char* ranges, const char* esito) {
            QTest::newRow(name) << id << QString(ranges) << QString(esito);
        };
        row("defaults", 5, "1-10 11-100 101-1000", "00");
        row("gap", 5, "1-10 12-100", "01");
        row("overlap", 5, "1-10 10-100", "01");
        row("no supplier", -1, "1-10 12-100", "10");
        row("one range", 5, "5-7", "00");
    }

    void rangeIntegrity()
    {
        QFETCH(int, id);
        FETCH_EACH(QString, ranges, esito);
        RangeGruppo g;
        g.id = id;
        for (const QString& range : ranges.split(' '))
            g.righe.append({range.section('-', 0, 0), range.section('-', 1), {"0,00", "0,00", "0,00"}});
        QCOMPARE(RangeEditor::checkRowIntegrity(g), esito);
    }

    // A supplier's group for all brands: saved, read back, refused twice or with a gap, removed with its head.
    void discountRanges()
    {
        testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (7101, ¤Ferramenta Rossi¤, ¤F¤)");
        const QString fornitore = QString::number(testdb::rid("Anagrafiche", "NUMERO = 7101"));
        testdb::Screen<frmRangeSconti> s(m_categoria, 0);
        s.screen.aggiungiGruppo(Acquisti, fornitore.toInt(), "7101", "Ferramenta Rossi");
        ScriptedDialogs script;
        script.expectMessage("L'elemento selezionato [7101 - Ferramenta Rossi] è gia presente nella griglia.");
        s.screen.aggiungiGruppo(Acquisti, fornitore.toInt(), "7101", "Ferramenta Rossi");
        s.screen.aggiungiGruppo(Vendite, m_fascia, "ORO", "Clienti oro");
        auto* grid = s.screen.findChild<cGrid*>("flxRangeScAcquisti");
        QCOMPARE(grid->rowCount(), 3);
        grid->setText(1, 4, "5,00");
        Q_EMIT grid->cellEdited(1, 4);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("CatScAcquisto", "FK_Marca IS NULL AND FK_Fornitore = " + fornitore), 1);
        QCOMPARE(testdb::count("CatScAcquistoSconti"), 3);
        QCOMPARE(testdb::count("CatScVenditeSconti"), 3);
        QCOMPARE(testdb::value("SELECT Sconto1 FROM CatScAcquistoSconti WHERE RangeMin = 11").toDouble(), 5.0);
        // Saved again, the rows are replaced, not added.
        s.screen.refreshRecord();
        QCOMPARE(s.screen.editor().gruppi(Acquisti).size(), 1);
        QCOMPARE(s.screen.editor().gruppi(Acquisti).at(0).righe.at(1).valori.at(0), QStringLiteral("5,00"));
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("CatScAcquistoSconti"), 3);
        s.screen.editor().gruppi(Acquisti)[0].righe[1].da = "12";
        script.expectMessage("Attenzione! Impossibile salvare la configurazione corrente.\rControllare i Range per il "
                             "fornitore: Ferramenta Rossi");
        QVERIFY(!s.screen.saveRecord());
        QCOMPARE(testdb::count("CatScAcquistoSconti", "RangeMin = 12"), 0);
        s.screen.refreshRecord();
        script.expectMessage("Eliminare l'elemento [ORO - Clienti oro] dalla griglia?", vb::Yes);
        s.screen.eliminaGruppo(Vendite, 2);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("CatScVendita"), 0);
        QCOMPARE(testdb::count("CatScVenditeSconti"), 0);
        QCOMPARE(testdb::count("CatScAcquisto"), 1);
    }

    // A net price saved for the band is what the engine gives its customers.
    void netPriceReachesTheEngine()
    {
        testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_CATSCOVEN, LISTINO1) VALUES (¤NETTO1¤, ¤Netto¤, "
                    + QString::number(m_categoria) + ", 10)");
        const int prodotto = testdb::rid("Prodotti", testdb::code("NETTO1"));
        testdb::run(
            "INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, FK_FASCIACLIENTE) VALUES (7102, ¤Bianchi¤, ¤C¤, "
            + QString::number(m_fascia) + ")");
        const int cliente = testdb::rid("Anagrafiche", "NUMERO = 7102");
        const auto prezzo = [&](Single quantita) {
            DocumentoPrezzi d;
            d.tipoOrigine = 3;
            d.tipoDestinazione = 1;
            d.destinazione = cliente;
            d.quantita = quantita;
            d.catPrezziNetti = m_categoria;
            CampiRiga riga;
            bool done = false;
            setSconti(prodotto, false, done, riga, d);
            return riga.txtPrezzoListino;
        };
        QCOMPARE(prezzo(5), QString());
        testdb::Screen<RangePrezzi> s(m_categoria, prodotto);
        s.screen.aggiungiGruppo(Vendite, m_fascia, "ORO", "Clienti oro");
        s.screen.editor().gruppi(Vendite)[0].righe[0].valori[0] = "7,50";
        s.screen.editor().gruppi(Vendite)[0].righe[1].valori[0] = "7,10";
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(prezzo(5), QStringLiteral("7,50"));
        QCOMPARE(prezzo(50), QStringLiteral("7,10"));
        s.screen.editor().gruppi(Vendite)[0].righe[0].valori[0] = "8";
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(prezzo(10), QStringLiteral("8,00"));
        QCOMPARE(testdb::count("CatScProdVendita", "FK_PRODOTTO = " + QString::number(prodotto)), 1);
    }
};

QTEST_MAIN(TestAnagrafiche)
#include "tst_anagrafiche.moc"
