// Customers and suppliers, and the address book: one number sequence for
// both kinds, codes checked when left and tested for duplicates within the
// kind, a card in use kept by the database, the privacy notice.
#include "masterdata/anagrafica.h"
#include "masterdata/frmanagrafica.h"
#include "masterdata/frmcategoriasconti.h"
#include "masterdata/frmrubrica.h"
#include "support/screendriver.h"

#include <QDate>
#include <QtTest>

using testdb::ScriptedDialogs;

using Card = testdb::Screen<frmAnagrafica>;

class TestAnagrafiche : public testdb::BackendTest
{
    Q_OBJECT

    // A new card of the kind, saved; its number as shown.
    static QString nuova(Card& s, const QString& tipo, const QString& nome, const QString& cf = QString(),
                         const QString& piva = QString())
    {
        s.screen.newRecord();
        s.set("cmbTipo", tipo);
        s.type("txtDenominazione", nome);
        s.type("txtCodifeFiscale", cf);
        s.type("txtPartitaIVA", piva);
        s.screen.saveRecord();
        return s.shown("txtNumero");
    }

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        testdb::empty({"PrimaNota", "Anagrafiche", "Rubrica"});
    }

    // Customers and suppliers draw from one sequence; a customer's tax code
    // is refused to a new customer, not to a supplier, and an existing card
    // keeps a shared code without a word.
    void numbersAndDuplicates()
    {
        Card s(true, true, 0);
        QCOMPARE(nuova(s, "Cliente", "Rossi S.r.l.", "RSSMRA85T10A562S"), QStringLiteral("0001"));
        QCOMPARE(nuova(s, "Fornitore", "Bianchi S.p.A.", "RSSMRA85T10A562S"), QStringLiteral("0002"));
        QCOMPARE(testdb::count("Anagrafiche", "CFISCALE = ¤RSSMRA85T10A562S¤"), 2);

        ScriptedDialogs script;
        script.expectMessage("Attenzione il Cod.Fiscale o la P.Iva inseriti sono già in uso:\r0001 - Rossi S.r.l.\r",
                             vb::OK);
        QVERIFY(nuova(s, "Cliente", "Neri", "RSSMRA85T10A562S").isEmpty());
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(nuova(s, "Cliente", "Verdi", QString(), "00743110157"), QStringLiteral("0003"));
        script.expectMessage("0003 - Verdi\r", vb::OK);
        QVERIFY(nuova(s, "Cliente", "Neri", "RSSMRA85T10A562X", "00743110157").isEmpty());
        QCOMPARE(testdb::count("Anagrafiche"), 3);

        // The saved card, found by number within its kind, saves again.
        s.screen.newRecord();
        s.set("cmbTipo", "Cliente");
        s.type("txtNumero", "3");
        s.get("txtDenominazione")->setFocus();
        QCOMPARE(s.shown({"txtNumero", "txtDenominazione"}), (QStringList{"0003", "Verdi"}));
        s.type("txtCodifeFiscale", "RSSMRA85T10A562S");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("Anagrafiche", "CFISCALE = ¤RSSMRA85T10A562S¤ AND TIPO = ¤C¤"), 2);
        // A supplier's number is not a customer's.
        s.screen.newRecord();
        s.set("cmbTipo", "Cliente");
        s.type("txtNumero", "2");
        s.get("txtDenominazione")->setFocus();
        QVERIFY(s.rid().isEmpty());
    }

    // Leaving a code field with a wrong control character asks; No keeps the
    // cursor there, Yes lets the code stand. Digits in the tax code field go
    // by the VAT number rule.
    void fieldChecks_data()
    {
        QTest::addColumn<QString>("campo");
        QTest::addColumn<QString>("valore");
        QTest::addColumn<QString>("messaggio"); // empty: no question
        const QString cf = QStringLiteral("Attenzione! Codice Fiscale errato.\rContinuare?");
        const QString pi = QStringLiteral("Attenzione! Partita IVA errata.\rContinuare?");
        QTest::newRow("right tax code") << "txtCodifeFiscale"
                                        << "rssmra85t10a562s"
                                        << "";
        QTest::newRow("wrong tax code") << "txtCodifeFiscale"
                                        << "RSSMRA85T10A562T" << cf;
        QTest::newRow("firm's number in tax code") << "txtCodifeFiscale"
                                                   << "00743110157"
                                                   << "";
        QTest::newRow("wrong number in tax code") << "txtCodifeFiscale"
                                                  << "00743110158" << cf;
        QTest::newRow("right VAT number") << "txtPartitaIVA"
                                          << "00743110157"
                                          << "";
        QTest::newRow("VAT control digit 0") << "txtPartitaIVA"
                                             << "01234560090" << pi;
    }
    void fieldChecks()
    {
        QFETCH(QString, campo);
        QFETCH(QString, valore);
        QFETCH(QString, messaggio);
        Card s(true, true, 0);
        s.set(campo, valore);
        ScriptedDialogs script;
        if (!messaggio.isEmpty()) {
            script.expectMessage(messaggio, vb::No);
            s.get("txtEmail")->setFocus();
            QVERIFY(s.get(campo)->hasFocus());
            script.expectMessage(messaggio, vb::Yes);
        }
        s.get("txtEmail")->setFocus();
        QVERIFY(s.get("txtEmail")->hasFocus());
        QCOMPARE(s.shown(campo), valore.toUpper() == valore ? valore : s.shown(campo));
    }

    // A card that an entry refers to stays, with the data layer's message.
    void deleteInUse()
    {
        Card s(true, true, 0);
        nuova(s, "Cliente", "Rossi");
        const QString rid = s.rid();
        testdb::run("INSERT INTO PrimaNota (FK_Anagrafe, PROGRESSIVO, ANNO) VALUES (" + rid + ", 1, 2026)");
        ScriptedDialogs script;
        script.expectMessage("Eliminare il record con progressivo 0001?", vb::Yes);
        script.expectMessage("nel rispetto dell'integrità dei dati", vb::OK);
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(testdb::count("Anagrafiche"), 1);
        QCOMPARE(s.rid(), rid);

        testdb::run("DELETE FROM PrimaNota");
        script.expectMessage("Eliminare il record con progressivo 0001?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("Anagrafiche"), 0);
    }

    // The notice takes the card's data, and is kept with the card.
    void informativa()
    {
        const DatiInformativa dati{"Rossi S.r.l.", "Via Roma", "1", "20100", "Milano", "MI", ""};
        QCOMPARE(preparaRichText("Spett. @NOMINATIVO, @INDIRIZZO @CIVICO, @CAP @CITTA (@PROV) P.I. @PI - @DATA: "
                                 "cos\\'ec, citt\\'e0, perch\\'e8, pu\\'f2, pi\\'f9",
                                 dati, QDate(2026, 3, 5)),
                 QStringLiteral("Spett. Rossi S.r.l., Via Roma 1, 20100 Milano (MI) P.I.  - 05/03/2026: "
                                "cosi', citta', perche', puo', piu'"));

        Card s(true, true, 0);
        testdb::run("UPDATE Informativa SET INFORMATIVA = ¤Gentile @NOMINATIVO (@CITTA)¤");
        s.set("cmbTipo", "Cliente");
        s.type("txtDenominazione", "Rossi");
        s.type("txtCitta", "Lodi");
        s.screen.cmdCommandExtra_Click(6); // unsaved: nothing
        QVERIFY(s.screen.saveRecord());
        s.screen.cmdCommandExtra_Click(6);
        QCOMPARE(testdb::value("SELECT INFORMATIVA FROM Anagrafiche WHERE RID = " + s.rid()).toString(),
                 QStringLiteral("Gentile Rossi (Lodi)"));
    }

    // A discount category that a product uses stays, with both messages.
    void categoriaInUso()
    {
        testdb::Screen<frmCategoriaSconti> s(false, true, 0);
        s.type("txtCodice", "csx");
        s.type("txtDescrizione", "viteria");
        QVERIFY(s.screen.saveRecord());
        testdb::run("INSERT INTO Prodotti (CODICE, DESCRIZIONE, FK_CATSCOVEN) VALUES (¤CSX1¤, ¤Vite¤, " + s.rid() + ")");
        ScriptedDialogs script;
        script.expectMessage("Eliminare il record CSX?", vb::Yes);
        script.expectMessage("nel rispetto dell'integrità dei dati", vb::OK);
        script.expectMessage("Impossibile eliminare questo record", vb::OK);
        QVERIFY(!s.screen.deleteRecord());
        testdb::run("DELETE FROM Prodotti WHERE CODICE = ¤CSX1¤");
        script.expectMessage("Eliminare il record CSX?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("CategorieSconti", testdb::code("CSX")), 0);
    }

    // The address book numbers its entries in its own sequence and finds
    // them by number.
    void rubrica()
    {
        testdb::Screen<frmRubrica> s(true, true, 0);
        for (const char* nome : {"Studio Gialli", "Avv. Viola"}) {
            s.screen.newRecord();
            s.type("txtDenominazione", nome);
            QVERIFY(s.screen.saveRecord());
        }
        QCOMPARE(s.shown("txtNumero"), QStringLiteral("0002"));
        s.screen.newRecord();
        s.type("txtNumero", "1");
        s.get("txtDenominazione")->setFocus();
        QCOMPARE(s.shown({"txtNumero", "txtDenominazione"}), (QStringList{"0001", "Studio Gialli"}));
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - Campo [Denominazione] Obbligatorio.", vb::OK);
        s.screen.newRecord();
        QVERIFY(!s.screen.saveRecord());
    }
};

QTEST_MAIN(TestAnagrafiche)
#include "tst_anagrafiche.moc"
