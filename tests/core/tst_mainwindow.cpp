// The main window and the dialogs of the shell, offscreen, on both back ends.
#include "apphome.h"
#include "cadosqlserver.h"
#include "frmcambiapw.h"
#include "frmmain.h"
#include "frmoptionserver.h"
#include "frmwarning.h"
#include "modelseed.h"
#include "msgbox.h"
#include "optionstore.h"
#include "screenregistry.h"
#include "scripteddialogs.h"
#include "serversettings.h"
#include "session.h"
#include "shellapp.h"
#include "testdb.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
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
    const QList<QAction*> all = main.mainMenu().menu(QStringLiteral("mnuDocumenti"))->actions();
    return all.mid(3);
}

void setHideMenu(const QString& condition, int value)
{
    QVERIFY(gAdoSqlServer().executeSQL(QStringLiteral("UPDATE TipoDocumenti SET HIDEMENU = ") + QString::number(value)
                                           + QStringLiteral(" WHERE ") + condition,
                                       QStringLiteral("test")));
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
    }
    void cleanupTestCase() { testdb::dropShared(); }
    // A failed statement keeps its connection on the stack, as the data layer does.
    void cleanup() { gAdoSqlServer().closeAll(); }

    void documentMenu_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void documentMenu()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        frmMain main;
        const QStringList seeded{QStringLiteral("Carico da fornitore"), QStringLiteral("Documento di trasporto"),
                                 QStringLiteral("Fattura di vendita"), QStringLiteral("Fattura differita"),
                                 QStringLiteral("Nota di credito"), QStringLiteral("Ordine cliente"),
                                 QStringLiteral("Trasferimento tra magazzini")};
        QCOMPARE(captions(documentItems(main)), seeded);
        QCOMPARE(captions(main.documentDropDown()->actions()), QStringList{QStringLiteral("Seleziona Documento esistente...")} + seeded);
        QCOMPARE(main.documentDropDown()->actions().first()->objectName(), QStringLiteral("D_0"));
        QVERIFY(main.documentDropDown()->actions().at(1)->objectName().startsWith(QStringLiteral("D_")));
        QCOMPARE(documentItems(main).first()->objectName(), QStringLiteral("mnudocumento_3"));
        QCOMPARE(documentItems(main).last()->objectName(), QStringLiteral("mnudocumento_9"));

        // A type marked HIDEMENU leaves the menu and the drop-down once a
        // screen tells that the types changed; filling twice adds nothing.
        setHideMenu(QStringLiteral("CODICE = ¤NC¤"), 1);
        screens::notifyDocumentTypesChanged();
        screens::notifyDocumentTypesChanged();
        QStringList visible = seeded;
        visible.removeAll(QStringLiteral("Nota di credito"));
        QCOMPARE(captions(documentItems(main)), visible);
        QCOMPARE(main.documentDropDown()->actions().size(), visible.size() + 1);

        // No type at all: the placeholder stays, disabled.
        setHideMenu(QStringLiteral("RID > 0"), 1);
        main.fillMenuDocumenti();
        QCOMPARE(captions(documentItems(main)), QStringList{QStringLiteral("(Nessun Documento)")});
        QVERIFY(!documentItems(main).first()->isEnabled());
        QCOMPARE(main.documentDropDown()->actions().size(), 1);

        setHideMenu(QStringLiteral("RID > 0"), 0);
        main.fillMenuDocumenti();
        QCOMPARE(captions(documentItems(main)), seeded);
        QVERIFY(documentItems(main).first()->isEnabled());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    void menuAndToolbar()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        loadOptionGlobals();
        auto countButtons = [](const frmMain& main) {
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
            QCOMPARE(menu.action(QStringLiteral("mnuTab_12"))->text(), QStringLiteral("Cau&sali di trasporto"));
            QCOMPARE(menu.popGrid()->objectName(), QStringLiteral("mnuPopGrid"));
            QVERIFY(!menu.action(QStringLiteral("mnuCambiaPW"))->icon().isNull());
            QCOMPARE(countButtons(main),
                     (QStringList{QStringLiteral("Anagrafica"), QStringLiteral("Prodotti"), QStringLiteral("Movimenti"),
                                  QStringLiteral("Wizard"), QStringLiteral("DistintaBase"), QStringLiteral("Pagamenti"),
                                  QStringLiteral("PrimaNota"), QStringLiteral("EstrattoClienti"),
                                  QStringLiteral("EstrattoFornitori"), QStringLiteral("Estratto"), QStringLiteral("Rubrica")}));
            QCOMPARE(main.findChild<QLabel*>(QStringLiteral("stbMain_0"))->text(),
                     QStringLiteral("Anno Corrente: ") + QString::number(QDate::currentDate().year()));
            QVERIFY(main.findChild<QLabel*>(QStringLiteral("stbMain_2"))->text().contains(QStringLiteral(" - ")));
        }
        // The counter-sales button appears with its program.
        QDir(programFolder()).mkpath(QStringLiteral("prgOrvantisClientVB"));
        QFile program(programFile(QStringLiteral("prgOrvantisClientVB/prgOrvantisClientVB")));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\n");
        program.close();
        program.setPermissions(program.permissions() | QFileDevice::ExeOwner);
        frmMain main;
        QCOMPARE(countButtons(main).last(), QStringLiteral("VenditaBanco"));
        program.remove();
    }

    void everyIconKeyHasAnIcon()
    {
        for (const QString& key : menuIconKeys())
            QVERIFY2(!menuIcon(key).isNull(), qPrintable(key));
    }

    void helpAndScreens()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        frmMain main;
        ScriptedDialogs script;
        main.runCommand(QStringLiteral("mnuSommario"));
        QCOMPARE(script.openedUrls.size(), 1);
        QCOMPARE(script.openedUrls.first().fragment(), QStringLiteral("sommario"));
        QVERIFY(QFile::exists(script.openedUrls.first().toLocalFile()));
        // A screen of a later version says so and opens nothing.
        main.runCommand(QStringLiteral("mnuAnagrafica"));
        QVERIFY(main.mdiArea()->subWindowList().isEmpty());
    }

    void childScreens()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        screens::registerScreen(QStringLiteral("frmProva"), {screens::Kind::Child, [](QWidget* parent, const QVariant&) -> QWidget* {
            auto* screen = new GuardedScreen(parent);
            screen->setObjectName(QStringLiteral("frmProva"));
            screen->setWindowTitle(QStringLiteral("Prova"));
            return screen;
        }, true});
        frmMain main;
        main.show();
        QWidget* first = main.openScreen(QStringLiteral("frmProva"));
        QVERIFY(first);
        QCOMPARE(main.openScreen(QStringLiteral("frmProva")), first);   // one window for the program
        QCOMPARE(main.mdiArea()->subWindowList().size(), 1);

        // The child's refusal stops the closing after the question.
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Terminare l'esecuzione del programma?"), vb::Yes);
        QVERIFY(!main.close());
        QVERIFY(main.isVisible());
        GuardedScreen::keep = false;
        script.expectMessage(QStringLiteral("Terminare l'esecuzione del programma?"), vb::Yes);
        QVERIFY(main.close());
    }

    void exitQuestion()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        frmMain main;
        main.show();
        {
            ScriptedDialogs script;
            script.expectMessage(QStringLiteral("Terminare l'esecuzione del programma?"), vb::No);
            QVERIFY(!main.close());
            QVERIFY(main.isVisible());
            script.expectMessage(QStringLiteral("Terminare l'esecuzione del programma?"), vb::Yes);
            QVERIFY(main.close());
        }
        // While an error report is open the program closes without asking.
        main.show();
        ScriptedDialogs script;
        bool closed = false;
        const ErrorReportHandler previous = gError().setHandler([&](const ErrorReport&) {
            closed = main.close();
            return 1;
        });
        notifyError(QStringLiteral("test"), QStringLiteral("exitQuestion"), QString());
        gError().setHandler(previous);
        QVERIFY(closed);
    }

    // A failed statement: Err.log gets the report in its layout, the warning shows it.
    void errorReport_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void errorReport()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        QFile::remove(programFile(QStringLiteral("Err.log")));
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) {
            auto* avanzate = d.findChild<QPushButton*>(QStringLiteral("cmdAvanzate"));
            QCOMPARE(avanzate->text(), QStringLiteral("Avanzate >>"));
            QVERIFY(!d.findChild<QPlainTextEdit*>(QStringLiteral("txtAvanzate"))->isVisible());
            testdb::click(d, QStringLiteral("cmdAvanzate"));
            QCOMPARE(avanzate->text(), QStringLiteral("<< Ripristina"));
            QVERIFY(d.findChild<QPlainTextEdit*>(QStringLiteral("txtAvanzate"))->isVisible());
            QVERIFY(d.findChild<QPlainTextEdit*>(QStringLiteral("txtAvanzate"))->toPlainText().contains(QStringLiteral("TabellaCheNonEsiste")));
            QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("txtModulo"))->text(), QStringLiteral("cAdoSqlServer.executeSQL -> prova"));
            QVERIFY(d.findChild<QLabel*>(QStringLiteral("lblNumero"))->text().toLongLong() != 0);
            testdb::click(d, QStringLiteral("cmdOK"));
        });
        QVERIFY(!gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM TabellaCheNonEsiste"), QStringLiteral("prova")));
        QVERIFY(script.allAnswered());

        QFile log(programFile(QStringLiteral("Err.log")));
        QVERIFY(log.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'));
        QCOMPARE(lines.at(0), QString(80, QLatin1Char('*')));
        QVERIFY(QRegularExpression(QStringLiteral("^Data   \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d$")).match(lines.at(1)).hasMatch());
        QVERIFY(QRegularExpression(QStringLiteral("^Err\\.N\\. -?\\d+$")).match(lines.at(2)).hasMatch());
        QVERIFY(lines.at(3).startsWith(QStringLiteral("Descr. ")) && lines.at(3).size() > 7);
        QVERIFY(lines.at(4).startsWith(QStringLiteral("Source ")));
        QCOMPARE(lines.at(5), QStringLiteral("Modulo cAdoSqlServer.executeSQL -> prova"));
        QVERIFY(lines.at(6).startsWith(QStringLiteral("Avanz. ")) && lines.at(6).contains(QStringLiteral("TabellaCheNonEsiste")));
    }

    void warningExitButton()
    {
        bool left = false;
        gError().setLeaveHook([&left] { left = true; });
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) {
            QCOMPARE(d.findChild<QPlainTextEdit*>(QStringLiteral("txtAvanzate"))->toPlainText(), QStringLiteral("Nessuna Informazione."));
            QCOMPARE(d.findChild<QPushButton*>(QStringLiteral("cmdAnnulla"))->text(), QStringLiteral("Esci da Orvantis"));
            testdb::click(d, QStringLiteral("cmdAnnulla"));
        });
        notifyError(QStringLiteral("test"), QStringLiteral("warningExitButton"), QStringLiteral("   "));
        QVERIFY(left);
        // Esc goes on with the work.
        left = false;
        script.expectDialog(QStringLiteral("frmWarning"), [](QDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); });
        notifyError(QStringLiteral("test"), QStringLiteral("warningExitButton"), QString());
        QVERIFY(!left);
        frmWarning::install();
    }

    void changePassword_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("oldPw");
        QTest::addColumn<QString>("newPw");
        QTest::addColumn<QString>("newPw2");
        QTest::addColumn<QString>("message");   // the box shown
        QTest::addColumn<QString>("stored");    // the option afterwards
        const QString pw = schema::defaultPassword();
        for (const QString& b : testdb::backends()) {
            auto row = [&b](const char* name) -> QTestData& { return QTest::newRow(qPrintable(b + QStringLiteral(": ") + QString::fromUtf8(name))); };
            row("accepted, blanks trimmed") << b << QStringLiteral(" ") + pw << QStringLiteral("  nuovapass ") << QStringLiteral("nuovapass")
                                          << QStringLiteral("Password modicifata!") << QStringLiteral("nuovapass");
            row("blank inside accepted") << b << pw << QStringLiteral("ab cd ef") << QStringLiteral("ab cd ef")
                                        << QStringLiteral("Password modicifata!") << QStringLiteral("ab cd ef");
            row("wrong old") << b << QStringLiteral("altra") << QStringLiteral("nuovapass") << QStringLiteral("nuovapass")
                            << QStringLiteral("password di accesso inserita non è corretta") << pw;
            row("new fields differ") << b << pw << QStringLiteral("nuovapass") << QStringLiteral("nuovapasS")
                                    << QStringLiteral("le password inserite non coincidono") << pw;
            row("seven characters") << b << pw << QStringLiteral("1234567") << QStringLiteral("1234567")
                                   << QStringLiteral("Non meno di 8 caratteri") << pw;
            row("wrong old comes first") << b << QStringLiteral("altra") << QStringLiteral("a") << QStringLiteral("b")
                                        << QStringLiteral("non è corretta") << pw;
        }
    }
    void changePassword()
    {
        QFETCH(QString, backend);
        QFETCH(QString, oldPw);
        QFETCH(QString, newPw);
        QFETCH(QString, newPw2);
        QFETCH(QString, message);
        QFETCH(QString, stored);
        QVERIFY(testdb::shared(backend).isValid());
        setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword());
        ScriptedDialogs script;
        script.expectMessage(message, vb::OK);
        frmCambiaPW dialog;
        dialog.show();
        testdb::typeInto(dialog, QStringLiteral("txtOld"), oldPw);
        testdb::typeInto(dialog, QStringLiteral("txtNewPw"), newPw);
        testdb::typeInto(dialog, QStringLiteral("txtNewPw2"), newPw2);
        QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("txtNewPw2")), Qt::Key_Return);   // Enter confirms
        QCOMPARE(getOpzione(QStringLiteral("Amministratore")), stored);
        QCOMPARE(dialog.isVisible(), stored == schema::defaultPassword());
        setOpzione(QStringLiteral("Amministratore"), schema::defaultPassword());
    }

    void serverSettingsWithDataSource()
    {
        // A data source of the user's odbc.ini, chosen with user and password.
        QTemporaryDir home;
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", home.path().toUtf8());
        QFile ini(home.filePath(QStringLiteral(".odbc.ini")));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[Magazzino]\nDriver=MariaDB\nServer=127.0.0.1\n");
        ini.close();
        gSession().tipoServer = 1;

        ScriptedDialogs script;
        frmOptionServer dialog;
        dialog.show();
        testdb::click(dialog, QStringLiteral("optMySql"));
        auto* dsn = dialog.findChild<QComboBox*>(QStringLiteral("cmbDSN"));
        QVERIFY(dsn->findText(QStringLiteral("Magazzino")) > 0);
        dsn->setCurrentIndex(dsn->findText(QStringLiteral("Magazzino")));
        testdb::typeInto(dialog, QStringLiteral("txtUserName"), QStringLiteral("ufficio"));
        testdb::typeInto(dialog, QStringLiteral("txtPassword"), QStringLiteral("s3greta"));
        const QString expected = QStringLiteral("DSN=Magazzino;UID=ufficio;PWD=s3greta");
        QCOMPARE(dialog.findChild<QPlainTextEdit*>(QStringLiteral("txtConnectionString"))->toPlainText(), expected);
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("txtReportConnect"))->text(), expected);
        script.expectMessage(QStringLiteral("sarà necessario riavviare il programma."), vb::OK);
        testdb::click(dialog, QStringLiteral("cmdOk"));
        QCOMPARE(machineSettings().value(QStringLiteral("Server/DBType")).toString(), QStringLiteral("2"));
        QCOMPARE(machineSettings().value(QStringLiteral("Server/MySql")).toString(), expected);
        QCOMPARE(machineSettings().value(QStringLiteral("Server/RptConnectionMySql")).toString(), expected);
        readServerSettings();
        QCOMPARE(gSession().strDescrizioneDB, QStringLiteral("MySql: DSN=Magazzino"));

        // Reopened, the dialog shows the stored data source back.
        frmOptionServer again;
        QCOMPARE(again.findChild<QComboBox*>(QStringLiteral("cmbDSN"))->currentText(), QStringLiteral("Magazzino"));
        QCOMPARE(again.findChild<QLineEdit*>(QStringLiteral("txtUserName"))->text(), QStringLiteral("ufficio"));
        qputenv("HOME", oldHome);
        machineSettings().remove(QStringLiteral("Server"));
    }

    void serverSettingsPickAFile()
    {
        gSession().tipoServer = 1;
        ScriptedDialogs script;
        frmOptionServer dialog;
        dialog.show();
        const QString file = QDir::temp().filePath(QStringLiteral("altra/Ditta.db"));
        script.expectFile(file);
        script.expectMessage(QStringLiteral("Aggiornare automaticamente il percorso dei report di stampa?"), vb::Yes);
        testdb::click(dialog, QStringLiteral("cmdSfoglia"));
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("txtReportPath"))->text(), QDir::temp().filePath(QStringLiteral("altra/AccessReports/")));
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("txtReportConnect"))->text(), QStringLiteral("Provider=SQLite;Data Source=") + file);
        // "Annulla" keeps nothing.
        testdb::click(dialog, QStringLiteral("cmdCancel"));
        QVERIFY(!dialog.saved());
        QVERIFY(!machineSettings().contains(QStringLiteral("Server/Path")));
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
