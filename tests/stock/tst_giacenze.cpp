// Stock postings on both back ends: cost lots, the oldest lot first, lot changes, transfers, the messages; the moving
// average; the statistics.
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "stock/giacenze.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

#include <limits>

using testdb::run;

namespace {

using testdb::columns;

constexpr int kSede = 1;
using giacenze::Cancellazione, giacenze::Inserimento, giacenze::Modifica;
Currency eur(double v) { return Currency::fromDouble(v); }
Currency noLot() { return Currency::fromUnits(-1); }
QString n(double v) { return QString::number(v); }
// A fresh product that keeps stock.
int newProduct(double prezzoAcquisto = 0)
{
    static int made = 0;
    const QString code = QString("P%1").arg(++made);
    run(QString("INSERT INTO Prodotti (CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA, PREZZOACQUISTO) "
                "VALUES (¤%1¤, ¤prova¤, 0, -1, %2)")
            .arg(code, n(prezzoAcquisto)));
    return testdb::rid("Prodotti", testdb::code(code));
}

int negozio()
{
    if (!testdb::rid("Magazzini", testdb::code("NEG")))
        run("INSERT INTO Magazzini (CODICE, DESCRIZIONE) VALUES (¤NEG¤, ¤Negozio¤)");
    return testdb::rid("Magazzini", testdb::code("NEG"));
}

struct Posting
{
    int prodotto;
    OpzioniGiacenza opzioni;
    Currency taglio = {}; // the lot of the last posting, as it came back
    QString post(double quantita, double vecchia, Currency lot, int azione, int orig, int dest,
                 Currency precedente = noLot(), int ridRiga = -1)
    {
        taglio = lot;
        return aggiornaGiacenze(toSingle(quantita), toSingle(vecchia), taglio, prodotto, azione, orig, dest,
                                "Prodotto [P - prova]", precedente, ridRiga, opzioni);
    }

    // "lot:quantity" of each stock row in a warehouse, oldest first, then the product's whole stock: "5:0 6:7 (14)".
    QString stock(int magazzino = kSede) const
    {
        QStringList out;
        for (const QVariantList& r : testdb::rows(QString("SELECT TAGLIO, QUANTITA FROM DettagliProdotto WHERE "
                                                          "FK_PRODOTTO = %1 AND FK_MAGAZZINO = %2 ORDER BY RID")
                                                      .arg(n(prodotto), n(magazzino))))
            out << getValoreCurrency(r.at(0)).toPlainString() + ':' + plainTextIt(r.at(1).toDouble());
        return out.join(' ') + " (" + plainTextIt(getGiacenzaProdottoTotale(prodotto)) + ')';
    }
};

} // namespace

class TestGiacenze : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // A load, a change of quantity, a change of lot, a deletion; sales and transfers.
    void lots()
    {
        Posting p{newProduct(), {}};
        QCOMPARE(p.post(10, 0, eur(5), Inserimento, -1, kSede), "OK");
        QCOMPARE(p.stock(), "5:10 (10)");
        QCOMPARE(p.post(7, 10, eur(5), Modifica, -1, kSede, eur(5)), "OK");
        QCOMPARE(p.stock(), "5:7 (7)");
        // A new lot: the old loses the old quantity, the new gains the new, and so the total.
        QCOMPARE(p.post(7, 7, eur(6), Modifica, -1, kSede, eur(5)), "OK");
        QCOMPARE(p.stock(), "5:0 6:7 (14)");
        QCOMPARE(p.post(0, 7, eur(6), Cancellazione, -1, kSede), "OK");
        QCOMPARE(p.stock(), "5:0 6:0 (7)");
        // A sale without a lot leaves the oldest lot with stock; a transfer keeps the total.
        p = {newProduct(), {}};
        for (const auto& [price, quantity] : {std::pair{4.0, 0.0}, {5.0, 3.0}, {6.0, 8.0}})
            QCOMPARE(p.post(quantity, 0, eur(price), Inserimento, -1, kSede), "OK");
        QCOMPARE(p.post(2, 0, noLot(), Inserimento, kSede, -1), "OK");
        QCOMPARE(p.taglio, eur(5)); // the lot taken comes back to the row
        QCOMPARE(p.stock(), "4:0 5:1 6:8 (9)");
        QCOMPARE(p.post(5, 0, eur(6), Inserimento, kSede, negozio()), "OK");
        QCOMPARE(p.stock(), "4:0 5:1 6:3 (9)");
        QCOMPARE(p.stock(negozio()), "6:5 (9)");
    }

    // The messages of a posting that cannot be made, in both stock models: nothing is written.
    void messages_data()
    {
        columns<bool, double, double, int, bool, QString>("prezzoMedio", "quantita", "vecchia", "azione", "withLot",
                                                          "expected");
        const QString info = "\r\rInformazioni:\r - Prodotto [P - prova]";
        const QString azione = "Azione (Inserimento/Modifica/Cancellazione) non impostata!" + info;
        const QString nan = "Quantità non valida: Quantità (il valore non è un numero)." + info;
        const QString oldNan = "Quantità non valida: Quantità precedente (il valore non è un numero)." + info;
        const double NaN = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
        QTest::newRow("no stock rows") << false << 1.0 << 0.0 << 1 << false
                                       << "Impossibile determinare il taglio.\rManca il riferimento al prezzo di "
                                          "costo del prodotto.\r\rInformazioni: \r - Prodotto [P - prova]";
        QTest::newRow("action 0") << false << 1.0 << 0.0 << 0 << true << azione;
        QTest::newRow("action 4") << false << 1.0 << 0.0 << 4 << true << azione;
        for (const bool medio : {false, true}) {
            const char* model = medio ? "moving average" : "lots";
            QTest::addRow("%s, NaN", model) << medio << NaN << 0.0 << 2 << true << nan;
            QTest::addRow("%s, infinite", model) << medio << -inf << 0.0 << 2 << true << nan;
            QTest::addRow("%s, old NaN", model) << medio << 1.0 << NaN << 2 << true << oldNan;
            QTest::addRow("%s, beyond a Single", model) << medio << 1e39 << 0.0 << 2 << true << nan;
        }
    }

    void messages()
    {
        FETCH_EACH(bool, prezzoMedio, withLot);
        FETCH_EACH(double, quantita, vecchia);
        QFETCH(int, azione);
        QFETCH(QString, expected);
        Posting p{newProduct(), {prezzoMedio, 12}};
        QCOMPARE(p.post(quantita, vecchia, withLot ? eur(2) : noLot(), azione, kSede, -1), expected);
        // A bad action may leave its lot's row at 0; a refused quantity not even that.
        const QString stock = p.stock();
        QVERIFY2(stock == " (0)" || (!expected.startsWith("Quantità") && stock == "2:0 (0)"), qPrintable(stock));
    }

    // The moving average: one row a warehouse at the loads' average cost, the row being written counted in place of its
    // stored self.
    void movingAverage()
    {
        Posting p{newProduct(3), {true, 12}};
        QCOMPARE(p.post(10, 0, eur(4), Inserimento, -1, kSede, noLot(), 0), "OK");
        QCOMPARE(p.taglio, eur(4)); // no loads yet: the row's own price
        QCOMPARE(p.stock(), "4:10 (10)");
        // Stored loads this month: 10 at 4, 30 at 8; the row written adds 10 at 6.
        run(QString("INSERT INTO Movimenti (FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA, FK_DESTINAZIONE) "
                    "VALUES (6, 2026, 901, %1, %2)")
                .arg(gAdoSqlServer().getSQLDate(QDate::currentDate()), n(kSede)));
        const QString movimento = n(testdb::rid("Movimenti", "PROGRESSIVO = 901"));
        run(QString("INSERT INTO DettagliMovimento (FK_MOVIMENTO, FK_PRODOTTO, QUANTITA, PREZZONETTO) "
                    "VALUES (%1, %2, 10, 4), (%1, %2, 30, 8)")
                .arg(movimento, n(p.prodotto)));
        QCOMPARE(p.post(10, 0, eur(6), Inserimento, -1, kSede, noLot(), 0), "OK");
        QCOMPARE(p.taglio, eur(6.8));
        QCOMPARE(p.stock(), "6.8:20 (20)");
        // A sale leaves at the window's average: neither the latest load (8) nor the first (4).
        QCOMPARE(p.post(4, 0, noLot(), Inserimento, kSede, -1), "OK");
        QCOMPARE(p.taglio, eur(7));
        QCOMPARE(p.stock(), "7:16 (16)");
        // Outside the window: the latest load ever; with none, the purchase price.
        run("UPDATE Movimenti SET DATA = " + gAdoSqlServer().getSQLDate(QDate::currentDate().addYears(-2))
            + " WHERE RID = " + movimento);
        int noRow = -1;
        QCOMPARE(getPrezzoMedioProdotto(p.prodotto, kSede, -1, noLot(), noRow, 12), eur(8));
        QCOMPARE(getPrezzoMedioProdotto(p.prodotto, negozio(), -1, noLot(), noRow, 12), eur(3));
        run("DELETE FROM DettagliMovimento WHERE FK_MOVIMENTO = " + movimento);
        run("DELETE FROM Movimenti WHERE RID = " + movimento);
    }

    // The last load from a supplier and the last sale, also without stock kept; older documents do not count, a
    // customer is no supplier.
    void statistics()
    {
        const int prodotto = newProduct();
        const auto field = [prodotto](const char* column) {
            return testdb::value(QString("SELECT %1 FROM Prodotti WHERE RID = %2").arg(column, n(prodotto)));
        };
        run("UPDATE Prodotti SET SETGIACENZA = 0 WHERE RID = " + n(prodotto));
        QVERIFY(!getAggiornamentoGiacenzeByProdotto(prodotto));
        run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (7001, ¤Fornitore¤, ¤F¤), "
            "(7002, ¤Cliente¤, ¤C¤)");
        const int fornitore = testdb::rid("Anagrafiche", "NUMERO = 7001");
        const int cliente = testdb::rid("Anagrafiche", "NUMERO = 7002");
        for (const auto& [da, prezzo, giorno, expected] : {std::tuple{cliente, 2.5, QDate(2026, 3, 1), " 0"},
                                                           {fornitore, 2.5, QDate(2026, 3, 1), "01/03/2026 2.5"},
                                                           {fornitore, 9.0, QDate(2026, 2, 1), "01/03/2026 2.5"},
                                                           {fornitore, 3.0, QDate(2026, 3, 1), "01/03/2026 3"}}) {
            QVERIFY(aggiornaStatisticaCarico(prodotto, eur(prezzo), da, giorno));
            QCOMPARE(formatDate(field("DATAULTIMOCARICO")) + ' '
                         + getValoreCurrency(field("PREZZOULTIMOCARICO")).toPlainString(),
                     expected);
        }
        QVERIFY(aggiornaStatisticaScarico(prodotto, eur(7.25), QDate(2026, 4, 2)));
        QCOMPARE(getValoreCurrency(field("PREZZOULTIMOSCARICO")), eur(7.25));
        QCOMPARE(field("FK_ULTIMOFORNITORE").toInt(), fornitore);
        run("UPDATE Prodotti SET FK_ULTIMOFORNITORE = NULL WHERE RID = " + n(prodotto));
        run("DELETE FROM Anagrafiche WHERE NUMERO IN (7001, 7002)");
        QVERIFY(!getAggiornamentoGiacenzeByProdotto(1)); // the descriptive row keeps no stock
    }
};

QTEST_GUILESS_MAIN(TestGiacenze)
#include "tst_giacenze.moc"
