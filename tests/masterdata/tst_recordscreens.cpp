// The record screens on both back ends, driven by their controls, and the
// length of every text field against its column.
#include "data/cadosqlserver.h"
#include "data/schema.h"
#include "masterdata/frmcausali.h"
#include "masterdata/frmiva.h"
#include "masterdata/frmpianoconti.h"
#include "masterdata/frmricercaconto.h"
#include "masterdata/masterdatascreens.h"
#include "masterdata/opzionicampi.h"
#include "screens/framework/frmsimpleform.h"
#include "support/screendriver.h"

#include <QSignalSpy>
#include <QtTest>

using testdb::ScriptedDialogs;
using Screen = testdb::Screen<testdb::RegisteredScreen>;
using Iva = testdb::Screen<frmIva>;
using Causali = testdb::Screen<frmCausali>;

namespace {

// "txtCodice=Iva.CODICE": the field and its column; "txtValoreIva=": a
// field that holds no text column (a number, a rate).
using Bindings = QStringList;

int schemaLength(const QString& binding)
{
    const schema::Table* t = schema::findTable(binding.section('.', 0, 0));
    for (const schema::Column& c : t ? t->columns : QList<schema::Column>())
        if (c.name.compare(binding.section('.', 1), Qt::CaseInsensitive) == 0)
            return c.kind == schema::ColKind::Text ? c.length : 0;
    return -1;
}

// Mixed characters filling `length` - 1 UTF-16 units, then an emoji that
// no longer fits whole, then more letters. `kept` is what the field may
// hold: the emoji left out, one letter after it.
QString acrossTheEnd(int length, QString* kept)
{
    const QStringList pieces{"a", "é", "😀", "¤", "'", "\\", "‡", "𝄞"};
    QString prefix;
    for (int i = 0; prefix.size() + pieces.at(i % pieces.size()).size() <= length - 1; ++i)
        prefix += pieces.at(i % pieces.size());
    prefix = prefix.leftJustified(length - 1, 'a');
    *kept = prefix + 'x';
    return prefix + "😀xyz";
}

const QString kNotFound =
    QStringLiteral("Attenzione! Il codice inserito non è valido: \nMastro e/o Conto non trovati.");
const QString kFormat =
    QStringLiteral("Formato Codice Errato!\nMASTRO  = 2 Caratteri\nCONTO = 3 Caratteri\nSOTTOCONTO = 3 Caratteri");

} // namespace

class TestRecordScreens : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        registerMasterdataScreens();
    }

    // F5 inserts, then updates the same row; what was typed with blanks
    // around is stored without, the code in upper case, the description as
    // typed. F2 empties the screen, F3 finds the record again, F7 deletes it
    // after the question.
    void recordLife_data()
    {
        QTest::addColumn<QString>("item"); // of the generic editor
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("typed"); // "txtColumn=text"
        QTest::newRow("banks") << ""
                               << "Banche"
                               << "Banche"
                               << QStringList{"txtABI= 03069 ",        "txtCAB=01600",          "txtCIN=X",
                                              "txtAgenzia=Filiale 12", "txtIndirizzo=Via Roma", "txtCivico=4/b",
                                              "txtCAP=20121",          "txtCitta=Milano",       "txtProvincia=MI",
                                              "txtTelefono=02 123456", "txtFax= 02 654321 "};
        QTest::newRow("sales agents") << ""
                                      << "Venditori"
                                      << "Venditori" << QStringList{"txtCodiceExtra= T-0042 "};
        const auto row = [](const char* item, const char* table, const char* title) {
            QTest::newRow(item) << item << table << title << QStringList();
        };
        row("mnuCollezioni", "Collezioni", "Collezioni");
        row("mnuFasceClienti", "FasceClienti", "Fasce Clienti");
        row("mnuTab_0", "Colori", "Colori");
        row("mnuTab_1", "Confezioni", "Confezioni");
        row("mnuTab_2", "FormatoCarta", "Formato Carta");
        row("mnuTab_3", "FormatoFinestra", "Formato Finestra");
        row("mnuTab_4", "Gruppi", "Gruppi Merceologici");
        row("mnuTab_5", "CategorieMerceologiche", "Categorie Merceologiche");
        row("mnuTab_6", "Magazzini", "Magazzino");
        row("mnuTab_7", "Spedizioni", "Spedizioni");
        row("mnuTab_8", "Marche", "Marca");
        row("mnuTab_9", "CentriCosto", "Centri di Costo");
        row("mnuTab_10", "UnitaMisura", "Unità di Misure");
        row("mnuTab_11", "AspettoEsteriore", "Aspetto esteriore dei beni");
        row("mnuTab_12", "CausaliTrasporto", "Causali di trasporto");
    }
    void recordLife()
    {
        QFETCH(QString, item);
        QFETCH(QString, table);
        QFETCH(QString, title);
        QFETCH(QStringList, typed);
        const QString where = " FROM " + table + " WHERE " + testdb::code("ZT1");
        testdb::run("DELETE" + where);
        Screen s(item.isEmpty() ? (table == "Banche" ? "frmBanche" : "frmVenditore") : "frmSimpleForm", item);
        const QWidget* record = s.screen.record;
        QCOMPARE(record->windowTitle(), title);
        typed.prepend("txtDescrizione=Prova l'editor");
        QStringList columns, stored, written;
        s.type("txtCodice", "zt1");
        for (const QString& field : typed) {
            s.type(field.section('=', 0, 0), field.section('=', 1));
            columns << field.section('=', 0, 0).mid(3).toUpper();
            stored << field.section('=', 1).trimmed();
        }
        s.key("txtDescrizione", Qt::Key_F5);
        const QString rid = s.rid();
        QVERIFY(rid.toInt() > 0);
        QCOMPARE(record->windowTitle(), QString(title + " - ZT1"));
        for (const QVariant& value : testdb::rows("SELECT " + columns.join(", ") + where).value(0))
            written << value.toString();
        QCOMPARE(written, stored);

        s.type("txtDescrizione", "Cambiata");
        s.key("txtDescrizione", Qt::Key_F5);
        QCOMPARE(s.rid(), rid);
        QCOMPARE(testdb::count(table, testdb::code("ZT1")), 1);
        QCOMPARE(testdb::value("SELECT DESCRIZIONE" + where).toString(), QStringLiteral("Cambiata"));

        const QString last = typed.last().section('=', 0, 0);
        ScriptedDialogs script;
        s.key("txtDescrizione", Qt::Key_F2);
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(s.shown({"txtDescrizione", last}), (QStringList{"", ""}));
        script.expectDialog("frmRicerca", testdb::searchFor("ZT1"));
        s.key("txtCodice", Qt::Key_F3);
        QCOMPARE(s.rid(), rid);
        QCOMPARE(s.shown({"txtDescrizione", last}),
                 (QStringList{"Cambiata", last == "txtDescrizione" ? "Cambiata" : stored.last()}));

        script.expectMessage("Eliminare il record ZT1?", vb::Yes);
        s.key("txtDescrizione", Qt::Key_F7);
        QVERIFY(script.allAnswered());
        QCOMPARE(testdb::count(table, testdb::code("ZT1")), 0);
        QVERIFY(s.rid().isEmpty());
    }

    // Code and description are required, blanks count as nothing; the
    // message names what is missing and nothing is written.
    void requiredFields_data()
    {
        for (const char* c : {"screen", "table", "code", "description", "message"})
            QTest::addColumn<QString>(c);
        const QString codice = "Attenzione:\n - Campo [Codice] Obbligatorio.";
        const QString descrizione = "\n - Campo [Descrizione] Obbligatorio.";
        for (const QString screen : {"frmBanche", "frmVenditore", "mnuTab_0"}) {
            const QString table = screen == "frmBanche" ? "Banche" : screen == "frmVenditore" ? "Venditori" : "Colori";
            QTest::addRow("%s, nothing", qPrintable(screen)) << screen << table << ""
                                                             << "" << codice + descrizione;
            QTest::addRow("%s, blank code", qPrintable(screen)) << screen << table << "   "
                                                                << "Qualcosa" << codice;
            QTest::addRow("%s, no description", qPrintable(screen)) << screen << table << "zt2"
                                                                    << "  "
                                                                    << "Attenzione:" + descrizione;
        }
    }
    void requiredFields()
    {
        QFETCH(QString, screen);
        QFETCH(QString, table);
        QFETCH(QString, code);
        QFETCH(QString, description);
        QFETCH(QString, message);
        const int before = testdb::count(table);
        Screen s(screen.startsWith("mnu") ? "frmSimpleForm" : screen, screen);
        s.type("txtCodice", code);
        s.type("txtDescrizione", description);
        ScriptedDialogs script;
        script.expectMessage(message, vb::OK);
        s.key("txtDescrizione", Qt::Key_F5);
        QCOMPARE(script.shown, QStringList{"message: " + message});
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(testdb::count(table), before);
    }

    // The first category is refused without a question only under the name
    // "Categoria"; from the menu's "Categorie" the question comes, and the
    // database refuses the delete because products use the category.
    void firstCategory()
    {
        ScriptedDialogs script;
        testdb::Screen<frmSimpleForm> categoria("Categoria", "Categoria Merceologica", "CategorieMerceologiche", true,
                                                false, 1);
        script.expectMessage("Impossibile eliminare questo record", vb::OK);
        QVERIFY(!categoria.screen.deleteRecord());

        const SimpleFormUse menu = simpleFormUse("mnuTab_5");
        testdb::Screen<frmSimpleForm> categorie(menu.nome, menu.titolo, menu.tabella, false, false, 1);
        script.expectMessage("Eliminare il record GEN?", vb::Yes);
        script.expectMessage("integrità dei dati", vb::OK);
        QVERIFY(!categorie.screen.deleteRecord());
        QCOMPARE(categorie.rid(), QStringLiteral("1"));
        QCOMPARE(testdb::count("CategorieMerceologiche", testdb::code("GEN")), 1);
    }

    // F5 in the rate field formats it before saving; code and description
    // are upper case; the second save updates; the code of an existing rate
    // loads it back, the rate formatted.
    void ivaSaveTwice()
    {
        testdb::run("DELETE FROM Iva WHERE " + testdb::code("X7"));
        Iva s(false, true, 0);
        s.type("txtCodice", "x7");
        s.type("txtDescrizione", "aliquota prova");
        s.type("txtValoreIva", "7.5");
        s.key("txtValoreIva", Qt::Key_F5);
        const QString first = s.rid();
        QVERIFY(first.toInt() > 1);
        QCOMPARE(s.shown({"txtCodice", "txtDescrizione", "txtValoreIva"}),
                 (QStringList{"X7", "ALIQUOTA PROVA", "7,50"}));
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Aliquote Iva - X7"));
        s.type("txtValoreIva", "8");
        s.key("txtValoreIva", Qt::Key_F5);
        QCOMPARE(s.rid(), first);
        QCOMPARE(testdb::count("Iva", testdb::code("X7")), 1);
        QCOMPARE(testdb::value("SELECT VALORE FROM Iva WHERE RID = " + first).toDouble(), 8.0);

        s.key("txtValoreIva", Qt::Key_F2);
        QCOMPARE(s.screen.windowTitle() + s.rid(), QStringLiteral("Aliquote Iva"));
        s.type("txtCodice", "x7");
        s.get("txtDescrizione")->setFocus();
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.shown("txtValoreIva"), QStringLiteral("8,00"));
    }

    // An unknown code loads nothing and leaves what was typed; saving names
    // every fault at once.
    void ivaUnknownCodeAndAllFaults()
    {
        Iva s(false, true, 0);
        s.type("txtDescrizione", "scritto");
        s.type("txtCodice", "NONCE");
        s.get("txtValoreIva")->setFocus();
        QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("SCRITTO"));
        QVERIFY(s.rid().isEmpty());

        s.screen.newRecord();
        s.type("txtValoreIva", "-1");
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                             " - Campo [Valore%] Errato.",
                             vb::OK);
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(s.rid().isEmpty());
    }

    // A blank screen deletes nothing; the system's own row is refused
    // before any question.
    void ivaDeleteKeepsTheFirstRow()
    {
        Iva s(false, true, 0);
        ScriptedDialogs script;
        QVERIFY(!s.screen.deleteRecord()); // no question
        s.screen.showData(1, QString());
        QCOMPARE(s.rid(), QStringLiteral("1"));
        script.expectMessage("Impossibile eliminare questo record", vb::OK);
        s.key("txtDescrizione", Qt::Key_F7);
        QCOMPARE(testdb::count("Iva", "RID = 1"), 1);
    }

    // F3 in the code field searches the rates; the row chosen is loaded.
    void ivaBrowseFromTheCodeField()
    {
        Iva s(false, true, 0);
        ScriptedDialogs script;
        script.expectDialog("frmRicerca", [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Ricerca - Aliquote Iva"));
            testdb::searchFor("E1")(dialog);
        });
        s.key("txtCodice", Qt::Key_F3);
        QCOMPARE(s.shown("txtCodice"), QStringLiteral("E10"));
        QCOMPARE(s.shown("txtValoreIva"), QStringLiteral("0,00"));
    }

    // Escape closes the screen and tells its record's key.
    void ivaClosingWithARecordTellsItsKey()
    {
        Iva s(false, false, 1);
        QSignalSpy unloaded(&s.screen, &cRecordScreen::evtUnloadWithRecord);
        s.key("txtDescrizione", Qt::Key_Escape);
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(unloaded.first().first().toInt(), 1);
        QVERIFY(!s.screen.isVisible());
    }

    // Flags -1/0 and MOSTRAVB 0/1; negative due dates only with due dates;
    // a warehouse only on a warehouse side. An unknown account shows the box
    // and empties field and label.
    void causaliWriting_data()
    {
        QTest::addColumn<bool>("generaScad");
        QTest::addColumn<QString>("origine");
        QTest::addColumn<QVariantList>("expected");
        const QVariant null;
        QTest::newRow("due dates, warehouse side")
            << true << "optOrigine_3" << QVariantList{-1, 3, 1, 1, null, -1, -1, -1, 0, 1, 3, 20};
        QTest::newRow("no due dates, customer side")
            << false << "optOrigine_1" << QVariantList{-1, 1, 1, null, null, -1, 0, 0, 0, 1, 3, 20};
    }
    void causaliWriting()
    {
        QFETCH(bool, generaScad);
        QFETCH(QString, origine);
        QFETCH(QVariantList, expected);
        testdb::run("DELETE FROM Causali WHERE CODICE = ¤ZC¤");
        Causali s(true, true, 0);
        s.enter("txtCodice", "zc");
        s.enter("txtDescrizione", "Causale di prova");
        s.tick("chkOperazione", true);
        s.tick("chkMostraVB", true);
        s.tick("optOrigine_3", true);
        s.enter("txtMagazzinoOrig", "sede");
        QCOMPARE(s.shown("lblMagazzinoOrig"), QStringLiteral("Magazzino Sede"));
        s.tick("optDestinazione_1", true);
        QVERIFY(!s.get("txtMagazzinoDest")->isEnabled());
        s.tick(origine, true);

        QVERIFY(!s.get("txtDare1")->isEnabled());
        s.tick("chkGeneraPN", true);
        QVERIFY(s.get("txtDare1")->isEnabled());
        s.enter("txtDare2", "01003001");
        QCOMPARE(s.shown("lblDare2"), QStringLiteral("Cassa"));
        {
            testdb::ScriptedDialogs script;
            script.expectMessage("Codice: 77777777 inesistente!", vb::OK);
            s.enter("txtDare2", "77777777");
        }
        QCOMPARE(s.shown("txtDare2") + s.shown("lblDare2"), QString());
        s.enter("txtDare1", "01001001");
        QCOMPARE(s.shown("lblDare1"), QStringLiteral("Clienti Italia"));
        s.enter("txtAvere1", "04001001");
        // Negative due dates ticked first, then due dates taken away again.
        s.tick("chkGeneraScad", true);
        s.tick("chkScadenzeNegative", true);
        s.tick("chkGeneraScad", generaScad);
        QVERIFY(s.screen.saveRecord());
        QVariantList stored =
            testdb::rows("SELECT Operazione, ORIGINE, DESTINAZIONE, FK_MagazzinoOrig, FK_MagazzinoDest, "
                         "GENERAPN, GENERASCAD, SCADENZENEGATIVE, TAGLIO, MOSTRAVB, FK_CONTODARE1, "
                         "FK_ContoAvere1 FROM Causali WHERE CODICE = ¤ZC¤")
                .value(0);
        for (QVariant& v : stored)
            v = v.isNull() ? QVariant() : QVariant(v.toInt());
        QCOMPARE(stored, expected);

        // Shown again as stored.
        s.screen.newRecord();
        QCOMPARE(s.shown("chkGeneraPN"), QStringLiteral("0"));
        s.enter("txtCodice", "ZC");
        QCOMPARE(s.shown(origine), QStringLiteral("1"));
        QCOMPARE(s.shown("txtAvere1"), QStringLiteral("04001001"));
        QCOMPARE(s.shown("chkScadenzeNegative"), QString::number(generaScad));
    }

    // The button beside a warehouse opens the warehouses on a new record;
    // the warehouse saved there comes back into the field on closing.
    void causaliCreateWhileTyping()
    {
        Causali s(true, true, 0);
        s.tick("optDestinazione_3", true);
        testdb::click(s.screen, "cmdNuovoMagazzinoDest");
        frmSimpleForm* editor = nullptr;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* form = qobject_cast<frmSimpleForm*>(window); form && form->isVisible())
                editor = form;
        QVERIFY(editor);
        QCOMPARE(editor->tabella(), QStringLiteral("Magazzini"));
        testdb::typeInto(*editor, "txtCodice", "NEG2");
        testdb::typeInto(*editor, "txtDescrizione", "Negozio due");
        QVERIFY(editor->saveRecord());
        editor->close();
        QCOMPARE(s.shown("txtMagazzinoDest"), QStringLiteral("NEG2"));
        QCOMPARE(s.shown("lblMagazzinoDest"), QStringLiteral("Negozio due"));
    }

    // A field that cannot be changed does not look like one that can.
    void causaliDisabledFieldsLookDisabled()
    {
        Causali s(true, true, 0);
        const auto ground = [&s](const char* name) {
            QWidget* field = s.get(name);
            return field->grab().toImage().pixelColor(field->width() - 6, field->height() / 2);
        };
        QVERIFY(!s.get("txtDare1")->isEnabled() && s.get("txtDescrizione")->isEnabled());
        QVERIFY(ground("txtDare1") != ground("txtDescrizione"));
    }

    // No message: accepted; a description: an existing account opened.
    void pianoContiCodeShapes_data()
    {
        for (const char* c : {"code", "message", "mastro", "conto", "description"})
            QTest::addColumn<QString>(c);
        const auto row = [](const char* name, const char* code, const QString& message, const char* mastro,
                            const char* conto, const char* description) {
            QTest::newRow(name) << code << message << mastro << conto << description;
        };
        row("three characters", "010", kFormat, "", "", "");
        row("conto without mastro", "99001", kNotFound, "", "", "");
        row("new conto of a mastro", "01009", "", "ATTIVITÀ", "", "");
        row("sottoconto without conto", "01009001", kNotFound, "ATTIVITÀ", "", "");
        row("new sottoconto", "01003009", "", "ATTIVITÀ", "DISPONIBILITÀ LIQUIDE", "");
        row("new mastro", "09", "", "", "", "");
        row("existing code opens it", "01003001", "", "ATTIVITÀ", "DISPONIBILITÀ LIQUIDE", "Cassa");
    }
    void pianoContiCodeShapes()
    {
        QFETCH(QString, code);
        QFETCH(QString, message);
        QFETCH(QString, mastro);
        QFETCH(QString, conto);
        QFETCH(QString, description);
        testdb::Screen<frmPianoConti> s(true, true, 0);
        testdb::ScriptedDialogs script;
        if (!message.isEmpty())
            script.expectMessage(message, vb::OK);
        s.enter("txtCodice", code);
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown({"lblMastro", "lblConto", "txtDescrizione"}), (QStringList{mastro, conto, description}));
        QCOMPARE(s.rid().isEmpty(), description.isEmpty());
        if (!message.isEmpty())
            QTRY_VERIFY(s.get("txtCodice")->hasFocus()); // the wrong code keeps the cursor
    }

    // Mastri under the root, conti under their mastro, sottoconti under
    // their conto; OK on an account gives its key, the root gives nothing.
    void pianoContiTree()
    {
        frmRicercaConto dialog;
        QVERIFY(dialog.getData());
        auto* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("TreeConti"));
        QTreeWidgetItem* root = tree->topLevelItem(0);
        QCOMPARE(root->text(0), QStringLiteral("Piano dei Conti"));
        QCOMPARE(root->childCount(), 4);
        QTreeWidgetItem* attivita = root->child(0);
        QCOMPARE(attivita->data(0, Qt::UserRole).toString(), QStringLiteral("MAS_01"));
        QTreeWidgetItem* liquidita = attivita->child(2);
        QCOMPARE(liquidita->text(0), QStringLiteral("01003 DISPONIBILITÀ LIQUIDE"));
        QTreeWidgetItem* cassa = liquidita->child(0);
        QCOMPARE(cassa->data(0, Qt::UserRole).toString(), QStringLiteral("SOT_01003001"));

        tree->setCurrentItem(root);
        testdb::click(dialog, QStringLiteral("cmdOk"));
        QCOMPARE(dialog.rid(), 0);
        tree->setCurrentItem(cassa);
        testdb::click(dialog, QStringLiteral("cmdOk"));
        QCOMPARE(dialog.rid(), testdb::rid("PianoConti", testdb::code("01003001")));
    }

    // Every text field is as long as its column, so that no back end refuses
    // a text for its length; a field not listed here fails. A text typed past
    // the end, emoji included, stops at the column on whole characters.
    void everyTextField_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<Bindings>("bindings");
        const auto row = [](const QString& screen, const QString& argument, const Bindings& bindings) {
            QTest::newRow(qPrintable(QString(screen + ' ' + argument).trimmed())) << screen << argument << bindings;
        };
        row("frmIva", {}, {"txtCodice=Iva.CODICE", "txtDescrizione=Iva.DESCRIZIONE", "txtValoreIva="});
        row("frmCausali", {},
            {"txtCodice=Causali.CODICE", "txtDescrizione=Causali.DESCRIZIONE", "txtMagazzinoOrig=Magazzini.CODICE",
             "txtMagazzinoDest=Magazzini.CODICE", "txtDare1=PianoConti.CODICE", "txtDare2=PianoConti.CODICE",
             "txtAvere1=PianoConti.CODICE", "txtAvere2=PianoConti.CODICE"});
        row("frmBanche", {},
            {"txtCodice=Banche.CODICE", "txtDescrizione=Banche.DESCRIZIONE", "txtABI=Banche.ABI", "txtCAB=Banche.CAB",
             "txtCIN=Banche.CIN", "txtAgenzia=Banche.AGENZIA", "txtIndirizzo=Banche.INDIRIZZO",
             "txtCivico=Banche.CIVICO", "txtCAP=Banche.CAP", "txtCitta=Banche.CITTA", "txtProvincia=Banche.PROVINCIA",
             "txtTelefono=Banche.TELEFONO", "txtFax=Banche.FAX"});
        row("frmVenditore", {},
            {"txtCodice=Venditori.CODICE", "txtDescrizione=Venditori.DESCRIZIONE",
             "txtCodiceExtra=Venditori.CODICEEXTRA"});
        row("frmTipoDocumento", {},
            {"txtCodice=TipoDocumenti.CODICE", "txtDescrizione=TipoDocumenti.DESCRIZIONE",
             "txtDescStampa=TipoDocumenti.DESCSTAMPA", "txtCausale=Causali.CODICE", "txtRDA1=", "txtRDA2="});
        row("frmNumeratori", {}, {"txtDescrizione=Numeratori.DESCRIZIONE", "txtNumero="});
        // The account code is the tree's own rule (8), stricter than its column.
        row("frmPianoConti", {}, {"txtCodice=", "txtDescrizione=PianoConti.DESCRIZIONE"});
        for (int i = 0; i <= 14; ++i) {
            const QString item =
                i < 13 ? "mnuTab_" + QString::number(i) : QString(i == 13 ? "mnuCollezioni" : "mnuFasceClienti");
            const QString table = simpleFormUse(item).tabella;
            row("frmSimpleForm", item, {"txtCodice=" + table + ".CODICE", "txtDescrizione=" + table + ".DESCRIZIONE"});
        }
        // Options live in a memo column (their own rules limit them); the key
        // fields hold a code of another table.
        Bindings opzioni;
        for (const opzioni::Campo& c : opzioni::campi())
            opzioni << c.control + '='
                    + (c.tipo == opzioni::Controllo::Chiave
                           ? QLatin1String(c.lookup->table) + '.' + QLatin1String(c.lookup->codeColumn)
                           : QString());
        row("frmOpzioni", {}, opzioni);
    }
    void everyTextField()
    {
        QFETCH(QString, screen);
        QFETCH(QString, argument);
        QFETCH(Bindings, bindings);
        testdb::Screen<testdb::RegisteredScreen> window(screen, argument.isEmpty() ? QVariant() : QVariant(argument));
        QHash<QString, QString> columns;
        for (const QString& b : std::as_const(bindings))
            columns.insert(b.section('=', 0, 0), b.section('=', 1));
        int limited = 0;
        for (QLineEdit* field : window.screen.findChildren<QLineEdit*>()) {
            if (field->objectName().isEmpty() || field->objectName().startsWith("qt_"))
                continue; // the editors inside combo boxes and spin boxes
            QVERIFY2(columns.contains(field->objectName()), qPrintable(field->objectName() + " has no column"));
            const QString column = columns.value(field->objectName());
            if (column.isEmpty())
                continue;
            const int length = schemaLength(column);
            QVERIFY2(length >= 0, qPrintable(column + " is not in the schema"));
            if (length == 0) { // a code that is a number (a customer's)
                QCOMPARE(field->maxLength(), QLineEdit().maxLength());
                continue;
            }
            QCOMPARE(field->maxLength(), length);
            ++limited;
            if (!field->isEnabled())
                continue; // a field that its screen's state keeps locked
            QString kept;
            testdb::typeKeys(field, acrossTheEnd(length, &kept));
            QVERIFY2(field->text().isValidUtf16(), qPrintable(field->objectName()));
            QVERIFY2(field->text().compare(kept, Qt::CaseInsensitive) == 0,
                     qPrintable(field->objectName() + ": " + field->text()));
        }
        QVERIFY(limited > 0);
    }
};

QTEST_MAIN(TestRecordScreens)
#include "tst_recordscreens.moc"
