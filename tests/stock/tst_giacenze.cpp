// Stock postings on both back ends: cost lots, the oldest lot first, lot
// changes, transfers, the messages; the moving average; the statistics.
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "stock/giacenze.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

#include <limits>

using testdb::run;
using testdb::value;

namespace {

constexpr int kSede = 1;
int g_negozio = 0;

// A fresh product that keeps stock.
int newProduct(const QString& code, double prezzoAcquisto = 0)
{
    run(QStringLiteral("INSERT INTO Prodotti (CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA, PREZZOACQUISTO) VALUES (¤")
        + code + QStringLiteral("¤, ¤prova¤, 0, -1, ") + QString::number(prezzoAcquisto) + QLatin1Char(')'));
    return value(QStringLiteral("SELECT RID FROM Prodotti WHERE CODICE = ¤") + code + QStringLiteral("¤")).toInt();
}

int negozio()
{
    if (g_negozio == 0 || !value(QStringLiteral("SELECT RID FROM Magazzini WHERE CODICE = ¤NEG¤")).isValid()) {
        run(QStringLiteral("INSERT INTO Magazzini (CODICE, DESCRIZIONE) VALUES (¤NEG¤, ¤Negozio¤)"));
        g_negozio = value(QStringLiteral("SELECT RID FROM Magazzini WHERE CODICE = ¤NEG¤")).toInt();
    }
    return g_negozio;
}

// "lot:quantity" of each stock row of a product in a warehouse, oldest first.
QStringList rows(int prodotto, int magazzino)
{
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(
        QStringLiteral("SELECT TAGLIO, QUANTITA FROM DettagliProdotto WHERE FK_PRODOTTO = ") + QString::number(prodotto)
            + QStringLiteral(" AND FK_MAGAZZINO = ") + QString::number(magazzino) + QStringLiteral(" ORDER BY RID"),
        QStringLiteral("test"));
    QStringList out;
    for (; rs && !rs->eof(); rs->moveNext())
        out << rs->amount(QStringLiteral("TAGLIO")).toPlainString() + QLatin1Char(':')
                + plainTextIt(rs->number(QStringLiteral("QUANTITA")));
    gAdoSqlServer().disconnect();
    return out;
}

double giacenza(int prodotto) { return getGiacenzaProdottoTotale(prodotto); }

struct Posting
{
    int prodotto;
    OpzioniGiacenza opzioni;
    // Posts and gives back the result; the lot comes back in `taglio`.
    QString post(double quantita, double vecchia, Currency& taglio, int azione, int orig, int dest,
                 Currency precedente = Currency::fromUnits(-1), int ridRiga = -1)
    {
        return aggiornaGiacenze(toSingle(quantita), toSingle(vecchia), taglio, prodotto, azione, orig, dest,
                                QStringLiteral("Prodotto [P - prova]"), precedente, ridRiga, opzioni);
    }
};

Currency eur(double v) { return Currency::fromDouble(v); }

} // namespace

class TestGiacenze : public QObject
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

    // A load, a change of quantity, a change of lot, a deletion.
    void lotsOfALoad_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void lotsOfALoad()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Posting p{newProduct(QStringLiteral("LOAD") + backend), {}};
        Currency lot = eur(5);
        QCOMPARE(p.post(10, 0, lot, giacenze::Inserimento, -1, kSede), QStringLiteral("OK"));
        QCOMPARE(rows(p.prodotto, kSede), QStringList{"5:10"});
        QCOMPARE(giacenza(p.prodotto), 10.0);

        QCOMPARE(p.post(7, 10, lot, giacenze::Modifica, -1, kSede, eur(5)), QStringLiteral("OK"));
        QCOMPARE(rows(p.prodotto, kSede), QStringList{"5:7"});
        QCOMPARE(giacenza(p.prodotto), 7.0);

        // The lot changes: the old lot loses the old quantity, the new one
        // gains the new, and the total moves by the whole new quantity.
        Currency six = eur(6);
        QCOMPARE(p.post(7, 7, six, giacenze::Modifica, -1, kSede, eur(5)), QStringLiteral("OK"));
        QCOMPARE(rows(p.prodotto, kSede), (QStringList{"5:0", "6:7"}));
        QCOMPARE(giacenza(p.prodotto), 14.0);

        QCOMPARE(p.post(0, 7, six, giacenze::Cancellazione, -1, kSede), QStringLiteral("OK"));
        QCOMPARE(rows(p.prodotto, kSede), (QStringList{"5:0", "6:0"}));
        QCOMPARE(giacenza(p.prodotto), 7.0);
    }

    // A sale without a lot leaves from the oldest lot that has stock; a
    // transfer moves between warehouses and leaves the total alone.
    void salesAndTransfers_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void salesAndTransfers()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Posting p{newProduct(QStringLiteral("SALE") + backend), {}};
        for (const auto& [price, quantity] : {std::pair{4.0, 0.0}, std::pair{5.0, 3.0}, std::pair{6.0, 8.0}}) {
            Currency lot = eur(price);
            QCOMPARE(p.post(quantity, 0, lot, giacenze::Inserimento, -1, kSede), QStringLiteral("OK"));
        }
        Currency none = Currency::fromUnits(-1);
        QCOMPARE(p.post(2, 0, none, giacenze::Inserimento, kSede, -1), QStringLiteral("OK"));
        QCOMPARE(none, eur(5)); // the lot taken comes back to the row
        QCOMPARE(rows(p.prodotto, kSede), (QStringList{"4:0", "5:1", "6:8"}));
        QCOMPARE(giacenza(p.prodotto), 9.0);

        Currency six = eur(6);
        QCOMPARE(p.post(5, 0, six, giacenze::Inserimento, kSede, negozio()), QStringLiteral("OK"));
        QCOMPARE(rows(p.prodotto, kSede), (QStringList{"4:0", "5:1", "6:3"}));
        QCOMPARE(rows(p.prodotto, negozio()), QStringList{"6:5"});
        QCOMPARE(giacenza(p.prodotto), 9.0);
    }

    // The messages of a posting that cannot be made: nothing is written. A
    // quantity that is no number is refused in both stock models.
    void messages_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("prezzoMedio");
        QTest::addColumn<double>("quantita");
        QTest::addColumn<double>("vecchia");
        QTest::addColumn<int>("azione");
        QTest::addColumn<bool>("withLot");
        QTest::addColumn<QString>("expected");
        const QString info = QStringLiteral("Informazioni:\r - Prodotto [P - prova]");
        const QString azione = QStringLiteral("Azione (Inserimento/Modifica/Cancellazione) non impostata!\r\r") + info;
        const QString nan = QStringLiteral("Quantità non valida: Quantità (il valore non è un numero).\r\r") + info;
        const QString oldNan =
            QStringLiteral("Quantità non valida: Quantità precedente (il valore non è un numero).\r\r") + info;
        const double NaN = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
        for (const QString& b : testdb::backends()) {
            testdb::row(b, QStringLiteral("no stock rows"))
                << false << 1.0 << 0.0 << 1 << false
                << QStringLiteral(
                       "Impossibile determinare il taglio.\rManca il riferimento al prezzo di costo del prodotto.\r\r"
                       "Informazioni: \r - Prodotto [P - prova]");
            testdb::row(b, QStringLiteral("action 0")) << false << 1.0 << 0.0 << 0 << true << azione;
            testdb::row(b, QStringLiteral("action 4")) << false << 1.0 << 0.0 << 4 << true << azione;
            for (const bool medio : {false, true}) {
                const QString model = medio ? QStringLiteral("moving average, ") : QStringLiteral("lots, ");
                testdb::row(b, model + QStringLiteral("NaN")) << medio << NaN << 0.0 << 2 << true << nan;
                testdb::row(b, model + QStringLiteral("infinite")) << medio << -inf << 0.0 << 2 << true << nan;
                testdb::row(b, model + QStringLiteral("old NaN")) << medio << 1.0 << NaN << 2 << true << oldNan;
                testdb::row(b, model + QStringLiteral("beyond a Single")) << medio << 1e39 << 0.0 << 2 << true << nan;
            }
        }
    }
    void messages()
    {
        QFETCH(QString, backend);
        QFETCH(bool, prezzoMedio);
        QFETCH(double, quantita);
        QFETCH(double, vecchia);
        QFETCH(int, azione);
        QFETCH(bool, withLot);
        QFETCH(QString, expected);
        QVERIFY(testdb::shared(backend).isValid());
        Posting p{newProduct(QStringLiteral("MSG%1").arg(qHash(QString::fromLatin1(QTest::currentDataTag())))),
                  {prezzoMedio, 12}};
        Currency lot = withLot ? eur(2) : Currency::fromUnits(-1);
        QCOMPARE(p.post(quantita, vecchia, lot, azione, kSede, -1), expected);
        // A bad action may leave the lot's row it made, at 0; a refused
        // quantity not even that.
        if (expected.startsWith(QStringLiteral("Quantità")))
            QCOMPARE(rows(p.prodotto, kSede), QStringList());
        for (const QString& row : rows(p.prodotto, kSede))
            QVERIFY2(row.endsWith(QLatin1String(":0")), qPrintable(row));
        QCOMPARE(giacenza(p.prodotto), 0.0);
    }

    // The moving average: one row a warehouse at the average cost of the
    // loads, the row being written counted in place of its stored self.
    void movingAverage_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void movingAverage()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Posting p{newProduct(QStringLiteral("AVG") + backend, 3), {true, 12}};
        Currency price = eur(4);
        QCOMPARE(p.post(10, 0, price, giacenze::Inserimento, -1, kSede, Currency::fromUnits(-1), 0),
                 QStringLiteral("OK"));
        QCOMPARE(price, eur(4)); // no loads yet: the row's own price
        QCOMPARE(rows(p.prodotto, kSede), QStringList{"4:10"});

        // Stored loads this month: 10 at 4, then 30 at 8; the row written
        // adds 10 at 6.
        run(QStringLiteral("INSERT INTO Movimenti (FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA, FK_DESTINAZIONE) VALUES "
                           "(6, 2026, 901, ")
            + gAdoSqlServer().getSQLDate(QDate::currentDate()) + QStringLiteral(", ") + QString::number(kSede)
            + QLatin1Char(')'));
        const int movimento = value(QStringLiteral("SELECT RID FROM Movimenti WHERE PROGRESSIVO = 901")).toInt();
        for (const char* load : {", 10, 4)", ", 30, 8)"})
            run(QStringLiteral(
                    "INSERT INTO DettagliMovimento (FK_MOVIMENTO, FK_PRODOTTO, QUANTITA, PREZZONETTO) VALUES (")
                + QString::number(movimento) + QStringLiteral(", ") + QString::number(p.prodotto)
                + QLatin1String(load));
        price = eur(6);
        QCOMPARE(p.post(10, 0, price, giacenze::Inserimento, -1, kSede, Currency::fromUnits(-1), 0),
                 QStringLiteral("OK"));
        QCOMPARE(price, eur(6.8));
        QCOMPARE(rows(p.prodotto, kSede), QStringList{"6.8:20"});

        // A sale leaves at the average of the loads in the window, which is
        // neither the latest load (8) nor the first (4).
        Currency out = Currency::fromUnits(-1);
        QCOMPARE(p.post(4, 0, out, giacenze::Inserimento, kSede, -1), QStringLiteral("OK"));
        QCOMPARE(out, eur(7));
        QCOMPARE(rows(p.prodotto, kSede), QStringList{"7:16"});
        QCOMPARE(giacenza(p.prodotto), 16.0);

        // Outside the window: the latest load ever, not the average; with
        // none, the purchase price.
        run(QStringLiteral("UPDATE Movimenti SET DATA = ")
            + gAdoSqlServer().getSQLDate(QDate::currentDate().addYears(-2)) + QStringLiteral(" WHERE RID = ")
            + QString::number(movimento));
        int noRow = -1;
        QCOMPARE(getPrezzoMedioProdotto(p.prodotto, kSede, -1, Currency::fromUnits(-1), noRow, 12), eur(8));
        QCOMPARE(getPrezzoMedioProdotto(p.prodotto, negozio(), -1, Currency::fromUnits(-1), noRow, 12), eur(3));
        run(QStringLiteral("DELETE FROM DettagliMovimento WHERE FK_MOVIMENTO = ") + QString::number(movimento));
        run(QStringLiteral("DELETE FROM Movimenti WHERE RID = ") + QString::number(movimento));
    }

    // The last load from a supplier and the last sale; older documents do
    // not count, a customer is no supplier.
    void statistics_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void statistics()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        // A product that keeps no stock still has its statistics.
        const int prodotto = newProduct(QStringLiteral("STAT") + backend);
        run(QStringLiteral("UPDATE Prodotti SET SETGIACENZA = 0 WHERE RID = ") + QString::number(prodotto));
        QVERIFY(!getAggiornamentoGiacenzeByProdotto(prodotto));
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (7001, ¤Fornitore¤, ¤F¤)"));
        run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (7002, ¤Cliente¤, ¤C¤)"));
        const int fornitore = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 7001")).toInt();
        const int cliente = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 7002")).toInt();
        const auto stats = [prodotto]() -> QString {
            return formatDate(value(QStringLiteral("SELECT DATAULTIMOCARICO FROM Prodotti WHERE RID = ")
                                    + QString::number(prodotto)))
                + QLatin1Char(' ')
                + getValoreCurrency(value(QStringLiteral("SELECT PREZZOULTIMOCARICO FROM Prodotti WHERE RID = ")
                                          + QString::number(prodotto)))
                      .toPlainString();
        };
        QVERIFY(aggiornaStatisticaCarico(prodotto, eur(2.5), cliente, QDate(2026, 3, 1)));
        QCOMPARE(stats(), QStringLiteral(" 0"));
        QVERIFY(aggiornaStatisticaCarico(prodotto, eur(2.5), fornitore, QDate(2026, 3, 1)));
        QCOMPARE(stats(), QStringLiteral("01/03/2026 2.5"));
        QVERIFY(aggiornaStatisticaCarico(prodotto, eur(9), fornitore, QDate(2026, 2, 1)));
        QCOMPARE(stats(), QStringLiteral("01/03/2026 2.5"));
        QVERIFY(aggiornaStatisticaCarico(prodotto, eur(3), fornitore, QDate(2026, 3, 1)));
        QCOMPARE(stats(), QStringLiteral("01/03/2026 3"));
        QVERIFY(aggiornaStatisticaScarico(prodotto, eur(7.25), QDate(2026, 4, 2)));
        QCOMPARE(getValoreCurrency(value(QStringLiteral("SELECT PREZZOULTIMOSCARICO FROM Prodotti WHERE RID = ")
                                         + QString::number(prodotto))),
                 eur(7.25));
        QCOMPARE(value(QStringLiteral("SELECT FK_ULTIMOFORNITORE FROM Prodotti WHERE RID = ")
                       + QString::number(prodotto))
                     .toInt(),
                 fornitore);
        run(QStringLiteral("UPDATE Prodotti SET FK_ULTIMOFORNITORE = NULL WHERE RID = ") + QString::number(prodotto));
        run(QStringLiteral("DELETE FROM Anagrafiche WHERE NUMERO IN (7001, 7002)"));
        QVERIFY(!getAggiornamentoGiacenzeByProdotto(1)); // the descriptive row keeps no stock
    }
};

QTEST_GUILESS_MAIN(TestGiacenze)
#include "tst_giacenze.moc"
