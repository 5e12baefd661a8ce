// Price and discount resolution on both back ends: list prices and their
// fall-backs, personal prices, the discount cascade over the range tables
// of both sides and the net prices.
#include "cadosqlserver.h"
#include "italiantext.h"
#include "prezzi.h"
#include "testdb.h"

#include <QtTest>

namespace {

void run(const QString& sql)
{
    QVERIFY2(gAdoSqlServer().executeSQL(sql, QStringLiteral("test")), qPrintable(sql));
}

int ridOf(const QString& table, const QString& where)
{
    return gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE ") + where,
                                         QStringLiteral("test")).toInt();
}

// The master data of the cases, once a database.
struct Dati
{
    int rossi = 0, verdi = 0, bianchi = 0;      // list 3 with a band; no list, discount 5; no band, discount 8
    int fornitore = 0, altroFornitore = 0;
    int vite = 0, dado = 0, netto = 0, scontato = 0;
    int categoria = 0, categoriaNetti = 0, marca = 0, fascia = 0, altraFascia = 0;
};

Dati& dati(const QString& backend)
{
    static QMap<QString, Dati> all;
    if (all.contains(backend))
        return all[backend];
    Dati& d = all[backend];
    run(QStringLiteral("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (¤VIT¤, ¤Viteria¤)"));
    run(QStringLiteral("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (¤NET¤, ¤Prezzi netti¤)"));
    d.categoria = ridOf(QStringLiteral("CategorieSconti"), QStringLiteral("CODICE = ¤VIT¤"));
    d.categoriaNetti = ridOf(QStringLiteral("CategorieSconti"), QStringLiteral("CODICE = ¤NET¤"));
    run(QStringLiteral("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)"));
    d.marca = ridOf(QStringLiteral("Marche"), QStringLiteral("CODICE = ¤ACME¤"));
    run(QStringLiteral("INSERT INTO FasceClienti (CODICE, DESCRIZIONE) VALUES (¤ORO¤, ¤Oro¤)"));
    d.fascia = 1;
    d.altraFascia = ridOf(QStringLiteral("FasceClienti"), QStringLiteral("CODICE = ¤ORO¤"));

    const auto anagrafe = [](int numero, const QString& tipo, const QString& listino, const QString& sconto, const QString& fascia) {
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, LISTINO, SCONTO, FK_FASCIACLIENTE) VALUES (")
            + QString::number(numero) + QStringLiteral(", ¤prova¤, ¤") + tipo + QStringLiteral("¤, ") + listino + QStringLiteral(", ")
            + sconto + QStringLiteral(", ") + fascia + QLatin1Char(')'));
        return ridOf(QStringLiteral("Anagrafiche"), QStringLiteral("NUMERO = ") + QString::number(numero));
    };
    d.rossi = anagrafe(501, QStringLiteral("C"), QStringLiteral("3"), QStringLiteral("0"), QString::number(d.altraFascia));
    d.verdi = anagrafe(502, QStringLiteral("C"), QStringLiteral("NULL"), QStringLiteral("5"), QStringLiteral("NULL"));
    d.bianchi = anagrafe(503, QStringLiteral("C"), QStringLiteral("2"), QStringLiteral("8"), QStringLiteral("NULL"));
    d.fornitore = anagrafe(504, QStringLiteral("F"), QStringLiteral("NULL"), QStringLiteral("0"), QStringLiteral("NULL"));
    d.altroFornitore = anagrafe(505, QStringLiteral("F"), QStringLiteral("NULL"), QStringLiteral("0"), QStringLiteral("NULL"));

    const auto prodotto = [&d](const QString& code, const QString& listini, const QString& sconto, int catVen, int catAcq) {
        run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, LISTINO1, LISTINO2, LISTINO3, LISTINO4, PREZZOACQUISTO, SCONTO, "
                           "FK_MARCA, FK_CATSCOVEN, FK_CATSCOACQ) VALUES (¤")
            + code + QStringLiteral("¤, ¤prova¤, ") + listini + QStringLiteral(", 6.5, ") + sconto + QStringLiteral(", ")
            + QString::number(d.marca) + QStringLiteral(", ") + getIDOrNullStr(catVen) + QStringLiteral(", ") + getIDOrNullStr(catAcq)
            + QLatin1Char(')'));
        return ridOf(QStringLiteral("Prodotti"), QStringLiteral("CODICE = ¤") + code + QStringLiteral("¤"));
    };
    d.vite = prodotto(QStringLiteral("VITE"), QStringLiteral("10, 9, 0, 8"), QStringLiteral("0"), d.categoria, d.categoria);
    d.dado = prodotto(QStringLiteral("DADO"), QStringLiteral("20, 19, 18, 17"), QStringLiteral("0"), d.categoria, d.categoria);
    d.netto = prodotto(QStringLiteral("NETTO"), QStringLiteral("30, 0, 0, 0"), QStringLiteral("0"), d.categoriaNetti, d.categoria);
    d.scontato = prodotto(QStringLiteral("SCONTATO"), QStringLiteral("40, 0, 0, 0"), QStringLiteral("10"), d.categoria, d.categoria);

    // Personal prices of Rossi: 0 on the screw, 7 on the nut.
    run(QStringLiteral("INSERT INTO Listini (FK_ANAGRAFE, FK_PRODOTTO, PREZZO) VALUES (") + QString::number(d.rossi)
        + QStringLiteral(", ") + QString::number(d.vite) + QStringLiteral(", 0)"));
    run(QStringLiteral("INSERT INTO Listini (FK_ANAGRAFE, FK_PRODOTTO, PREZZO) VALUES (") + QString::number(d.rossi)
        + QStringLiteral(", ") + QString::number(d.dado) + QStringLiteral(", 7)"));

    // Sales ranges of the category and brand: the standard band first (the
    // oldest head), then Oro.
    const auto venditaHead = [&d](int fascia) {
        run(QStringLiteral("INSERT INTO CatScVendita (FK_CATEGORIA, FK_MARCA, FK_FASCIA) VALUES (") + QString::number(d.categoria)
            + QStringLiteral(", ") + QString::number(d.marca) + QStringLiteral(", ") + QString::number(fascia) + QLatin1Char(')'));
        return ridOf(QStringLiteral("CatScVendita"), QStringLiteral("FK_FASCIA = ") + QString::number(fascia));
    };
    const int standard = venditaHead(d.fascia);
    const int oro = venditaHead(d.altraFascia);
    const auto range = [](const char* table, const char* head, int rid, const char* min, const char* max, const char* sconti) {
        run(QStringLiteral("INSERT INTO ") + QLatin1String(table) + QStringLiteral(" (") + QLatin1String(head)
            + QStringLiteral(", RangeMin, RangeMax, Sconto1, SCONTO2, SCONTO3) VALUES (") + QString::number(rid) + QStringLiteral(", ")
            + QLatin1String(min) + QStringLiteral(", ") + QLatin1String(max) + QStringLiteral(", ") + QLatin1String(sconti) + QLatin1Char(')'));
    };
    range("CatScVenditeSconti", "FK_CatScVendite", standard, "1", "9", "5, 0, 0");
    range("CatScVenditeSconti", "FK_CatScVendite", standard, "10", "99", "10, 5, 0");
    range("CatScVenditeSconti", "FK_CatScVendite", oro, "1", "99", "20, 10, 5");

    // Net prices of the net-price product for the standard band.
    run(QStringLiteral("INSERT INTO CatScProdVendita (FK_CATEGORIA, FK_PRODOTTO, FK_FASCIA) VALUES (") + QString::number(d.categoriaNetti)
        + QStringLiteral(", ") + QString::number(d.netto) + QStringLiteral(", 1)"));
    run(QStringLiteral("INSERT INTO CatScVenditaProd (FK_CatScVenditeProd, RangeMin, RangeMax, PREZZO) VALUES (")
        + QString::number(ridOf(QStringLiteral("CatScProdVendita"), QStringLiteral("FK_PRODOTTO = ") + QString::number(d.netto)))
        + QStringLiteral(", 1, 50, 24.5)"));

    // Purchase ranges of one supplier only.
    run(QStringLiteral("INSERT INTO CatScAcquisto (FK_CATEGORIA, FK_MARCA, FK_FORNITORE) VALUES (") + QString::number(d.categoria)
        + QStringLiteral(", ") + QString::number(d.marca) + QStringLiteral(", ") + QString::number(d.fornitore) + QLatin1Char(')'));
    range("CatScAcquistoSconti", "FK_CatScAcquisto",
          ridOf(QStringLiteral("CatScAcquisto"), QStringLiteral("FK_FORNITORE = ") + QString::number(d.fornitore)), "1", "999",
          "30, 2, 0");
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
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("list 3 at 0 takes list 1, personal 0 keeps the mark") << "rossi" << "vite" << false << "10" << 1;
            row("personal price, no discount") << "rossi" << "dado" << true << "7" << 1;
            row("no list: list 1") << "verdi" << "dado" << false << "20" << 0;
            row("list 2") << "bianchi" << "dado" << false << "19" << 0;
            row("discount asked for") << "bianchi" << "dado" << true << "17.48" << 0;
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
        const Dati& d = dati(backend);
        const QMap<QString, int> keys{{QStringLiteral("rossi"), d.rossi}, {QStringLiteral("verdi"), d.verdi},
                                      {QStringLiteral("bianchi"), d.bianchi}, {QStringLiteral("vite"), d.vite},
                                      {QStringLiteral("dado"), d.dado}};
        quint8 personale = 0;
        QCOMPARE(getPrezzoVendita(keys.value(cliente), keys.value(prodotto), personale, false, applicaSconto).toPlainString(), expected);
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
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("band's range") << "C" << "rossi" << "vite" << 5.0 << "0" << QStringList{"20,00", "10,00", "5,00"};
            row("no band: oldest head") << "C" << "verdi" << "vite" << 15.0 << "5" << QStringList{"10,00", "5,00", "0,00"};
            row("outside every range: counterparty discount") << "C" << "verdi" << "vite" << 500.0 << "5"
                                                               << QStringList{"5,00", "0,00", "0,00"};
            row("product's own discount wins") << "C" << "rossi" << "scontato" << 5.0 << "3" << QStringList{"10,00", "0,00", "0,00"};
            row("net price in range") << "C" << "verdi" << "netto" << 5.0 << "0"
                                      << QStringList{"0,00", "0,00", "0,00", "24,50", "blu"};
            row("net price and a general discount") << "C" << "bianchi" << "netto" << 5.0 << "8"
                                                    << QStringList{"8,00", "0,00", "0,00", "24,50", "blu"};
            row("net price out of range keeps the list") << "C" << "verdi" << "netto" << 80.0 << "0"
                                                        << QStringList{"0,00", "0,00", "0,00"};
            row("purchase ignores the product's discount") << "F" << "fornitore" << "scontato" << 5.0 << "0"
                                                           << QStringList{"30,00", "2,00", "0,00"};
            row("supplier without ranges: another's") << "F" << "altroFornitore" << "vite" << 5.0 << "0"
                                                       << QStringList{"30,00", "2,00", "0,00"};
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
        const Dati& d = dati(backend);
        const QMap<QString, int> keys{{QStringLiteral("rossi"), d.rossi},         {QStringLiteral("verdi"), d.verdi},
                                      {QStringLiteral("bianchi"), d.bianchi},     {QStringLiteral("fornitore"), d.fornitore},
                                      {QStringLiteral("altroFornitore"), d.altroFornitore}, {QStringLiteral("vite"), d.vite},
                                      {QStringLiteral("netto"), d.netto},         {QStringLiteral("scontato"), d.scontato}};
        DocumentoPrezzi doc;
        doc.tipoOrigine = side == QLatin1String("C") ? 3 : 2;
        doc.tipoDestinazione = side == QLatin1String("C") ? 1 : 3;
        (side == QLatin1String("C") ? doc.destinazione : doc.origine) = keys.value(controparte);
        doc.quantita = toSingle(quantita);
        doc.scontoControparte = getValoreCurrency(sconto);
        doc.catPrezziNetti = d.categoriaNetti;
        CampiRiga riga;
        riga.txtPrezzoListino = getPrezzo(keys.value(prodotto), doc);
        bool done = false;
        setSconti(keys.value(prodotto), false, done, riga, doc);
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
        const Dati& d = dati(backend);
        DocumentoPrezzi doc;
        doc.tipoOrigine = 3;
        doc.tipoDestinazione = 1;
        doc.destinazione = d.rossi;
        doc.quantita = 5;
        doc.lblPos = 2;
        CampiRiga riga{QStringLiteral("10,00"), QStringLiteral("3,00"), QStringLiteral("0,00"), QStringLiteral("0,00")};
        bool done = true;
        setSconti(d.vite, false, done, riga, doc);
        QVERIFY(!done);
        QCOMPARE(riga.txtSconto1, QStringLiteral("3,00"));
        setSconti(d.vite, true, done, riga, doc);
        QVERIFY(done);
        QCOMPARE(riga.txtSconto1, QStringLiteral("20,00"));
        QCOMPARE(getFasciaCliente(d.rossi), d.altraFascia);
        QCOMPARE(getFasciaCliente(d.verdi), 0);
        QCOMPARE(getPrezzoAcquisto(d.vite), QStringLiteral("6,5"));
        QCOMPARE(getPrezzoAcquisto(999999), QString());
    }
};

QTEST_GUILESS_MAIN(TestPrezzi)
#include "tst_prezzi.moc"
