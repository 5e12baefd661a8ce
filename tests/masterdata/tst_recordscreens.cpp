// The record screens and the options screen driven by their controls, on both back ends.
#include "core/documentmenu.h"
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/schema.h"
#include "data/session.h"
#include "masterdata/frmcausali.h"
#include "masterdata/frmiva.h"
#include "masterdata/frmnumeratori.h"
#include "masterdata/frmopzioni.h"
#include "masterdata/frmpagamenti.h"
#include "masterdata/frmpianoconti.h"
#include "masterdata/frmricercaconto.h"
#include "masterdata/frmtipodocumento.h"
#include "masterdata/logoazienda.h"
#include "masterdata/masterdatascreens.h"
#include "masterdata/opzionicampi.h"
#include "screens/framework/cgrid.h"
#include "screens/framework/frmsimpleform.h"
#include "support/screendriver.h"

#include <QSettings>
#include <QtTest>

using testdb::ScriptedDialogs;
using Screen = testdb::Screen<testdb::RegisteredScreen>;
using Causali = testdb::Screen<frmCausali>;
using Pagamenti = testdb::Screen<frmPagamenti>;
using Opzioni = testdb::Screen<frmOpzioni>;

namespace {

int schemaLength(const QString& binding)
{
    const schema::Table* t = schema::findTable(binding.section('.', 0, 0));
    for (const schema::Column& c : t ? t->columns : QList<schema::Column>())
        if (c.name.compare(binding.section('.', 1), Qt::CaseInsensitive) == 0)
            return c.kind == schema::ColKind::Text ? c.length : 0;
    return -1;
}

// `length` - 1 UTF-16 units, then an emoji that does not fit; `kept` is what the field may hold.
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

// The menu items of the simple tables, each a frmSimpleForm.
QStringList simpleForms()
{
    QStringList items{"mnuCollezioni", "mnuFasceClienti"};
    for (int i = 0; i <= 12; ++i)
        items << "mnuTab_" + QString::number(i);
    return items;
}

const QString kNotFound = "Attenzione! Il codice inserito non è valido: \nMastro e/o Conto non trovati.";
const QString kFormat = "Formato Codice Errato!\nMASTRO  = 2 Caratteri\nCONTO = 3 Caratteri\nSOTTOCONTO = 3 Caratteri";

QString column(const QString& name, const QString& code)
{
    return testdb::text("SELECT " + name + " FROM TipoDocumenti WHERE " + testdb::code(code));
}

const QStringList kFlags{
    "Accompagnatorio", "MostraVB",    "NonStampareVB", "StampaElencoSpeciale", "ModificaPrezzoAcquisto",
    "UsaPrezziIva",    "FlexCounter", "HideMenu",      "HideRicerca"};

// The document types, with the notices that have the menu rebuilt.
struct TipiDocumento : testdb::Screen<frmTipoDocumento>
{
    int notices = 0;
    QObject receiver;
    TipiDocumento()
        : testdb::Screen<frmTipoDocumento>(true, true, 0)
    {
        screens::onDocumentTypesChanged(&receiver, [this] { ++notices; });
    }

    // A complete new type.
    void fill(const QString& code)
    {
        testdb::run("DELETE FROM TipoDocumenti WHERE " + testdb::code(code.toUpper()));
        screen.newRecord();
        type({"txtCodice=" + code, "txtDescrizione=Prova " + code, "txtDescStampa=Documento di prova"});
        enter("txtCausale", "fv");
        set("cmbNumeratore", "Ordini clienti");
    }
};

int ridOf(const QString& descrizione) { return testdb::rid("Numeratori", "DESCRIZIONE = ¤" + descrizione + "¤"); }

// The numerators and their list.
struct Numeratori : testdb::Screen<frmNumeratori>
{
    QTreeWidget* list() { return get<QTreeWidget>("lswNumeratori"); }
    // Which of add, delete and write are offered, as "101".
    QString offered()
    {
        QString enabled;
        for (int command = 0; command < 3; ++command)
            enabled += get("cmdCommand_" + QString::number(command))->isEnabled() ? '1' : '0';
        return enabled;
    }

    QTreeWidgetItem* item(const QString& text) { return list()->findItems(text, Qt::MatchExactly, 0).value(0); }
    // The number the list shows for a description; -1 when missing.
    int number(const QString& descrizione) { return item(descrizione) ? item(descrizione)->text(1).toInt() : -1; }
    void select(const QString& descrizione)
    {
        QVERIFY(item(descrizione));
        list()->setCurrentItem(item(descrizione));
        QCOMPARE(shown("lblDescrizione"), descrizione);
    }
};

QString storedOption(const QString& nome)
{
    return testdb::text("SELECT VALORE FROM Opzioni WHERE NOME = ¤" + nome + "¤");
}

// "#Table:CODE" is the key of that row (NUMERO for the counterparties).
QString resolve(const QString& expected)
{
    if (!expected.startsWith('#') || !expected.contains(':'))
        return expected;
    const QString table = expected.mid(1).section(':', 0, 0), code = expected.section(':', 1);
    return QString::number(testdb::rid(table, table == "Anagrafiche" ? "NUMERO = " + code : testdb::code(code)));
}

// A picture of `size`, all red, in `dir`.
QString redPicture(const QTemporaryDir& dir, QSize size)
{
    const QString file = dir.filePath("marchio.png");
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image.save(file) ? file : QString();
}

// Presses OK and answers the notice of the save.
void pressOk(Opzioni& s)
{
    ScriptedDialogs script;
    script.expectMessage("Le impostazioni correnti sono state salvate.");
    testdb::click(s.screen, "cmdOk");
}

} // namespace

class TestRecordScreens : public testdb::BackendTest
{
    Q_OBJECT

    QTemporaryDir m_reports;
    QList<QVariantList> m_options; // name and value, at the start

    // How many options differ from the start.
    int changed() const
    {
        const auto now = testdb::rows("SELECT NOME, VALORE FROM Opzioni");
        return int(std::ranges::count_if(now, [this](const QVariantList& o) { return !m_options.contains(o); }));
    }

    // A new term T1 with the down payment and the instalments' shares.
    static void fill(Pagamenti& s, const QString& acconto, const QStringList& percentuali)
    {
        testdb::run(
            "DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO IN (SELECT RID FROM Pagamenti WHERE CODICE = ¤T1¤)");
        testdb::run("DELETE FROM Pagamenti WHERE CODICE = ¤T1¤");
        s.type({"txtCodice=T1", "txtDescrizione=Prova", "txtAcconto=" + acconto});
        s.set("txtNrRate", QString::number(percentuali.size()));
        s.get("txtNote")->setFocus(); // the grid follows the count
        auto* grid = s.screen.findChild<cGrid*>("flxRate");
        for (int i = 0; i < percentuali.size(); ++i) {
            grid->setText(i, 1, QString::number(30 * (i + 1)));
            grid->setText(i, 2, percentuali.at(i));
        }
    }

private Q_SLOTS:
    // Customers 7 (counter sales) and 9, supplier 8; options, settings and logo restored after each test.
    void initTestCase()
    {
        BackendTest::initTestCase();
        registerMasterdataScreens();
        for (const char* file : {"ElencoSpeciale.rpt", "Fattura.rpt", "Listino.RPT", "leggimi.txt"})
            QVERIFY(QFile(m_reports.filePath(file)).open(QIODevice::WriteOnly));
    }

    void init()
    {
        BackendTest::init();
        gSession().strReportPath = m_reports.path();
        for (const QString party :
             {"7, ¤Bottega Rossi s.n.c.¤, ¤C¤", "8, ¤Ingrosso Bianchi S.p.A.¤, ¤F¤", "9, ¤Cartoleria Verdi¤, ¤C¤"})
            if (testdb::count("Anagrafiche", "NUMERO = " + party.left(1)) == 0)
                testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (" + party + ")");
        setOpzione("ClientePredefinito", resolve("#Anagrafiche:7"));
        m_options = testdb::rows("SELECT NOME, VALORE FROM Opzioni");
        loadOptionGlobals();
    }

    void cleanup()
    {
        const QList<QVariantList> now = testdb::rows("SELECT NOME, VALORE FROM Opzioni");
        for (const QVariantList& o : m_options)
            if (!now.contains(o))
                setOpzione(o.at(0).toString(), o.at(1).toString());
        machineSettings().remove("Opzioni");
        machineSettings().remove("Options");
        QFile::remove(logoazienda::percorso(m_reports.path()));
        loadOptionGlobals();
        BackendTest::cleanup();
    }

    // F5 inserts (trimmed, code in upper case), then updates; F2 empties, F3 finds, F7 deletes.
    void recordLife_data()
    {
        testdb::columns<QString>({"item", "table"}); // item: a registered screen or a simple table's menu item
        QTest::addColumn<QStringList>("typed");      // "txtColumn=text"
        const auto row = [](const QString& item, const QString& table, const QStringList& typed = {}) {
            QTest::newRow(qPrintable(item)) << item << table << typed;
        };
        row("frmBanche", "Banche",
            {"txtABI= 03069 ", "txtCAB=01600", "txtCIN=X", "txtAgenzia=Filiale 12", "txtIndirizzo=Via Roma",
             "txtCivico=4/b", "txtCAP=20121", "txtCitta=Milano", "txtProvincia=MI", "txtTelefono=02 123456",
             "txtFax= 02 654321 "});
        row("frmVenditore", "Venditori", {"txtCodiceExtra= T-0042 "});
        for (const QString& item : simpleForms())
            row(item, simpleFormUse(item).tabella);
    }

    void recordLife()
    {
        FETCH_EACH(QString, item, table);
        QFETCH(QStringList, typed);
        const QString where = " FROM " + table + " WHERE " + testdb::code("ZT1");
        testdb::run("DELETE" + where);
        Screen s(item.startsWith("mnu") ? "frmSimpleForm" : item, item);
        const QWidget* record = s.screen.record;
        const QString title = record->windowTitle();
        typed.prepend("txtDescrizione=Prova l'editor");
        QStringList columns, stored, written;
        s.type("txtCodice", "zt1");
        s.type(typed);
        for (const QString& field : typed) {
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
        QCOMPARE(testdb::text("SELECT DESCRIZIONE" + where), QStringLiteral("Cambiata"));
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

    // Blanks count as nothing: the message names both fields, nothing is written.
    void requiredFields()
    {
        const int before = testdb::count("Banche");
        Screen s("frmBanche");
        s.type({"txtCodice=   ", "txtDescrizione=  "});
        ScriptedDialogs script;
        const QString message = "Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.";
        script.expectMessage(message);
        s.key("txtDescrizione", Qt::Key_F5);
        QCOMPARE(script.shown, QStringList{"message: " + message});
        QVERIFY(s.rid().isEmpty());
        QCOMPARE(testdb::count("Banche"), before);
    }

    // The first category: refused at once as "Categoria"; from the menu, by the database.
    void firstCategory()
    {
        ScriptedDialogs script;
        testdb::Screen<frmSimpleForm> categoria("Categoria", "Categoria Merceologica", "CategorieMerceologiche", true,
                                                false, 1);
        script.expectMessage("Impossibile eliminare questo record");
        QVERIFY(!categoria.screen.deleteRecord());
        const SimpleFormUse menu = simpleFormUse("mnuTab_5");
        testdb::Screen<frmSimpleForm> categorie(menu.nome, menu.titolo, menu.tabella, false, false, 1);
        script.expectMessage("Eliminare il record GEN?", vb::Yes);
        script.expectMessage("integrità dei dati");
        QVERIFY(!categorie.screen.deleteRecord());
        QCOMPARE(categorie.rid(), QStringLiteral("1"));
        QCOMPARE(testdb::count("CategorieMerceologiche", testdb::code("GEN")), 1);
    }

    // F5 formats the rate, then saves; the second save updates; the code loads it back.
    void ivaSaveTwice()
    {
        testdb::run("DELETE FROM Iva WHERE " + testdb::code("X7"));
        testdb::Screen<frmIva> s(false, true, 0);
        s.type({"txtCodice=x7", "txtDescrizione=aliquota prova", "txtValoreIva=7.5"});
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
        s.lookUp("txtCodice", "x7");
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.shown("txtValoreIva"), QStringLiteral("8,00"));
    }

    // Unknown code, every fault named, F3, the system's row refused; Escape tells the key.
    void ivaRefusalsSearchAndClosing()
    {
        testdb::Screen<frmIva> s(false, true, 0);
        ScriptedDialogs script;
        QVERIFY(!s.screen.deleteRecord()); // blank: no question
        s.type("txtDescrizione", "scritto");
        s.lookUp("txtCodice", "NONCE", "txtValoreIva");
        QCOMPARE(s.shown("txtDescrizione"), QStringLiteral("SCRITTO"));
        QVERIFY(s.rid().isEmpty());
        s.screen.newRecord();
        s.type("txtValoreIva", "-1");
        script.expectMessage("Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                             " - Campo [Valore%] Errato.");
        QVERIFY(!s.screen.saveRecord());
        QVERIFY(s.rid().isEmpty());
        script.expectDialog("frmRicerca", [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Ricerca - Aliquote Iva"));
            testdb::searchFor("E1")(dialog);
        });
        s.key("txtCodice", Qt::Key_F3);
        QCOMPARE(s.shown({"txtCodice", "txtValoreIva"}), (QStringList{"E10", "0,00"}));
        s.screen.showData(1, QString());
        script.expectMessage("Impossibile eliminare questo record");
        s.key("txtDescrizione", Qt::Key_F7);
        QCOMPARE(testdb::count("Iva", "RID = 1"), 1);
        QSignalSpy unloaded(&s.screen, &cRecordScreen::evtUnloadWithRecord);
        s.key("txtDescrizione", Qt::Key_Escape);
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(unloaded.first().first().toInt(), 1);
        QVERIFY(!s.screen.isVisible());
    }

    // Flags -1/0, MOSTRAVB 0/1; negative due dates and warehouses only where they apply.
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
        ScriptedDialogs script;
        script.expectMessage("Codice: 77777777 inesistente!");
        s.enter("txtDare2", "77777777");
        QVERIFY(script.allAnswered());
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
        s.screen.newRecord(); // shown again as stored
        QCOMPARE(s.shown("chkGeneraPN"), QStringLiteral("0"));
        s.enter("txtCodice", "ZC");
        QCOMPARE(s.shown({origine, "txtAvere1", "chkScadenzeNegative"}),
                 (QStringList{"1", "04001001", QString::number(generaScad)}));
    }

    // The warehouse made from the button beside the field comes back into it.
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
        testdb::columns<QString>({"code", "message", "mastro", "conto", "description"});
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
        FETCH_EACH(QString, code, message, mastro, conto, description);
        testdb::Screen<frmPianoConti> s(true, true, 0);
        testdb::ScriptedDialogs script;
        if (!message.isEmpty())
            script.expectMessage(message);
        s.enter("txtCodice", code);
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown({"lblMastro", "lblConto", "txtDescrizione"}), (QStringList{mastro, conto, description}));
        QCOMPARE(s.rid().isEmpty(), description.isEmpty());
        if (!message.isEmpty())
            QTRY_VERIFY(s.get("txtCodice")->hasFocus()); // the wrong code keeps the cursor
    }

    // The account tree by levels; OK on an account gives its key, on the root nothing.
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

    // Every text field is as long as its column; typed past the end it keeps whole characters.
    void everyTextField_data()
    {
        testdb::columns<QString>({"screen", "argument"});
        QTest::addColumn<QStringList>("bindings"); // "txtCodice=Iva.CODICE"; "txtValoreIva=": no text column
        const auto row = [](const QString& screen, const QString& argument, const QStringList& bindings) {
            QTest::newRow(qPrintable(QString(screen + ' ' + argument).trimmed())) << screen << argument << bindings;
        };
        row("frmIva", {}, {"txtCodice=Iva.CODICE", "txtDescrizione=Iva.DESCRIZIONE", "txtValoreIva="});
        row("frmCausali", {},
            {"txtCodice=Causali.CODICE", "txtDescrizione=Causali.DESCRIZIONE", "txtMagazzinoOrig=Magazzini.CODICE",
             "txtMagazzinoDest=Magazzini.CODICE", "txtDare1=PianoConti.CODICE", "txtDare2=PianoConti.CODICE",
             "txtAvere1=PianoConti.CODICE", "txtAvere2=PianoConti.CODICE"});
        row("frmTipoDocumento", {},
            {"txtCodice=TipoDocumenti.CODICE", "txtDescrizione=TipoDocumenti.DESCRIZIONE",
             "txtDescStampa=TipoDocumenti.DESCSTAMPA", "txtCausale=Causali.CODICE", "txtRDA1=", "txtRDA2="});
        row("frmNumeratori", {}, {"txtDescrizione=Numeratori.DESCRIZIONE", "txtNumero="});
        // The account code is the tree's own rule (8), stricter than its column.
        row("frmPianoConti", {}, {"txtCodice=", "txtDescrizione=PianoConti.DESCRIZIONE"});
        for (const QString& item : simpleForms()) {
            const QString table = simpleFormUse(item).tabella;
            row("frmSimpleForm", item, {"txtCodice=" + table + ".CODICE", "txtDescrizione=" + table + ".DESCRIZIONE"});
        }
        // Options live in a memo column; their key fields hold another table's code.
        QStringList opzioni;
        for (const opzioni::Campo& c : opzioni::campi())
            opzioni << c.control + '='
                    + (c.tipo == opzioni::Controllo::Chiave
                           ? QLatin1String(c.lookup->table) + '.' + QLatin1String(c.lookup->codeColumn)
                           : QString());
        row("frmOpzioni", {}, opzioni);
    }

    void everyTextField()
    {
        FETCH_EACH(QString, screen, argument);
        QFETCH(QStringList, bindings);
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
            QCOMPARE(field->maxLength(), length ? length : QLineEdit().maxLength()); // 0: a number (a customer's)
            if (length == 0)
                continue;
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

    // Insert, update and delete each tell the menu.
    void tipoDocumentoSaveTwice()
    {
        TipiDocumento s;
        QCOMPARE(s.shown({"cmbReport", "cmbStampante"}), (QStringList{"Fattura.rpt", "Predefinita"}));
        // An unknown causal is emptied; the browse buttons pick causal and numerator.
        ScriptedDialogs script;
        script.expectMessage("Codice: ZZZ inesistente!");
        s.enter("txtCausale", "zzz");
        QCOMPARE(s.shown("txtCausale") + s.shown("lblCausale"), QString());
        script.expectDialog("frmRicerca", testdb::searchFor("CF"));
        s.set("cmdSfoglia_1", {});
        QCOMPARE(s.shown({"txtCausale", "lblCausale"}), (QStringList{"CF", "Carico da fornitore"}));
        script.expectDialog("frmRicerca", testdb::searchFor("Documenti"));
        s.set("cmdSfoglia_2", {});
        QCOMPARE(s.shown("cmbNumeratore"), QStringLiteral("Documenti di trasporto"));
        s.fill("t1");
        QCOMPARE(s.shown("lblCausale"), QStringLiteral("Fattura di vendita"));
        s.set("cmbReport", "Ordine.rpt");
        QVERIFY(s.screen.saveRecord());
        const QString first = s.rid();
        QVERIFY(first.toInt() > 0 && s.notices == 1);
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Tipi di Documento - T1"));
        s.type("txtDescrizione", "Seconda descrizione");
        QVERIFY(s.screen.saveRecord());
        QVERIFY(s.rid() == first && s.notices == 2);
        QCOMPARE(testdb::count("TipoDocumenti", testdb::code("T1")), 1);
        QCOMPARE(column("DESCRIZIONE", "T1"), QStringLiteral("Seconda descrizione"));
        QCOMPARE(column("REPORT", "T1"), QStringLiteral("Ordine.rpt"));
        QCOMPARE(column("FK_CAUSALE", "T1").toInt(), testdb::rid("Causali", testdb::code("FV")));
        // The code of an existing type loads it, causal and numerator included.
        s.screen.newRecord();
        s.enter("txtCodice", "t1");
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.shown({"cmbNumeratore", "lblCausale"}), (QStringList{"Ordini clienti", "Fattura di vendita"}));
        // The menu hears of a delete only when it is done.
        s.notices = 0;
        script.expectMessage("Eliminare il record T1?", vb::No);
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(s.notices, 0);
        script.expectMessage("Eliminare il record T1?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(s.notices, 1);
        QCOMPARE(testdb::count("TipoDocumenti", testdb::code("T1")), 0);
    }

    // Each flag alone is written and shown again; the menu leaves out hidden types.
    void tipoDocumentoFlag_data()
    {
        QTest::addColumn<QString>("flag");
        for (const QString& f : kFlags)
            QTest::newRow(qPrintable(f)) << f;
    }

    void tipoDocumentoFlag()
    {
        QFETCH(QString, flag);
        TipiDocumento s;
        s.fill("FLAG");
        for (const QString& f : kFlags)
            s.tick("chk" + f, f == flag);
        QVERIFY(s.screen.saveRecord());
        s.screen.newRecord();
        s.screen.showData(0, "FLAG");
        for (const QString& f : kFlags) {
            QCOMPARE(column(f.toUpper(), "FLAG").toInt(), f == flag ? 1 : 0);
            QCOMPARE(s.shown("chk" + f), f == flag ? QStringLiteral("1") : QStringLiteral("0"));
        }
        bool inMenu = false;
        for (const DocumentMenuEntry& entry : documentMenuEntries())
            inMenu = inMenu || entry.rid == s.rid().toInt();
        QCOMPARE(inMenu, flag != "HideMenu");
    }

    // All faults at once; the withholding needs both rates while ticked.
    void tipoDocumentoFaults_data()
    {
        testdb::columns<bool>({"complete", "rda"});
        testdb::columns<QString>({"rda1", "rda2", "faults"}); // no faults: saved
        const auto row = [](const char* name, bool complete, bool rda, const char* rda1, const char* rda2,
                            const QString& faults) {
            QTest::newRow(name) << complete << rda << rda1 << rda2 << faults;
        };
        const QString rate1 = " - Campo [R.D.A. % (1)] Obbligatorio.", rate2 = " - Campo [R.D.A. % (2)] Obbligatorio.";
        row("empty", false, false, "", "",
            " - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n - Campo [Descrizione Stampa] "
            "Obbligatorio.\n - Campo [Causale] Obbligatorio.\n - Campo [Contatore] Obbligatorio.");
        row("rda with no rates", true, true, "0", "0,00", rate1 + '\n' + rate2);
        row("rda with no share", true, true, "20", "", rate2);
        row("rda with both", true, true, "20", "50", "");
        row("rda unticked", true, false, "20", "50", "");
    }

    void tipoDocumentoFaults()
    {
        FETCH_EACH(bool, complete, rda);
        FETCH_EACH(QString, rda1, rda2, faults);
        TipiDocumento s;
        if (complete)
            s.fill("RDA");
        s.tick("chkRDA", true);
        s.type("txtRDA1", rda1);
        s.type("txtRDA2", rda2);
        s.tick("chkRDA", rda);
        QCOMPARE(s.get("txtRDA1")->isEnabled(), rda);
        ScriptedDialogs script;
        if (!faults.isEmpty())
            script.expectMessage("Attenzione:\n" + faults);
        QCOMPARE(s.screen.saveRecord(), faults.isEmpty());
        QCOMPARE(s.notices, faults.isEmpty() ? 1 : 0);
        QCOMPARE(s.rid().isEmpty(), !faults.isEmpty());
        if (!faults.isEmpty())
            return;
        QCOMPARE(column("USARDA", "RDA").toInt(), rda ? 1 : 0);
        QCOMPARE(column("RDA1", "RDA").toDouble(), rda ? 20.0 : 0.0);
        QCOMPARE(column("RDA2", "RDA").toDouble(), rda ? 50.0 : 0.0);
        s.screen.refreshRecord();
        QCOMPARE(s.shown("txtRDA1"), rda ? QStringLiteral("20,00") : QStringLiteral("0,00"));
    }

    // The printer is kept per workstation ("Predefinita" as empty), shown even when not installed.
    void tipoDocumentoPrinter()
    {
        const auto stored = [](const char* c) { return machineSettings().value("StampantiDocumenti/" + QString(c)); };
        machineSettings().setValue("StampantiDocumenti/PRN", "Laser_Ufficio");
        machineSettings().setValue("StampantiDocumenti/ALTRO", "Aghi_Magazzino");
        TipiDocumento s;
        s.fill("PRN");
        QCOMPARE(s.get<QComboBox>("cmbStampante")->currentIndex(), 0);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored("PRN").toString(), QString());
        QVERIFY(stored("PRN").isValid());
        machineSettings().setValue("StampantiDocumenti/PRN", "Laser_Ufficio");
        s.screen.refreshRecord();
        QCOMPARE(s.shown("cmbStampante"), QStringLiteral("Laser_Ufficio"));
        s.type("txtDescrizione", "Con la sua stampante");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored("PRN").toString(), QStringLiteral("Laser_Ufficio"));
        s.set("cmbStampante", "Predefinita");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored("PRN").toString(), QString());
        QCOMPARE(stored("ALTRO").toString(), QStringLiteral("Aghi_Magazzino"));
        s.screen.refreshRecord();
        QCOMPARE(s.shown("cmbStampante"), QStringLiteral("Predefinita"));
    }

    void addNewNumeratore_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");  // to the question; 0 when none is asked
        QTest::addColumn<QString>("box"); // the refusal; empty when none
        const QString blank = "Attenzione!! bisogna digitare una descrizione per il nuovo Numeratore che si vuole "
                              "inserire.";
        QTest::newRow("blank") << "   " << 0 << blank;
        QTest::newRow("present") << "Ordini clienti " << 0 << "Il Numeratore [Ordini clienti] è gia' presente!";
        QTest::newRow("other case is another name") << "ORDINI CLIENTI" << int(vb::Yes) << "";
        QTest::newRow("answered no") << "Bolle interne" << int(vb::No) << "";
    }

    void addNewNumeratore()
    {
        FETCH_EACH(QString, typed, box);
        QFETCH(int, answer);
        const int highest = testdb::number("SELECT MAX(RID) FROM Numeratori");
        const int before = testdb::count("Numeratori");
        const QString name = typed.trimmed();
        Numeratori s;
        ScriptedDialogs script;
        s.type("txtDescrizione", typed);
        QCOMPARE(s.offered(), QStringLiteral("100")); // typing a name offers the add only
        if (!box.isEmpty())
            script.expectMessage(box);
        if (answer)
            script.expectMessage("Aggiungere il Numeratore [" + name + "] all'elenco?", answer);
        testdb::click(s.screen, "cmdCommand_0");
        QCOMPARE(testdb::count("Numeratori"), before + (answer == vb::Yes ? 1 : 0));
        if (answer != vb::Yes)
            return;
        // By key: MariaDB compares names without regard to case.
        const QString rid = QString::number(highest + 1);
        QCOMPARE(testdb::value("SELECT DESCRIZIONE FROM Numeratori WHERE RID = " + rid).toString(), name);
        QCOMPARE(s.number(name), 0);
        QCOMPARE(s.shown("txtDescrizione"), QString());
        const QString ofYear = "FK_NUMERATORE = " + rid + " AND ANNO = ¤" + s.screen.anno() + "¤";
        QCOMPARE(testdb::count("Contatori", "NUMERO = 0 AND " + ofYear), 1);
        testdb::run("DELETE FROM Contatori WHERE FK_NUMERATORE = " + rid);
        testdb::run("DELETE FROM Numeratori WHERE RID = " + rid);
    }

    // A numerator in use names the types that hold it; a free one goes with its counters.
    void delNumeratore()
    {
        const QString fatture = "Fatture e note di credito", libero = "Da eliminare";
        Numeratori s;
        ScriptedDialogs script;
        s.select(fatture);
        script.expectMessage("Eliminare il Numeratore [" + fatture + "] all'elenco?", vb::Yes);
        script.expectMessage("Impossibile eliminare il numeratore selezionato [" + fatture
                             + "].\nEsistono relazioni con il documento [");
        testdb::click(s.screen, "cmdCommand_1");
        for (const char* tipo : {"Fattura di vendita", "Fattura differita", "Nota di credito"})
            QVERIFY2(script.shown.last().contains(QString::fromUtf8(tipo)), qPrintable(script.shown.last()));
        QCOMPARE(script.shown.last().count(" - "), 2);
        QVERIFY(ridOf(fatture) > 0);
        s.type("txtDescrizione", libero);
        script.expectMessage("Aggiungere il Numeratore [Da eliminare] all'elenco?", vb::Yes);
        testdb::click(s.screen, "cmdCommand_0");
        const QString rid = QString::number(ridOf(libero));
        testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (" + rid + ", 1999, 7)");
        s.select(libero);
        script.expectMessage("Eliminare il Numeratore [Da eliminare] all'elenco?", vb::No);
        testdb::click(s.screen, "cmdCommand_1");
        QCOMPARE(QString::number(ridOf(libero)), rid);
        script.expectMessage("Eliminare il Numeratore [Da eliminare] all'elenco?", vb::Yes);
        testdb::click(s.screen, "cmdCommand_1");
        QCOMPARE(ridOf(libero), 0);
        QCOMPARE(testdb::count("Contatori", "FK_NUMERATORE = " + rid), 0);
        QCOMPARE(s.number(libero), -1);
        QCOMPARE(s.list()->currentItem(), s.list()->topLevelItem(0));
    }

    // The number typed becomes the counter of the year, row or not.
    void setCounterByHand_data()
    {
        QTest::addColumn<bool>("withRow");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("stored");
        QTest::newRow("update") << true << "42" << 42;
        QTest::newRow("insert") << false << "1250" << 1250;
        QTest::newRow("empty is zero") << true << "" << 0;
    }

    void setCounterByHand()
    {
        QFETCH(bool, withRow);
        QFETCH(QString, typed);
        QFETCH(int, stored);
        const QString ddt = "Documenti di trasporto", anno = getOpzione("AnnoCorrente");
        const QString rid = QString::number(ridOf(ddt));
        const QString ofYear = "FK_NUMERATORE = " + rid + " AND ANNO = ¤" + anno + "¤";
        testdb::run("DELETE FROM Contatori WHERE " + ofYear);
        if (withRow)
            testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (" + rid + ", " + anno + ", 9)");
        Numeratori s;
        s.select(ddt);
        QCOMPARE(s.shown("txtNumero"), withRow ? QStringLiteral("9") : QStringLiteral("0"));
        s.type("txtNumero", typed);
        testdb::click(s.screen, "cmdCommand_2");
        QCOMPARE(testdb::count("Contatori", ofYear), 1);
        QCOMPARE(testdb::number("SELECT NUMERO FROM Contatori WHERE " + ofYear), stored);
        QCOMPARE(s.number(ddt), stored);
        QCOMPARE(s.list()->currentItem()->text(0), ddt);
    }

    // Only the counters of the option's year show; none for the year is 0.
    void listOfTheCurrentYear()
    {
        const QString anno = getOpzione("AnnoCorrente");
        const QString ordini = QString::number(ridOf("Ordini clienti"));
        const QString carichi = QString::number(ridOf("Carichi da fornitore"));
        testdb::run("UPDATE Contatori SET NUMERO = 31 WHERE FK_NUMERATORE = " + ordini + " AND ANNO = " + anno);
        testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (" + ordini + ", "
                    + QString::number(anno.toInt() - 1) + ", 500)");
        testdb::run("DELETE FROM Contatori WHERE FK_NUMERATORE = " + carichi + " AND ANNO = " + anno);
        Numeratori s;
        QCOMPARE(s.shown("lblAnno"), anno);
        QCOMPARE(s.list()->topLevelItemCount(), testdb::count("Numeratori"));
        QCOMPARE(s.number("Ordini clienti"), 31);
        QCOMPARE(s.number("Carichi da fornitore"), 0);
        // Loading selects the first item, by description: delete and write offered.
        QCOMPARE(s.list()->currentItem()->text(0), QStringLiteral("Carichi da fornitore"));
        QCOMPARE(s.offered(), QStringLiteral("011"));
    }

    void pagamentiPercentuali_data()
    {
        QTest::addColumn<QString>("acconto");
        QTest::addColumn<QStringList>("rate");
        QTest::addColumn<bool>("salvato");
        QTest::newRow("three thirds") << "0" << QStringList{"33,33", "33,33", "33,33"} << false;
        QTest::newRow("thirds and a cent") << "0" << QStringList{"33,33", "33,33", "33,34"} << true;
        QTest::newRow("down payment 100") << "100" << QStringList{"0"} << true;
        QTest::newRow("over 100") << "10" << QStringList{"50", "50"} << false;
        QTest::newRow("half and half") << "0" << QStringList{"50", "50"} << true;
    }

    void pagamentiPercentuali()
    {
        QFETCH(QString, acconto);
        QFETCH(QStringList, rate);
        QFETCH(bool, salvato);
        Pagamenti s(true, true, 0);
        fill(s, acconto, rate);
        ScriptedDialogs script;
        if (!salvato)
            script.expectMessage("Impossbile salvare questo tipo di pagamento.\r La percentuale dell'importo "
                                 "attribbuito alle rate + l'acconto non è esatto.");
        QCOMPARE(s.screen.saveRecord(), salvato);
        QCOMPARE(testdb::count("Pagamenti", "CODICE = ¤T1¤"), salvato ? 1 : 0);
        if (salvato)
            QCOMPARE(testdb::count("DettagliPagamenti", "FK_PAGAMENTO = " + s.rid()), rate.size());
    }

    // Instalments reload in order, are replaced, rebuilt by "Rimessa Diretta", deleted with the head.
    void pagamentiSaveReloadDelete()
    {
        Pagamenti s(true, true, 0);
        ScriptedDialogs script;
        script.expectMessage("Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                             " - Campo [Nr. Rate] Obbligatorio.");
        QVERIFY(!s.screen.saveRecord());
        fill(s, "10", {"40", "50"});
        QVERIFY(s.screen.saveRecord());
        const QString rid = s.rid();
        s.screen.newRecord();
        QCOMPARE(s.screen.rate().size(), 0);
        s.lookUp("txtCodice", "T1");
        QCOMPARE(s.rid(), rid);
        QCOMPARE(s.shown("txtAcconto"), QStringLiteral("10,00"));
        QCOMPARE(s.screen.rate().size(), 2);
        QCOMPARE(s.screen.rate().at(1).giorni + ' ' + s.screen.rate().at(1).percentuale, QStringLiteral("60 50,00"));
        s.set("chkRimessaDiretta", "");
        QCOMPARE(s.shown("txtNrRate"), QStringLiteral("1"));
        QCOMPARE(s.screen.rate().size(), 1);
        QCOMPARE(s.screen.rate().at(0).percentuale, QStringLiteral("0,00"));
        s.type("txtAcconto", "100");
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(testdb::count("DettagliPagamenti", "FK_PAGAMENTO = " + rid), 1);
        script.expectMessage("Eliminare il pagamento con codice T1?", vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(testdb::count("Pagamenti", "RID = " + rid), 0);
        QCOMPARE(testdb::count("DettagliPagamenti", "FK_PAGAMENTO = " + rid), 0);
    }

    // The globals shown, codes with descriptions; the folder's reports whatever the case of ".rpt".
    void opzioniLoad()
    {
        Opzioni s;
        QCOMPARE(QApplication::focusWidget(), s.get("txtAnnoCorrente"));
        QCOMPARE(s.shown("txtAnnoCorrente"), QString::number(QDate::currentDate().year()));
        for (const QString pair :
             {"txtDecimalAfter=2", "txtContoClienti=01001001", "lblContoClienti=Clienti Italia", "txtCliente=7",
              "lblCliente=Bottega Rossi s.n.c.", "lblIva=IVA 22%", "lblPagamento=Rimessa diretta",
              "lblDocConversione=Fattura differita", "txtMarcaPredefinita=", "txtVenditoreChar=%",
              "txtMesiPrezzoMedio=12", "optAvvisaSottoScorta=1", "optDistintaBase_0=1", "cmbNumeratore=Elenco speciale",
              "cmbReport=ElencoSpeciale.rpt"})
            QCOMPARE(pair.section('=', 0, 0) + '=' + s.shown(pair.section('=', 0, 0)), pair);
        QCOMPARE(s.get<QComboBox>("cmbReport")->count(), 3);
    }

    // OK writes the table, the globals and the settings, and nothing else.
    void opzioniOkSaves_data()
    {
        testdb::columns<QString>({"control", "input", "option", "expected"}); // option: a table row or "Section/Key"
        const auto row = [](const char* name, const char* control, const QString& input, const char* option,
                            const QString& expected) { QTest::newRow(name) << control << input << option << expected; };
        const QString footer = "L'IVA è esposta ai sensi dell'art. 21 ¤ \"5%\"";
        row("year", "txtAnnoCorrente", "2031", "AnnoCorrente", "2031");
        row("account", "txtContoFornitori", "01003001", "ContoFornitori", "#PianoConti:01003001");
        row("customer", "txtCliente", "9", "ClientePredefinito", "#Anagrafiche:9");
        row("supplier", "txtFornitore", "8", "Fornitore", "#Anagrafiche:8");
        row("code emptied", "txtIva", "", "RidIvaProdotti", "0");
        row("footer", "txtPiePagina", footer, "PiePagina", footer);
        row("empty agent prefix", "txtVenditoreChar", "", "VenditoreChar", "%");
        row("flag", "chkPrezzoMedio", "", "PrezzoMedio", "1");
        row("option pair on", "optBloccaSottoScorta", "", "BloccaSottoScorta", "1");
        row("option pair off", "optBloccaSottoScorta", "", "AvvisaSottoScorta", "0");
        row("kit print", "optDistintaBase_2", "", "TipoStampaDistinta", "2");
        row("numerator", "cmbNumeratore", "Fatture e note di credito", "NumeratoreElencoSpeciale", "#Numeratori:FAT");
        row("report", "cmbReport", "Listino.RPT", "ReportElencoSpeciale", "Listino.RPT");
        row("reader", "txtLaserChar", "#", "Opzioni/LaserChar", "#");
        row("bold", "chkUsaGrassetto", "", "Options/UsaGrassetto", "1");
    }

    void opzioniOkSaves()
    {
        FETCH_EACH(QString, control, input, option, expected);
        expected = resolve(expected);
        QVERIFY(!expected.isEmpty());
        Opzioni s;
        s.set(control, input);
        pressOk(s);
        QCOMPARE(s.screen.result(), int(QDialog::Accepted));
        QCOMPARE(optionText(gOptions(), option.section('/', -1)), expected);
        QCOMPARE(option.contains('/') ? machineSettings().value(option).toString() : storedOption(option), expected);
        QVERIFY2(changed() <= 2, qPrintable(QString::number(changed())));
    }

    // The browse button fills code and description; an unknown code is emptied and saved as none.
    void opzioniKeyFields_data()
    {
        testdb::columns<QString>({"control", "button", "code", "description", "unknown", "option"});
        const auto row = [](const char* name, const char* control, const char* button, const char* code,
                            const char* description, const char* unknown, const char* option) {
            QTest::newRow(name) << control << button << code << description << unknown << option;
        };
        row("customer", "txtCliente", "cmdSfoglia_2", "9", "Cartoleria Verdi", "999", "ClientePredefinito");
        row("a supplier is no customer", "txtCliente", "", "", "", "8", "ClientePredefinito");
        row("vat", "txtIva", "", "", "", "ZZ", "RidIvaProdotti");
        row("browse account", "txtContoFornitori", "cmdSfoglia_6", "01003001", "Cassa", "", "");
    }

    void opzioniKeyFields()
    {
        FETCH_EACH(QString, control, button, code, description, unknown, option);
        Opzioni s;
        const QString label = "lbl" + control.mid(3);
        ScriptedDialogs script;
        if (!button.isEmpty()) {
            script.expectDialog("frmRicerca", testdb::searchFor(code)); // the filter is the whole code
            s.set(button, {});
            QCOMPARE(s.shown({control, label}), (QStringList{code, description}));
        }
        if (unknown.isEmpty())
            return;
        QVERIFY(!s.shown(label).isEmpty());
        s.reveal(control);
        s.set(control, unknown);
        script.expectMessage("Codice: " + unknown + " inesistente!");
        QTest::keyClick(s.get(control), Qt::Key_Return); // Enter moves on, which looks the code up
        QCoreApplication::processEvents();
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown(control) + s.shown(label), QString());
        pressOk(s);
        QCOMPARE(storedOption(option), QStringLiteral("0"));
    }

    // A check box shows its panel, or enables the control it governs.
    void opzioniCheckBoxes_data()
    {
        testdb::columns<QString>({"check", "dependent"});
        QTest::addColumn<bool>("shows"); // false: enables
        for (const QString row : {"chkPrezzoMedio txtMesiPrezzoMedio 1", "chkSottoScorta optBloccaSottoScorta 1",
                                  "chkVenditeGiorniDiversi optAvvisaVenditeGiorniDiversi 1",
                                  "chkVenditoriObbligatori chkVenditoriBlocco 0"})
            QTest::newRow(qPrintable(row.section(' ', 0, 0)))
                << row.section(' ', 0, 0) << row.section(' ', 1, 1) << (row.section(' ', 2) == "1");
    }

    void opzioniCheckBoxes()
    {
        FETCH_EACH(QString, check, dependent);
        QFETCH(bool, shows);
        Opzioni s;
        QWidget* target = s.get(dependent);
        s.reveal(dependent);
        const auto active = [&] { return shows ? target->isVisible() : target->isEnabled(); };
        QVERIFY(!active()); // the model starts with every one of them off
        for (bool on : {true, false}) {
            s.key(check, Qt::Key_Space);
            QCOMPARE(active(), on);
        }
    }

    // Annulla closes and nothing changes: table, globals, settings, logo.
    void opzioniAnnulla()
    {
        const OptionGlobals before = gOptions();
        QTemporaryDir pictures;
        const QString picture = redPicture(pictures, QSize(60, 30));
        QVERIFY(!picture.isEmpty());
        {
            Opzioni s;
            s.set({"txtAnnoCorrente=1999", "txtPiePagina=altro", "chkBloccoPN=", "txtLaserChar=@"});
            ScriptedDialogs script;
            script.expectFile(picture);
            s.set("cmdLogoStretch", {});
            testdb::click(s.screen, "cmdAnnulla");
            QCOMPARE(s.screen.result(), int(QDialog::Rejected));
        }
        QCOMPARE(changed(), 0);
        for (const QString& nome : firmOptionNames())
            QCOMPARE(optionText(gOptions(), nome), optionText(before, nome));
        QVERIFY(!machineSettings().contains("Opzioni/LaserChar"));
        QVERIFY(!QFile::exists(logoazienda::percorso(m_reports.path())));
    }

    // A picture is fitted into the 4 x 9 cm box and written on OK; no picture, nothing.
    void opzioniLogo_data()
    {
        QTest::addColumn<QSize>("picture"); // empty: a text file
        QTest::addColumn<QPoint>("white");  // a point of the margin left around the picture
        QTest::newRow("wide") << QSize(400, 100) << QPoint(530, 10);
        QTest::newRow("tall") << QSize(100, 400) << QPoint(10, 236);
        QTest::newRow("small, same shape") << QSize(90, 40) << QPoint(-1, -1);
        QTest::newRow("unreadable") << QSize() << QPoint();
    }

    void opzioniLogo()
    {
        QFETCH(QSize, picture);
        QFETCH(QPoint, white);
        QTemporaryDir pictures;
        const QString file = picture.isEmpty() ? m_reports.filePath("leggimi.txt") : redPicture(pictures, picture);
        QVERIFY(!file.isEmpty());
        const QString logo = logoazienda::percorso(m_reports.path());
        {
            Opzioni s;
            ScriptedDialogs script;
            script.expectFile(file);
            if (picture.isEmpty())
                script.expectMessage("Impossibile leggere l'immagine ");
            s.set("cmdLogoStretch", {});
            QCOMPARE(s.get<QLabel>("pctImmagine")->pixmap().isNull(), picture.isEmpty());
            QVERIFY(!QFile::exists(logo));
            pressOk(s);
        }
        QCOMPARE(QFile::exists(logo), !picture.isEmpty());
        if (picture.isEmpty())
            return;
        const QImage written(logo);
        QCOMPARE(written.size(), QSize(1063, 472));
        QCOMPARE(written.dotsPerMeterX(), 11811); // 300 dpi: the box prints at 9 x 4 cm
        QCOMPARE(written.pixelColor(531, 236), QColor(Qt::red));
        // The margin is white; a picture of the box's shape fills it to the edges.
        QCOMPARE(written.pixelColor(white.x() >= 0 ? white : QPoint(2, 2)),
                 QColor(white.x() >= 0 ? Qt::white : Qt::red));
        Opzioni again;
        QVERIFY(!again.get<QLabel>("pctImmagine")->pixmap().isNull());
    }
};

QTEST_MAIN(TestRecordScreens)
#include "tst_recordscreens.moc"
