// The product card: the markup arithmetic, the barcode, code and brand as
// the identity of a new card, stock that forbids a delete, alternatives in
// both directions, assisted duplication.
#include "common/ean13.h"
#include "core/optionstore.h"
#include "masterdata/frmprodotto.h"
#include "support/screendriver.h"

#include <QDateTime>
#include <QListWidget>
#include <QtTest>

using testdb::ScriptedDialogs;
using Card = testdb::Screen<frmProdotto>;

namespace {

enum Passo {
    DaRicarico,
    DaPrezzi,
    Acquisto,
    Listino1,
    Listino1Lordo,
    Iva
};

} // namespace

Q_DECLARE_METATYPE(Passo)

class TestProdotti : public testdb::BackendTest
{
    Q_OBJECT

    // A new card with code, brand code (empty for none) and description,
    // saved; `stessoCodice` keeps the code of the card shown.
    static bool nuovo(Card& s, const QString& codice, const QString& marca, const QString& descrizione,
                      bool stessoCodice = false)
    {
        if (stessoCodice) {
            s.screen.cmdAdd_Click();
        } else {
            s.screen.newRecord();
            s.type("txtCodice1", codice);
        }
        s.set("txtMarca", marca);
        s.set("txtUnitaMisura", "PZ");
        s.set("txtDescrizione", descrizione); // the look-ups find their rows when left
        return s.screen.saveRecord();
    }

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        loadOptionGlobals();
        testdb::empty({"ProdottiAlternativi", "DettagliProdotto", "Listini"});
        testdb::run("DELETE FROM Prodotti");
        if (testdb::count("Marche", testdb::code("ACME")) == 0)
            testdb::run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤), (¤BETA¤, ¤Beta¤)");
    }

    // Amounts as the card shows them; VAT 22 unless the row says otherwise.
    void markup_data()
    {
        QTest::addColumn<Passo>("passo");
        QTest::addColumn<QStringList>("prima"); // acquisto, listino1, listino1Lordo, ricarico, pListino
        QTest::addColumn<double>("iva");
        QTest::addColumn<QStringList>("dopo"); // acquisto, acquistoLordo, listino1, listino1Lordo, ricarico, pListino
        QTest::newRow("purchase 10, markup 50") << DaRicarico << QStringList{"10,00", "0,00", "0,00", "50", "0,00"}
                                                << 22.0 << QStringList{"10,00", "", "15,00", "18,30", "50,00", "18,30"};
        QTest::newRow("gross 18,30 back to net")
            << Listino1Lordo << QStringList{"10,00", "", "18,30", "", "0,00"} << 22.0
            << QStringList{"10,00", "", "15,00", "18,30", "50,00", "18,30"};
        QTest::newRow("markup 0 leaves the list price")
            << DaRicarico << QStringList{"10,00", "12", "", "0", "0,00"} << 22.0
            << QStringList{"10,00", "", "12,00", "", "0", "0,00"};
        QTest::newRow("purchase 0 leaves the markup") << DaPrezzi << QStringList{"0", "15,00", "", "30", "0,00"} << 22.0
                                                      << QStringList{"0", "", "15,00", "", "30,00", "0,00"};
        QTest::newRow("markup on cost") << Listino1 << QStringList{"8,00", "10,00", "", "", "0,00"} << 22.0
                                        << QStringList{"8,00", "", "10,00", "12,20", "25,00", "12,20"};
        QTest::newRow("indicative price kept") << Listino1 << QStringList{"8,00", "10,00", "", "", "20,00"} << 22.0
                                               << QStringList{"8,00", "", "10,00", "12,20", "25,00", "20,00"};
        QTest::newRow("purchase gross") << Acquisto << QStringList{"10,00", "0,00", "", "", "0,00"} << 22.0
                                        << QStringList{"10,00", "12,20", "0,00", "", "0,00", "0,00"};
        QTest::newRow("another rate") << Iva << QStringList{"100,00", "150,00", "", "", "0,00"} << 10.0
                                      << QStringList{"100,00", "110,00", "150,00", "165,00", "50,00", "165,00"};
        // The VAT of a net price is rounded to four decimals before the sum.
        QTest::newRow("VAT rounded") << Listino1 << QStringList{"0,00", "0,33335", "", "", "0,00"} << 22.0
                                     << QStringList{"0,00", "", "0,33335", "0,41", "0,00", "0,41"};
    }
    void markup()
    {
        QFETCH(Passo, passo);
        QFETCH(QStringList, prima);
        QFETCH(double, iva);
        QFETCH(QStringList, dopo);
        PrezziProdotto p{prima.at(0), QString(), prima.at(1), prima.at(2), prima.at(3), prima.at(4), iva, 2};
        switch (passo) {
        case DaRicarico: calcolaRicarico(p, true); break;
        case DaPrezzi: calcolaRicarico(p, false); break;
        case Acquisto: ricalcolaPrezzi(p, PrezzoCambiato::Acquisto); break;
        case Listino1: ricalcolaPrezzi(p, PrezzoCambiato::Listino1); break;
        case Listino1Lordo: ricalcolaPrezzi(p, PrezzoCambiato::Listino1Lordo); break;
        case Iva: ricalcolaPrezzi(p, PrezzoCambiato::Iva); break;
        }
        QCOMPARE((QStringList{p.acquisto, p.acquistoLordo, p.listino1, p.listino1Lordo, p.ricarico, p.pListino}), dopo);
    }

    void barcode()
    {
        QCOMPARE(erroreCheckCode("4006381333932"), QStringLiteral("Il Check Code corretto è: 1\r"));
        QCOMPARE(erroreCheckCode("4006381333931"), QString());
        QCOMPARE(erroreCheckCode("400638133393"), QString()); // 12 digits: not checked
        QCOMPARE(erroreCheckCode("40063813339X1"), QString());
        const QDateTime adesso(QDate(2026, 11, 23), QTime(10, 20, 30));
        QCOMPARE(nuovoBarcode(adesso),
                 QStringLiteral("261123102030") + QString::number(getEAN13ChekDigit("261123102030")));
        QCOMPARE(barcodeVariante(adesso, 2),
                 QStringLiteral("261123102062") + QString::number(getEAN13ChekDigit("261123102062")));
    }

    // Code plus brand is the identity of a new card; any of the three codes
    // finds a card; an empty barcode becomes a generated one.
    void identity()
    {
        Card s(true, true, 0);
        QVERIFY(nuovo(s, "VITE8", "ACME", "Vite 8 mm"));
        QVERIFY(nuovo(s, "VITE8", "BETA", "Vite 8 mm Beta", true));
        QVERIFY(nuovo(s, "VITE8", "", "Vite 8 mm senza marca", true));
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - La combinazione Marca/Codice crea un duplicato nell'indice della chiave.",
                             vb::OK);
        QVERIFY(!nuovo(s, "VITE8", "ACME", "Doppione", true));
        script.expectMessage("crea un duplicato", vb::OK);
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
            s.type("txtCodice1", code);
            s.get("txtCodice2")->setFocus();
            QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("Vite 8 mm senza marca"));
        }
    }

    // A new card takes the options' VAT rate and unit; the gross price typed
    // asks before it replaces an indicative price of its own.
    void grossPriceOnTheCard()
    {
        Card s(true, true, 0);
        QCOMPARE(s.shown("txtIva"), QStringLiteral("22"));
        QCOMPARE(s.shown("lblIva"), QStringLiteral("22,00"));
        QCOMPARE(s.shown("txtUnitaMisura"), QStringLiteral("PZ"));
        s.set("txtPListino", "20");
        s.set("txtListino1Lordo", "18,30");
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
        Card s(true, true, 0);
        QVERIFY(nuovo(s, "DADO", "", "Dado"));
        const QString rid = s.rid();
        testdb::run("INSERT INTO DettagliProdotto (FK_MAGAZZINO, FK_PRODOTTO, QUANTITA, TAGLIO) VALUES (1, " + rid
                    + ", 5, 1)");
        ScriptedDialogs script;
        script.expectMessage("Impossibile seguire la cancellazione. Il prodotto risulta in giacenza", vb::OK);
        QVERIFY(!s.screen.deleteRecord());
        testdb::run("UPDATE DettagliProdotto SET QUANTITA = -2 WHERE FK_PRODOTTO = " + rid);
        script.expectMessage("Eliminare il prodotto [DADO - Dado]?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("Prodotti", "RID = " + rid), 0);
        QCOMPARE(testdb::count("DettagliProdotto", "FK_PRODOTTO = " + rid), 0);
    }

    // A pair shows from both sides; saving the other side writes it in its
    // direction too, so the pair then stands twice.
    void alternatives()
    {
        Card s(true, true, 0);
        QVERIFY(nuovo(s, "B", "", "Prodotto B"));
        const int b = s.rid().toInt();
        QVERIFY(nuovo(s, "A", "", "Prodotto A"));
        s.screen.addAlternativo(b);
        ScriptedDialogs script;
        script.expectMessage("già presente", vb::OK);
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

    // Variants 2 and 5 with the origin updated: the card becomes the first,
    // one new product arises for the second.
    void variants()
    {
        Card s(true, true, 0);
        QVERIFY(nuovo(s, "MAGLIA", "", "Maglia"));
        const QString origine = s.rid();
        ScriptedDialogs script;
        script.expectMessage("Sovrascrivere", vb::Yes);
        QVERIFY(s.screen.duplicaVarianti({{2, "-M"}, {5, "-XL"}}, true));
        QCOMPARE(testdb::count("Prodotti"), 2);
        QCOMPARE(testdb::value("SELECT CODICE FROM Prodotti WHERE RID = " + origine).toString(),
                 QStringLiteral("MAGLIA-M"));
        QCOMPARE(testdb::value("SELECT DESCRIZIONE FROM Prodotti WHERE CODICE = ¤MAGLIA-XL¤").toString(),
                 QStringLiteral("Maglia -XL"));
        const QString barcode = testdb::value("SELECT BARCODE FROM Prodotti WHERE CODICE = ¤MAGLIA-XL¤").toString();
        QCOMPARE(barcode.mid(10, 2), QStringLiteral("65"));
        QCOMPARE(barcode.right(1).toInt(), int(getEAN13ChekDigit(barcode)));

        // Without the origin updated, every variant is a new product.
        QVERIFY(s.screen.duplicaVarianti({{1, "/A"}}, false));
        QCOMPARE(testdb::count("Prodotti"), 3);
        QCOMPARE(testdb::count("Prodotti", testdb::code("MAGLIA-XL/A")), 1);
    }
};

QTEST_MAIN(TestProdotti)
#include "tst_prodotti.moc"
