// Prices and discounts on both back ends: lists and their fall-backs, personal prices, the discount cascade of both
// sides and the net prices.
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "pricing/prezzi.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::run;

namespace {

// The master data of the cases, by their keys: discount categories VIT and NET (net prices), brand ACME, band Oro;
// Rossi (list 3, band Oro), Verdi (no list, discount 5), Bianchi (list 2, discount 8), two suppliers; products.
constexpr int kNet = 902;
constexpr int kRossi = 901, kVerdi = 902, kBianchi = 903, kFornitore = 904, kAltroFornitore = 905;
constexpr int kVite = 901, kDado = 902, kNetto = 903, kScontato = 904;
void prepare()
{
    if (testdb::count("Marche", "RID = 901") > 0) // made on this back end's database already
        return;
    run("INSERT INTO CategorieSconti (RID, CODICE, DESCRIZIONE) VALUES (901, ¤VIT¤, ¤Viteria¤), (902, ¤NET¤, ¤Netti¤)");
    run("INSERT INTO Marche (RID, CODICE, DESCRIZIONE) VALUES (901, ¤ACME¤, ¤Acme¤)");
    run("INSERT INTO FasceClienti (RID, CODICE, DESCRIZIONE) VALUES (901, ¤ORO¤, ¤Oro¤)");
    run("INSERT INTO Anagrafiche (RID, NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO, FK_FASCIACLIENTE) VALUES "
        "(901, 501, ¤Rossi¤, ¤C¤, 3, 0, 901), (902, 502, ¤Verdi¤, ¤C¤, NULL, 5, NULL), "
        "(903, 503, ¤Bianchi¤, ¤C¤, 2, 8, NULL), (904, 504, ¤Fornitore¤, ¤F¤, NULL, 0, NULL), "
        "(905, 505, ¤Altro¤, ¤F¤, NULL, 0, NULL)");
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, LISTINO1, LISTINO2, LISTINO3, LISTINO4, PREZZOACQUISTO, "
        "SCONTO, FK_MARCA, FK_CATSCOVEN, FK_CATSCOACQ) VALUES "
        "(901, ¤VITE¤, ¤prova¤, 10, 9, 0, 8, 6.5, 0, 901, 901, 901), "
        "(902, ¤DADO¤, ¤prova¤, 20, 19, 18, 17, 6.5, 0, 901, 901, 901), "
        "(903, ¤NETTO¤, ¤prova¤, 30, 0, 0, 0, 6.5, 0, 901, 902, 901), "
        "(904, ¤SCONTATO¤, ¤prova¤, 40, 0, 0, 0, 6.5, 10, 901, 901, 901)");
    // Personal prices of Rossi: 0 on the screw, 7 on the nut.
    run("INSERT INTO Listini (FK_ANAGRAFE, FK_PRODOTTO, PREZZO) VALUES (901, 901, 0), (901, 902, 7)");
    // Sales ranges: the standard band first (the oldest head), then Oro; purchase ranges of 904 only.
    run("INSERT INTO CatScVendita (RID, FK_CATEGORIA, FK_MARCA, FK_FASCIA) VALUES (901, 901, 901, 1), "
        "(902, 901, 901, 901)");
    run("INSERT INTO CatScVenditeSconti (FK_CatScVendite, RangeMin, RangeMax, Sconto1, SCONTO2, SCONTO3) VALUES "
        "(901, 1, 9, 5, 0, 0), (901, 10, 99, 10, 5, 0), (902, 1, 99, 20, 10, 5)");
    run("INSERT INTO CatScAcquisto (RID, FK_CATEGORIA, FK_MARCA, FK_FORNITORE) VALUES (901, 901, 901, 904)");
    run("INSERT INTO CatScAcquistoSconti (FK_CatScAcquisto, RangeMin, RangeMax, Sconto1, SCONTO2, SCONTO3) "
        "VALUES (901, 1, 999, 30, 2, 0)");
    // Net prices of the net-price product for the standard band.
    run("INSERT INTO CatScProdVendita (RID, FK_CATEGORIA, FK_PRODOTTO, FK_FASCIA) VALUES (901, 902, 903, 1)");
    run("INSERT INTO CatScVenditaProd (FK_CatScVenditeProd, RangeMin, RangeMax, PREZZO) VALUES (901, 1, 50, 24.5)");
}

// A row of a sale to or a purchase from the counterparty, with its discount as the form keeps it.
DocumentoPrezzi documento(bool sale, int controparte, double quantita, const QString& sconto)
{
    DocumentoPrezzi doc;
    doc.tipoOrigine = sale ? 3 : 2;
    doc.tipoDestinazione = sale ? 1 : 3;
    (sale ? doc.destinazione : doc.origine) = controparte;
    doc.quantita = toSingle(quantita);
    doc.scontoControparte = getValoreCurrency(sconto);
    doc.catPrezziNetti = kNet;
    return doc;
}

struct Listino
{
    int cliente, prodotto;
    bool applicaSconto;
    QString expected;
    int mark;
};
struct Cascata
{
    bool sale;
    int controparte, prodotto;
    double quantita;
    QString sconto;
    QStringList expected;
};

} // namespace

class TestPrezzi : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void listPrice_data()
    {
        QTest::addColumn<Listino>("l");
        QTest::newRow("list 3 at 0 takes list 1, personal 0 keeps the mark") << Listino{kRossi, kVite, false, "10", 1};
        QTest::newRow("personal price, no discount") << Listino{kRossi, kDado, true, "7", 1};
        QTest::newRow("no list: list 1") << Listino{kVerdi, kDado, false, "20", 0};
        QTest::newRow("list 2") << Listino{kBianchi, kDado, false, "19", 0};
        QTest::newRow("discount asked for") << Listino{kBianchi, kDado, true, "17.48", 0};
    }

    void listPrice()
    {
        prepare();
        QFETCH(Listino, l);
        quint8 personale = 0;
        QCOMPARE(getPrezzoVendita(l.cliente, l.prodotto, personale, false, l.applicaSconto).toPlainString(),
                 l.expected);
        QCOMPARE(int(personale), l.mark);
    }

    // The discounts shown, then the price and its colour when set.
    void cascade_data()
    {
        QTest::addColumn<Cascata>("c");
        const auto row = [](const char* name, const Cascata& c) { QTest::newRow(name) << c; };
        row("band's range", {true, kRossi, kVite, 5, "0", {"20,00", "10,00", "5,00"}});
        row("no band: oldest head", {true, kVerdi, kVite, 15, "5", {"10,00", "5,00", "0,00"}});
        row("outside every range: counterparty discount", {true, kVerdi, kVite, 500, "5", {"5,00", "0,00", "0,00"}});
        row("product's own discount wins", {true, kRossi, kScontato, 5, "3", {"10,00", "0,00", "0,00"}});
        row("net price in range", {true, kVerdi, kNetto, 5, "0", {"0,00", "0,00", "0,00", "24,50", "blu"}});
        row("net price, general discount", {true, kBianchi, kNetto, 5, "8", {"8,00", "0,00", "0,00", "24,50", "blu"}});
        row("net price out of range keeps the list", {true, kVerdi, kNetto, 80, "0", {"0,00", "0,00", "0,00"}});
        row("purchase ignores the product's discount",
            {false, kFornitore, kScontato, 5, "0", {"30,00", "2,00", "0,00"}});
        row("supplier without ranges: another's", {false, kAltroFornitore, kVite, 5, "0", {"30,00", "2,00", "0,00"}});
    }

    void cascade()
    {
        prepare();
        QFETCH(Cascata, c);
        const DocumentoPrezzi doc = documento(c.sale, c.controparte, c.quantita, c.sconto);
        CampiRiga riga;
        riga.txtPrezzoListino = getPrezzo(c.prodotto, doc);
        bool done = false;
        setSconti(c.prodotto, false, done, riga, doc);
        QVERIFY(done);
        QStringList shown{riga.txtSconto1, riga.txtSconto2, riga.txtSconto3};
        if (riga.colorePrezzo == CampiRiga::Colore::Blu)
            shown << riga.txtPrezzoListino << "blu";
        QCOMPARE(shown, c.expected);
    }

    // The row under edit keeps its discounts when only the quantity changes.
    void rowUnderEdit()
    {
        prepare();
        DocumentoPrezzi doc = documento(true, kRossi, 5, "0");
        doc.lblPos = 2;
        CampiRiga riga{"10,00", "3,00", "0,00", "0,00", {}, {}};
        bool done = true;
        setSconti(kVite, false, done, riga, doc);
        QVERIFY(!done);
        QCOMPARE(riga.txtSconto1, "3,00");
        setSconti(kVite, true, done, riga, doc);
        QVERIFY(done);
        QCOMPARE(riga.txtSconto1, "20,00");
        QCOMPARE(getPrezzoAcquisto(kVite), "6,5");
        QCOMPARE(getPrezzoAcquisto(999999), QString());
    }
};

QTEST_GUILESS_MAIN(TestPrezzi)
#include "tst_prezzi.moc"
