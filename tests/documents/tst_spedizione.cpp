// Shipment details of a document that accompanies goods: weight and parcels from its rows, the 16-bit limit of
// the parcels, the button that brings them up to date, the customer's delivery data and the dialog's round trip;
// both back ends.
#include "core/serversettings.h"
#include "documents/frmdettagliospedizione.h"
#include "documents/grigliadocumento.h"
#include "documents/spedizione.h"
#include "support/screendriver.h"

#include <QSettings>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

const QString kDest = QStringLiteral("Options/sDestElencoSpeciale");

// Rows "code quantity [del|kit]" joined by ";": a deleted row, or a child of the kit above.
GrigliaDocumento griglia(const QString& righe)
{
    GrigliaDocumento g;
    for (const QString& riga : righe.split(u';', Qt::SkipEmptyParts)) {
        const QStringList w = riga.simplified().split(u' ');
        QStringList celle(colonna::Numero);
        celle[colonna::IdProdotto] = QString::number(testdb::rid("Prodotti", testdb::code(w.at(0))));
        celle[colonna::Quantita] = w.at(1);
        if (w.value(2) == "kit")
            celle[colonna::IdDistintaBase] = "*0";
        const int i = g.aggiungiCaricata(celle);
        if (w.value(2) == "del")
            g.eliminaRiga(i);
    }
    return g;
}

} // namespace

class TestSpedizione : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // Products with and without weight and parcels, a customer with a delivery address; once per database.
    void init()
    {
        BackendTest::init();
        if (testdb::count("Prodotti", testdb::code("P1")) == 0) {
            testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, PESO, COLLI) VALUES (¤P1¤, ¤Pesante¤, 1.5, 2), "
                        "(¤P2¤, ¤Senza peso¤, NULL, NULL), (¤P3¤, ¤Leggero¤, 0.1, 1), (¤BIG¤, ¤Ingombrante¤, 0, "
                        "16384)");
            testdb::run("INSERT INTO Anagrafiche (NUMERO, TIPO, DENOMINAZIONE, INDIRIZZODEST, CIVICODEST, CAPDEST, "
                        "CITTADEST, PROVINCIADEST, TELUFFICIO, FAX, DATIAUTORIZZAZIONE, DOCUMENTORICONOSCIMENTO) "
                        "VALUES (9001, ¤C¤, ¤Rossi¤, ¤Via Po¤, ¤7/B¤, ¤10100¤, ¤Torino¤, ¤TO¤, ¤011 555¤, ¤011 "
                        "556¤, ¤Aut. 12¤, ¤C.I. AB123¤)");
        }
    }

    // Only rows that aren't deleted nor kit children count; a total of parcels beyond 16 bits stops with the
    // box and sets nothing.
    void pesoColli_data()
    {
        testdb::columns<QString, float, int, QString>("righe", "peso", "colli", "box");
        QTest::newRow("card without weight") << "P2 5" << 0.f << 0 << "";
        QTest::newRow("deleted row, kit child") << "P1 2; P1 7 del; P3 4 kit" << 3.f << 4 << "";
        QTest::newRow("decimal quantities") << "P1 1,5; P3 2,4" << 2.49f << 5 << "";
        QTest::newRow("32767 fits") << "BIG 1; P3 16383" << 1638.3f << 32767 << "";
        QTest::newRow("32768 stops") << "P1 1; BIG 2" << 9.f << 7 << "colli a 32770\nVerificare [Colli]";
    }

    void pesoColli()
    {
        QFETCH(QString, righe);
        QFETCH(float, peso);
        QFETCH(int, colli);
        QFETCH(QString, box);
        ScriptedDialogs script;
        if (!box.isEmpty())
            script.expectMessage("Impossibile impostare il numero dei " + box);
        qint16 nuoviColli = 7;
        Single nuovoPeso = 9;
        QCOMPARE(getNewPesoColli(griglia(righe), nuoviColli, nuovoPeso), box.isEmpty());
        QCOMPARE(nuovoPeso, peso);
        QCOMPARE(int(nuoviColli), colli);
        QVERIFY(script.allAnswered());
    }

    // The button compares the fields as shown with the new values: equal, it says so and asks nothing;
    // different, Yes writes them and No keeps the fields.
    void aggiornaPesoColli_data()
    {
        testdb::columns<QString, QString, float, int, int, QString, QString>("pesoCampo", "colliCampo", "peso", "colli",
                                                                             "risposta", "pesoDopo", "colliDopo");
        QTest::newRow("equal") << "2,5"
                               << "3" << 2.5f << 3 << 0 << "2,50"
                               << "3";
        QTest::newRow("blank is zero") << ""
                                       << "" << 0.f << 0 << 0 << ""
                                       << "";
        QTest::newRow("weight differs, yes") << "2"
                                             << "3" << 2.5f << 3 << int(vb::Yes) << "2,50"
                                             << "3";
        QTest::newRow("parcels differ, no") << "2,5"
                                            << "2" << 2.5f << 3 << int(vb::No) << "2,50"
                                            << "2";
        QTest::newRow("to zero, yes") << "1,00"
                                      << "1" << 0.f << 0 << int(vb::Yes) << ""
                                      << "";
    }

    void aggiornaPesoColli()
    {
        FETCH_EACH(QString, pesoCampo, colliCampo);
        QFETCH(float, peso);
        FETCH_EACH(int, colli, risposta);
        FETCH_EACH(QString, pesoDopo, colliDopo);
        frmDettaglioSpedizione dialog(DatiSpedizione(), peso, qint16(colli));
        testdb::showActive(dialog);
        testdb::enter(dialog, "txtPesoCons", pesoCampo);
        testdb::enter(dialog, "txtColliCons", colliCampo);
        ScriptedDialogs script;
        if (risposta == 0)
            script.expectMessage("Peso e Colli sono già aggornati!");
        else
            script.expectMessage("Aggiornare il Peso e i Colli con i nuovi valori?\n- Peso = ", risposta);
        testdb::click(dialog, "cmdAggiornaPesoColli");
        QCOMPARE(dialog.findChild<QLineEdit*>("txtPesoCons")->text(), pesoDopo);
        QCOMPARE(dialog.findChild<QLineEdit*>("txtColliCons")->text(), colliDopo);
        QVERIFY(script.allAnswered());
    }

    // The card's delivery data go to a document without an address; one typed for the document stays.
    // The special list's recipient is the one last saved on this machine.
    void consegnaCliente_data()
    {
        testdb::columns<QString>({"via", "attesi"});
        QTest::newRow("no address yet") << ""
                                        << "Via Po|7/B|10100|Torino|TO|011 555|011 556|Aut. 12|C.I. AB123|Ufficio";
        QTest::newRow("own address") << "Via Dora"
                                     << "Via Dora|||||||Aut. 12|C.I. AB123|Ufficio";
    }

    void consegnaCliente()
    {
        FETCH_EACH(QString, via, attesi);
        machineSettings().setValue(kDest, "Ufficio");
        DatiSpedizione d;
        d.via = via;
        QVERIFY(getInfoConsegnaCliente(testdb::rid("Anagrafiche", "NUMERO = 9001"), d));
        const QStringList letti{d.via,
                                d.civico,
                                d.cap,
                                d.citta,
                                d.provincia,
                                d.telefono,
                                d.fax,
                                d.autElencoSpeciale,
                                d.documElencoSpeciale,
                                d.destElencoSpeciale};
        QCOMPARE(letti.join(u'|'), attesi);
    }

    // The dialog shows the data it opens with; Salva gives back the edits (a code typed, one chosen by F3,
    // the recipient remembered), Esci gives back nothing and remembers nothing.
    void roundTrip_data()
    {
        QTest::addColumn<bool>("salva");
        QTest::newRow("save") << true;
        QTest::newRow("exit") << false;
    }

    void roundTrip()
    {
        QFETCH(bool, salva);
        machineSettings().setValue(kDest, "Prima");
        DatiSpedizione d;
        std::tie(d.via, d.data, d.ora, d.peso, d.colli) = std::tuple("Via Roma", QDate(2024, 3, 5), "08:30", 12.5f, 0);
        d.aspetto = testdb::rid("AspettoEsteriore", testdb::code("CAR"));
        const DatiSpedizione prima = d;
        ScriptedDialogs script;
        script.expectDialog("frmDettaglioSpedizione", [&](QDialog& dialog) {
            testdb::showActive(dialog);
            QCOMPARE(dialog.focusWidget()->objectName(), QStringLiteral("txtViaCons"));
            QStringList shown;
            for (const char* name : {"txtViaCons", "txtDataCons", "txtOraCons", "txtPesoCons", "txtColliCons",
                                     "txtAspettoCons", "lblAspetto"})
                shown << (qstrcmp(name, "lblAspetto") ? dialog.findChild<QLineEdit*>(name)->text()
                                                      : dialog.findChild<QLabel*>(name)->text());
            QCOMPARE(shown.join(u'|'), QStringLiteral("Via Roma|05/03/2024|08:30|12,50||CAR|Cartoni"));
            testdb::enter(dialog, "txtCausaleCons", "res");
            testdb::enter(dialog, "txtDestElencoSpeciale", "Magazzino");
            script.expectDialog("frmRicerca", testdb::searchFor("VET"));
            dialog.findChild<QLineEdit*>("txtSpedizione")->setFocus();
            QTest::keyClick(dialog.findChild<QLineEdit*>("txtSpedizione"), Qt::Key_F3);
            testdb::click(dialog, salva ? "cmdSalva" : "cmdEsci");
        });
        QCOMPARE(frmDettaglioSpedizione::mostra(d, 0, 0), salva);
        QVERIFY(script.allAnswered());
        if (!salva) {
            QCOMPARE(d.causaleTrasporto, 0);
            QCOMPARE(d.spedizione, 0);
            QCOMPARE(machineSettings().value(kDest).toString(), QStringLiteral("Prima"));
            return;
        }
        QCOMPARE(d.causaleTrasporto, testdb::rid("CausaliTrasporto", testdb::code("RES")));
        QCOMPARE(d.spedizione, testdb::rid("Spedizioni", testdb::code("VET")));
        QCOMPARE((QList<QVariant>{d.via, d.data, d.ora, d.peso, int(d.colli), d.aspetto, d.destElencoSpeciale}),
                 (QList<QVariant>{prima.via, prima.data, prima.ora, prima.peso, int(prima.colli), prima.aspetto,
                                  "Magazzino"}));
        QCOMPARE(machineSettings().value(kDest).toString(), QStringLiteral("Magazzino"));
    }
};

QTEST_MAIN(TestSpedizione)
#include "tst_spedizione.moc"
