// Price and discount resolution on both back ends: list prices and their
// fall-backs, personal prices, the discount cascade over the range tables
// of both sides and the net prices.
#include "data/cadosqlserver.h"
#include "common/italiantext.h"
#include "pricing/prezzi.h"
#include "support/testdb.h"

#include <QtTest>

namespace {

void run(const QString& sql) { testdb::run(sql); }

int ridOf(const QString& table, const QString& where)
{
    return testdb::number(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE ") + where);
}

// The master data of the cases, once a database, by name: rossi (list 3,
// band Oro), verdi (no list, discount 5), bianchi (list 2, discount 8), two
// suppliers, the products and the categories.
QMap<QString, int>& dati(const QString& backend)
{
    static QMap<QString, QMap<QString, int>> all;
    if (all.contains(backend))
        return all[backend];
    QMap<QString, int>& d = all[backend];
    run(QStringLiteral("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (¤VIT¤, ¤Viteria¤), (¤NET¤, ¤Prezzi netti¤)"));
    const int categoria = ridOf(QStringLiteral("CategorieSconti"), QStringLiteral("CODICE = ¤VIT¤"));
    const int netti = d[QStringLiteral("categoriaNetti")] = ridOf(QStringLiteral("CategorieSconti"), QStringLiteral("CODICE = ¤NET¤"));
    run(QStringLiteral("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)"));
    const int marca = ridOf(QStringLiteral("Marche"), QStringLiteral("CODICE = ¤ACME¤"));
    run(QStringLiteral("INSERT INTO FasceClienti (CODICE, DESCRIZIONE) VALUES (¤ORO¤, ¤Oro¤)"));
    const int oro = d[QStringLiteral("oro")] = ridOf(QStringLiteral("FasceClienti"), QStringLiteral("CODICE = ¤ORO¤"));

    const auto anagrafe = [&d](const char* name, int numero, const char* values) {
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO, FK_FASCIACLIENTE) VALUES (%1, ¤prova¤, %2)")
                .arg(numero).arg(QString::fromUtf8(values)));
        d[QLatin1String(name)] = ridOf(QStringLiteral("Anagrafiche"), QStringLiteral("NUMERO = ") + QString::number(numero));
    };
    anagrafe("rossi", 501, qPrintable(QStringLiteral("¤C¤, 3, 0, ") + QString::number(oro)));
    anagrafe("verdi", 502, "¤C¤, NULL, 5, NULL");
    anagrafe("bianchi", 503, "¤C¤, 2, 8, NULL");
    anagrafe("fornitore", 504, "¤F¤, NULL, 0, NULL");
    anagrafe("altroFornitore", 505, "¤F¤, NULL, 0, NULL");

    const auto prodotto = [&](const char* name, const char* code, const char* listini, const char* sconto, int catVen) {
        run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, LISTINO1, LISTINO2, LISTINO3, LISTINO4, PREZZOACQUISTO, SCONTO, "
                           "FK_MARCA, FK_CATSCOVEN, FK_CATSCOACQ) VALUES (¤%1¤, ¤prova¤, %2, 6.5, %3, %4, %5, %6)")
                .arg(QLatin1String(code), QLatin1String(listini), QLatin1String(sconto))
                .arg(marca).arg(catVen).arg(categoria));
        d[QLatin1String(name)] = ridOf(QStringLiteral("Prodotti"), QStringLiteral("CODICE = ¤%1¤").arg(QLatin1String(code)));
    };
    prodotto("vite", "VITE", "10, 9, 0, 8", "0", categoria);
    prodotto("dado", "DADO", "20, 19, 18, 17", "0", categoria);
    prodotto("netto", "NETTO", "30, 0, 0, 0", "0", netti);
    prodotto("scontato", "SCONTATO", "40, 0, 0, 0", "10", categoria);

    // Personal prices of Rossi: 0 on the screw, 7 on the nut.
    run(QStringLiteral("INSERT INTO Listini (FK_ANAGRAFE, FK_PRODOTTO, PREZZO) VALUES (%1, %2, 0), (%1, %3, 7)")
            .arg(d.value(QStringLiteral("rossi"))).arg(d.value(QStringLiteral("vite"))).arg(d.value(QStringLiteral("dado"))));

    // Sales ranges of the category and brand: the standard band first (the
    // oldest head), then Oro.
    const auto range = [](const char* table, const char* head, int rid, const char* values) {
        run(QStringLiteral("INSERT INTO %1 (%2, RangeMin, RangeMax, Sconto1, SCONTO2, SCONTO3) VALUES (%3, %4)")
                .arg(QLatin1String(table), QLatin1String(head)).arg(rid).arg(QLatin1String(values)));
    };
    for (int fascia : {1, oro}) {
        run(QStringLiteral("INSERT INTO CatScVendita (FK_CATEGORIA, FK_MARCA, FK_FASCIA) VALUES (%1, %2, %3)")
                .arg(categoria).arg(marca).arg(fascia));
        const int head = ridOf(QStringLiteral("CatScVendita"), QStringLiteral("FK_FASCIA = ") + QString::number(fascia));
        if (fascia == 1) {
            range("CatScVenditeSconti", "FK_CatScVendite", head, "1, 9, 5, 0, 0");
            range("CatScVenditeSconti", "FK_CatScVendite", head, "10, 99, 10, 5, 0");
        } else {
            range("CatScVenditeSconti", "FK_CatScVendite", head, "1, 99, 20, 10, 5");
        }
    }

    // Net prices of the net-price product for the standard band.
    run(QStringLiteral("INSERT INTO CatScProdVendita (FK_CATEGORIA, FK_PRODOTTO, FK_FASCIA) VALUES (%1, %2, 1)")
            .arg(netti).arg(d.value(QStringLiteral("netto"))));
    run(QStringLiteral("INSERT INTO CatScVenditaProd (FK_CatScVenditeProd, RangeMin, RangeMax, PREZZO) VALUES (%1, 1, 50, 24.5)")
            .arg(ridOf(QStringLiteral("CatScProdVendita"), QStringLiteral("FK_PRODOTTO = %1").arg(d.value(QStringLiteral("netto"))))));

    // Purchase ranges of one supplier only.
    run(QStringLiteral("INSERT INTO CatScAcquisto (FK_CATEGORIA, FK_MARCA, FK_FORNITORE) VALUES (%1, %2, %3)")
            .arg(categoria).arg(marca).arg(d.value(QStringLiteral("fornitore"))));
    range("CatScAcquistoSconti", "FK_CatScAcquisto",
          ridOf(QStringLiteral("CatScAcquisto"), QStringLiteral("FK_FORNITORE = %1").arg(d.value(QStringLiteral("fornitore")))),
          "1, 999, 30, 2, 0");
    return d;
}

} // namespace

class TestPrezzi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup()
    {
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
        gAdoSqlServer().closeAll();
    }

    void listPrice_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("cliente");
        QTest::addColumn<QString>("prodotto");
        QTest::addColumn<bool>("applicaSconto");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<int>("mark");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "list 3 at 0 takes list 1, personal 0 keeps the mark") << "rossi" << "vite" << false << "10" << 1;
            testdb::row(b, "personal price, no discount") << "rossi" << "dado" << true << "7" << 1;
            testdb::row(b, "no list: list 1") << "verdi" << "dado" << false << "20" << 0;
            testdb::row(b, "list 2") << "bianchi" << "dado" << false << "19" << 0;
            testdb::row(b, "discount asked for") << "bianchi" << "dado" << true << "17.48" << 0;
        }
    }
    void listPrice()
    {
        QFETCH(QString, backend);
        QFETCH(QString, cliente);
        QFETCH(QString, prodotto);
        QFETCH(bool, applicaSconto);
        QFETCH(QString, expected);
        QFETCH(int, mark);
        QVERIFY(testdb::shared(backend).isValid());
        const QMap<QString, int>& d = dati(backend);
        quint8 personale = 0;
        QCOMPARE(getPrezzoVendita(d.value(cliente), d.value(prodotto), personale, false, applicaSconto).toPlainString(), expected);
        QCOMPARE(int(personale), mark);
    }

    void cascade_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("side");        // "C" sale to, "F" purchase from
        QTest::addColumn<QString>("controparte");
        QTest::addColumn<QString>("prodotto");
        QTest::addColumn<double>("quantita");
        QTest::addColumn<QString>("sconto");      // the counterparty's discount kept by the form
        QTest::addColumn<QStringList>("expected"); // discounts, then price and its colour when set
        for (const QString& b : testdb::backends()) {
            const auto row = [&b](const char* name, const char* side, const char* controparte, const char* prodotto, double quantita,
                                  const char* sconto, const QStringList& expected) {
                testdb::row(b, QLatin1String(name)) << QString::fromLatin1(side) << QString::fromLatin1(controparte)
                                                    << QString::fromLatin1(prodotto) << quantita << QString::fromLatin1(sconto) << expected;
            };
            row("band's range", "C", "rossi", "vite", 5, "0", {"20,00", "10,00", "5,00"});
            row("no band: oldest head", "C", "verdi", "vite", 15, "5", {"10,00", "5,00", "0,00"});
            row("outside every range: counterparty discount", "C", "verdi", "vite", 500, "5", {"5,00", "0,00", "0,00"});
            row("product's own discount wins", "C", "rossi", "scontato", 5, "3", {"10,00", "0,00", "0,00"});
            row("net price in range", "C", "verdi", "netto", 5, "0", {"0,00", "0,00", "0,00", "24,50", "blu"});
            row("net price and a general discount", "C", "bianchi", "netto", 5, "8", {"8,00", "0,00", "0,00", "24,50", "blu"});
            row("net price out of range keeps the list", "C", "verdi", "netto", 80, "0", {"0,00", "0,00", "0,00"});
            row("purchase ignores the product's discount", "F", "fornitore", "scontato", 5, "0", {"30,00", "2,00", "0,00"});
            row("supplier without ranges: another's", "F", "altroFornitore", "vite", 5, "0", {"30,00", "2,00", "0,00"});
        }
    }
    void cascade()
    {
        QFETCH(QString, backend);
        QFETCH(QString, side);
        QFETCH(QString, controparte);
        QFETCH(QString, prodotto);
        QFETCH(double, quantita);
        QFETCH(QString, sconto);
        QFETCH(QStringList, expected);
        QVERIFY(testdb::shared(backend).isValid());
        const QMap<QString, int>& d = dati(backend);
        const bool sale = side == QLatin1String("C");
        DocumentoPrezzi doc;
        doc.tipoOrigine = sale ? 3 : 2;
        doc.tipoDestinazione = sale ? 1 : 3;
        (sale ? doc.destinazione : doc.origine) = d.value(controparte);
        doc.quantita = toSingle(quantita);
        doc.scontoControparte = getValoreCurrency(sconto);
        doc.catPrezziNetti = d.value(QStringLiteral("categoriaNetti"));
        CampiRiga riga;
        riga.txtPrezzoListino = getPrezzo(d.value(prodotto), doc);
        bool done = false;
        setSconti(d.value(prodotto), false, done, riga, doc);
        QVERIFY(done);
        QStringList shown{riga.txtSconto1, riga.txtSconto2, riga.txtSconto3};
        if (riga.colorePrezzo == CampiRiga::Colore::Blu)
            shown << riga.txtPrezzoListino << QStringLiteral("blu");
        QCOMPARE(shown, expected);
    }

    // The row under edit keeps its discounts when only the quantity changes.
    void rowUnderEdit_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void rowUnderEdit()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        const QMap<QString, int>& d = dati(backend);
        const int vite = d.value(QStringLiteral("vite"));
        DocumentoPrezzi doc;
        doc.tipoOrigine = 3;
        doc.tipoDestinazione = 1;
        doc.destinazione = d.value(QStringLiteral("rossi"));
        doc.quantita = 5;
        doc.lblPos = 2;
        CampiRiga riga{QStringLiteral("10,00"), QStringLiteral("3,00"), QStringLiteral("0,00"), QStringLiteral("0,00")};
        bool done = true;
        setSconti(vite, false, done, riga, doc);
        QVERIFY(!done);
        QCOMPARE(riga.txtSconto1, QStringLiteral("3,00"));
        setSconti(vite, true, done, riga, doc);
        QVERIFY(done);
        QCOMPARE(riga.txtSconto1, QStringLiteral("20,00"));
        QCOMPARE(getFasciaCliente(doc.destinazione), d.value(QStringLiteral("oro")));
        QCOMPARE(getFasciaCliente(d.value(QStringLiteral("verdi"))), 0);
        QCOMPARE(getPrezzoAcquisto(vite), QStringLiteral("6,5"));
        QCOMPARE(getPrezzoAcquisto(999999), QString());
    }
};

QTEST_GUILESS_MAIN(TestPrezzi)
#include "tst_prezzi.moc"
