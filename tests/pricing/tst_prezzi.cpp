// Price and discount resolution on both back ends: list prices and their
// fall-backs, personal prices, the discount cascade over the range tables
// of both sides and the net prices.
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "pricing/prezzi.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::rid;
using testdb::run;

namespace {

// The master data of the cases, once a database, by name: rossi (list 3,
// band Oro), verdi (no list, discount 5), bianchi (list 2, discount 8), two
// suppliers, the products and the categories.
const QMap<QString, int>& dati()
{
    static QMap<QString, QMap<QString, int>> all;
    QMap<QString, int>& d = all[testdb::BackendTest::backend()];
    if (!d.isEmpty())
        return d;
    run("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (¤VIT¤, ¤Viteria¤), (¤NET¤, ¤Prezzi netti¤)");
    run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)");
    run("INSERT INTO FasceClienti (CODICE, DESCRIZIONE) VALUES (¤ORO¤, ¤Oro¤)");
    const int categoria = rid("CategorieSconti", "CODICE = ¤VIT¤"), marca = rid("Marche", "CODICE = ¤ACME¤");
    const int netti = d["categoriaNetti"] = rid("CategorieSconti", "CODICE = ¤NET¤");
    const int oro = d["oro"] = rid("FasceClienti", "CODICE = ¤ORO¤");
    const auto anagrafe = [&d](const char* name, int numero, const QString& values) {
        run(QString("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO, FK_FASCIACLIENTE) "
                    "VALUES (%1, ¤prova¤, %2)")
                .arg(numero)
                .arg(values));
        d[name] = rid("Anagrafiche", "NUMERO = " + QString::number(numero));
    };
    anagrafe("rossi", 501, "¤C¤, 3, 0, " + QString::number(oro));
    anagrafe("verdi", 502, "¤C¤, NULL, 5, NULL");
    anagrafe("bianchi", 503, "¤C¤, 2, 8, NULL");
    anagrafe("fornitore", 504, "¤F¤, NULL, 0, NULL");
    anagrafe("altroFornitore", 505, "¤F¤, NULL, 0, NULL");
    const auto prodotto = [&](const char* name, const char* code, const char* listini, const char* off, int cat) {
        run(QString("INSERT INTO Prodotti (CODICE, DESCRIZIONE, LISTINO1, LISTINO2, LISTINO3, LISTINO4, "
                    "PREZZOACQUISTO, SCONTO, FK_MARCA, FK_CATSCOVEN, FK_CATSCOACQ) "
                    "VALUES (¤%1¤, ¤prova¤, %2, 6.5, %3, %4, %5, %6)")
                .arg(code, listini, off)
                .arg(marca)
                .arg(cat)
                .arg(categoria));
        d[name] = rid("Prodotti", QString("CODICE = ¤%1¤").arg(code));
    };
    prodotto("vite", "VITE", "10, 9, 0, 8", "0", categoria);
    prodotto("dado", "DADO", "20, 19, 18, 17", "0", categoria);
    prodotto("netto", "NETTO", "30, 0, 0, 0", "0", netti);
    prodotto("scontato", "SCONTATO", "40, 0, 0, 0", "10", categoria);
    // Personal prices of Rossi: 0 on the screw, 7 on the nut.
    run(QString("INSERT INTO Listini (FK_ANAGRAFE, FK_PRODOTTO, PREZZO) VALUES (%1, %2, 0), (%1, %3, 7)")
            .arg(d["rossi"])
            .arg(d["vite"])
            .arg(d["dado"]));

    // Sales ranges of the category and brand: the standard band first (the
    // oldest head), then Oro; purchase ranges of one supplier only.
    const auto ranges = [](const char* head, const QString& where, const QStringList& rows) {
        const QString table = QString(head).endsWith("Vendita") ? "CatScVenditeSconti" : "CatScAcquistoSconti";
        const QString key = QString(head).endsWith("Vendita") ? "FK_CatScVendite" : "FK_CatScAcquisto";
        for (const QString& values : rows)
            run(QString("INSERT INTO %1 (%2, RangeMin, RangeMax, Sconto1, SCONTO2, SCONTO3) VALUES (%3, %4)")
                    .arg(table, key)
                    .arg(rid(head, where))
                    .arg(values));
    };
    for (int fascia : {1, oro})
        run(QString("INSERT INTO CatScVendita (FK_CATEGORIA, FK_MARCA, FK_FASCIA) VALUES (%1, %2, %3)")
                .arg(categoria)
                .arg(marca)
                .arg(fascia));
    ranges("CatScVendita", "FK_FASCIA = 1", {"1, 9, 5, 0, 0", "10, 99, 10, 5, 0"});
    ranges("CatScVendita", "FK_FASCIA = " + QString::number(oro), {"1, 99, 20, 10, 5"});
    run(QString("INSERT INTO CatScAcquisto (FK_CATEGORIA, FK_MARCA, FK_FORNITORE) VALUES (%1, %2, %3)")
            .arg(categoria)
            .arg(marca)
            .arg(d["fornitore"]));
    ranges("CatScAcquisto", "FK_FORNITORE = " + QString::number(d["fornitore"]), {"1, 999, 30, 2, 0"});

    // Net prices of the net-price product for the standard band.
    run(QString("INSERT INTO CatScProdVendita (FK_CATEGORIA, FK_PRODOTTO, FK_FASCIA) VALUES (%1, %2, 1)")
            .arg(netti)
            .arg(d["netto"]));
    const int net = rid("CatScProdVendita", "FK_PRODOTTO = " + QString::number(d["netto"]));
    run(QString("INSERT INTO CatScVenditaProd (FK_CatScVenditeProd, RangeMin, RangeMax, PREZZO)"
                " VALUES (%1, 1, 50, 24.5)")
            .arg(net));
    return d;
}

// A row of a sale to (`side` "C") or a purchase from ("F") the counterparty.
DocumentoPrezzi documento(const QString& side, const QString& controparte, double quantita, const QString& sconto)
{
    const bool sale = side == "C";
    DocumentoPrezzi doc;
    doc.tipoOrigine = sale ? 3 : 2;
    doc.tipoDestinazione = sale ? 1 : 3;
    (sale ? doc.destinazione : doc.origine) = dati().value(controparte);
    doc.quantita = toSingle(quantita);
    doc.scontoControparte = getValoreCurrency(sconto);
    doc.catPrezziNetti = dati().value("categoriaNetti");
    return doc;
}

} // namespace

class TestPrezzi : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void listPrice_data()
    {
        QTest::addColumn<QString>("cliente");
        QTest::addColumn<QString>("prodotto");
        QTest::addColumn<bool>("applicaSconto");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<int>("mark");
        QTest::newRow("list 3 at 0 takes list 1, personal 0 keeps the mark") << "rossi"
                                                                             << "vite" << false << "10" << 1;
        QTest::newRow("personal price, no discount") << "rossi"
                                                     << "dado" << true << "7" << 1;
        QTest::newRow("no list: list 1") << "verdi"
                                         << "dado" << false << "20" << 0;
        QTest::newRow("list 2") << "bianchi"
                                << "dado" << false << "19" << 0;
        QTest::newRow("discount asked for") << "bianchi"
                                            << "dado" << true << "17.48" << 0;
    }
    void listPrice()
    {
        QFETCH(QString, cliente);
        QFETCH(QString, prodotto);
        QFETCH(bool, applicaSconto);
        QFETCH(QString, expected);
        QFETCH(int, mark);
        quint8 personale = 0;
        const Currency prezzo =
            getPrezzoVendita(dati().value(cliente), dati().value(prodotto), personale, false, applicaSconto);
        QCOMPARE(prezzo.toPlainString(), expected);
        QCOMPARE(int(personale), mark);
    }

    void cascade_data()
    {
        QTest::addColumn<QString>("side");
        QTest::addColumn<QString>("controparte");
        QTest::addColumn<QString>("prodotto");
        QTest::addColumn<double>("quantita");
        QTest::addColumn<QString>("sconto");       // the counterparty's discount kept by the form
        QTest::addColumn<QStringList>("expected"); // discounts, then price and its colour when set
        const auto row = [](const char* name, const char* side, const char* controparte, const char* prodotto,
                            double quantita, const char* sconto, const QStringList& expected) {
            QTest::newRow(name) << QString(side) << QString(controparte) << QString(prodotto) << quantita
                                << QString(sconto) << expected;
        };
        row("band's range", "C", "rossi", "vite", 5, "0", {"20,00", "10,00", "5,00"});
        row("no band: oldest head", "C", "verdi", "vite", 15, "5", {"10,00", "5,00", "0,00"});
        row("outside every range: counterparty discount", "C", "verdi", "vite", 500, "5", {"5,00", "0,00", "0,00"});
        row("product's own discount wins", "C", "rossi", "scontato", 5, "3", {"10,00", "0,00", "0,00"});
        row("net price in range", "C", "verdi", "netto", 5, "0", {"0,00", "0,00", "0,00", "24,50", "blu"});
        row("net price, general discount", "C", "bianchi", "netto", 5, "8", {"8,00", "0,00", "0,00", "24,50", "blu"});
        row("net price out of range keeps the list", "C", "verdi", "netto", 80, "0", {"0,00", "0,00", "0,00"});
        row("purchase ignores the product's discount", "F", "fornitore", "scontato", 5, "0", {"30,00", "2,00", "0,00"});
        row("supplier without ranges: another's", "F", "altroFornitore", "vite", 5, "0", {"30,00", "2,00", "0,00"});
    }
    void cascade()
    {
        QFETCH(QString, side);
        QFETCH(QString, controparte);
        QFETCH(QString, prodotto);
        QFETCH(double, quantita);
        QFETCH(QString, sconto);
        QFETCH(QStringList, expected);
        const DocumentoPrezzi doc = documento(side, controparte, quantita, sconto);
        CampiRiga riga;
        riga.txtPrezzoListino = getPrezzo(dati().value(prodotto), doc);
        bool done = false;
        setSconti(dati().value(prodotto), false, done, riga, doc);
        QVERIFY(done);
        QStringList shown{riga.txtSconto1, riga.txtSconto2, riga.txtSconto3};
        if (riga.colorePrezzo == CampiRiga::Colore::Blu)
            shown << riga.txtPrezzoListino << "blu";
        QCOMPARE(shown, expected);
    }

    // The row under edit keeps its discounts when only the quantity changes.
    void rowUnderEdit()
    {
        const int vite = dati().value("vite");
        DocumentoPrezzi doc = documento("C", "rossi", 5, "0");
        doc.lblPos = 2;
        CampiRiga riga{"10,00", "3,00", "0,00", "0,00", {}, {}};
        bool done = true;
        setSconti(vite, false, done, riga, doc);
        QVERIFY(!done);
        QCOMPARE(riga.txtSconto1, QStringLiteral("3,00"));
        setSconti(vite, true, done, riga, doc);
        QVERIFY(done);
        QCOMPARE(riga.txtSconto1, QStringLiteral("20,00"));
        QCOMPARE(getFasciaCliente(doc.destinazione), dati().value("oro"));
        QCOMPARE(getFasciaCliente(dati().value("verdi")), 0);
        QCOMPARE(getPrezzoAcquisto(vite), QStringLiteral("6,5"));
        QCOMPARE(getPrezzoAcquisto(999999), QString());
    }
};

QTEST_GUILESS_MAIN(TestPrezzi)
#include "tst_prezzi.moc"
