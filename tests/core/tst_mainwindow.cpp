// The main window, the dialogs of the shell and the options behind them,
// offscreen, on both back ends.
#include "common/apphome.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/modelseed.h"
#include "data/session.h"
#include "masterdata/frmopzioni.h"
#include "masterdata/masterdatascreens.h"
#include "screens/framework/crecordscreen.h"
#include "screens/framework/frameworkscreens.h"
#include "shell/frmcambiapw.h"
#include "shell/frmmain.h"
#include "shell/frmoptionserver.h"
#include "shell/frmwarning.h"
#include "shell/shellapp.h"
#include "shell/shellscreens.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QtTest>
#include <QtWidgets>

using namespace Qt::StringLiterals;
using testdb::ScriptedDialogs;

namespace {

// A child screen with unsaved changes: it refuses to close while `keep` is set.
class GuardedScreen : public QWidget
{
public:
    static inline bool keep = true;
    explicit GuardedScreen(QWidget* parent)
        : QWidget(parent)
    {
        setObjectName(u"frmProva"_s);
        setWindowTitle(u"Prova"_s);
    }

protected:
    void closeEvent(QCloseEvent* event) override { event->setAccepted(!keep); }
};

QStringList captions(const QList<QAction*>& actions)
{
    QStringList list;
    for (const QAction* a : actions)
        if (!a->isSeparator())
            list.append(a->text());
    return list;
}

// The document items of the "Documenti" menu, after its separator.
QList<QAction*> documentItems(const frmMain& main) { return main.mainMenu().menu(u"mnuDocumenti"_s)->actions().mid(3); }

// What the named control of a screen shows.
QString shown(const QWidget& parent, const QString& name)
{
    const QObject* control = parent.findChild<QObject*>(name);
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(control))
        return edit->toPlainText();
    if (const auto* combo = qobject_cast<const QComboBox*>(control))
        return combo->currentText();
    return control ? control->property("text").toString() : QString();
}

const QString kExit = u"Terminare l'esecuzione del programma?"_s;
const QString kNotYet = u": funzione non ancora disponibile in questa versione."_s;

// What each item of the menu does, as item=outcome: the child screen it opens
// ("screen" or "screen:argument"), "dialog:" and the modal dialog, "help:" and
// the page's anchor, "exit", or nothing yet (no outcome): then the status bar says so.
QList<std::pair<QString, QString>> menuItems()
{
    QList<std::pair<QString, QString>> items;
    const QString table =
        u"mnuEsci=exit mnuBanche=frmBanche mnuVenditori=frmVenditore mnuTipiDocumenti=frmTipoDocumento mnuIva=frmIva "
        "mnuNumeratori=frmNumeratori mnuPianoConti=frmPianoConti mnuCausali=frmCausali mnuPagamenti=frmPagamenti "
        "mnuRubrica=frmRubrica mnuFasceClienti=frmSimpleForm:mnuFasceClienti "
        "mnuCollezioni=frmSimpleForm:mnuCollezioni mnuOpzioni=dialog:frmOpzioni optServer=dialog:frmOptionServer "
        "mnuCambiaPW=dialog:frmCambiaPW mnuInfo=dialog:frmInformazioni mnuHelpIndex=help:indice "
        "mnuSommario=help:sommario mnuTrovaArgomento=help:argomenti mnuAnagrafica=frmAnagrafica mnuProdotti=frmProdotto "
        "mnuDistintaBase mnuMovimenti mnuCatSconti=frmCategoriaSconti mnuScontiImmediati mnuListini mnuPNota mnuEstrattoClienti "
        "mnuEstrattoFornitore mnuEstrattoGenerico mnuEstrattoTotale mnuRiepilogoScadenze mnuRiepilogoMovimenti "
        "mnuGiacenze mnuStoricoProdotto mnuCategoriaValoreMagazzino mnuStampaClienti mnuStampaFornitori "
        "mnuStampaProdotti mnuEsportaClienti mnuEsportaFornitori mnuSellOut mnuDocWizard mnuStampaBarCode "
        "mnuVariazionePrezziProdotti mnuImportaListini mnuImportaProdotti mnuRicalcoloGiacenze mnuComputerList "
        "mnuDBCompact mnuDBBackup mnuRpristinaBackup mnuUpdateDB mnuQuery mnuPatch1_9_21 mnuRipristinaCampiDB "
        "mnuGeneraBarCode mnuCheckUpgrade"_s;
    for (const QString& entry : table.split(u' '))
        items.append({entry.section(u'=', 0, 0), entry.section(u'=', 1)});
    for (int i = 4; i <= 12; ++i)
        items.append({u"mnuTab_%1"_s.arg(i), u"frmSimpleForm:mnuTab_%1"_s.arg(i)});
    for (int i : {0, 1, 3, 4, 5, 6, 7, 8, 9}) // 3 to 9: the seeded document types
        items.append({u"mnudocumento_%1"_s.arg(i), QString()});
    return items;
}

} // namespace

class TestMainWindow : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        setupDesktop();
        frmWarning::install();
        registerShellScreens();
        registerMasterdataScreens();
        registerFrameworkScreens();
    }

    void documentMenu()
    {
        frmMain main;
        const QStringList seeded{"Carico da fornitore",        "Documento di trasporto", "Fattura di vendita",
                                 "Fattura differita",          "Nota di credito",        "Ordine cliente",
                                 "Trasferimento tra magazzini"};
        QMenu* dropDown = main.documentDropDown();
        QCOMPARE(captions(documentItems(main)), seeded);
        QCOMPARE(captions(dropDown->actions()), QStringList{"Seleziona Documento esistente..."} + seeded);
        QCOMPARE(dropDown->actions().first()->objectName(), u"D_0"_s);
        // Until the document screen comes, the drop-down's entries say so.
        for (QAction* entry : dropDown->actions()) {
            main.statusBar()->clearMessage();
            entry->trigger();
            QCOMPARE(main.statusBar()->currentMessage(), QString(entry->text() + kNotYet));
        }

        // A type marked HIDEMENU leaves the menu and the drop-down once a
        // screen tells that the types changed; filling twice adds nothing.
        testdb::run(u"UPDATE TipoDocumenti SET HIDEMENU = 1 WHERE CODICE = ¤NC¤"_s);
        screens::notifyDocumentTypesChanged();
        screens::notifyDocumentTypesChanged();
        QStringList visible = seeded;
        visible.removeAll(u"Nota di credito"_s);
        QCOMPARE(captions(documentItems(main)), visible);
        QCOMPARE(dropDown->actions().size(), visible.size() + 1);

        // No type at all: the placeholder stays, disabled.
        testdb::run(u"UPDATE TipoDocumenti SET HIDEMENU = 1 WHERE RID > 0"_s);
        main.fillMenuDocumenti();
        QCOMPARE(captions(documentItems(main)), QStringList{"(Nessun Documento)"});
        QVERIFY(!documentItems(main).first()->isEnabled());
        QCOMPARE(dropDown->actions().size(), 1);

        testdb::run(u"UPDATE TipoDocumenti SET HIDEMENU = 0 WHERE RID > 0"_s);
        main.fillMenuDocumenti();
        QCOMPARE(captions(documentItems(main)), seeded);
        QVERIFY(documentItems(main).first()->isEnabled());
    }

    void menuAndToolbar()
    {
        loadOptionGlobals();
        {
            frmMain main;
            const MainMenu& menu = main.mainMenu();
            // The print-shop items are hidden in this edition.
            for (const char* hidden : {"mnuOrdini", "mnuTab_0", "mnuTab_1", "mnuTab_2", "mnuTab_3"})
                QVERIFY2(!menu.action(QLatin1String(hidden))->isVisible(), hidden);
            QVERIFY(menu.action(u"mnuTab_4"_s)->isVisible());
            QVERIFY(!menu.action(u"mnuCambiaPW"_s)->icon().isNull());
            QStringList keys, pictures; // each button its own picture
            for (const QAction* a : main.toolbar()->actions()) {
                keys << a->objectName();
                pictures << a->icon().name();
            }
            QVERIFY(!keys.isEmpty() && !keys.contains(u"VenditaBanco"_s));
            QVERIFY2(!pictures.contains(QString()), qPrintable(pictures.join(u',')));
            QCOMPARE(QSet<QString>(pictures.cbegin(), pictures.cend()).size(), pictures.size());
            QCOMPARE(shown(main, u"stbMain_0"_s), u"Anno Corrente: "_s + QString::number(QDate::currentDate().year()));
            QVERIFY(shown(main, u"stbMain_2"_s).contains(u" - "_s));
        }
        // The counter-sales button appears with its program.
        QDir(programFolder()).mkpath(u"prgOrvantisClientVB"_s);
        QFile program(programFile(u"prgOrvantisClientVB/prgOrvantisClientVB"_s));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.close();
        program.setPermissions(program.permissions() | QFileDevice::ExeOwner);
        const auto remove = qScopeGuard([&program] { program.remove(); });
        QCOMPARE(frmMain().toolbar()->actions().last()->objectName(), u"VenditaBanco"_s);
    }

    void everyIconKeyHasAnIcon()
    {
        for (const QString& key : menuIconKeys())
            QVERIFY2(!menuIcon(key).isNull(), qPrintable(key));
    }

    // Every item of the menu, chosen: its screen opens (a child window with
    // the program's icon), or its dialog, or its help page; an item whose
    // screen comes in a later version says so in the status bar.
    void menu_data()
    {
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("outcome");
        for (const auto& [item, outcome] : menuItems())
            QTest::newRow(qPrintable(item)) << item << outcome;
    }
    void menu()
    {
        QFETCH(QString, item);
        QFETCH(QString, outcome);
        frmMain main;
        ScriptedDialogs script;
        if (outcome.startsWith("dialog:"_L1))
            script.expectDialog(outcome.mid(7), {});
        else if (outcome == "exit"_L1)
            script.expectMessage(kExit, vb::No);
        QAction* action = main.mainMenu().action(item);
        QVERIFY(action && action->isEnabled());
        action->trigger();
        QVERIFY(script.allAnswered());

        const QString status = main.statusBar()->currentMessage();
        const QList<QMdiSubWindow*> windows = main.mdiArea()->subWindowList();
        if (outcome.isEmpty()) {
            QCOMPARE(status, QString(action->text().remove(u'&') + kNotYet));
            QVERIFY(windows.isEmpty());
            return;
        }
        QVERIFY2(status.isEmpty(), qPrintable(status));
        if (outcome.startsWith("help:"_L1)) {
            QCOMPARE(script.openedUrls.size(), 1);
            QCOMPARE(script.openedUrls.first().fragment(), outcome.mid(5));
            QVERIFY(QFile::exists(script.openedUrls.first().toLocalFile()));
        }
        QCOMPARE(windows.size(), outcome.startsWith("frm"_L1) ? 1 : 0);
        if (windows.isEmpty())
            return;
        QCOMPARE(windows.first()->widget()->objectName(), outcome.section(u':', 0, 0));
        QCOMPARE(windows.first()->widget()->property("screenArgument").toString(), outcome.section(u':', 1));
        const QIcon icon = windows.first()->windowIcon();
        QVERIFY(!icon.isNull());
        QCOMPARE(icon.pixmap(32).toImage(), QApplication::windowIcon().pixmap(32).toImage());
    }

    // The table above leaves out no item that a user can choose.
    void menuTableIsComplete()
    {
        frmMain main;
        QSet<QString> listed;
        for (const auto& [item, outcome] : menuItems())
            listed.insert(item);
        QStringList missing;
        for (const QAction* action : main.mainMenu().actions())
            if (!action->isSeparator() && action->isVisible() && !main.mainMenu().popGrid()->actions().contains(action)
                && !listed.contains(action->objectName()))
                missing.append(action->objectName());
        QCOMPARE(missing, QStringList());
    }

    // At their smallest, resized by hand or tiled in a small frame, the
    // screens show every field whole and at least eight characters wide (or
    // as wide as all it takes), in the usual font and in a larger one.
    void smallestWindows_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<int>("points"); // 0: the usual font
        for (const char* name :
             {"frmCausali", "frmTipoDocumento", "frmIva", "frmPianoConti", "frmBanche", "frmOpzioni"})
            for (const int points : {0, 12})
                QTest::addRow("%s, %s", name, points ? "large font" : "usual font") << QString(name) << points;
    }
    void smallestWindows()
    {
        QFETCH(QString, screen);
        QFETCH(int, points);
        const QFont usual = QApplication::font();
        const auto restore = qScopeGuard([usual] { QApplication::setFont(usual); });
        if (points > 0) {
            QFont large = usual;
            large.setPointSize(points);
            QApplication::setFont(large);
        }
        frmMain main;
        main.resize(640, 480);
        main.show();
        std::unique_ptr<frmOpzioni> dialog;
        QWidget* window = nullptr;
        if (screen == "frmOpzioni"_L1) {
            window = (dialog = std::make_unique<frmOpzioni>()).get();
            window->show();
        } else {
            window = main.openScreen(screen)->parentWidget();
            main.mdiArea()->tileSubWindows();
        }
        window->resize(1, 1);
        QCoreApplication::processEvents();
        for (const QLineEdit* field : window->findChildren<QLineEdit*>()) {
            if (!field->isVisibleTo(window))
                continue;
            const QRect shown(field->mapTo(window, QPoint(0, 0)), field->size());
            // Eight characters, or all that the field takes when fewer.
            const int needed = qMin(8, field->maxLength()) * field->fontMetrics().averageCharWidth();
            QVERIFY2(field->width() >= needed && window->rect().contains(shown),
                     qPrintable(QString::asprintf("%s: %d wide, needs %d, window %d", qPrintable(field->objectName()),
                                                  field->width(), needed, window->width())));
        }
    }

    // F4 beside a look-up field whose screen is open already: a blank one
    // is taken; one with work in it asks, No keeps the work, Yes starts the
    // new record. The record saved there comes back into the field.
    void editorAlreadyOpen_data()
    {
        QTest::addColumn<QString>("typed"); // in the open warehouses
        QTest::addColumn<int>("answer");    // 0: no question
        QTest::newRow("blank, taken") << QString() << 0;
        QTest::newRow("typed, kept") << u"NEG7"_s << int(vb::No);
        QTest::newRow("typed, given up") << u"NEG7"_s << int(vb::Yes);
    }
    void editorAlreadyOpen()
    {
        QFETCH(QString, typed);
        QFETCH(int, answer);
        const auto cleanup = qScopeGuard([] { testdb::run(u"DELETE FROM Magazzini WHERE CODICE = ¤NEG8¤"_s); });
        frmMain main;
        main.show();
        auto* magazzini = qobject_cast<cRecordScreen*>(main.openScreen(u"frmSimpleForm"_s, u"mnuTab_6"_s));
        QVERIFY(magazzini);
        if (!typed.isEmpty())
            testdb::typeInto(*magazzini, u"txtCodice"_s, typed);
        QWidget* causale = main.openScreen(u"frmCausali"_s);
        causale->findChild<QRadioButton*>(u"optDestinazione_3"_s)->setChecked(true);

        ScriptedDialogs script;
        if (answer != 0)
            script.expectMessage(
                u"La finestra Magazzino è già aperta: abbandonare le modifiche e creare un nuovo record?"_s, answer);
        testdb::click(*causale, u"cmdNuovoMagazzinoDest"_s);
        QVERIFY(script.allAnswered());
        QCOMPARE(main.mdiArea()->subWindowList().size(), 2); // no second copy
        QCOMPARE(shown(*magazzini, u"txtCodice"_s), answer == vb::No ? typed : QString());

        testdb::typeInto(*magazzini, u"txtCodice"_s, u"NEG8"_s);
        testdb::typeInto(*magazzini, u"txtDescrizione"_s, u"Negozio otto"_s);
        QVERIFY(magazzini->saveRecord());
        magazzini->parentWidget()->close();
        QCOMPARE(shown(*causale, u"txtMagazzinoDest"_s), answer == vb::No ? QString() : u"NEG8"_s);
    }

    // Closing asks first; a child screen that refuses stops it after the
    // question. While an error report is open the program closes without asking.
    void closing()
    {
        const auto create = [](QWidget* parent, const QVariant&) -> QWidget* { return new GuardedScreen(parent); };
        screens::registerScreen(u"frmProva"_s, {screens::Kind::Child, create, true});
        GuardedScreen::keep = true;
        frmMain main;
        main.show();
        QWidget* first = main.openScreen(u"frmProva"_s);
        QVERIFY(first);
        QCOMPARE(main.openScreen(u"frmProva"_s), first); // one window for the program
        QCOMPARE(main.mdiArea()->subWindowList().size(), 1);

        ScriptedDialogs script;
        for (const int answer : {vb::No, vb::Yes}) {
            script.expectMessage(kExit, answer);
            QVERIFY(!main.close());
            QVERIFY(main.isVisible() && script.allAnswered());
        }
        GuardedScreen::keep = false;
        script.expectMessage(kExit, vb::Yes);
        QVERIFY(main.close());

        main.show();
        bool closed = false;
        const ErrorReportHandler previous = gError().setHandler([&](const ErrorReport&) {
            closed = main.close();
            return 1;
        });
        notifyError(u"test"_s, u"closing"_s, QString());
        gError().setHandler(previous);
        QVERIFY(closed);
    }

    // A failed statement's report, shown: the details open on demand.
    // (What reaches Err.log, tst_errorlog shows.)
    void errorReport()
    {
        ScriptedDialogs script;
        script.expectDialog(u"frmWarning"_s, [](QDialog& d) {
            auto* avanzate = d.findChild<QPushButton*>(u"cmdAvanzate"_s);
            auto* details = d.findChild<QPlainTextEdit*>(u"txtAvanzate"_s);
            QCOMPARE(avanzate->text(), u"Avanzate >>"_s);
            QVERIFY(!details->isVisible());
            testdb::click(d, u"cmdAvanzate"_s);
            QCOMPARE(avanzate->text(), u"<< Ripristina"_s);
            QVERIFY(details->isVisible() && details->toPlainText().contains(u"TabellaCheNonEsiste"_s));
            QCOMPARE(shown(d, u"txtModulo"_s), u"cAdoSqlServer.executeSQL -> prova"_s);
            QVERIFY(shown(d, u"lblNumero"_s).toLongLong() != 0);
            testdb::click(d, u"cmdOK"_s);
        });
        QVERIFY(!gAdoSqlServer().executeSQL(u"DELETE FROM TabellaCheNonEsiste"_s, u"prova"_s));
        QVERIFY(script.allAnswered());
        gAdoSqlServer().closeAll(); // a failed statement keeps its connection, as the data layer does
    }

    // Without details the report says so; its exit button leaves the
    // program, Esc goes on with the work.
    void warningExitButton()
    {
        bool left = false;
        gError().setLeaveHook([&left] { left = true; });
        ScriptedDialogs script;
        script.expectDialog(u"frmWarning"_s, [](QDialog& d) {
            QCOMPARE(shown(d, u"txtAvanzate"_s), u"Nessuna Informazione."_s);
            QCOMPARE(shown(d, u"cmdAnnulla"_s), u"Esci da Orvantis"_s);
            testdb::click(d, u"cmdAnnulla"_s);
        });
        notifyError(u"test"_s, u"warningExitButton"_s, u"   "_s);
        QVERIFY(left);
        left = false;
        script.expectDialog(u"frmWarning"_s, [](QDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); });
        notifyError(u"test"_s, u"warningExitButton"_s, QString());
        QVERIFY(!left);
        frmWarning::install();
    }

    // The box shown, and the option afterwards: refused changes keep the dialog open.
    void changePassword_data()
    {
        QTest::addColumn<QStringList>("typed"); // old, new, new again
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("stored");
        const QString pw = schema::defaultPassword();
        const auto row = [](const char* name, const QStringList& typed, const QString& message, const QString& stored) {
            QTest::newRow(name) << typed << message << stored;
        };
        const QString done = u"Password modicifata!"_s;
        row("accepted, blanks trimmed", {" " + pw, "  nuovapass ", "nuovapass"}, done, u"nuovapass"_s);
        row("blank inside accepted", {pw, "ab cd ef", "ab cd ef"}, done, u"ab cd ef"_s);
        row("wrong old", {"altra", "nuovapass", "nuovapass"}, u"password di accesso inserita non è corretta"_s, pw);
        row("new fields differ", {pw, "nuovapass", "nuovapasS"}, u"le password inserite non coincidono"_s, pw);
        row("seven characters", {pw, "1234567", "1234567"}, u"Non meno di 8 caratteri"_s, pw);
        row("wrong old comes first", {"altra", "a", "b"}, u"non è corretta"_s, pw);
    }
    void changePassword()
    {
        QFETCH(QStringList, typed);
        QFETCH(QString, message);
        QFETCH(QString, stored);
        setOpzione(u"Amministratore"_s, schema::defaultPassword());
        const auto restore = qScopeGuard([] { setOpzione(u"Amministratore"_s, schema::defaultPassword()); });
        ScriptedDialogs script;
        script.expectMessage(message, vb::OK);
        frmCambiaPW dialog;
        dialog.show();
        const QStringList fields{"txtOld", "txtNewPw", "txtNewPw2"};
        for (int i = 0; i < 3; ++i)
            testdb::typeInto(dialog, fields.at(i), typed.at(i));
        QTest::keyClick(dialog.findChild<QLineEdit*>(fields.last()), Qt::Key_Return); // Enter confirms
        QCOMPARE(getOpzione(u"Amministratore"_s), stored);
        QCOMPARE(dialog.isVisible(), stored == schema::defaultPassword());
    }

    // A file picked in the connection settings moves the reports beside it;
    // "Annulla" keeps nothing. A data source of the user's odbc.ini, chosen
    // with user and password, is saved and shown back.
    void serverSettings()
    {
        QTemporaryDir home;
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", home.path().toUtf8());
        const auto restore = qScopeGuard([&oldHome] {
            qputenv("HOME", oldHome);
            machineSettings().remove(u"Server"_s);
        });
        QFile ini(home.filePath(u".odbc.ini"_s));
        QVERIFY(ini.open(QIODevice::WriteOnly) && ini.write("[Magazzino]\nDriver=MariaDB\nServer=127.0.0.1\n") > 0);
        ini.close();
        gSession().tipoServer = 1;
        ScriptedDialogs script;
        {
            testdb::Screen<frmOptionServer> s;
            const QString file = QDir::temp().filePath(u"altra/Ditta.db"_s);
            script.expectFile(file);
            script.expectMessage(u"Aggiornare automaticamente il percorso dei report di stampa?"_s, vb::Yes);
            s.set(u"cmdSfoglia"_s, {});
            QCOMPARE(s.shown(u"txtReportPath"_s), QDir::temp().filePath(u"altra/AccessReports/"_s));
            QCOMPARE(s.shown(u"txtReportConnect"_s), u"Provider=SQLite;Data Source="_s + file);
            s.set(u"cmdCancel"_s, {});
            QVERIFY(!s.screen.saved());
            QVERIFY(!machineSettings().contains(u"Server/Path"_s));
        }
        testdb::Screen<frmOptionServer> s;
        s.set(u"optMySql"_s, {});
        s.set(u"cmbDSN"_s, u"Magazzino"_s);
        s.set(u"txtUserName"_s, u"ufficio"_s);
        s.set(u"txtPassword"_s, u"s3greta"_s);
        const QString expected = u"DSN=Magazzino;UID=ufficio;PWD=s3greta"_s;
        QCOMPARE(s.shown(u"txtConnectionString"_s), expected);
        QCOMPARE(s.shown(u"txtReportConnect"_s), expected);
        script.expectMessage(u"sarà necessario riavviare il programma."_s, vb::OK);
        s.set(u"cmdOk"_s, {});
        for (const char* key : {"Server/MySql", "Server/RptConnectionMySql"})
            QCOMPARE(machineSettings().value(QLatin1String(key)).toString(), expected);
        QCOMPARE(machineSettings().value(u"Server/DBType"_s).toString(), u"2"_s);
        readServerSettings();
        QCOMPARE(gSession().strDescrizioneDB, u"MySql: DSN=Magazzino"_s);

        // Reopened, the dialog shows the stored data source back.
        frmOptionServer again;
        QCOMPARE(shown(again, u"cmbDSN"_s), u"Magazzino"_s);
        QCOMPARE(shown(again, u"txtUserName"_s), u"ufficio"_s);
    }

    // The option store: a new name is inserted, then updated, a text kept as
    // typed; a missing option is reported and reads as empty. The globals
    // come from the options and from the machine's settings.
    void optionStore()
    {
        testdb::ErrorRecorder errors;
        setOpzione(u"ProvaNuova"_s, u"1"_s);
        setOpzione(u"ProvaNuova"_s, u"2"_s);
        QCOMPARE(getOpzione(u"ProvaNuova"_s), u"2"_s);
        QCOMPARE(testdb::count(u"Opzioni"_s, u"NOME = ¤ProvaNuova¤"_s), 1);
        const QString footer = u"Contributo CONAI assolto ove dovuto.\r\nL'IVA è esposta a norma dell'art. 21 ¤ 5%"_s;
        setOpzione(u"PiePagina"_s, footer);
        QCOMPARE(getOpzione(u"PiePagina"_s), footer);
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(getOpzione(u"NonEsiste"_s), QString());
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().module, u"bOrvantis"_s);
        QCOMPARE(errors.reports.first().procedure, u"getOpzione"_s);

        setOpzione(u"VenditoreChar"_s, QString());
        setOpzione(u"DecimaliDopo"_s, u"3"_s);
        setOpzione(u"MesiPrezzoMedio"_s, u"non numerico"_s);
        machineSettings().setValue(u"Options/UsaGrassetto"_s, u"1"_s);
        machineSettings().setValue(u"Opzioni/LaserChar"_s, u"#"_s);
        loadOptionGlobals();
        QCOMPARE(errors.reports.size(), 1);
        const OptionGlobals& o = gOptions();
        QCOMPARE(o.venditoreChar, u"%"_s); // empty reads as "%"
        QCOMPARE(o.decimaliDopo, 3);
        QCOMPARE(o.mesiPrezzoMedio, 0); // not a number reads as 0
        QVERIFY(o.contoClienti > 0);
        QVERIFY(o.usaGrassetto);
        QCOMPARE(o.laserChar, u"#"_s);
        QVERIFY(!o.rigaLibera.isEmpty() && !o.distintaBase.isEmpty() && o.rigaLibera != o.distintaBase);
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
