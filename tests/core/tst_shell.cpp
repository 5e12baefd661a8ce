// The shell, offscreen, on both back ends: the start (connection, its settings, login, one copy per program folder),
// the main window, the dialogs of the shell and the options behind them.
#include "common/apphome.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/modelseed.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "documents/documentscreens.h"
#include "masterdata/frmopzioni.h"
#include "masterdata/masterdatascreens.h"
#include "printing/anteprima.h"
#include "printing/barcodescreens.h"
#include "printing/cartellareport.h"
#include "printing/printscreens.h"
#include "screens/framework/crecordscreen.h"
#include "screens/framework/frameworkscreens.h"
#include "shell/frmcambiapw.h"
#include "shell/frmmain.h"
#include "shell/frmoptionserver.h"
#include "shell/frmwarning.h"
#include "shell/shellapp.h"
#include "shell/shellscreens.h"
#include "shell/singleinstance.h"
#include "shell/startsequence.h"
#include "stock/stockscreens.h"
#include "support/screendriver.h"

#include <QtSql>
#include <QtTest>
#include <QtWidgets>

using namespace Qt::StringLiterals;
using testdb::ScriptedDialogs;

namespace {

const QString kSaved = u"Le impostazioni correnti sono state salvate."_s;
const QString kExit = u"Terminare l'esecuzione del programma?"_s;
const QString kNotYet = u": funzione non ancora disponibile in questa versione."_s;
QString shown(const QWidget& parent, const QString& name)
{
    const QObject* control = parent.findChild<QObject*>(name);
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(control))
        return edit->toPlainText();
    if (const auto* combo = qobject_cast<const QComboBox*>(control))
        return combo->currentText();
    return control ? control->property("text").toString() : QString();
}

// The columns of a data table, by type and name.
using testdb::columns;
// No pause, a key of its own; a password, when given, answers the login.
ShellOptions quickStart(const QString& password = QString())
{
    static int counter = 0;
    const QString key = u"orv-test-%1-%2"_s.arg(QCoreApplication::applicationPid()).arg(++counter);
    return {.hasPassword = !password.isNull(), .password = password, .pauseMs = 0, .instanceKey = key};
}

ScriptedDialogs::Driver press(const QString& button)
{
    return [button](QDialog& d) { testdb::click(d, button); };
}

ScriptedDialogs::Driver typePassword(const QString& password = schema::defaultPassword())
{
    return [password](QDialog& d) {
        testdb::typeInto(d, u"txtPassword"_s, password);
        testdb::click(d, u"cmdOK"_s);
    };
}

// The error report of `module` (or of a module it begins), confirmed.
ScriptedDialogs::Driver warningOf(const QString& module, bool whole = true)
{
    return [module, whole](QDialog& d) {
        const QString modulo = shown(d, u"txtModulo"_s);
        QVERIFY2(whole ? modulo == module : modulo.startsWith(module), qPrintable(modulo));
        testdb::click(d, u"cmdOK"_s);
    };
}

// The database of the running test, and the settings that name it.
testdb::TestDatabase& db() { return testdb::shared(testdb::BackendTest::backend()); }
void useDatabase() { saveServerConnection(db().tipoServer(), db().connectionString()); }
// The connection settings answered with a database file or a server connection.
ScriptedDialogs::Driver chooseDatabase(int tipoServer = -1, const QString& connection = QString())
{
    if (tipoServer < 0)
        return chooseDatabase(db().tipoServer(), db().connectionString());
    return [tipoServer, connection](QDialog& d) {
        const bool file = tipoServer == TipoServer::FileDb;
        testdb::click(d, file ? u"optAccess"_s : u"optMySql"_s);
        testdb::typeInto(d, file ? u"txtFileDBAccess"_s : u"txtConnectionString"_s,
                         file ? fileDbPath(connection) : connection);
        testdb::click(d, u"cmdOk"_s);
    };
}

// A file database on disk: its bytes, "(none)" when missing, and SQLite's journal files beside it.
QStringList diskState(const QString& path)
{
    QFile file(path);
    QStringList state{file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().toHex()) : u"(none)"_s};
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        state << u"%1: %2"_s.arg(QLatin1String(suffix)).arg(QFileInfo::exists(path + QLatin1String(suffix)));
    return state;
}

// A SQLite database of someone else: a table of its own, none of this program's.
bool writeForeignDatabase(const QString& path)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"foreign"_s);
        db.setDatabaseName(path);
        ok = db.open() && QSqlQuery(db).exec(u"CREATE TABLE Clienti (Nome TEXT)"_s)
            && QSqlQuery(db).exec(u"INSERT INTO Clienti VALUES ('Rossi')"_s);
    }
    QSqlDatabase::removeDatabase(u"foreign"_s);
    return ok;
}

// A child screen with unsaved changes: it refuses to close while `keep` is set.
struct GuardedScreen : QWidget
{
    using QWidget::QWidget;
    static inline bool keep = true;
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
// What each menu item does, as item=outcome: the child screen it opens ("screen" or "screen:argument"), "dialog:" and
// the modal dialog, "help:" and the page's anchor, "exit", or nothing yet (no outcome).
QList<std::pair<QString, QString>> menuItems()
{
    QList<std::pair<QString, QString>> items;
    const QString table =
        u"mnuEsci=exit mnuBanche=frmBanche mnuVenditori=frmVenditore mnuTipiDocumenti=frmTipoDocumento mnuIva=frmIva "
        "mnuNumeratori=frmNumeratori mnuPianoConti=frmPianoConti mnuCausali=frmCausali mnuPagamenti=frmPagamenti "
        "mnuRubrica=frmRubrica mnuFasceClienti=frmSimpleForm:mnuFasceClienti "
        "mnuCollezioni=frmSimpleForm:mnuCollezioni mnuOpzioni=dialog:frmOpzioni optServer=dialog:frmOptionServer "
        "mnuCambiaPW=dialog:frmCambiaPW mnuInfo=dialog:frmInformazioni mnuHelpIndex=help:indice "
        "mnuSommario=help:sommario mnuTrovaArgomento=help:argomenti mnuAnagrafica=frmAnagrafica "
        "mnuProdotti=frmProdotto "
        "mnuDistintaBase=frmDistintaBase mnuMovimenti=frmMovimento:0 mnuCatSconti=frmCategoriaSconti "
        "mnuScontiImmediati mnuListini "
        "mnuPNota "
        "mnuEstrattoClienti "
        "mnuEstrattoFornitore mnuEstrattoGenerico mnuEstrattoTotale mnuRiepilogoScadenze mnuRiepilogoMovimenti "
        "mnuGiacenze mnuStoricoProdotto mnuCategoriaValoreMagazzino mnuStampaClienti=frmPreview "
        "mnuStampaFornitori=frmPreview mnuStampaProdotti=frmPreview mnuEsportaClienti mnuEsportaFornitori mnuSellOut "
        "mnuDocWizard mnuStampaBarCode=frmStampaBarCode "
        "mnuVariazionePrezziProdotti mnuImportaListini mnuImportaProdotti mnuRicalcoloGiacenze=frmRicalcoloGiacenze "
        "mnuDatiDimostrativi "
        "mnuComputerList "
        "mnuDBCompact mnuDBBackup mnuRpristinaBackup mnuUpdateDB mnuQuery mnuPatch1_9_21 mnuRipristinaCampiDB "
        "mnuGeneraBarCode=frmGeneraBarCodeIntoProdotti mnuCheckUpgrade"_s;
    for (const QString& entry : table.split(u' '))
        items.append({entry.section(u'=', 0, 0), entry.section(u'=', 1)});
    for (int i = 4; i <= 12; ++i)
        items.append({u"mnuTab_%1"_s.arg(i), u"frmSimpleForm:mnuTab_%1"_s.arg(i)});
    // 0 the wizard and 1 the search of a stored document, not yet here; 3 to 9 the seeded document types in the
    // order of their captions, each opening the document screen on its type.
    items.append({u"mnudocumento_0"_s, QString()});
    items.append({u"mnudocumento_1"_s, QString()});
    const int tipi[] = {6, 4, 1, 2, 3, 5, 7};
    for (int i = 3; i <= 9; ++i)
        items.append({u"mnudocumento_%1"_s.arg(i), u"frmMovimento:%1"_s.arg(tipi[i - 3])});
    return items;
}

} // namespace

class TestShell : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        setupDesktop();
        frmWarning::install();
        gError().setLeaveHook({});
        registerShellScreens();
        registerMasterdataScreens();
        registerDocumentScreens();
        registerStockScreens();
        registerPrintScreens();
        registerPreviewScreens();
        registerBarcodeScreens();
        registerFrameworkScreens();
    }

    void cleanup()
    {
        BackendTest::cleanup();
        machineSettings().remove(u"Server"_s);
    }

    void firstRunUsesTheFileBesideTheProgram()
    {
        QTemporaryDir folder;
        const auto restoreFolder = qScopeGuard([home = programFolder()] { setProgramFolder(home); });
        setProgramFolder(folder.path());
        const QString file = programFile(u"Orvantis.db"_s);
        ScriptedDialogs script;
        script.expectDialog(u"frmPw"_s, [file](QDialog& d) {
            QVERIFY(shown(d, u"lblDB"_s).contains(file)); // the login shows the file it is about to open
            typePassword()(d);
        });
        StartSequence start(quickStart());
        std::unique_ptr<frmMain> main = start.run();
        QVERIFY(main && main->isVisible());
        QCOMPARE(gSession().tipoServer, TipoServer::FileDb);
        QCOMPARE(fileDbPath(gSession().strConnessione), file);
        QVERIFY(QFileInfo(file).size() > 0);
        QCOMPARE(machineSettings().value(QString(QChar(0)) + u"/path"_s).toString(), programFolder());
        QCOMPARE(gOptions().amministratore, schema::defaultPassword()); // option globals loaded
    }

    // Every attempt but the last is refused. Without its row, or Null, the password option lets nobody in: every
    // attempt is refused after the report of the unreadable option, until the login is cancelled.
    void login_data()
    {
        columns<QString, QString, QStringList>("stored", "damage", "typed");
        const QString pw = schema::defaultPassword();
        const QStringList anything{QString(), u"   "_s, pw, u"Null"_s};
        const QString option = u" WHERE NOME = ¤Amministratore¤"_s;
        QTest::newRow("wrong, then right with blanks") << pw << QString() << QStringList{"sbagliata", "  " + pw + " "};
        QTest::newRow("empty refused") << pw << QString() << QStringList{QString(), pw};
        QTest::newRow("empty option takes empty") << QString() << QString() << QStringList{"   "};
        QTest::newRow("case matters") << pw << QString() << QStringList{pw.toUpper(), pw};
        QTest::newRow("no option row") << pw << "DELETE FROM Opzioni" + option << anything;
        QTest::newRow("Null option") << pw << "UPDATE Opzioni SET VALORE = Null" + option << anything;
    }

    void login()
    {
        QFETCH(QString, stored);
        QFETCH(QString, damage);
        QFETCH(QStringList, typed);
        useDatabase();
        setOpzione(u"Amministratore"_s, stored);
        const auto restore = qScopeGuard([] { setOpzione(u"Amministratore"_s, schema::defaultPassword()); });
        const bool damaged = !damage.isEmpty();
        if (damaged)
            testdb::run(damage);
        ScriptedDialogs script;
        for (qsizetype i = 0; i < typed.size(); ++i) {
            script.expectDialog(u"frmPw"_s, typePassword(typed.at(i)));
            if (damaged)
                script.expectDialog(u"frmWarning"_s, warningOf(u"bOrvantis.getOpzione"_s));
            if (damaged || i + 1 < typed.size())
                script.expectMessage(u"Password non corretta."_s, vb::OK);
        }
        if (damaged)
            script.expectDialog(u"frmPw"_s, press(u"cmdAnnulla"_s));
        StartSequence start(quickStart());
        QCOMPARE(bool(start.run()), !damaged);
        QVERIFY(script.allAnswered());
        if (damaged)
            QCOMPARE(start.exitCode(), 0);
    }

    // A back end out of reach, or a database file missing (but at the first start on the program folder), empty, not a
    // database or someone else's, opens the connection settings: a file is named in a message first and left exactly as
    // it was. The database chosen there is used at once, without a restart.
    void refusedDatabase_data()
    {
        columns<QString, QString>("kind", "says"); // says: empty for no message before the settings
        const auto row = [](const char* kind, const char* says) {
            QTest::newRow(kind) << QString(kind) << QString(says);
        };
        row("no server", "");
        row("mistyped path", "non esiste");
        row("default file gone after a start", "non esiste");
        row("default file, back end chosen before", "non esiste");
        row("0 bytes", "vuoto (0 byte)");
        row("a text file", "non è un database");
        row("another program's database", "non di Orvantis");
    }

    void refusedDatabase()
    {
        QFETCH(QString, kind);
        QFETCH(QString, says);
        const int tipoServer = db().tipoServer();
        QTemporaryDir folder;
        QString path = folder.filePath(u"Ditta.db"_s);
        const auto restoreFolder = qScopeGuard([home = programFolder()] { setProgramFolder(home); });
        if (kind == "no server"_L1) {
            machineSettings().setValue(u"Server/DBType"_s, u"2"_s); // the expert prompt: no server
        } else if (kind.startsWith("default"_L1)) {                 // a program folder of its own, without its file
            setProgramFolder(folder.path());
            path = programFile(u"Orvantis.db"_s);
            if (kind.endsWith("start"_L1))
                saveRunningInfo(u"0.0.0"_s); // an earlier start on this folder
            else
                machineSettings().setValue(u"Server/DBType"_s, u"1"_s);
        } else {
            if (kind.startsWith("another"_L1)) {
                QVERIFY(writeForeignDatabase(path));
            } else if (!kind.startsWith("mistyped"_L1)) {
                QFile file(path);
                QVERIFY(file.open(QIODevice::WriteOnly));
                if (kind.endsWith("text file"_L1))
                    file.write("Fattura n. 1 del 02/01/2024\nTotale 122,00\n");
            }
            saveServerConnection(TipoServer::FileDb, fileDbConnectionString(path));
        }
        const QStringList before = diskState(path);
        ScriptedDialogs script;
        if (!says.isEmpty())
            script.expectMessage(path, vb::OK);
        script.expectDialog(u"frmOptionServer"_s, chooseDatabase());
        script.expectMessage(kSaved, vb::OK);
        script.expectDialog(u"frmPw"_s, typePassword());
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        if (!says.isEmpty())
            QVERIFY2(script.shown.first().contains(says), qPrintable(script.shown.first()));
        QVERIFY(!script.shown.join(u'\n').contains(u"riavviare"_s));
        QCOMPARE(gSession().tipoServer, tipoServer);
        QCOMPARE(diskState(path), before);
    }

    // A file chosen at the login is checked first: an empty one is named, left alone, and the login comes back.
    void fileChosenAtLoginIsChecked()
    {
        useDatabase();
        QTemporaryDir folder;
        const QString empty = folder.filePath(u"Vuoto.db"_s);
        QVERIFY(QFile(empty).open(QIODevice::WriteOnly));
        auto advancedThenPassword = [](QDialog& d) {
            testdb::click(d, u"cmdAdvanced"_s);
            typePassword()(d);
        };
        ScriptedDialogs script;
        script.expectDialog(u"frmPw"_s, advancedThenPassword);
        script.expectDialog(u"frmOptionServer"_s, chooseDatabase(TipoServer::FileDb, fileDbConnectionString(empty)));
        script.expectMessage(kSaved, vb::OK);
        script.expectMessage(empty, vb::OK);
        script.expectDialog(u"frmPw"_s, advancedThenPassword);
        script.expectDialog(u"frmOptionServer"_s, chooseDatabase());
        script.expectMessage(kSaved, vb::OK);
        StartSequence start(quickStart());
        QVERIFY(start.run());
        QVERIFY(script.allAnswered());
        QCOMPARE(QFileInfo(empty).size(), 0);
        QVERIFY(!QFileInfo::exists(empty + u"-wal"_s));
    }

    // The second failure to connect is reported, then ends the run.
    void secondFailureEnds()
    {
        machineSettings().setValue(u"Server/DBType"_s, u"2"_s);
        ScriptedDialogs script;
        script.expectDialog(u"frmOptionServer"_s, press(u"cmdCancel"_s));
        script.expectDialog(u"frmWarning"_s, warningOf(u"cAdoSqlServer.Connect -> N/D"_s, false));
        script.expectMessage(u"Impossibile connettere il DataBase!"_s, vb::OK);
        StartSequence start(quickStart());
        QVERIFY(!start.run());
        QCOMPARE(start.exitCode(), 1);
    }

    // --password answers the first login: a wrong one, with nobody to ask again, ends the run; the right one starts a
    // copy that later starts bring forward, before any splash or login.
    void passwordSwitchAndOneCopy()
    {
        useDatabase();
        ShellOptions wrong = quickStart(u"sbagliata"_s);
        wrong.interactive = false;
        ScriptedDialogs script;
        script.expectMessage(u"Password non corretta."_s, vb::OK);
        StartSequence refused(wrong);
        QVERIFY(!refused.run());
        QCOMPARE(refused.exitCode(), 1);
        const ShellOptions options = quickStart(schema::defaultPassword());
        auto first = std::make_unique<StartSequence>(options);
        std::unique_ptr<frmMain> main = first->run();
        QVERIFY(main);
        QSignalSpy raised(first->instance(), &SingleInstance::raiseRequested);
        ShellOptions again = options;
        again.hasPassword = false; // a login would fail the script
        StartSequence second(again);
        QVERIFY(!second.run());
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(raised.wait(3000));
        // When the first copy is gone, the next start is a first copy again.
        main.reset();
        first.reset();
        SingleInstance third(options.instanceKey);
        QVERIFY(third.claim());
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
        // Each type opens a document screen of its own; the search of a stored document is not here yet.
        for (QAction* entry : dropDown->actions())
            entry->trigger();
        QCOMPARE(main.mdiArea()->subWindowList().size(), seeded.size());
        QCOMPARE(main.statusBar()->currentMessage(), QString(dropDown->actions().first()->text() + kNotYet));
        // A type marked HIDEMENU leaves both once a screen tells of the change; filling twice adds nothing.
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
        for (const QString& key : menuIconKeys())
            QVERIFY2(!menuIcon(key).isNull(), qPrintable(key));
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
        QVERIFY(program.open(QIODevice::WriteOnly)
                && program.setPermissions(program.permissions() | QFileDevice::ExeOwner));
        const auto remove = qScopeGuard([&program] { program.remove(); });
        QCOMPARE(frmMain().toolbar()->actions().last()->objectName(), u"VenditaBanco"_s);
    }

    // Every menu item opens its screen (a child window with the program's icon), dialog or help page, or says in the
    // status bar that it comes later. Row "all": the table leaves out no item a user can choose.
    void menu_data()
    {
        columns<QString, QString>("item", "outcome");
        for (const auto& [item, outcome] : menuItems())
            QTest::newRow(qPrintable(item)) << item << outcome;
        QTest::newRow("all") << QString() << QString();
    }

    void menu()
    {
        QFETCH(QString, item);
        QFETCH(QString, outcome);
        frmMain main;
        if (item.isEmpty()) {
            QSet<QString> listed;
            for (const auto& entry : menuItems())
                listed.insert(entry.first);
            QStringList missing;
            for (const QAction* a : main.mainMenu().actions())
                if (!a->isSeparator() && a->isVisible() && !main.mainMenu().popGrid()->actions().contains(a)
                    && !listed.contains(a->objectName()))
                    missing.append(a->objectName());
            QCOMPARE(missing, QStringList());
            return;
        }
        // The list prints read the shipped templates of the report folder.
        if (outcome == "frmPreview"_L1) {
            if (gSession().strReportPath.isEmpty())
                gSession().strReportPath = programFile(u"AccessReports"_s);
            QVERIFY(installaModelliReport(gSession().strReportPath) >= 0);
        }
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

    // At their smallest, resized or tiled in a small frame, in the usual font or a larger one, the screens show every
    // field whole and at least eight characters wide (or as wide as all it takes).
    void smallestWindows_data()
    {
        columns<QString, int>("screen", "points"); // points: 0 for the usual font
        for (const char* name :
             {"frmCausali", "frmTipoDocumento", "frmIva", "frmPianoConti", "frmBanche", "frmOpzioni", "frmAnagrafica",
              "frmProdotto", "frmPagamenti", "frmRubrica", "frmCategoriaSconti", "frmRangeSconti", "frmMovimento",
              "frmDistintaBase", "frmRicalcoloGiacenze", "frmStampaBarCode", "frmGeneraBarCodeIntoProdotti"})
            for (const int points : {0, 12})
                QTest::addRow("%s, %s", name, points ? "large font" : "usual font") << QString(name) << points;
    }

    void smallestWindows()
    {
        QFETCH(QString, screen);
        QFETCH(int, points);
        const auto restore = qScopeGuard([usual = QApplication::font()] { QApplication::setFont(usual); });
        QFont font = QApplication::font();
        if (points > 0)
            font.setPointSize(points);
        QApplication::setFont(font);
        frmMain main;
        main.resize(640, 480);
        main.show();
        const auto dialog = screen == "frmOpzioni"_L1 ? std::make_unique<frmOpzioni>() : nullptr;
        QWidget* window = dialog ? dialog.get() : main.openScreen(screen)->parentWidget();
        window->show();
        main.mdiArea()->tileSubWindows();
        window->resize(1, 1);
        QCoreApplication::processEvents();
        for (const QLineEdit* field : window->findChildren<QLineEdit*>()) {
            if (!field->isVisibleTo(window))
                continue;
            const QRect shown(field->mapTo(window, QPoint(0, 0)), field->size());
            const int needed = qMin(8, field->maxLength()) * field->fontMetrics().averageCharWidth();
            QVERIFY2(field->width() >= needed && window->rect().contains(shown),
                     qPrintable(QString::asprintf("%s: %d wide, needs %d, window %d", qPrintable(field->objectName()),
                                                  field->width(), needed, window->width())));
        }
    }

    // F4 beside a look-up field whose screen is open: a blank one is taken; one with work in it asks (No keeps the
    // work, Yes starts the new record). The record saved there comes back into the field.
    void editorAlreadyOpen_data()
    {
        columns<QString, int>("typed", "answer"); // typed in the open warehouses; answer 0: no question
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

    // Closing asks first; a child screen that refuses stops it after the question. While an error report is open the
    // program closes without asking.
    void closing()
    {
        const auto create = [](QWidget* parent, const QVariant&) -> QWidget* {
            auto* screen = new GuardedScreen(parent);
            screen->setObjectName(u"frmProva"_s);
            return screen;
        };
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

    // A failed statement's report opens its details on demand; without details it says so. Its exit button leaves the
    // program, Esc goes on with the work.
    void warning()
    {
        bool left = false;
        gError().setLeaveHook([&left] { left = true; });
        const auto restore = qScopeGuard([] {
            gError().setLeaveHook({});
            frmWarning::install();
        });
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
        gAdoSqlServer().closeAll(); // a failed statement keeps its connection, as the data layer does
        script.expectDialog(u"frmWarning"_s, [](QDialog& d) {
            QCOMPARE(shown(d, u"txtAvanzate"_s), u"Nessuna Informazione."_s);
            QCOMPARE(shown(d, u"cmdAnnulla"_s), u"Esci da Orvantis"_s);
            testdb::click(d, u"cmdAnnulla"_s);
        });
        notifyError(u"test"_s, u"warning"_s, u"   "_s);
        QVERIFY(left);
        left = false;
        script.expectDialog(u"frmWarning"_s, [](QDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); });
        notifyError(u"test"_s, u"warning"_s, QString());
        QVERIFY(!left && script.allAnswered());
    }

    // The box shown, and the option afterwards: refused changes keep the dialog open.
    void changePassword_data()
    {
        columns<QStringList, QString, QString>("typed", "message", "stored"); // typed: old, new, new again
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

    // A file picked in the connection settings moves the reports beside it; "Annulla" keeps nothing. A data source of
    // the user's odbc.ini, with user and password, is saved and shown back.
    void serverSettings()
    {
        QTemporaryDir home;
        const auto restore = qScopeGuard([old = qgetenv("HOME")] { qputenv("HOME", old); });
        qputenv("HOME", home.path().toUtf8());
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
        frmOptionServer again; // reopened, it shows the stored data source back
        QCOMPARE(shown(again, u"cmbDSN"_s), u"Magazzino"_s);
        QCOMPARE(shown(again, u"txtUserName"_s), u"ufficio"_s);
    }

    // A new option is inserted, then updated, its text kept as typed; a missing one is reported and reads as empty. The
    // globals come from the options and from the machine's settings.
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
        QCOMPARE(errors.reports.first().module + u'.' + errors.reports.first().procedure, u"bOrvantis.getOpzione"_s);
        setOpzione(u"VenditoreChar"_s, QString());
        setOpzione(u"DecimaliDopo"_s, u"3"_s);
        setOpzione(u"MesiPrezzoMedio"_s, u"non numerico"_s);
        machineSettings().setValue(u"Options/UsaGrassetto"_s, u"1"_s);
        machineSettings().setValue(u"Opzioni/LaserChar"_s, u"#"_s);
        loadOptionGlobals();
        QCOMPARE(errors.reports.size(), 1);
        const OptionGlobals& o = gOptions();
        // An empty agent prefix reads as "%", a number that is not as 0.
        QCOMPARE((QList<QVariant>{o.venditoreChar, o.decimaliDopo, o.mesiPrezzoMedio, o.usaGrassetto, o.laserChar}),
                 (QList<QVariant>{u"%"_s, 3, 0, true, u"#"_s}));
        QVERIFY(o.contoClienti > 0);
        QVERIFY(!o.rigaLibera.isEmpty() && !o.distintaBase.isEmpty() && o.rigaLibera != o.distintaBase);
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
