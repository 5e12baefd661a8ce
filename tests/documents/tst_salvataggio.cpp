// Saving documents on both back ends: a supplier's load into cost lots, a sale from the oldest lot with its journal
// entry and due dates, an edit that changes, deletes and adds rows, a transfer between warehouses, a delete; and the
// refusals, which write nothing.
#include "core/optionstore.h"
#include "documents/documento.h"
#include "documents/editordocumento.h"
#include "documents/salvadocumento.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::count;
using testdb::number;
using testdb::run;

namespace {

constexpr int kVite = 9301, kDado = 9302, kCliente = 9301, kFornitore = 9302, kNegozio = 9301;

int tipo(const char* codice) { return testdb::rid("TipoDocumenti", testdb::code(QString::fromLatin1(codice))); }
int sede() { return testdb::rid("Magazzini", testdb::code("SEDE")); }

void prepara()
{
    if (count("Prodotti", "RID = 9301") > 0)
        return;
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, SETGIACENZA, GIACENZA, FK_Iva) VALUES "
        "(9301, ¤VITE¤, ¤Vite¤, -1, 0, 1), (9302, ¤DADO¤, ¤Dado¤, -1, 0, 1), (9303, ¤PERNO¤, ¤Perno¤, -1, 0, 1)");
    run("INSERT INTO Anagrafiche (RID, NUMERO, TIPO, DENOMINAZIONE, FK_PAGAMENTO) VALUES (9301, 9301, ¤C¤, "
        "¤Cliente¤, 1), (9302, 9302, ¤F¤, ¤Fornitore¤, 1)");
    run("INSERT INTO Magazzini (RID, CODICE, DESCRIZIONE) VALUES (9301, ¤NEG¤, ¤Negozio¤)");
}

// A document of the type between the two sides, dated in March.
DocumentoDaSalvare documento(const char* codiceTipo, int origine, int destinazione, int giorno = 10)
{
    DocumentoDaSalvare d;
    d.testata.tipo = {tipo(codiceTipo), QString::fromLatin1(codiceTipo), QString()};
    getInfoDocumento(d.testata.tipo.rid, d.info);
    d.testata.anno = 2026;
    d.testata.data = QDate(2026, 3, giorno);
    d.testata.origine.rid = origine;
    d.testata.destinazione.rid = destinazione;
    d.testata.pagamento.rid = 1;
    return d;
}

// A row confirmed in the editor as row entry leaves it.
void riga(EditorDocumento& e, int prodotto, const QString& quantita, const QString& listino)
{
    e.pulisciRiga();
    std::tie(e.dati.prodotto, e.dati.codice, e.dati.descrizione, e.dati.iva, e.dati.codIva) =
        std::tuple(prodotto, prodotto == kVite ? "VITE" : "DADO", "Articolo", 1, "22");
    std::tie(e.riga.prezzoListino, e.riga.quantita, e.riga.aliquota) = std::tuple(listino, quantita, "22");
    QVERIFY(e.confermaRiga() >= 0);
}

bool salva(DocumentoDaSalvare& d, EditorDocumento& e)
{
    e.calcolaTotali();
    d.totali = e.totali();
    return salvaDocumento(d, e.griglia(), true);
}

// The stock of a product in a warehouse and lot, and its total.
int lotto(int prodotto, int magazzino, int taglio)
{
    return number(QStringLiteral("SELECT QUANTITA FROM DettagliProdotto WHERE FK_PRODOTTO = %1 AND FK_MAGAZZINO = %2 "
                                 "AND TAGLIO = %3")
                      .arg(prodotto)
                      .arg(magazzino)
                      .arg(taglio));
}
int giacenza(int prodotto)
{
    return number(QStringLiteral("SELECT GIACENZA FROM Prodotti WHERE RID = %1").arg(prodotto));
}

// A stored document back in the editor, as the screen opens it.
void riapri(DocumentoDaSalvare& d, EditorDocumento& e)
{
    QVERIFY(leggiTestata(d.testata.rid, 0, 0, 0, d.testata));
    QVERIFY(leggiRighe(d.testata.rid, e.griglia(), 2, QStringLiteral("*")));
}

} // namespace

class TestSalvataggio : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        prepara();
        gOptions() = OptionGlobals();
        std::tie(gOptions().decimaliDopo, gOptions().distintaBase, gOptions().rigaLibera) = std::tuple(2, "*", "/");
    }

    // One life of the stock: loaded at two cost lots, sold from the oldest, changed, moved to the shop, deleted.
    void ciclo()
    {
        EditorDocumento carico(2, "*");
        riga(carico, kVite, "10", "5");
        riga(carico, kDado, "4", "2");
        DocumentoDaSalvare c = documento("CF", kFornitore, sede());
        QVERIFY(salva(c, carico));
        QCOMPARE(lotto(kVite, sede(), 5), 10);
        QCOMPARE(giacenza(kDado), 4);
        // The load's journal entry: goods and VAT against the supplier, and its due date.
        QVERIFY(c.testata.primaNota > 0);
        QCOMPARE(testdb::value(QStringLiteral("SELECT TOTDOCUMENTO FROM Movimenti WHERE RID = %1").arg(c.testata.rid))
                     .toDouble(),
                 70.76); // (10 × 5 + 4 × 2) and 22% VAT
        QCOMPARE(count("PrimaNotaDettagli", QStringLiteral("FK_PrimaNota = %1").arg(c.testata.primaNota)), 3);
        QVERIFY(count("Scadenze", QStringLiteral("FK_PrimaNota = %1").arg(c.testata.primaNota)) > 0);

        EditorDocumento vendita(2, "*");
        riga(vendita, kVite, "3", "12");
        DocumentoDaSalvare v = documento("FV", sede(), kCliente);
        QVERIFY(salva(v, vendita));
        QCOMPARE(lotto(kVite, sede(), 5), 7);
        QCOMPARE(giacenza(kVite), 7);
        QCOMPARE(number(
                     QStringLiteral("SELECT TAGLIO FROM DettagliMovimento WHERE FK_MOVIMENTO = %1").arg(v.testata.rid)),
                 5);
        QCOMPARE(testdb::text(
                     QStringLiteral("SELECT DESCRIZIONE FROM PrimaNota WHERE RID = %1").arg(v.testata.primaNota)),
                 QStringLiteral("FV N.%1 DEL 10/03/2026").arg(v.testata.progressivo, 4, 10, QLatin1Char('0')));

        // The sale changed: 4 screws in place of 3, and a nut more; then the screws go.
        riapri(v, vendita);
        QVERIFY(vendita.getRowFromGrid(0));
        vendita.riga.quantita = "4";
        vendita.confermaRiga();
        riga(vendita, kDado, "1", "3");
        QVERIFY(salva(v, vendita));
        QCOMPARE(std::tuple(giacenza(kVite), giacenza(kDado), lotto(kDado, sede(), 2)), std::tuple(6, 3, 3));
        riapri(v, vendita);
        vendita.eliminaRiga(0);
        QVERIFY(salva(v, vendita));
        QCOMPARE(std::tuple(giacenza(kVite),
                            count("DettagliMovimento", QStringLiteral("FK_MOVIMENTO = %1").arg(v.testata.rid))),
                 std::tuple(10, 1));

        // Two screws to the shop: the lot moves with them, the total stays; the row keeps the cost as its price.
        EditorDocumento trasferimento(2, "*");
        riga(trasferimento, kVite, "2", "0");
        DocumentoDaSalvare t = documento("TM", sede(), kNegozio);
        QVERIFY(salva(t, trasferimento));
        QCOMPARE(std::tuple(lotto(kVite, sede(), 5), lotto(kVite, kNegozio, 5), giacenza(kVite)), std::tuple(8, 2, 10));
        QCOMPARE(number(QStringLiteral("SELECT PREZZONETTO FROM DettagliMovimento WHERE FK_MOVIMENTO = %1")
                            .arg(t.testata.rid)),
                 5);

        // The sale deleted: its nut comes back, its entry and due dates go, its number is not given again.
        const int numero = v.testata.progressivo;
        InfoDocumento info;
        QVERIFY(getInfoDocumento(v.testata.tipo.rid, info));
        QVERIFY(eliminaDocumento(v.testata, info));
        QCOMPARE(giacenza(kDado), 4);
        QCOMPARE(count("PrimaNota", QStringLiteral("RID = %1").arg(v.testata.primaNota)), 0);
        EditorDocumento altra(2, "*");
        riga(altra, kDado, "1", "3");
        DocumentoDaSalvare a = documento("FV", sede(), kCliente, 11);
        QVERIFY(salva(a, altra));
        QCOMPARE(a.testata.progressivo, numero + 1);
    }

    // What keeps a document from being saved, said all at once.
    void campiMancanti_data()
    {
        testdb::columns<QString, QString>("cambio", "riga");
        QTest::newRow("payment") << "pagamento"
                                 << " - Campo [Tipo Pagamento] Obbligatorio.";
        QTest::newRow("customer") << "cliente"
                                  << " - Campo [Cliente] Obbligatorio.";
        QTest::newRow("year") << "anno"
                              << " - Campo [Anno] e Campo [Data] Incongruenti.";
        QTest::newRow("original date") << "originale"
                                       << " - Campo [Data Originale] Obbligatorio.";
        QTest::newRow("no rows") << "righe"
                                 << " - Inserire almento un prodotto.";
    }

    void campiMancanti()
    {
        FETCH_EACH(QString, cambio, riga);
        DocumentoDaSalvare d = documento("FV", sede(), kCliente);
        EditorDocumento e(2, "*");
        ::riga(e, kVite, "1", "1");
        if (cambio == "pagamento")
            d.testata.pagamento.rid = 0;
        else if (cambio == "cliente")
            d.testata.destinazione.rid = 0;
        else if (cambio == "anno")
            d.testata.anno = 2025;
        else if (cambio == "originale")
            d.testata.numeroOriginale = "F12";
        else
            e.eliminaRiga(0);
        QCOMPARE(controllaInserimento(d, e.griglia()), QStringList{riga});
    }

    // A number already given, a date before the document that precedes it, a sale with no lot to take from: told,
    // and nothing written, the counter included.
    void rifiuti()
    {
        EditorDocumento e(2, "*");
        riga(e, kDado, "1", "3");
        DocumentoDaSalvare primo = documento("FV", sede(), kCliente, 20);
        QVERIFY(salva(primo, e));
        const int documenti = count("Movimenti"), stock = giacenza(kDado);
        {
            testdb::ScriptedMsgBox box;
            box.expect("Impossibile salvare il documento:\nLa data è inferiore a quella del documento che lo precede!");
            DocumentoDaSalvare prima = documento("FV", sede(), kCliente, 2);
            EditorDocumento r(2, "*");
            riga(r, kDado, "1", "3");
            QVERIFY(!salva(prima, r));
            QCOMPARE(prima.testata.rid, 0);
        }
        {
            testdb::ScriptedMsgBox box;
            box.expect("Impossibile salvare il documento:\nIl numero è gia stato assegnato ad un altro documento!");
            DocumentoDaSalvare secondo = documento("FV", sede(), kCliente, 25);
            EditorDocumento r(2, "*");
            riga(r, kDado, "1", "3");
            QVERIFY(salva(secondo, r));
            riapri(secondo, r);
            secondo.testata.progressivo = primo.testata.progressivo;
            r.getRowFromGrid(0);
            r.riga.quantita = "5";
            r.confermaRiga();
            QVERIFY(!salva(secondo, r));
        }
        {
            // A product never loaded has no lot to sell from.
            testdb::ScriptedMsgBox box;
            box.expect("Impossibile determinare il taglio.");
            DocumentoDaSalvare senzaLotto = documento("FV", sede(), kCliente, 28);
            EditorDocumento r(2, "*");
            riga(r, 9303, "1", "3");
            QVERIFY(!salva(senzaLotto, r));
        }
        QCOMPARE(count("Movimenti"), documenti + 1);
        QCOMPARE(count("DettagliProdotto", "FK_PRODOTTO = 9303"), 0);
        QCOMPARE(giacenza(kDado), stock - 1);
    }
};

QTEST_MAIN(TestSalvataggio)
#include "tst_salvataggio.moc"
