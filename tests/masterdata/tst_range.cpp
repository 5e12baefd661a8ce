// The ranges of a discount category: the integrity of a group's ranges, the
// save of both sides with their heads, and a net price saved here reaching
// the price that the engine gives to a sales row.
#include "masterdata/frmrangesconti.h"
#include "pricing/prezzi.h"
#include "screens/framework/cgrid.h"
#include "support/screendriver.h"

#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

// "1-10 11-100": the ranges of a group.
RangeGruppo gruppo(int id, const QString& ranges)
{
    RangeGruppo g;
    g.id = id;
    for (const QString& range : ranges.split(' '))
        g.righe.append({range.section('-', 0, 0), range.section('-', 1), {"0,00", "0,00", "0,00"}});
    return g;
}

struct RangePrezzi : frmRangeSconti
{
    RangePrezzi()
        : frmRangeSconti(TipoRange::Prezzi)
    { }
};

} // namespace

class TestRange : public testdb::BackendTest
{
    Q_OBJECT

    int m_categoria = 0, m_fornitore = 0, m_fascia = 0;

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        testdb::empty({"CatScAcquistoSconti", "CatScAcquisto", "CatScVenditeSconti", "CatScVendita", "CatScVenditaProd",
                       "CatScProdVendita"});
        if (testdb::count("CategorieSconti", testdb::code("NET")) == 0) {
            testdb::run("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (¤NET¤, ¤Prezzi netti¤)");
            testdb::run("INSERT INTO FasceClienti (CODICE, DESCRIZIONE) VALUES (¤ORO¤, ¤Clienti oro¤)");
            testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (7101, ¤Ferramenta Rossi¤, ¤F¤)");
        }
        m_categoria = testdb::rid("CategorieSconti", testdb::code("NET"));
        m_fascia = testdb::rid("FasceClienti", testdb::code("ORO"));
        m_fornitore = testdb::rid("Anagrafiche", "NUMERO = 7101");
    }

    void integrity_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<QString>("esito");
        QTest::newRow("defaults") << 5 << "1-10 11-100 101-1000"
                                  << "00";
        QTest::newRow("gap") << 5 << "1-10 12-100"
                             << "01";
        QTest::newRow("overlap") << 5 << "1-10 10-100"
                                 << "01";
        QTest::newRow("no supplier") << -1 << "1-10 12-100"
                                     << "10";
        QTest::newRow("one range") << 5 << "5-7"
                                   << "00";
    }
    void integrity()
    {
        QFETCH(int, id);
        QFETCH(QString, ranges);
        QFETCH(QString, esito);
        QCOMPARE(RangeEditor::checkRowIntegrity(gruppo(id, ranges)), esito);
    }

    // A supplier's group for all brands: saved with a Null brand, read back,
    // refused at choice when chosen twice and at save with a gap; a removed
    // group takes its head with it.
    void discountRanges()
    {
        testdb::Screen<frmRangeSconti> s(m_categoria, 0);
        s.screen.aggiungiGruppo(Acquisti, m_fornitore, "7101", "Ferramenta Rossi");
        ScriptedDialogs script;
        script.expectMessage("L'elemento selezionato [7101 - Ferramenta Rossi] è gia presente nella griglia.", vb::OK);
        s.screen.aggiungiGruppo(Acquisti, m_fornitore, "7101", "Ferramenta Rossi");
        s.screen.aggiungiGruppo(Vendite, m_fascia, "ORO", "Clienti oro");
        auto* grid = s.screen.findChild<cGrid*>("flxRangeScAcquisti");
        QCOMPARE(grid->rowCount(), 3);
        grid->setText(1, 4, "5,00");
        Q_EMIT grid->cellEdited(1, 4);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("CatScAcquisto", "FK_Marca IS NULL AND FK_Fornitore = " + QString::number(m_fornitore)),
                 1);
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
                             "fornitore: Ferramenta Rossi",
                             vb::OK);
        QVERIFY(!s.screen.saveRecord());
        QCOMPARE(testdb::value("SELECT COUNT(*) FROM CatScAcquistoSconti WHERE RangeMin = 12").toInt(), 0);

        s.screen.refreshRecord();
        script.expectMessage("Eliminare l'elemento [ORO - Clienti oro] dalla griglia?", vb::Yes);
        s.screen.eliminaGruppo(Vendite, 2);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("CatScVendita"), 0);
        QCOMPARE(testdb::count("CatScVenditeSconti"), 0);
        QCOMPARE(testdb::count("CatScAcquisto"), 1);
    }

    // A net price for the band, saved for a product, is the price the engine
    // gives a customer of that band for a quantity in its range.
    void netPriceReachesTheEngine()
    {
        testdb::run("DELETE FROM Prodotti WHERE CODICE = ¤NETTO1¤");
        testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_CATSCOVEN, LISTINO1) VALUES (¤NETTO1¤, ¤Netto¤, "
                    + QString::number(m_categoria) + ", 10)");
        const int prodotto = testdb::rid("Prodotti", testdb::code("NETTO1"));
        testdb::run("DELETE FROM Anagrafiche WHERE NUMERO = 7102");
        testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, FK_FASCIACLIENTE) VALUES (7102, ¤Bianchi¤, "
                    "¤C¤, "
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

QTEST_MAIN(TestRange)
#include "tst_range.moc"
