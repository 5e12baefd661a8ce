// The look-ups of the code fields on both back ends, and the product
// look-up with its chooser.
#include "common/msgbox.h"
#include "data/recordset.h"
#include "lookups/lookups.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::ScriptedMsgBox;

namespace {

void noChooser()
{
    setElementChooser([](const QString&, const Recordset&, bool, bool) -> QStringList {
        QTest::qFail("no chooser expected", __FILE__, __LINE__);
        return {};
    });
}

QString unknown(const QString& code) { return "Codice: " + code + " inesistente!"; }

using Lookup = bool (*)(QString&, QString&, int&);

} // namespace

Q_DECLARE_METATYPE(Lookup)

class TestLookups : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // Two counterparties and three products, one of whose extra code is the
    // code of another, once a database.
    void init()
    {
        BackendTest::init();
        if (testdb::count("Anagrafiche", "NUMERO = 901") > 0)
            return;
        testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, FK_PAGAMENTO) "
                    "VALUES (901, ¤Rossi Srl¤, ¤C¤, 2), (902, ¤Bianchi Spa¤, ¤F¤, NULL)");
        testdb::run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)");
        testdb::run(QString("INSERT INTO Prodotti (CODICE, DESCRIZIONE, BARCODE, EXTRACODICE, FK_Iva, FK_UNITAMISURA, "
                            "FK_MARCA, GIACENZA, ELENCOSPECIALE) VALUES "
                            "(¤VITE8¤, ¤Vite 8 mm¤, ¤8001234567890¤, ¤V-8¤, 2, 1, %1, 40, -1), "
                            "(¤DADO8¤, ¤Dado 8 mm¤, NULL, ¤VITE8X¤, 1, 1, NULL, 15, 0), "
                            "(¤VITE8X¤, ¤Vite 8 mm inox¤, NULL, NULL, 1, 1, NULL, 3, 0)")
                        .arg(testdb::rid("Marche", "CODICE = ¤ACME¤")));
        testdb::run(QString("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, QUANTITA) VALUES (%1, 1, 12.5)")
                        .arg(testdb::rid("Prodotti", "CODICE = ¤VITE8¤")));
    }
    void cleanup()
    {
        setElementChooser({});
        BackendTest::cleanup();
    }

    // By code, by key, and the codes that must not be found: the box names
    // the code and the description stays as it was.
    void family_data()
    {
        QTest::addColumn<Lookup>("lookup");
        QTest::addColumn<QString>("codice");
        QTest::addColumn<int>("rid");
        QTest::addColumn<QString>("expectedCode"); // empty: not found
        QTest::addColumn<QString>("expectedDescription");
        const auto row = [](const char* name, Lookup lookup, const char* codice, int rid, const char* code,
                            const char* description) {
            QTest::newRow(name) << lookup << codice << rid << code << description;
        };
        row("unit by code", &validaUnitaMisura, "KG", 0, "KG", "Chilogrammi");
        row("unit by key", &validaUnitaMisura, "", 1, "PZ", "Pezzi");
        row("unknown unit", &validaUnitaMisura, "XX", 0, "", "");
        row("customer", &validaCliente, "901", 0, "901", "Rossi Srl");
        row("customer refuses a supplier", &validaCliente, "902", 0, "", "");
        row("supplier", &validaFornitore, "902", 0, "902", "Bianchi Spa");
        row("any counterparty", &validaAnagrafe, "902", 0, "902", "Bianchi Spa");
        row("counterparty number not a number", &validaAnagrafe, "abc", 0, "", "");
        row("product by bar code", &validaProdotto, "8001234567890", 0, "VITE8", "Vite 8 mm");
        row("product by extra code", &validaProdotto, "V-8", 0, "VITE8", "Vite 8 mm");
        row("account", &validaConto, "01003001", 0, "01003001", "Cassa");
        row("document type", &validaDocumento, "DDT", 0, "DDT", "Documento di trasporto");
    }
    void family()
    {
        QFETCH(Lookup, lookup);
        QFETCH(QString, codice);
        QFETCH(int, rid);
        QFETCH(QString, expectedCode);
        QFETCH(QString, expectedDescription);
        ScriptedMsgBox boxes;
        const bool missing = expectedCode.isEmpty();
        if (missing)
            boxes.expect(unknown(codice), vb::OK);
        QString descrizione = "as before";
        QCOMPARE(lookup(codice, descrizione, rid), !missing);
        QCOMPARE(codice, expectedCode);
        QCOMPARE(descrizione, missing ? QStringLiteral("as before") : expectedDescription);
        QCOMPARE(rid > 0, !missing);
    }

    // The members with extra outputs.
    void extras()
    {
        QString codice = "10", descrizione;
        int rid = 0;
        Single valore = 0;
        QVERIFY(validaIva(codice, descrizione, rid, valore));
        QCOMPARE(valore, Single(10));

        codice = "901";
        rid = 0;
        int pagamento = 0;
        QVERIFY(validaAnagrafePagamento(codice, descrizione, rid, pagamento));
        QCOMPARE(pagamento, 2);

        // A causal that writes no journal entry is not found.
        bool genera = false, negative = false;
        codice = "NC";
        rid = 0;
        QVERIFY(validaCausaleScadenze(codice, descrizione, rid, genera, negative));
        QVERIFY(genera && negative);
        ScriptedMsgBox boxes;
        boxes.expect(unknown("DDT"), vb::OK);
        codice = "DDT";
        rid = 0;
        QVERIFY(!validaCausaleScadenze(codice, descrizione, rid, genera, negative));
        QVERIFY(codice.isEmpty());

        int numeratore = 2;
        QVERIFY(validaNumeratore(descrizione, numeratore));
        QCOMPARE(descrizione, QStringLiteral("Documenti di trasporto"));

        DocumentoEsteso documento;
        documento.codice = "CF";
        QVERIFY(validaDocumentoEsteso(documento));
        QVERIFY(documento.modificaPrezzoAcquisto && !documento.usaRda);
        QCOMPARE(documento.rda1, QStringLiteral("0"));
    }

    // One row fills the product; the stock of a warehouse comes from its row.
    void prodottoEsteso()
    {
        noChooser();
        ProdottoEsteso p;
        p.codice = "8001234567890";
        QVERIFY(validaProdottoEsteso(p, {}));
        QCOMPARE(QStringList({p.codice, p.descrizione, p.codIva, p.codUnitaMisura, p.codMarca}),
                 QStringList({"VITE8", "Vite 8 mm", "10", "PZ", "ACME"}));
        QCOMPARE(p.valoreIva, Single(10));
        QCOMPARE(p.giacenza, 40.0);
        QCOMPARE(p.elencoSpeciale, qint16(1));

        ProdottoEsteso inWarehouse;
        inWarehouse.rid = p.rid;
        RicercaProdotto sede;
        sede.magazzino = 1;
        QVERIFY(validaProdottoEsteso(inWarehouse, sede));
        QCOMPARE(inWarehouse.giacenza, 12.5);
        sede.magazzino = 99;
        QVERIFY(validaProdottoEsteso(inWarehouse, sede));
        QCOMPARE(inWarehouse.giacenza, 0.0);
    }

    // A code that is also another product's extra code gives two rows: the
    // chooser decides, and with multiple choice all keys come back.
    void prodottoChooser_data()
    {
        QTest::addColumn<bool>("multi");
        QTest::addColumn<int>("chosen"); // how many rows the chooser picks, DADO8 first
        QTest::newRow("one") << false << 1;
        QTest::newRow("both") << true << 2;
        QTest::newRow("none") << false << 0;
    }
    void prodottoChooser()
    {
        QFETCH(bool, multi);
        QFETCH(int, chosen);
        int rowsSeen = 0;
        QStringList keys;
        bool multiSeen = !multi;
        setElementChooser([&](const QString&, const Recordset& rs, bool multiSelect, bool) -> QStringList {
            rowsSeen = rs.recordCount();
            Recordset rows = rs;
            for (rows.moveFirst(); !rows.eof(); rows.moveNext())
                keys.insert(rows.text("CODICE") == "DADO8" ? 0 : keys.size(), "E_" + rows.value("RID").toString());
            multiSeen = multiSelect;
            return keys.mid(0, chosen);
        });
        ScriptedMsgBox boxes;
        if (chosen == 0)
            boxes.expect(unknown("VITE8X"), vb::OK);
        ProdottoEsteso p;
        p.codice = "VITE8X";
        RicercaProdotto ricerca;
        ricerca.multiSelect = multi;
        QCOMPARE(validaProdottoEsteso(p, ricerca), chosen > 0);
        QCOMPARE(rowsSeen, 2);
        QCOMPARE(multiSeen, multi);
        QCOMPARE(p.codice, chosen ? QStringLiteral("DADO8") : QString());
        if (multi)
            QCOMPARE(p.elencoRid, keys.at(0).mid(2) + ',' + keys.at(1).mid(2) + ',');
    }

    // A code typed as a beginning finds the codes that start with it; "%"
    // and "_" in it are characters of the code, not wildcards. Not found,
    // with the question: Yes asks for a new product and keeps the code.
    void prodottoCerca_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");           // to "Creare un nuovo Prodotto?"; 0: a search by beginning
        QTest::addColumn<QString>("expectedCode"); // empty: not found
        QTest::newRow("beginning") << "DAD" << 0 << "DADO8";
        QTest::newRow("whole code") << "DADO8" << 0 << "DADO8";
        QTest::newRow("underscore") << "DAD_8" << 0 << "";
        QTest::newRow("percent") << "%8X" << 0 << "";
        QTest::newRow("delimiter") << "VITE¤" << 0 << "";
        QTest::newRow("new product") << "NUOVO1" << int(vb::Yes) << "NUOVO1";
        QTest::newRow("no new product") << "NUOVO2" << int(vb::No) << "";
    }
    void prodottoCerca()
    {
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QFETCH(QString, expectedCode);
        testdb::ErrorRecorder errors;
        noChooser();
        ScriptedMsgBox boxes;
        const bool found = answer == 0 && !expectedCode.isEmpty();
        if (!found)
            boxes.expect(unknown(typed) + (answer ? "\nCreare un nuovo Prodotto?" : ""), answer ? answer : int(vb::OK));
        ProdottoEsteso p;
        p.codice = typed;
        p.creaNuovo = answer == vb::No; // a No clears what an earlier Yes left
        RicercaProdotto ricerca;
        ricerca.like = answer == 0;
        ricerca.chiediNuovo = answer != 0;
        QCOMPARE(validaProdottoEsteso(p, ricerca), found);
        QCOMPARE(p.codice, expectedCode);
        if (answer)
            QCOMPARE(p.creaNuovo, answer == vb::Yes);
        QVERIFY(errors.reports.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestLookups)
#include "tst_lookups.moc"
