// Stock recalculation on both back ends: documents of every kind posted as a save posts them, the stock spoiled, then
// rebuilt the standard and the forced way; a database the postings wrote stays as it is; a refused row leaves the
// stock as it was; a save under way on another workstation is waited for.
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/session.h"
#include "stock/ricalcologiacenze.h"
#include "support/testdb.h"

#include <QDate>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <thread>

using testdb::run;

namespace {

constexpr int kSede = 1;
const QString kTerminato = "Ricalcolo della giacenze terminato.";
QString n(double v) { return QString::number(v); }

int negozio()
{
    if (!testdb::rid("Magazzini", testdb::code("NEG")))
        run("INSERT INTO Magazzini (CODICE, DESCRIZIONE) VALUES (¤NEG¤, ¤Negozio¤)");
    return testdb::rid("Magazzini", testdb::code("NEG"));
}

// A fresh product: kept in stock (setGiacenza), a kit when its code starts with "*".
int newProduct(bool setGiacenza = true, const char* prefisso = "R")
{
    static int made = 0;
    const QString code = QString(prefisso) + n(++made);
    run(QString("INSERT INTO Prodotti (CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA, DISTINTABASE) "
                "VALUES (¤%1¤, ¤prova¤, 0, %2, %3)")
            .arg(code, setGiacenza ? "-1" : "0", code.startsWith('*') ? "-1" : "0"));
    return testdb::rid("Prodotti", testdb::code(code));
}

// "lot:quantity" of the stock rows of each warehouse in key order, then GIACENZA: "SEDE 5:5 6:4 | NEG 5:2 (11)".
QString stock(int prodotto)
{
    QStringList parti;
    for (const auto& [nome, magazzino] : {std::pair{"SEDE", kSede}, {"NEG", negozio()}}) {
        QStringList lotti;
        for (const QVariantList& r : testdb::rows(
                 QString("SELECT TAGLIO, QUANTITA FROM DettagliProdotto WHERE FK_PRODOTTO = %1 AND FK_MAGAZZINO = %2 "
                         "ORDER BY RID")
                     .arg(prodotto)
                     .arg(magazzino)))
            lotti << getValoreCurrency(r.at(0)).toPlainString() + ':' + n(r.at(1).toDouble());
        if (!lotti.isEmpty())
            parti << QString(nome) + ' ' + lotti.join(' ');
    }
    return parti.join(" | ") + " ("
        + n(testdb::value("SELECT GIACENZA FROM Prodotti WHERE RID = " + n(prodotto)).toDouble()) + ')';
}

// Documents stored and their rows posted as a save does: a lot causal loads at the row's price, other rows leave from
// the oldest lot (the lot taken is stored on the row); kits, products without stock and causals that move nothing
// post nothing; a deleted row gives its quantity back.
struct Storia
{
    OpzioniGiacenza opzioni;
    struct Riga
    {
        int documento, origine, destinazione;
        bool operazione, taglio;
        int prodotto = 0;
        double quantita = 0;
        Currency lotto;
    };
    QHash<int, Riga> righe;

    // A document of the type, from `origine` when its causal leaves a warehouse.
    Riga documento(const QString& tipo, int origine = kSede)
    {
        static int numero = 5000;
        const QVariantList c = testdb::rows("SELECT c.ORIGINE, c.DESTINAZIONE, c.Operazione, c.TAGLIO, td.RID FROM "
                                            "TipoDocumenti td INNER JOIN Causali c ON td.FK_CAUSALE = c.RID WHERE "
                                            "td.CODICE = ¤"
                                            + tipo + "¤")
                                   .value(0);
        const bool daMagazzino = c.at(0).toInt() == 3, aMagazzino = c.at(1).toInt() == 3;
        Riga d{0,
               daMagazzino ? origine : -1,
               aMagazzino ? (daMagazzino ? negozio() : kSede) : -1,
               c.at(2).toInt() != 0,
               c.at(3).toInt() != 0,
               0,
               0,
               {}};
        // A customer or supplier side holds the counterparty's key, which may well match a warehouse's.
        run(QString("INSERT INTO Movimenti (FK_TIPODOCUMENTO, ANNO, PROGRESSIVO, DATA, FK_ORIGINE, FK_DESTINAZIONE) "
                    "VALUES (%1, 2026, %2, %3, %4, %5)")
                .arg(c.at(4).toInt())
                .arg(++numero)
                .arg(gAdoSqlServer().getSQLDate(QDate::currentDate()), n(std::max(d.origine, kSede)),
                     n(std::max(d.destinazione, kSede))));
        d.documento = testdb::number("SELECT MAX(RID) FROM Movimenti");
        return d;
    }

    QString post(Riga& r, int azione)
    {
        const QString codice = testdb::text("SELECT CODICE FROM Prodotti WHERE RID = " + n(r.prodotto));
        if (!r.operazione || codice.startsWith('*') || !getAggiornamentoGiacenzeByProdotto(r.prodotto))
            return "OK";
        Currency precedente = Currency::fromUnits(-1);
        int ridRiga = azione == giacenze::Inserimento ? 0 : -1;
        return aggiornaGiacenze(toSingle(r.quantita), toSingle(r.quantita), r.lotto, r.prodotto, azione, r.origine,
                                r.destinazione, "Prodotto [" + codice + "]", precedente, ridRiga, opzioni);
    }

    // The row's key, 0 when its posting was refused.
    int riga(Riga r, int prodotto, double quantita, double prezzo)
    {
        std::tie(r.prodotto, r.quantita) = std::pair(prodotto, quantita);
        r.lotto = Currency::fromDouble(r.taglio || opzioni.prezzoMedio ? prezzo : -1);
        if (post(r, giacenze::Inserimento) != "OK")
            return 0;
        r.lotto = std::max(r.lotto, Currency());
        const bool trasferimento = r.origine > 0 && r.destinazione > 0;
        run(QString("INSERT INTO DettagliMovimento (FK_MOVIMENTO, FK_PRODOTTO, CODPRODOTTO, QUANTITA, PREZZONETTO, "
                    "TAGLIO) SELECT %1, RID, CODICE, %2, %3, %4 FROM Prodotti WHERE RID = %5")
                .arg(r.documento)
                .arg(quantita)
                .arg((trasferimento ? r.lotto : Currency::fromDouble(prezzo)).toPlainString(), r.lotto.toPlainString())
                .arg(prodotto));
        const int rid = testdb::number("SELECT MAX(RID) FROM DettagliMovimento");
        righe.insert(rid, r);
        return rid;
    }

    void elimina(int rid)
    {
        Riga r = righe.take(rid);
        run("DELETE FROM DettagliMovimento WHERE RID = " + n(rid));
        QCOMPARE(post(r, giacenze::Cancellazione), "OK");
    }
};

OpzioniRicalcolo opzioniRicalcolo(bool forzato, bool prezzoMedio = false)
{
    OpzioniRicalcolo o;
    o.giacenza = {prezzoMedio, 12};
    o.distintaBase = "*";
    o.forzato = forzato;
    return o;
}

} // namespace

class TestRicalcolo : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // Loads at two lots, a sale from the oldest, a transfer, a loaded row deleted, a causal that moves nothing, a kit
    // and a product without stock; A's and B's stock spoiled, then rebuilt for all or for A alone.
    void ricalcolo_data()
    {
        testdb::columns<bool, QString, bool, QString, QString>("forzato", "guasto", "soloA", "attesoA", "attesoB");
        const QString a = "SEDE 5:5 6:4 7:0 | NEG 5:2 (11)", aRicostruito = "SEDE 5:5 6:4 | NEG 5:2 (11)";
        const QString b = "SEDE 2:3 (3)", bGuasto = "SEDE 2:53 (-1)";
        const QString cancella = "DELETE FROM DettagliProdotto WHERE FK_PRODOTTO = %1;"
                                 "UPDATE Prodotti SET GIACENZA = 0 WHERE RID = %1";
        const QString quantita = "UPDATE DettagliProdotto SET QUANTITA = QUANTITA + 50 WHERE FK_PRODOTTO = %1;"
                                 "UPDATE Prodotti SET GIACENZA = -1 WHERE RID = %1";
        const QString estraneo =
            "INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA) SELECT %1, "
            "RID, 9, 5 FROM Magazzini WHERE CODICE = ¤NEG¤";
        QTest::newRow("standard, intact") << false << "" << false << a << b;
        QTest::newRow("standard, rows deleted") << false << cancella << false << aRicostruito << b;
        QTest::newRow("standard, quantities wrong, A alone") << false << quantita << true << a << bGuasto;
        QTest::newRow("standard, stray lot") << false << estraneo << false << "SEDE 5:5 6:4 7:0 | NEG 5:2 9:0 (11)"
                                             << "SEDE 2:3 | NEG 9:0 (3)";
        QTest::newRow("forced, rows deleted") << true << cancella << false << aRicostruito << b;
        QTest::newRow("forced, quantities wrong, A alone") << true << quantita << true << aRicostruito << bGuasto;
        QTest::newRow("forced, stray lot") << true << estraneo << false << aRicostruito << b;
    }

    void ricalcolo()
    {
        QFETCH(bool, forzato);
        QFETCH(bool, soloA);
        FETCH_EACH(QString, guasto, attesoA, attesoB);
        Storia s;
        const int a = newProduct(), b = newProduct(), kit = newProduct(true, "*R"), senza = newProduct(false);
        const Storia::Riga carico = s.documento("CF"), vendita = s.documento("FV");
        s.riga(carico, a, 10, 5);
        s.riga(carico, a, 4, 6);
        s.riga(carico, b, 3, 2);
        s.riga(carico, senza, 8, 1);
        s.riga(vendita, kit, 1, 30);
        QVERIFY(s.riga(vendita, a, 3, 9));
        s.riga(s.documento("TM"), a, 2, 0);
        s.elimina(s.riga(carico, a, 7, 7));
        s.riga(s.documento("FD"), a, 100, 9);
        run(QString("UPDATE Prodotti SET GIACENZA = 99 WHERE RID IN (%1, %2)").arg(kit).arg(senza));
        run(QString("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA) VALUES (%1, 1, 4, 99)")
                .arg(kit));
        QCOMPARE(stock(a), "SEDE 5:5 6:4 7:0 | NEG 5:2 (11)");
        const QString kitPrima = stock(kit), senzaPrima = stock(senza);
        for (const int p : {a, b})
            for (const QString& sql : guasto.split(';', Qt::SkipEmptyParts))
                run(sql.arg(p));

        QList<std::pair<int, int>> avanzamento;
        {
            testdb::ScriptedMsgBox box;
            box.expect(kTerminato);
            QVERIFY(eseguiRicalcolo(soloA ? a : 0, opzioniRicalcolo(forzato), [&](int fatti, int totale) {
                avanzamento.append({fatti, totale});
            }));
        }
        QCOMPARE(stock(a), attesoA);
        QCOMPARE(stock(b), attesoB);
        QCOMPARE(stock(kit), kitPrima);
        QCOMPARE(stock(senza), senzaPrima);
        // Products (rows) counted from 0 to the whole: A alone, or A's rows that move stock.
        const int totale = avanzamento.first().second;
        QCOMPARE(avanzamento.first().first, 0);
        QCOMPARE(avanzamento.last(), std::pair(totale, totale));
        if (soloA)
            QCOMPARE(totale, forzato ? 4 : 1);
    }

    // A history posted by the engine, fractions and deleted rows included: a standard recalculation writes nothing,
    // keys included.
    void nullaCambia_data()
    {
        testdb::columns<bool>({"prezzoMedio"});
        QTest::newRow("cost lots") << false;
        QTest::newRow("moving average") << true;
    }

    void nullaCambia()
    {
        QFETCH(bool, prezzoMedio);
        Storia s{{prezzoMedio, 12}, {}};
        QStringList prodotti;
        for (int i = 0; i < 4; ++i)
            prodotti << n(newProduct());
        prodotti << n(newProduct(true, "*R"));
        for (int giro = 0; giro < 3; ++giro) {
            const Storia::Riga carico = s.documento("CF"), vendita = s.documento("FV");
            QList<int> caricate;
            for (int i = 0; i < prodotti.size(); ++i) {
                caricate << s.riga(carico, prodotti.at(i).toInt(), 0.1 * (giro + 1) + i, 4.5 + giro);
                QVERIFY(s.riga(vendita, prodotti.at(i).toInt(), 0.2 + i, 11));
            }
            if (!prezzoMedio) // a transfer moves stock at the cost it names, not at the average
                QVERIFY(s.riga(s.documento("TM"), prodotti.at(giro).toInt(), 0.3, 0));
            s.elimina(caricate.at(2));
        }
        const QString in = " IN (" + prodotti.join(", ") + ')';
        const auto fotografia = [&in] {
            return testdb::rows("SELECT RID, FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA FROM DettagliProdotto WHERE "
                                "FK_PRODOTTO"
                                + in + " ORDER BY RID")
                + testdb::rows("SELECT RID, GIACENZA FROM Prodotti WHERE RID" + in + " ORDER BY RID");
        };
        const QList<QVariantList> prima = fotografia();
        testdb::ScriptedMsgBox box;
        // With the moving average each product alone, so that the other tests' lots stay lots.
        for (const QString& p : prezzoMedio ? prodotti : QStringList{"0"}) {
            box.expect(kTerminato);
            QVERIFY(eseguiRicalcolo(p.toInt(), opzioniRicalcolo(false, prezzoMedio)));
        }
        QCOMPARE(fotografia(), prima);
    }

    // A row the postings refuse stops the forced run with its message, after the rollback: no stock has moved.
    void rifiutoForzato()
    {
        Storia s;
        const int a = newProduct(), orfano = newProduct();
        s.riga(s.documento("CF"), a, 4, 2);
        // A sale stored by an older release without its lot, of a product that never had stock.
        const int vendita = s.documento("FV").documento;
        run(QString("INSERT INTO DettagliMovimento (FK_MOVIMENTO, FK_PRODOTTO, CODPRODOTTO, QUANTITA, PREZZONETTO, "
                    "TAGLIO) VALUES (%1, %2, ¤X¤, 1, 5, -1)")
                .arg(vendita)
                .arg(orfano));
        run("UPDATE DettagliProdotto SET QUANTITA = 77 WHERE FK_PRODOTTO = " + n(a));
        {
            testdb::ScriptedMsgBox box;
            box.expect("Impossibile determinare il taglio.\rManca il riferimento al prezzo di costo del prodotto.\r\r"
                       "Informazioni: \r - Documento : [Fattura di vendita]\r - Nr: [");
            box.expect("Impossibile eseguire il ricalcolo delle giacenze!");
            QVERIFY(!eseguiRicalcolo(0, opzioniRicalcolo(true)));
        }
        QCOMPARE(stock(a), "SEDE 2:77 (4)");
        run("DELETE FROM DettagliMovimento WHERE FK_MOVIMENTO = " + n(vendita));
    }

    // On the server, a save of the product under way when the recalculation starts (its row stored, its stock
    // posted, not yet committed) is waited for and counted: the recalculation reads a product's rows only once it
    // holds the product, so it neither misses the row nor writes its own figures over the posting.
    void salvataggioConcorrente()
    {
        if (backend() != "mariadb")
            QSKIP("the file database lets one workstation write at a time");
        Storia s;
        const int a = newProduct();
        const Storia::Riga carico = s.documento("CF");
        s.riga(carico, a, 4, 2);
        run("UPDATE DettagliProdotto SET QUANTITA = 0 WHERE FK_PRODOTTO = " + n(a)); // spoiled: there is work to do
        QMap<QString, QString> parti;
        for (const QString& p : gSession().strConnessione.split(';'))
            parti.insert(p.section('=', 0, 0).toLower(), p.section('=', 1));
        std::atomic<bool> postato = false, finito = false;
        std::thread altra([&] {
            {
                QSqlDatabase db = QSqlDatabase::addDatabase("QMYSQL", "altra");
                db.setHostName(parti.value("server"));
                db.setPort(parti.value("port").toInt());
                db.setUserName(parti.value("uid"));
                db.setPassword(parti.value("pwd"));
                db.setDatabaseName(parti.value("database"));
                QSqlQuery q(db);
                const bool ok = db.open() && db.transaction()
                    && q.exec(QString("SELECT GIACENZA FROM Prodotti WHERE RID = %1 FOR UPDATE").arg(a))
                    && q.exec(QString("INSERT INTO DettagliMovimento (FK_MOVIMENTO, FK_PRODOTTO, CODPRODOTTO, "
                                      "QUANTITA, PREZZONETTO, TAGLIO) VALUES (%1, %2, 'R', 3, 2, 2)")
                                  .arg(carico.documento)
                                  .arg(a))
                    && q.exec(QString("UPDATE DettagliProdotto SET QUANTITA = 3 WHERE FK_PRODOTTO = %1").arg(a))
                    && q.exec(QString("UPDATE Prodotti SET GIACENZA = GIACENZA + 3 WHERE RID = %1").arg(a));
                postato = true;
                // Committed once the recalculation waits for a lock (or is over).
                const auto attende = [&q] {
                    if (!q.exec("SHOW ENGINE INNODB STATUS") || !q.next())
                        return true;
                    const QString stato = q.value(2).toString();
                    return stato.indexOf("LOCK WAIT", stato.indexOf("LIST OF TRANSACTIONS")) > 0;
                };
                while (ok && !finito && !attende())
                    QThread::msleep(10);
                if (ok)
                    db.commit();
            }
            QSqlDatabase::removeDatabase("altra");
        });
        while (!postato)
            QThread::msleep(10);
        testdb::ScriptedMsgBox box;
        box.expect(kTerminato);
        const bool fatto = eseguiRicalcolo(0, opzioniRicalcolo(false));
        finito = true;
        altra.join();
        QVERIFY(fatto);
        QCOMPARE(stock(a), "SEDE 2:7 (7)");
    }

    // With "Modifica Origine/Destinazione" the documents take the warehouses of their causals before the replay.
    void origineDaCausale()
    {
        // Every transfer of these tests goes to NEG: the causal says so, as a rewrite must keep them.
        run("UPDATE Causali SET FK_MagazzinoDest = " + n(negozio()) + " WHERE CODICE = ¤TM¤");
        Storia s;
        const int c = newProduct();
        s.riga(s.documento("CF"), c, 5, 3);
        // A sale out of NEG, stored when the causal left from there.
        run(QString("INSERT INTO DettagliMovimento (FK_MOVIMENTO, FK_PRODOTTO, CODPRODOTTO, QUANTITA, PREZZONETTO, "
                    "TAGLIO) VALUES (%1, %2, ¤R¤, 1, 8, 3)")
                .arg(s.documento("FV", negozio()).documento)
                .arg(c));
        OpzioniRicalcolo opzioni = opzioniRicalcolo(true);
        opzioni.modificaOrigDest = true;
        testdb::ScriptedMsgBox box;
        box.expect(kTerminato);
        QVERIFY(eseguiRicalcolo(0, opzioni));
        QCOMPARE(stock(c), "SEDE 3:4 (4)");
    }

    void tempoRimanente_data()
    {
        testdb::columns<qint64, int, int, QString>("trascorsiMs", "fatti", "totale", "atteso");
        QTest::newRow("nothing done yet") << qint64(5000) << 0 << 10 << "";
        QTest::newRow("a third in ten seconds") << qint64(10000) << 1 << 3 << "00:00:20";
        QTest::newRow("days") << qint64(3600000) << 1 << 50 << "2 day(s), 01:00:00";
    }

    void tempoRimanente()
    {
        QFETCH(qint64, trascorsiMs);
        FETCH_EACH(int, fatti, totale);
        QFETCH(QString, atteso);
        QCOMPARE(::tempoRimanente(trascorsiMs, fatti, totale), atteso);
    }
};

QTEST_GUILESS_MAIN(TestRicalcolo)
#include "tst_ricalcolo.moc"
