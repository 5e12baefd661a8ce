// Bills of material: the list's rules and amounts; a kit saved with its rows and mirror product and expanded by the
// document side; rows changed, renumbered and renamed; a kit deleted; the refusals, also against a second
// workstation; both back ends.
#include "common/ean13.h"
#include "common/italiantext.h"
#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "documents/righekit.h"
#include "masterdata/frmdistintabase.h"
#include "pricing/prezzi.h"
#include "support/screendriver.h"

#include <QCheckBox>
#include <QTreeWidget>
#include <QtTest>

using testdb::ScriptedDialogs;
using Kit = testdb::Screen<frmDistintaBase>;

namespace {

// "price quantity rate vatKey [state]"
RigaDistinta riga(const QString& testo)
{
    const QStringList v = testo.split(' ', Qt::SkipEmptyParts);
    RigaDistinta r;
    r.prezzo = v.at(0);
    r.quantita = v.at(1);
    r.valoreIva = v.at(2);
    r.iva = v.at(3).toInt();
    r.gestione = v.value(4, "1").toInt();
    return r;
}

// The three saved rows A, B, C of products 1, 2, 3, one piece each at 1,00.
ElencoDistinta salvate()
{
    QList<RigaDistinta> righe;
    for (int i = 0; i < 3; ++i) {
        RigaDistinta r = riga("1,00 1,00 22 1");
        r.codice = QChar('A' + i);
        r.prodotto = i + 1;
        r.rid = 11 + i;
        righe << r;
    }
    ElencoDistinta e;
    e.carica(righe);
    return e;
}

const QString kLista = "Attenzione:\n - Il codice [%1] appartiene già a un'altra distinta.";

} // namespace

class TestDistintaBase : public testdb::BackendTest
{
    Q_OBJECT

    // A component: its code typed and left, the quantity typed, the row confirmed.
    static void aggiungi(Kit& s, const QString& codice, const QString& quantita)
    {
        s.lookUp("txtProdotto", codice, "txtQuantita");
        s.type("txtQuantita", quantita);
        testdb::click(s.screen, "cmdConferma");
    }

    // KIT1: four screws and two nuts, saved.
    static void nuovoKit(Kit& s)
    {
        s.type({"txtCodice=KIT1", "txtBarCode=4006381333931", "txtDescrizione=Kit viti"});
        aggiungi(s, "VITE", "4");
        aggiungi(s, "DADO", "2");
        QVERIFY(s.screen.saveRecord());
    }

    // What the document side reads of a kit: code, quantity, price, VAT key and rate, unit, in order.
    static QStringList componenti(const QString& codice)
    {
        QStringList out;
        for (const ComponenteKit& c : getComponentiKit(codice, DocumentoPrezzi()))
            out << QStringList{c.codice,
                               plainTextIt(c.quantita),
                               plainTextIt(c.prezzo),
                               QString::number(c.iva),
                               plainTextIt(c.valoreIva),
                               c.codUM}
                       .join(' ');
        return out;
    }

    static QStringList colonna(Kit& s, int column)
    {
        return testdb::listColumn(s.get<QTreeWidget>("lswElenco"), column);
    }

private Q_SLOTS:
    // Screws at 0,500 (22%, 0,25 kg, one parcel), nuts at 1,005 (10%, 0,1 kg), washers without VAT; prices with
    // three decimals.
    void init()
    {
        BackendTest::init();
        loadOptionGlobals();
        gOptions().decimaliDopo = 3;
        gOptions().clientePredefinito = 0;
        testdb::empty(
            {"DistintaBaseDettagli", "DistintaBase", "ProdottiAlternativi", "DettagliProdotto", "Listini", "Prodotti"});
        if (testdb::count("Iva", "RID = 9801") == 0)
            testdb::run("INSERT INTO Iva (RID, CODICE, DESCRIZIONE, VALORE) VALUES (9801, ¤T22¤, ¤Ventidue¤, 22), "
                        "(9802, ¤T10¤, ¤Dieci¤, 10)");
        const QString nr = QString::number(testdb::rid("UnitaMisura", testdb::code("NR")));
        testdb::run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, LISTINO1, FK_Iva, FK_UNITAMISURA, PESO, COLLI, "
                    "DISTINTABASE) VALUES (9801, ¤VITE¤, ¤Vite¤, 0.5, 9801, "
                    + nr + ", 0.25, 1, 0), (9802, ¤DADO¤, ¤Dado¤, 1.005, 9802, " + nr
                    + ", 0.1, 0, 0), (9803, ¤RONDELLA¤, ¤Rondella¤, 0.2, NULL, " + nr + ", NULL, NULL, 0)");
    }

    void totali_data()
    {
        testdb::columns<QString>({"righe", "importi", "totali"}); // rows "price qty rate key [state]" joined by ";"
        QTest::addColumn<int>("iva");
        const auto row = [](const char* name, const char* righe, const char* importi, const char* totali, int iva) {
            QTest::newRow(name) << QString(righe) << QString(importi) << QString(totali) << iva;
        };
        row("2 pieces at 1,005", "1,005 2 22 1", "2,01", "2,01 0,44 2,45", 1);
        row("each row rounded first", "0,333 1 10 1; 0,333 1 10 1", "0,33 0,33", "0,66 0,06 0,72", 1);
        row("the highest rate", "10 1 10 2; 10 1 22 1", "10,00 10,00", "20,00 3,20 23,20", 1);
        row("a tie keeps the first", "5 1 22 7; 5 1 22 1", "5,00 5,00", "10,00 2,20 12,20", 7);
        row("a deleted row left out", "5 1 22 1 3; 4 2 10 2", "5,00 8,00", "8,00 0,80 8,80", 2);
        row("no rows", "", "", "0,00 0,00 0,00", -1);
    }

    void totali()
    {
        FETCH_EACH(QString, righe, importi, totali);
        QFETCH(int, iva);
        QList<RigaDistinta> list;
        QStringList amounts;
        for (const QString& r : righe.split(';', Qt::SkipEmptyParts)) {
            list << riga(r);
            amounts << formattaImporto(importoRiga(list.last()), 2);
        }
        const TotaliDistinta t = calcolaTotali(list);
        QCOMPARE(amounts.join(' '), importi);
        QCOMPARE(QStringList(
                     {formattaImporto(t.imponibile, 2), formattaImporto(t.iva, 2), formattaImporto(t.totale, 2)})
                     .join(' '),
                 totali);
        QCOMPARE(getIDIvaDistinta(list), iva);
    }

    // Steps on the saved rows A, B, C: "+D:2" a new product (A to D are products 1 to 4) at 1,00, "/1,50" another
    // price, "@1" in place of the selected row 1; "e1:5" row 1 loaded and confirmed with 5; "-1" deleted; "r1"
    // restored.
    void elenco_data()
    {
        testdb::columns<QString>({"passi", "stati", "quantita", "pos"});
        const auto row = [](const char* name, const char* passi, const char* stati, const char* q, const char* pos) {
            QTest::newRow(name) << QString(passi) << QString(stati) << QString(q) << QString(pos);
        };
        row("same product, VAT and price adds up", "+A:2", "A2 B0 C0", "3,00 1,00 1,00", "1 2 3");
        row("another price is another row", "+A:2/1,50", "A0 B0 C0 A1", "1,00 1,00 1,00 2,00", "1 2 3 4");
        row("in place of the selected row", "+D:1@1", "A0 D1 B2 C2", "1,00 1,00 1,00 1,00", "1 2 3 4");
        row("a saved row deleted stays marked", "-1", "A0 B3 C2", "1,00 1,00 1,00", "1 0 2");
        row("a new row deleted goes", "+D:1;-3", "A0 B0 C0", "1,00 1,00 1,00", "1 2 3");
        row("a deleted row restored", "-1;r1", "A0 B2 C2", "1,00 1,00 1,00", "1 2 3");
        row("the loaded row takes the editor's values", "e1:5", "A0 B2 C0", "1,00 5,00 1,00", "1 2 3");
        row("a deleted row is not added to", "-0;+A:1", "A3 B2 C2 A1", "1,00 1,00 1,00 1,00", "0 1 2 3");
        row("a new row changed stays new", "+D:1;e3:4", "A0 B0 C0 D1", "1,00 1,00 1,00 4,00", "1 2 3 4");
    }

    void elenco()
    {
        FETCH_EACH(QString, passi, stati, quantita, pos);
        ElencoDistinta e = salvate();
        for (const QString& passo : passi.split(';')) {
            const int numero = passo.mid(1).section(':', 0, 0).toInt();
            if (passo.startsWith('-')) {
                e.elimina(numero);
            } else if (passo.startsWith('r')) {
                e.ripristina(numero);
            } else if (passo.startsWith('e')) {
                RigaDistinta r = e.at(numero);
                r.quantita = formattaImporto(getValoreSingle(passo.section(':', 1)), 2);
                e.conferma(r, numero, false, -1);
            } else {
                RigaDistinta r = riga("1,00 1 22 1");
                r.codice = passo.mid(1, 1);
                r.prodotto = r.codice.at(0).unicode() - 'A' + 1;
                const QString resto = passo.section(':', 1);
                r.quantita = formattaImporto(getValoreSingle(resto.section('@', 0, 0).section('/', 0, 0)), 2);
                if (resto.contains('/'))
                    r.prezzo = resto.section('/', 1);
                e.conferma(r, -1, resto.contains('@'), resto.contains('@') ? resto.section('@', 1).toInt() : -1);
            }
        }
        QStringList s, q, p;
        for (int i = 0; i < e.size(); ++i) {
            s << e.at(i).codice + QString::number(e.at(i).gestione);
            q << e.at(i).quantita;
            p << QString::number(e.pos(i));
        }
        QCOMPARE(s.join(' '), stati);
        QCOMPARE(q.join(' '), quantita);
        QCOMPARE(p.join(' '), pos);
        QCOMPARE(e.modificato(), stati != "A0 B0 C0");
    }

    // Head, rows in order, totals and the mirror: a product with the kit's code becomes it, its prices kept. The
    // document side finds the components by the kit's code.
    void newKitSaved()
    {
        testdb::run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, LISTINO1, DISTINTABASE) VALUES (9810, ¤*KIT1¤, "
                    "¤Vecchio¤, 99, 0)");
        Kit s(true, true, 0);
        QCOMPARE(s.shown("lblPrecodice"), QStringLiteral("*"));
        s.type({"txtCodice=KIT1", "txtBarCode=4006381333931", "txtDescrizione=Kit viti"});
        aggiungi(s, "VITE", "4");
        aggiungi(s, "DADO", "2");
        QVERIFY(!s.get("cmdStampa")->isEnabled()); // nothing saved to print yet
        QCOMPARE(colonna(s, 11), (QStringList{"2,00", "2,01"}));
        QCOMPARE(s.shown({"lblTotaleImponibile", "lblTotaleIva", "lblTotaleImporto"}),
                 (QStringList{"4,01", "0,64", "4,65"}));
        QVERIFY(s.screen.saveRecord());
        QVERIFY(s.get("cmdStampa")->isEnabled());
        QCOMPARE(testdb::text("SELECT CODICE FROM DistintaBase WHERE RID = " + s.rid()), QStringLiteral("*KIT1"));
        QCOMPARE(componenti("*KIT1"), (QStringList{"VITE 4 0,5 9801 22 NR", "DADO 2 1,005 9802 10 NR"}));
        QCOMPARE(testdb::number("SELECT MAX(POS) FROM DistintaBaseDettagli"), 2);
        QCOMPARE(testdb::count("Prodotti", testdb::code("*KIT1")), 1);
        const auto mirror = testdb::rows("SELECT RID, DISTINTABASE, FK_Iva, DESCRIZIONE, LISTINO1, PESO, COLLI, "
                                         "EAN13CODE FROM Prodotti WHERE CODICE = ¤*KIT1¤")
                                .value(0);
        QCOMPARE(mirror.value(0).toInt(), 9810);
        QCOMPARE(mirror.value(1).toInt(), 1);
        QCOMPARE(mirror.value(2).toInt(), 9801); // 22% wins over 10%
        QCOMPARE(mirror.value(3).toString(), QStringLiteral("Kit viti"));
        QCOMPARE(mirror.value(4).toDouble(), 99.0);
        QCOMPARE(qRound(mirror.value(5).toDouble() * 100), 120); // 4 x 0,25 + 2 x 0,1
        QCOMPARE(mirror.value(6).toDouble(), 4.0);               // 4 x 1
        QCOMPARE(mirror.value(7).toString(), EncodeEAN13("4006381333931"));
        QCOMPARE(colonna(s, 12), (QStringList{"0", "0"}));
        QCOMPARE(s.shown("txtCodice"), QStringLiteral("KIT1"));
        QVERIFY(s.screen.saveRecord()); // saved again as it stands
        QCOMPARE(componenti("*KIT1").size(), 2);
    }

    // A row changed, one deleted (kept on No to its restoring), one put first, the code changed: positions without
    // gaps, the mirror renamed with its key, its VAT from the rows left. Unsaved rows asked about and dropped.
    void changedRows()
    {
        Kit s(true, true, 0);
        nuovoKit(s);
        const int mirror = testdb::rid("Prodotti", testdb::code("*KIT1"));
        s.screen.lswElenco_DblClick(0);
        s.type("txtQuantita", "1");
        testdb::click(s.screen, "cmdConferma");
        s.screen.selezionaRiga(1);
        ScriptedDialogs script;
        script.expectMessage("Eliminare la riga selezionata?", vb::Yes);
        testdb::click(s.screen, "cmdElimina");
        script.expectMessage("Riga Eliminata! Ripristinare?", vb::No);
        s.screen.lswElenco_DblClick(1);
        QCOMPARE(colonna(s, 12), (QStringList{"2", "3"}));
        s.tick("chkAddPrev", true);
        s.screen.selezionaRiga(0);
        s.lookUp("txtProdotto", "RONDELLA", "txtQuantita");
        s.lookUp("txtIva", "T10", "txtQuantita");
        s.type("txtQuantita", "3");
        testdb::click(s.screen, "cmdConferma");
        s.type("txtCodice", "KIT2");
        QVERIFY(s.screen.saveRecord());
        QVERIFY(script.allAnswered());
        QCOMPARE(componenti("*KIT2"), (QStringList{"RONDELLA 3 0,2 9802 10 NR", "VITE 1 0,5 9801 22 NR"}));
        QCOMPARE(testdb::text("SELECT POS FROM DistintaBaseDettagli WHERE CODPRODOTTO = ¤VITE¤"), QStringLiteral("2"));
        QCOMPARE(testdb::count("Prodotti", testdb::code("*KIT1")), 0);
        QCOMPARE(testdb::rid("Prodotti", testdb::code("*KIT2")), mirror);
        QCOMPARE(testdb::number("SELECT FK_Iva FROM Prodotti WHERE RID = " + QString::number(mirror)), 9801);
        aggiungi(s, "DADO", "1");
        script.expectMessage("Salvare le modifiche alla Distinta Kit viti?", vb::No);
        QVERIFY(s.screen.newRecord());
        QVERIFY(colonna(s, 0).isEmpty());
        QCOMPARE(testdb::count("DistintaBaseDettagli"), 2);
    }

    void deleteKit()
    {
        Kit s(true, true, 0);
        nuovoKit(s);
        ScriptedDialogs script;
        script.expectMessage("Eliminare la distinta [Kit viti]?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QVERIFY(s.rid().isEmpty());
        QVERIFY(!s.get("cmdStampa")->isEnabled());
        for (const char* table : {"DistintaBase", "DistintaBaseDettagli"})
            QCOMPARE(testdb::count(table), 0);
        QCOMPARE(testdb::count("Prodotti", testdb::code("*KIT1")), 0);
        QCOMPARE(testdb::count("Prodotti"), 3);
    }

    // The head's refusals, before anything is written.
    void headRefused_data()
    {
        testdb::columns<QString>({"campi", "messaggio"});
        QTest::newRow("barcode and description required")
            << "txtCodice=KIT9"
            << "Attenzione:\n - Campo [Codice a barre] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.";
        QTest::newRow("the code of another kit")
            << "txtCodice=KIT1|txtBarCode=123|txtDescrizione=Doppione" << kLista.arg("*KIT1");
    }

    void headRefused()
    {
        FETCH_EACH(QString, campi, messaggio);
        testdb::run("INSERT INTO DistintaBase (CODICE, BARCODE, DESCRIZIONE) VALUES (¤*KIT1¤, ¤1¤, ¤Primo¤)");
        Kit s(true, true, 0);
        aggiungi(s, "VITE", "1");
        s.type(campi.split('|')); // the code isn't left: an existing kit's code would load it
        ScriptedDialogs script;
        script.expectMessage(messaggio);
        QVERIFY(!s.screen.saveRecord());
        QCOMPARE(testdb::count("DistintaBase"), 1);
        QCOMPARE(testdb::count("DistintaBaseDettagli"), 0);
        QCOMPARE(testdb::count("Prodotti"), 3);
    }

    // The row editor's refusals, when the code is left or when the row is confirmed; the editor keeps what it had.
    void rowRefused_data()
    {
        testdb::columns<QString>({"prodotto", "messaggio", "resta"});
        QTest::addColumn<bool>("caricata"); // a row loaded in the editor first
        const auto row = [](const char* name, const char* prodotto, const char* messaggio, const char* resta,
                            bool caricata) {
            QTest::newRow(name) << QString(prodotto) << QString(messaggio) << QString(resta) << caricata;
        };
        row("nothing chosen", "", "Attenzione:\n - Campo [Prodotto] Obbligatorio.\n - Campo [Iva] Obbligatorio.", "",
            false);
        row("a product without VAT", "RONDELLA", "Attenzione:\n - Campo [Iva] Obbligatorio.", "RONDELLA", false);
        row("an unknown code", "NESSUNO", "Codice: NESSUNO inesistente!", "", false);
        row("another product on the loaded row", "DADO",
            "Attenzione non è possibile continuare con la modifica \rdi un prodotto diverso da quello selezionato "
            "\rPer procedere sarà necessario rimuovere il prodotto selezionato.",
            "VITE", true);
    }

    void rowRefused()
    {
        FETCH_EACH(QString, prodotto, messaggio, resta);
        QFETCH(bool, caricata);
        Kit s(true, true, 0);
        aggiungi(s, "VITE", "1");
        if (caricata)
            s.screen.lswElenco_DblClick(0);
        ScriptedDialogs script;
        script.expectMessage(messaggio);
        if (!prodotto.isEmpty())
            s.lookUp("txtProdotto", prodotto, "txtQuantita");
        if (!script.allAnswered())
            testdb::click(s.screen, "cmdConferma");
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown("txtProdotto"), resta);
        QCOMPARE(s.screen.elenco().size(), 1);
    }

    // Leaving the barcode: an empty one is made, a wrong check digit asks and No stays in the field.
    void barcode_data()
    {
        QTest::addColumn<QString>("barcode");
        QTest::addColumn<int>("risposta"); // 0: no question
        QTest::newRow("right") << "4006381333931" << 0;
        QTest::newRow("wrong, kept") << "4006381333932" << int(vb::No);
        QTest::newRow("wrong, accepted") << "4006381333932" << int(vb::Yes);
        QTest::newRow("empty, made") << "" << 0;
    }

    void barcode()
    {
        QFETCH(QString, barcode);
        QFETCH(int, risposta);
        Kit s(true, true, 0);
        s.get("txtBarCode")->setFocus();
        s.type("txtBarCode", barcode);
        ScriptedDialogs script;
        if (risposta)
            script.expectMessage("Il Check Code corretto è: 1\rCodice a Barre non valido!\rSi desidera continuare?",
                                 risposta);
        s.get("txtDescrizione")->setFocus();
        QVERIFY(script.allAnswered());
        QCOMPARE(s.get("txtBarCode")->hasFocus(), risposta == vb::No);
        const QString shown = s.shown("txtBarCode");
        QCOMPARE(shown.size(), 13);
        if (barcode.isEmpty())
            QCOMPARE(shown.right(1).toInt(), int(getEAN13ChekDigit(shown)));
    }

    // Another workstation is saving a kit with the same code: this save waits for it, gives up with the busy
    // message and writes nothing; once the other has committed, the code is refused.
    void secondWorkstation()
    {
        testdb::OtherWorkstation other;
        QVERIFY(other.isValid());
        if (gAdoSqlServer().TipoServer() == TipoServer::MySql)
            QVERIFY(other.execute("SELECT NOME FROM Opzioni WHERE NOME = 'DistintaBase' FOR UPDATE"));
        QVERIFY(other.execute("INSERT INTO DistintaBase (CODICE, BARCODE, DESCRIZIONE) VALUES ('*DOPPIO', '1', "
                              "'Altra postazione')"));
        Kit s(true, true, 0);
        s.type({"txtCodice=DOPPIO", "txtBarCode=4006381333931", "txtDescrizione=Questa postazione"});
        aggiungi(s, "VITE", "1");
        ScriptedDialogs script;
        script.expectMessage(cAdoSqlServer::busyMessage());
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(script.allAnswered());
        QVERIFY(other.commit());
        QCOMPARE(testdb::count("DistintaBase"), 1);
        QCOMPARE(testdb::count("DistintaBaseDettagli"), 0);
        QCOMPARE(testdb::count("Prodotti", testdb::code("*DOPPIO")), 0);
        script.expectMessage(kLista.arg("*DOPPIO"));
        QVERIFY(!s.screen.saveRecord());
        QCOMPARE(s.screen.elenco().size(), 1); // the rows stay on screen
    }

    // Under the lock the code is checked again; the message waits for the rollback.
    void duplicateUnderTheLock()
    {
        testdb::run("INSERT INTO DistintaBase (CODICE, BARCODE, DESCRIZIONE) VALUES (¤*KIT1¤, ¤1¤, ¤Primo¤)");
        ScriptedDialogs script;
        {
            cTransaction transaction("test");
            QVERIFY(transaction);
            QString precedente;
            QCOMPARE(scriviTestaDistinta(0, {"*KIT1", "2", "", "Secondo"}, precedente), -1);
            QVERIFY(script.shown.isEmpty());
            script.expectMessage(kLista.arg("*KIT1"));
        }
        QVERIFY(script.allAnswered());
        QCOMPARE(testdb::count("DistintaBase"), 1);
    }
};

QTEST_MAIN(TestDistintaBase)
#include "tst_distintabase.moc"
