// The document screen and what it reads: a stored document loaded whole (header by kind, kit sums, rows of older
// data), its delete with journal, due dates and stock, and the header rules the screen shows; both back ends.
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "documents/documento.h"
#include "documents/frmmovimento.h"
#include "documents/grigliadocumento.h"
#include "support/screendriver.h"

#include <QCheckBox>
#include <QTableView>
#include <QtTest>

using testdb::count;
using testdb::run;

namespace {

int tipo(const char* codice) { return testdb::rid("TipoDocumenti", testdb::code(QString::fromLatin1(codice))); }

// A customer with its terms, products, stock of 10 of VITE in the seed's warehouse, and a stored invoice of the
// customer: VITE 4 at 2,50 less 10%, a kit *KIT of two components, a row of older data without its total, with
// its journal entry, a due date and a generated-document link. Made once per database.
void prepara()
{
    if (count("Anagrafiche", "NUMERO = 9101") > 0)
        return;
    run("INSERT INTO Pagamenti (RID, CODICE, DESCRIZIONE) VALUES (9101, ¤RB30¤, ¤Ri.Ba. 30 gg¤), "
        "(9102, ¤RD¤, ¤Rimessa diretta¤)");
    run("INSERT INTO Anagrafiche (RID, NUMERO, TIPO, DENOMINAZIONE, FK_PAGAMENTO, SCONTO, CTRLFIDO, FIDO) VALUES "
        "(9101, 9101, ¤C¤, ¤Ferramenta Rossi¤, 9101, 3, 0, 0), (9102, 9102, ¤C¤, ¤Bar Bianchi¤, NULL, 0, -1, -1)");
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, SETGIACENZA, GIACENZA, LISTINO1, FK_Iva) VALUES (9101, "
        "¤VITE¤, ¤Vite¤, -1, 10, 10, 1), (9102, ¤DADO¤, ¤Dado¤, -1, 0, 1, 1), (9103, ¤*KIT¤, ¤Kit viti e dadi¤, 0, 0, "
        "0, 1)");
    const int sede = testdb::rid("Magazzini", testdb::code("SEDE"));
    run(QStringLiteral("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, QUANTITA, TAGLIO) "
                       "VALUES (9101, %1, 10, 1)")
            .arg(sede));
    run("INSERT INTO PrimaNota (RID, PROGRESSIVO, ANNO, DATA, RifMovimento) VALUES (9101, 9101, 2026, ¤2026-03-02¤, "
        "9101)");
    run(QStringLiteral("INSERT INTO Movimenti (RID, PROGRESSIVO, ANNO, DATA, FK_TIPODOCUMENTO, FK_ORIGINE, "
                       "FK_CONTROPARTITA, FK_PAGAMENTO, RIFERIMENTI, FK_PrimaNota, DATASTAMPA, PESOCONS, "
                       "COLLICONS, VIACONS, RDA1, RDA2, USAPREZZIIVA) VALUES (9101, 17, 2026, ¤2026-03-02¤, "
                       "%1, %2, 9101, 9102, ¤ordine 5¤, 9101, ¤2026-03-03¤, 12.5, 3, ¤Via Roma 1¤, 0, 0, 0)")
            .arg(tipo("FV"))
            .arg(sede));
    const QString colonne = QStringLiteral(
        "INSERT INTO DettagliMovimento (RID, FK_MOVIMENTO, POS, FK_PRODOTTO, CODPRODOTTO, DESCPRODOTTO, QUANTITA, "
        "PREZZO, SCONTO, SCONTO2, SCONTO3, SCONTONETTO, PREZZONETTO, TotPrezzoNetto, IVA, TOTALEIVA, TOTALERIGA, "
        "VALOREIVA, TAGLIO, IK_DETTAGLIOMOVIMENTO) VALUES ");
    run(colonne
        + "(9101, 9101, 1, 9101, ¤VITE¤, ¤Vite¤, 4, 2.5, 10, 0, 0, 0.25, 2.25, 9, 0.495, 1.98, 10.98, 22, "
          "1, NULL)");
    run(colonne + "(9102, 9101, 2, 9103, ¤*KIT¤, ¤Kit¤, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 22, 0, NULL)");
    run(colonne
        + "(9103, 9101, 3, 9101, ¤VITE¤, ¤Vite del kit¤, 6, 2, 0, 0, 0, 0, 2, 12, 0.44, 2.64, 14.64, 22, "
          "1, 9102)");
    run(colonne
        + "(9104, 9101, 4, 9102, ¤DADO¤, ¤Dado del kit¤, 2, 1, 0, 0, 0, 0, 1, 2, 0.1, 0.2, 2.2, 10, 0, "
          "9102)");
    run(colonne
        + "(9105, 9101, 5, 9102, ¤DADO¤, ¤Dado di dati vecchi¤, 3, 1, 0, 0, 0, 0, 1, 3, 0.22, 0.66, 0, "
          "22, 0, NULL)");
    run("INSERT INTO PrimaNotaDettagli (FK_PrimaNota, DARE, Avere) VALUES (9101, 37.82, 0)");
    run("INSERT INTO Scadenze (FK_PrimaNota, DATA, Importo) VALUES (9101, ¤2026-04-01¤, 37.82)");
    run("INSERT INTO DocGenerati (FK_MOVDESTINAZIONE, FK_MOVORIGINE) VALUES (9101, 1)");
}

} // namespace

class TestMovimento : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        prepara();
        gOptions().decimaliDopo = 2;
        gOptions().distintaBase = QStringLiteral("*");
    }

    // The header comes back by key and by number; origin by the causal's kind (a warehouse), the customer as
    // destination, with its terms and the shipment data.
    void testata()
    {
        TestataDocumento perChiave, perNumero;
        QVERIFY(leggiTestata(9101, 0, 0, 0, perChiave));
        QVERIFY(leggiTestata(0, 17, 2026, tipo("FV"), perNumero));
        QCOMPARE(perNumero.rid, 9101);
        QVERIFY(!leggiTestata(0, 18, 2026, tipo("FV"), perNumero));
        const TestataDocumento& t = perChiave;
        QCOMPARE(t.tipoOrigine, int(lato::Magazzino));
        QCOMPARE(t.origine.codice, QStringLiteral("SEDE"));
        QCOMPARE(t.tipoDestinazione, int(lato::Cliente));
        QCOMPARE(t.destinazione.rid, 9101);
        QCOMPARE(t.denominazione, QStringLiteral("Ferramenta Rossi"));
        QCOMPARE(t.pagamento.codice, QStringLiteral("RD"));
        QCOMPARE(t.dataStampa, QDate(2026, 3, 3));
        QCOMPARE(t.spedizione.colli, qint16(3));
        QCOMPARE(t.spedizione.via, QStringLiteral("Via Roma 1"));
        QCOMPARE(t.primaNota, 9101);
    }

    // Rows in stored order, unchanged; the kit parent shows its children's sums and hides them; a stored row
    // without its total is shown with one; the totals are the rows', to the cent.
    void righe()
    {
        GrigliaDocumento g;
        QVERIFY(leggiRighe(9101, g, 2, QStringLiteral("*")));
        QCOMPARE(g.righe(), 5);
        const auto cella = [&](int r, int c) { return g.cella(r, c); };
        QCOMPARE(cella(0, colonna::Key), QStringLiteral("DM_9101"));
        QCOMPARE(cella(0, colonna::Sconti), QStringLiteral("10+0+0"));
        QCOMPARE(g.stato(0), int(gestione::Invariata));
        QCOMPARE(cella(1, colonna::PrezzoListino), QStringLiteral("7,00")); // (6 × 2 + 2 × 1) for 2 kits
        QCOMPARE(cella(1, colonna::Importo), QStringLiteral("16,84"));      // 14,64 + 2,20
        QCOMPARE(cella(1, colonna::Imponibile), QStringLiteral("14,00"));
        QVERIFY(g.visibile(1));
        QVERIFY(!g.visibile(2) && !g.visibile(3));
        QCOMPARE(cella(2, colonna::IdDistintaBase), QStringLiteral("9102"));
        QCOMPARE(cella(4, colonna::Importo), QStringLiteral("3,66")); // (1 + 0,22) × 3
        EditorDocumento e(2, QStringLiteral("*"));
        QVERIFY(leggiRighe(9101, e.griglia(), 2, QStringLiteral("*")));
        e.calcolaTotali();
        QCOMPARE(e.totali().imponibile, QStringLiteral("26,00")); // 9 + 12 + 2 + 3: the kit row counts nothing
        QCOMPARE(e.totali().righe, QStringLiteral("4"));
    }

    // What a type and its causal say, and the counterparty's terms.
    void info()
    {
        InfoDocumento i;
        QVERIFY(getInfoDocumento(tipo("TM"), i));
        QVERIFY(i.trasferimento() && i.accompagnatorio && i.operazione);
        QVERIFY(getInfoDocumento(tipo("FD"), i));
        QCOMPARE(i.origine, int(lato::Nessuno));
        QVERIFY(!i.trasferimento() && !i.accompagnatorio);
        QVERIFY(!getInfoDocumento(999999, i));
        InfoContropartita c;
        QVERIFY(getInfoContropartita(9101, c));
        QCOMPARE(c.pagamento.codice, QStringLiteral("RB30"));
        QCOMPARE(c.sconto, Currency::fromUnits(3));
    }

    // The delete takes the document, its rows, journal entry, due dates and the link where it is the
    // destination, and gives the stock back: VITE had 10 left after selling 4 + 6.
    void elimina()
    {
        TestataDocumento t;
        QVERIFY(leggiTestata(9101, 0, 0, 0, t));
        InfoDocumento i;
        QVERIFY(getInfoDocumento(t.tipo.rid, i));
        QVERIFY(eliminaDocumento(t, i));
        QCOMPARE(count("Movimenti", "RID = 9101"), 0);
        QCOMPARE(count("DettagliMovimento", "FK_MOVIMENTO = 9101"), 0);
        QCOMPARE(count("PrimaNota", "RID = 9101") + count("PrimaNotaDettagli", "FK_PrimaNota = 9101"), 0);
        QCOMPARE(count("Scadenze", "FK_PrimaNota = 9101"), 0);
        QCOMPARE(count("DocGenerati", "FK_MOVDESTINAZIONE = 9101"), 0);
        QCOMPARE(testdb::number("SELECT QUANTITA FROM DettagliProdotto WHERE FK_PRODOTTO = 9101"), 20);
        QCOMPARE(testdb::number("SELECT GIACENZA FROM Prodotti WHERE RID = 9101"), 20);
        // Deleted meanwhile by another workstation: said, and no stock given back twice.
        testdb::ScriptedMsgBox box;
        box.expect("Il documento è già stato eliminato da un'altra postazione.");
        QVERIFY(!eliminaDocumento(t, i));
        QCOMPARE(testdb::number("SELECT GIACENZA FROM Prodotti WHERE RID = 9101"), 20);
        testdb::dropShared(); // the next tests start from the stored document again
    }

    // The screen steered by the type: a transfer has no prices (also when a stored transfer is opened), a
    // causal without origin disables the field, an accompanying type enables the shipment button.
    void tipoSulloSchermo_data()
    {
        testdb::columns<QString, bool, bool, bool>("tipo", "prezzi", "origine", "spedizione");
        QTest::newRow("fattura") << "FV" << true << true << true;
        QTest::newRow("differita") << "FD" << true << false << false;
        QTest::newRow("trasferimento") << "TM" << false << true << true;
    }

    void tipoSulloSchermo()
    {
        FETCH_EACH(QString, tipo);
        FETCH_EACH(bool, prezzi, origine, spedizione);
        testdb::Screen<frmMovimento> s(0, ::tipo(qPrintable(tipo)));
        QCOMPARE(s.get("pctPrezziSconti")->isVisibleTo(&s.screen), prezzi);
        QCOMPARE(s.get("pctMessage")->isVisibleTo(&s.screen), !prezzi);
        QCOMPARE(s.get("txtOrigine")->isEnabled(), origine);
        QCOMPARE(s.get("cmdCommand_4")->isEnabled(), spedizione);
        if (tipo == "TM") {
            run(QStringLiteral("INSERT INTO Movimenti (RID, PROGRESSIVO, ANNO, DATA, FK_TIPODOCUMENTO) VALUES "
                               "(9201, 1, 2026, ¤2026-05-01¤, %1)")
                    .arg(::tipo("TM")));
            testdb::Screen<frmMovimento> riaperto(9201, 0);
            QVERIFY(!riaperto.get("pctPrezziSconti")->isVisibleTo(&riaperto.screen));
            QVERIFY(riaperto.get("pctMessage")->isVisibleTo(&riaperto.screen));
        }
    }

    // A product before the type: the box names what is missing and the row stays empty.
    void prodottoSenzaTipo()
    {
        testdb::Screen<frmMovimento> s(0, 0);
        testdb::ScriptedMsgBox box;
        box.expect("Attenzione è necessario selezionare prima le seguenti informazioni:\n -Tipo Documento.");
        s.lookUp("txtProdotto", "VITE", "txtQuantita");
        QVERIFY(box.allAnswered());
        QCOMPARE(s.shown("txtDescProdotto"), QString());
    }

    // Choosing the customer: its payment term fills an empty field; a term typed over is kept unless the user
    // wants the customer's back; a customer over its credit limit is warned of.
    void controparte()
    {
        testdb::Screen<frmMovimento> s(0, tipo("FD"));
        s.lookUp("txtDestinazione", "9101", "txtRiferimenti");
        QCOMPARE(s.shown("txtPagamento"), QStringLiteral("RB30"));
        s.lookUp("txtPagamento", "RD", "txtRiferimenti");
        s.lookUp("txtDestinazione", " ", "txtRiferimenti"); // emptied by the user
        QCOMPARE(s.shown("txtPagamento"), QString());
        s.lookUp("txtPagamento", "RD", "txtRiferimenti");
        {
            testdb::ScriptedMsgBox box;
            box.expect("Il valore del campo [Mod. Pagamento] è stato modificato.", vb::No);
            s.lookUp("txtDestinazione", "9101", "txtRiferimenti");
        }
        QCOMPARE(s.shown("txtPagamento"), QStringLiteral("RD"));
        testdb::ScriptedMsgBox box;
        box.expect("FUORI FIDO per l'anagrafica selezionata di Euro: -");
        s.lookUp("txtDestinazione", "9102", "txtRiferimenti");
    }

    // A row typed on the screen: the customer's list price less its 3% discount, F6 writes it into the grid with
    // the totals; picked again it comes back; F9 asks before the row goes; a paste with nothing copied says so.
    void rigaSulloSchermo()
    {
        testdb::Screen<frmMovimento> s(0, tipo("FD"));
        s.lookUp("txtDestinazione", "9101", "txtRiferimenti");
        s.lookUp("txtProdotto", "VITE", "txtQuantita");
        QCOMPARE(s.shown({"txtDescProdotto", "txtPrezzoListino", "txtSconto1", "txtIva"}),
                 QStringList({"Vite", "10,00", "3,00", "22"}));
        s.enter("txtQuantita", "3");
        QTest::keyClick(s.get("txtQuantita"), Qt::Key_F6);
        QCOMPARE(s.screen.editor().griglia().righe(), 1);
        QCOMPARE(s.shown({"lblTotaleImponibile", "lblTotaleIva", "lblTotaleImporto", "txtProdotto"}),
                 QStringList({"29,10", "6,40", "35,50", ""}));
        QVERIFY(s.screen.modificato());
        // The row picked in the grid comes back to the editor with its stock.
        auto* grid = s.get<QTableView>("flxElement");
        Q_EMIT grid->clicked(grid->model()->index(0, colonna::Codice));
        QCOMPARE(s.shown({"txtProdotto", "txtQuantita", "lblGiacenza"}), QStringList({"VITE", "3,00", "10,00"}));
        {
            testdb::ScriptedMsgBox box;
            box.expect("Eliminare il dettaglio [Vite]?", vb::Yes);
            QTest::keyClick(s.get("txtProdotto"), Qt::Key_F9);
        }
        QCOMPARE(s.screen.editor().griglia().stato(0), int(gestione::Eliminata));
        QCOMPARE(s.shown("lblTotaleImporto"), QStringLiteral("0,00"));
        testdb::ScriptedMsgBox box;
        box.expect("Impossibile incollare. Nessuna Riga copiata.");
        s.get<QAbstractButton>("cmdAction_5")->click();
    }

    // F5 saves the document typed and shows it again as stored: its number, its rows unchanged since.
    void salvaSulloSchermo()
    {
        testdb::Screen<frmMovimento> s(0, tipo("FD"));
        s.lookUp("txtDestinazione", "9101", "txtRiferimenti");
        s.lookUp("txtProdotto", "DADO", "txtQuantita");
        s.enter("txtQuantita", "2");
        QTest::keyClick(s.get("txtQuantita"), Qt::Key_F6);
        QTest::keyClick(s.get("txtProdotto"), Qt::Key_F5);
        QVERIFY(s.screen.currentRid() > 0);
        QVERIFY(!s.screen.modificato());
        QCOMPARE(s.screen.editor().griglia().stato(0), int(gestione::Invariata));
        QCOMPARE(s.shown({"txtProgressivo", "lblTotaleImporto"}),
                 QStringList(
                     {testdb::text(
                          QStringLiteral("SELECT PROGRESSIVO FROM Movimenti WHERE RID = %1").arg(s.screen.currentRid()))
                          .rightJustified(5, QLatin1Char('0')),
                      "2,37"})); // 2 × 1,00 less 3%: 1,94 and 0,43 of VAT
    }

    // Work not saved is asked about before another document replaces it; Cancel keeps it.
    void modificheNonSalvate()
    {
        testdb::Screen<frmMovimento> s(9101, 0);
        QCOMPARE(s.shown("txtProgressivo"), QStringLiteral("00017"));
        QVERIFY(s.get("lblStampato")->isVisibleTo(&s.screen));
        QCOMPARE(s.shown("lblPrimaNota"), QStringLiteral("P.N.: 09101"));
        s.type("txtRiferimenti", "x");
        testdb::ScriptedMsgBox box;
        box.expect("Salvare le modifiche al Documento corrente?", vb::Cancel);
        QVERIFY(!s.screen.newRecord());
        QCOMPARE(s.screen.currentRid(), 9101);
        // A printed document asks before it is changed; No saves nothing.
        box.expect("Attenzione! Il documento selezionato risulta gia stampato in data 03/03/2026.\nSicuri di voler "
                   "continuare con le modifiche?",
                   vb::No);
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(s.screen.modificato());
        QCOMPARE(testdb::text("SELECT RIFERIMENTI FROM Movimenti WHERE RID = 9101"), QStringLiteral("ordine 5"));
    }

    // A document printed on another workstation after it was opened here asks too.
    void stampatoAltrove()
    {
        const auto restore = qScopeGuard(
            [] { QVERIFY(updateDataStampa(9101, QDate(2026, 3, 3))); });
        testdb::run("UPDATE Movimenti SET DATASTAMPA = Null WHERE RID = 9101");
        testdb::Screen<frmMovimento> s(9101, 0);
        QVERIFY(!s.get("lblStampato")->isVisibleTo(&s.screen));
        s.type("txtRiferimenti", "x");
        QVERIFY(updateDataStampa(9101, QDate(2026, 3, 9)));
        testdb::ScriptedMsgBox box;
        box.expect("Attenzione! Il documento selezionato risulta gia stampato in data 09/03/2026.", vb::No);
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(box.allAnswered());
    }
};

QTEST_MAIN(TestMovimento)
#include "tst_movimento.moc"
