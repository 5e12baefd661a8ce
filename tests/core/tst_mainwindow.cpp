// The main window and the dialogs of the shell, offscreen, on both back ends.
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
#include "support/scripteddialogs.h"
#include "support/testdb.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QToolBar>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

// A child screen with unsaved changes: it refuses to close while `keep` is set.
class GuardedScreen : public QWidget
{
public:
    static inline bool keep = true;
    using QWidget::QWidget;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (keep)
            event->ignore();
    }
};

QStringList captions(const QList<QAction*>& actions)
{
    QStringList list;
    for (const QAction* a : actions) {
        if (!a->isSeparator())
            list.append(a->text());
    }
    return list;
}

// The document items of the "Documenti" menu, after its separator.
QList<QAction*> documentItems(const frmMain& main)
{
    return main.mainMenu().menu(QStringLiteral("mnuDocumenti"))->actions().mid(3);
}

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

const QString kExit = QStringLiteral("Terminare l'esecuzione del programma?");
const QString kNotYet = QStringLiteral(": funzione non ancora disponibile in questa versione.");

// What each item of the menu does: the child screen it opens ("screen" or
// "screen:argument"), "dialog:" and the modal dialog, "help:" and the page's
// anchor, "exit", or nothing yet (empty): then the status bar says so.
QList<std::pair<QString, QString>> menuItems()
{
    QList<std::pair<QString, QString>> items{
        {"mnuEsci", "exit"},
        {"mnuAnagrafica", ""},
        {"mnuProdotti", ""},
        {"mnuDistintaBase", ""},
        {"mnuMovimenti", ""},
        {"mnuPagamenti", ""},
        {"mnuBanche", "frmBanche"},
        {"mnuVenditori", "frmVenditore"},
        {"mnuTipiDocumenti", "frmTipoDocumento"},
        {"mnuIva", "frmIva"},
        {"mnuFasceClienti", "frmSimpleForm:mnuFasceClienti"},
        {"mnuCatSconti", ""},
        {"mnuScontiImmediati", ""},
        {"mnuCollezioni", "frmSimpleForm:mnuCollezioni"},
        {"mnuListini", ""},
        {"mnuNumeratori", "frmNumeratori"},
        {"mnuRubrica", ""},
        {"mnuPNota", ""},
        {"mnuPianoConti", "frmPianoConti"},
        {"mnuCausali", "frmCausali"},
        {"mnudocumento_0", ""},
        {"mnudocumento_1", ""},
        {"mnuEstrattoClienti", ""},
        {"mnuEstrattoFornitore", ""},
        {"mnuEstrattoGenerico", ""},
        {"mnuEstrattoTotale", ""},
        {"mnuRiepilogoScadenze", ""},
        {"mnuRiepilogoMovimenti", ""},
        {"mnuGiacenze", ""},
        {"mnuStoricoProdotto", ""},
        {"mnuCategoriaValoreMagazzino", ""},
        {"mnuStampaClienti", ""},
        {"mnuStampaFornitori", ""},
        {"mnuStampaProdotti", ""},
        {"mnuEsportaClienti", ""},
        {"mnuEsportaFornitori", ""},
        {"mnuSellOut", ""},
        {"mnuOpzioni", "dialog:frmOpzioni"},
        {"optServer", "dialog:frmOptionServer"},
        {"mnuDocWizard", ""},
        {"mnuStampaBarCode", ""},
        {"mnuVariazionePrezziProdotti", ""},
        {"mnuImportaListini", ""},
        {"mnuImportaProdotti", ""},
        {"mnuRicalcoloGiacenze", ""},
        {"mnuComputerList", ""},
        {"mnuDBCompact", ""},
        {"mnuDBBackup", ""},
        {"mnuRpristinaBackup", ""},
        {"mnuUpdateDB", ""},
        {"mnuQuery", ""},
        {"mnuPatch1_9_21", ""},
        {"mnuRipristinaCampiDB", ""},
        {"mnuGeneraBarCode", ""},
        {"mnuCambiaPW", "dialog:frmCambiaPW"},
        {"mnuHelpIndex", "help:indice"},
        {"mnuSommario", "help:sommario"},
        {"mnuTrovaArgomento", "help:argomenti"},
        {"mnuInfo", "dialog:frmInformazioni"},
        {"mnuCheckUpgrade", ""},
    };
    for (int i = 4; i <= 12; ++i)
        items.append({"mnuTab_" + QString::number(i), "frmSimpleForm:mnuTab_" + QString::number(i)});
    for (int i = 3; i <= 9; ++i) // the seeded document types
        items.append({"mnudocumento_" + QString::number(i), ""});
    return items;
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        setupDesktop();
        frmWarning::install();
        registerShellScreens();
        registerMasterdataScreens();
        registerFrameworkScreens();
    }
    void cleanupTestCase() { testdb::dropShared(); }
    // A failed statement keeps its connection on the stack, as the data layer does.
    void cleanup() { gAdoSqlServer().closeAll(); }

    void documentMenu_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void documentMenu()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        frmMain main;
        const QStringList seeded{QStringLiteral("Carico da fornitore"),
                                 QStringLiteral("Documento di trasporto"),
                                 QStringLiteral("Fattura di vendita"),
                                 QStringLiteral("Fattura differita"),
                                 QStringLiteral("Nota di credito"),
                                 QStringLiteral("Ordine cliente"),
                                 QStringLiteral("Trasferimento tra magazzini")};
        QCOMPARE(captions(documentItems(main)), seeded);
        QCOMPARE(captions(main.documentDropDown()->actions()),
                 QStringList{QStringLiteral("Seleziona Documento esistente...")} + seeded);
        QCOMPARE(main.documentDropDown()->actions().first()->objectName(), QStringLiteral("D_0"));
        QCOMPARE(documentItems(main).first()->objectName(), QStringLiteral("mnudocumento_3"));
        QCOMPARE(documentItems(main).last()->objectName(), QStringLiteral("mnudocumento_9"));
        // Until the document screen comes, the drop-down's entries say so.
        for (QAction* entry : main.documentDropDown()->actions()) {
            main.statusBar()->clearMessage();
            entry->trigger();
            QCOMPARE(main.statusBar()->currentMessage(), QString(entry->text() + kNotYet));
        }

        // A type marked HIDEMENU leaves the menu and the drop-down once a
        // screen tells that the types changed; filling twice adds nothing.
        testdb::run(QStringLiteral("UPDATE TipoDocumenti SET HIDEMENU = 1 WHERE CODICE = ¤NC¤"));
        screens::notifyDocumentTypesChanged();
        screens::notifyDocumentTypesChanged();
        QStringList visible = seeded;
        visible.removeAll(QStringLiteral("Nota di credito"));
        QCOMPARE(captions(documentItems(main)), visible);
        QCOMPARE(main.documentDropDown()->actions().size(), visible.size() + 1);

        // No type at all: the placeholder stays, disabled.
        testdb::run(QStringLiteral("UPDATE TipoDocumenti SET HIDEMENU = 1 WHERE RID > 0"));
        main.fillMenuDocumenti();
        QCOMPARE(captions(documentItems(main)), QStringList{QStringLiteral("(Nessun Documento)")});
        QVERIFY(!documentItems(main).first()->isEnabled());
        QCOMPARE(main.documentDropDown()->actions().size(), 1);

        testdb::run(QStringLiteral("UPDATE TipoDocumenti SET HIDEMENU = 0 WHERE RID > 0"));
        main.fillMenuDocumenti();
        QCOMPARE(captions(documentItems(main)), seeded);
        QVERIFY(documentItems(main).first()->isEnabled());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    void menuAndToolbar()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        loadOptionGlobals();
        auto buttons = [](const frmMain& main) {
            QStringList keys;
            for (const QAction* a : main.toolbar()->actions())
                keys.append(a->objectName());
            return keys;
        };
        {
            frmMain main;
            const MainMenu& menu = main.mainMenu();
            // The print-shop items are hidden in this edition.
            QVERIFY(!menu.action(QStringLiteral("mnuOrdini"))->isVisible());
            for (int i = 0; i < 4; ++i)
                QVERIFY(!menu.action(QStringLiteral("mnuTab_") + QString::number(i))->isVisible());
            QVERIFY(menu.action(QStringLiteral("mnuTab_4"))->isVisible());
            QVERIFY(!menu.action(QStringLiteral("mnuCambiaPW"))->icon().isNull());
            QVERIFY(!buttons(main).isEmpty() && !buttons(main).contains(QStringLiteral("VenditaBanco")));
            // Each button its own picture.
            QStringList pictures;
            for (const QAction* a : main.toolbar()->actions())
                pictures.append(a->icon().name());
            QVERIFY2(!pictures.contains(QString()), qPrintable(pictures.join(QLatin1Char(','))));
            QCOMPARE(QSet<QString>(pictures.cbegin(), pictures.cend()).size(), pictures.size());
            QCOMPARE(shown(main, QStringLiteral("stbMain_0")),
                     QStringLiteral("Anno Corrente: ") + QString::number(QDate::currentDate().year()));
            QVERIFY(shown(main, QStringLiteral("stbMain_2")).contains(QStringLiteral(" - ")));
        }
        // The counter-sales button appears with its program.
        QDir(programFolder()).mkpath(QStringLiteral("prgOrvantisClientVB"));
        QFile program(programFile(QStringLiteral("prgOrvantisClientVB/prgOrvantisClientVB")));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.close();
        program.setPermissions(program.permissions() | QFileDevice::ExeOwner);
        frmMain main;
        QCOMPARE(buttons(main).last(), QStringLiteral("VenditaBanco"));
        program.remove();
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
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        frmMain main;
        ScriptedDialogs script;
        if (outcome.startsWith(QLatin1String("dialog:")))
            script.expectDialog(outcome.mid(7), {});
        else if (outcome == QLatin1String("exit"))
            script.expectMessage(kExit, vb::No);
        QAction* action = main.mainMenu().action(item);
        QVERIFY(action && action->isEnabled());
        action->trigger();
        QVERIFY(script.allAnswered());

        const QString status = main.statusBar()->currentMessage();
        const QList<QMdiSubWindow*> windows = main.mdiArea()->subWindowList();
        if (outcome.isEmpty()) {
            QCOMPARE(status, QString(action->text().remove(QLatin1Char('&')) + kNotYet));
            QVERIFY(windows.isEmpty());
            return;
        }
        QVERIFY2(status.isEmpty(), qPrintable(status));
        if (outcome.startsWith(QLatin1String("help:"))) {
            QCOMPARE(script.openedUrls.size(), 1);
            QCOMPARE(script.openedUrls.first().fragment(), outcome.mid(5));
            QVERIFY(QFile::exists(script.openedUrls.first().toLocalFile()));
        }
        if (!outcome.startsWith(QLatin1String("frm"))) {
            QVERIFY(windows.isEmpty());
            return;
        }
        QCOMPARE(windows.size(), 1);
        QWidget* screen = windows.first()->widget();
        QCOMPARE(screen->objectName(), outcome.section(QLatin1Char(':'), 0, 0));
        QCOMPARE(screen->property("screenArgument").toString(), outcome.section(QLatin1Char(':'), 1));
        const QIcon icon = windows.first()->windowIcon();
        QVERIFY(!icon.isNull());
        QCOMPARE(icon.pixmap(32).toImage(), QApplication::windowIcon().pixmap(32).toImage());
    }

    // The table above leaves out no item that a user can choose.
    void menuTableIsComplete()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
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
                QTest::addRow("%s, %s", name, points ? "large font" : "usual font")
                    << QString::fromLatin1(name) << points;
    }
    void smallestWindows()
    {
        QFETCH(QString, screen);
        QFETCH(int, points);
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
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
        if (screen == QLatin1String("frmOpzioni")) {
            dialog = std::make_unique<frmOpzioni>();
            dialog->show();
            window = dialog.get();
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
                     qPrintable(QStringLiteral("%1: %2 wide, needs %3, window %4")
                                    .arg(field->objectName())
                                    .arg(field->width())
                                    .arg(needed)
                                    .arg(window->width())));
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
        QTest::newRow("typed, kept") << QStringLiteral("NEG7") << int(vb::No);
        QTest::newRow("typed, given up") << QStringLiteral("NEG7") << int(vb::Yes);
    }
    void editorAlreadyOpen()
    {
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        const auto cleanup = qScopeGuard([] { testdb::run("DELETE FROM Magazzini WHERE CODICE = ¤NEG8¤"); });
        frmMain main;
        main.show();
        auto* magazzini = qobject_cast<cRecordScreen*>(main.openScreen("frmSimpleForm", QStringLiteral("mnuTab_6")));
        QVERIFY(magazzini);
        if (!typed.isEmpty())
            testdb::typeInto(*magazzini, QStringLiteral("txtCodice"), typed);
        QWidget* causale = main.openScreen(QStringLiteral("frmCausali"));
        causale->findChild<QRadioButton*>(QStringLiteral("optDestinazione_3"))->setChecked(true);

        ScriptedDialogs script;
        if (answer != 0)
            script.expectMessage(
                "La finestra Magazzino è già aperta: abbandonare le modifiche e creare un nuovo record?", answer);
        testdb::click(*causale, QStringLiteral("cmdNuovoMagazzinoDest"));
        QVERIFY(script.allAnswered());
        QCOMPARE(main.mdiArea()->subWindowList().size(), 2); // no second copy
        QCOMPARE(shown(*magazzini, QStringLiteral("txtCodice")), answer == vb::No ? typed : QString());

        testdb::typeInto(*magazzini, QStringLiteral("txtCodice"), QStringLiteral("NEG8"));
        testdb::typeInto(*magazzini, QStringLiteral("txtDescrizione"), QStringLiteral("Negozio otto"));
        QVERIFY(magazzini->saveRecord());
        magazzini->parentWidget()->close();
        QCOMPARE(shown(*causale, "txtMagazzinoDest"), answer == vb::No ? QString() : QStringLiteral("NEG8"));
    }

    // Closing asks first; a child screen that refuses stops it after the
    // question. While an error report is open the program closes without asking.
    void closing()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        screens::registerScreen(QStringLiteral("frmProva"),
                                {screens::Kind::Child,
                                 [](QWidget* parent, const QVariant&) -> QWidget* {
                                     auto* screen = new GuardedScreen(parent);
                                     screen->setObjectName(QStringLiteral("frmProva"));
                                     screen->setWindowTitle(QStringLiteral("Prova"));
                                     return screen;
                                 },
                                 true});
        frmMain main;
        main.show();
        QWidget* first = main.openScreen(QStringLiteral("frmProva"));
        QVERIFY(first);
        QCOMPARE(main.openScreen(QStringLiteral("frmProva")), first); // one window for the program
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
        notifyError(QStringLiteral("test"), QStringLiteral("closing"), QString());
        gError().setHandler(previous);
        QVERIFY(closed);
    }

    // A failed statement: Err.log gets the report in its layout, the warning shows it.
    void errorReport_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void errorReport()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        QFile::remove(programFile(QStringLiteral("Err.log")));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) {
            auto* avanzate = d.findChild<QPushButton*>(QStringLiteral("cmdAvanzate"));
            auto* details = d.findChild<QPlainTextEdit*>(QStringLiteral("txtAvanzate"));
            QCOMPARE(avanzate->text(), QStringLiteral("Avanzate >>"));
            QVERIFY(!details->isVisible());
            testdb::click(d, QStringLiteral("cmdAvanzate"));
            QCOMPARE(avanzate->text(), QStringLiteral("<< Ripristina"));
            QVERIFY(details->isVisible() && details->toPlainText().contains(QStringLiteral("TabellaCheNonEsiste")));
            QCOMPARE(shown(d, QStringLiteral("txtModulo")), QStringLiteral("cAdoSqlServer.executeSQL -> prova"));
            QVERIFY(shown(d, QStringLiteral("lblNumero")).toLongLong() != 0);
            testdb::click(d, QStringLiteral("cmdOK"));
        });
        QVERIFY(
            !gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM TabellaCheNonEsiste"), QStringLiteral("prova")));
        QVERIFY(script.allAnswered());

        QFile log(programFile(QStringLiteral("Err.log")));
        QVERIFY(log.open(QIODevice::ReadOnly | QIODevice::Text));
        const QString text = QString::fromUtf8(log.readAll());
        QVERIFY2(QRegularExpression(
                     QStringLiteral("^\\*{80}\nData   \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d\nErr\\.N\\. "
                                    "-?\\d+\nDescr\\. [^\n]+\nSource [^\n]*\n"
                                    "Modulo cAdoSqlServer\\.executeSQL -> prova\nAvanz\\. [^\n]*TabellaCheNonEsiste"))
                     .match(text)
                     .hasMatch(),
                 qPrintable(text));
    }

    // Without details the report says so; its exit button leaves the
    // program, Esc goes on with the work.
    void warningExitButton()
    {
        bool left = false;
        gError().setLeaveHook([&left] { left = true; });
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) {
            QCOMPARE(shown(d, QStringLiteral("txtAvanzate")), QStringLiteral("Nessuna Informazione."));
            QCOMPARE(shown(d, QStringLiteral("cmdAnnulla")), QStringLiteral("Esci da Orvantis"));
            testdb::click(d, QStringLiteral("cmdAnnulla"));
        });
        notifyError(QStringLiteral("test"), QStringLiteral("warningExitButton"), QStringLiteral("   "));
        QVERIFY(left);
        left = false;
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); });
        notifyError(QStringLiteral("test"), QStringLiteral("warningExitButton"), QString());
        QVERIFY(!left);
        frmWarning::install();
    }

    // The box shown, and the option afterwards: refused changes keep the dialog open.
    void changePassword_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QStringList>("typed"); // old, new, new again
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("stored");
        const QString pw = schema::defaultPassword();
        const QString done = QStringLiteral("Password modicifata!");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, QStringLiteral("accepted, blanks trimmed"))
                << QStringList{QStringLiteral(" ") + pw, QStringLiteral("  nuovapass "), QStringLiteral("nuovapass")}
                << done << QStringLiteral("nuovapass");
            testdb::row(b, QStringLiteral("blank inside accepted"))
                << QStringList{pw, QStringLiteral("ab cd ef"), QStringLiteral("ab cd ef")} << done
                << QStringLiteral("ab cd ef");
            testdb::row(b, QStringLiteral("wrong old"))
                << QStringList{QStringLiteral("altra"), QStringLiteral("nuovapass"), QStringLiteral("nuovapass")}
                << QStringLiteral("password di accesso inserita non è corretta") << pw;
            testdb::row(b, QStringLiteral("new fields differ"))
                << QStringList{pw, QStringLiteral("nuovapass"), QStringLiteral("nuovapasS")}
                << QStringLiteral("le password inserite non coincidono") << pw;
            testdb::row(b, QStringLiteral("seven characters"))
                << QStringList{pw, QStringLiteral("1234567"), QStringLiteral("1234567")}
                << QStringLiteral("Non meno di 8 caratteri") << pw;
            testdb::row(b, QStringLiteral("wrong old comes first"))
                << QStringList{QStringLiteral("altra"), QStringLiteral("a"), QStringLiteral("b")}
                << QStringLiteral("non è corretta") << pw;
        }
    }
    void changePassword()
    {
        QFETCH(QString, backend);
        QFETCH(QStringList, typed);
        QFETCH(QString, message);
        QFETCH(QString, stored);
        QVERIFY(testdb::shared(backend).isValid());
        setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword());
        const auto restore =
            qScopeGuard([] { setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword()); });
        ScriptedDialogs script;
        script.expectMessage(message, vb::OK);
        frmCambiaPW dialog;
        dialog.show();
        const QStringList fields{QStringLiteral("txtOld"), QStringLiteral("txtNewPw"), QStringLiteral("txtNewPw2")};
        for (int i = 0; i < 3; ++i)
            testdb::typeInto(dialog, fields.at(i), typed.at(i));
        QTest::keyClick(dialog.findChild<QLineEdit*>(fields.last()), Qt::Key_Return); // Enter confirms
        QCOMPARE(getOpzione(QStringLiteral("Amministratore")), stored);
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
            machineSettings().remove(QStringLiteral("Server"));
        });
        QFile ini(home.filePath(QStringLiteral(".odbc.ini")));
        QVERIFY(ini.open(QIODevice::WriteOnly) && ini.write("[Magazzino]\nDriver=MariaDB\nServer=127.0.0.1\n") > 0);
        ini.close();
        gSession().tipoServer = 1;
        ScriptedDialogs script;
        {
            frmOptionServer dialog;
            dialog.show();
            const QString file = QDir::temp().filePath(QStringLiteral("altra/Ditta.db"));
            script.expectFile(file);
            script.expectMessage(QStringLiteral("Aggiornare automaticamente il percorso dei report di stampa?"),
                                 vb::Yes);
            testdb::click(dialog, QStringLiteral("cmdSfoglia"));
            QCOMPARE(shown(dialog, QStringLiteral("txtReportPath")),
                     QDir::temp().filePath(QStringLiteral("altra/AccessReports/")));
            QCOMPARE(shown(dialog, QStringLiteral("txtReportConnect")),
                     QStringLiteral("Provider=SQLite;Data Source=") + file);
            testdb::click(dialog, QStringLiteral("cmdCancel"));
            QVERIFY(!dialog.saved());
            QVERIFY(!machineSettings().contains(QStringLiteral("Server/Path")));
        }
        frmOptionServer dialog;
        dialog.show();
        testdb::click(dialog, QStringLiteral("optMySql"));
        auto* dsn = dialog.findChild<QComboBox*>(QStringLiteral("cmbDSN"));
        QVERIFY(dsn->findText(QStringLiteral("Magazzino")) > 0);
        dsn->setCurrentIndex(dsn->findText(QStringLiteral("Magazzino")));
        testdb::typeInto(dialog, QStringLiteral("txtUserName"), QStringLiteral("ufficio"));
        testdb::typeInto(dialog, QStringLiteral("txtPassword"), QStringLiteral("s3greta"));
        const QString expected = QStringLiteral("DSN=Magazzino;UID=ufficio;PWD=s3greta");
        QCOMPARE(shown(dialog, QStringLiteral("txtConnectionString")), expected);
        QCOMPARE(shown(dialog, QStringLiteral("txtReportConnect")), expected);
        script.expectMessage(QStringLiteral("sarà necessario riavviare il programma."), vb::OK);
        testdb::click(dialog, QStringLiteral("cmdOk"));
        for (const char* key : {"Server/MySql", "Server/RptConnectionMySql"})
            QCOMPARE(machineSettings().value(QLatin1String(key)).toString(), expected);
        QCOMPARE(machineSettings().value(QStringLiteral("Server/DBType")).toString(), QStringLiteral("2"));
        readServerSettings();
        QCOMPARE(gSession().strDescrizioneDB, QStringLiteral("MySql: DSN=Magazzino"));

        // Reopened, the dialog shows the stored data source back.
        frmOptionServer again;
        QCOMPARE(shown(again, QStringLiteral("cmbDSN")), QStringLiteral("Magazzino"));
        QCOMPARE(shown(again, QStringLiteral("txtUserName")), QStringLiteral("ufficio"));
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
