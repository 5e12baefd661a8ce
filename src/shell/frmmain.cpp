#include "shell/frmmain.h"

#include "common/apphome.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/appinfo.h"
#include "core/dialogservice.h"
#include "core/documentmenu.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "data/session.h"
#include "shell/frmsplash.h"
#include "shell/helpfiles.h"

#include <QAction>
#include <QCloseEvent>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

namespace {

struct ToolButton
{
    const char* key;
    const char* tooltip;
    const char* command; // the menu item it stands for
    const char* icon;
};

const ToolButton kToolButtons[] = {
    {"Anagrafica", "Anagrafica Clienti/Fornitori", "mnuAnagrafica", "Anagrafica"},
    {"Prodotti", "Anagrafica Prodotti", "mnuProdotti", "Prodotti"},
    {"Movimenti", "Movimenti: Carico/Scarico/Fatture/ecc...", "mnuMovimenti", "Movimenti"},
    {"Wizard", "Creazione guidata Documenti", "mnudocumento_0", "Wizard"},
    {"DistintaBase", "Distinta Base", "mnuDistintaBase", "DistintaBase"},
    {"Ordini", "Ordini Cliente", "mnuOrdini", "Ordini"},
    {"Pagamenti", "Pagamenti", "mnuPagamenti", "Pagamenti"},
    {"PrimaNota", "Prima Nota", "mnuPNota", "PrimaNota"},
    {"EstrattoClienti", "Estratto Conto Cliente", "mnuEstrattoClienti", "EstrattoC"},
    {"EstrattoFornitori", "Estratto Conto Fornitore", "mnuEstrattoFornitore", "EstrattoF"},
    {"Estratto", "Estratto Conto Generico", "mnuEstrattoGenerico", "Estratto"},
    {"Rubrica", "Rubrica", "mnuRubrica", "Rubrica"},
};

// The first document item keeps the place of "(Nessun Documento)".
const QString kFirstDocumentItem = QStringLiteral("mnudocumento_3");

QString plainCaption(QString caption) { return caption.remove(QLatin1Char('&')); }

} // namespace

frmMain::frmMain(frmSplash* splash, QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMain"));
    screens::setOpener([this](const QString& name, const QVariant& argument) { return openScreen(name, argument); });
    screens::setTeller([this](const QString& caption) { showNotYetAvailable(caption); });
    if (splash)
        splash->addInfo(QStringLiteral("Creazione Menu..."));

    m_mdiMain = new QMdiArea(this);
    m_mdiMain->setObjectName(QStringLiteral("mdiMain"));
    m_mdiMain->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiMain->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdiMain);

    m_menu.build(menuBar());
    for (QAction* action : m_menu.actions())
        connect(action, &QAction::triggered, this, [this, action] { runCommand(action->objectName()); });
    connect(m_menu.menu(QStringLiteral("mnuWindow")), &QMenu::aboutToShow, this, &frmMain::rebuildWindowList);

    adaptMenuToMode();
    setToolbar();
    fillMenuDocumenti();
    screens::onDocumentTypesChanged(this, [this] { fillMenuDocumenti(); });
    dialogs::setOwnerWindow(this);
    setBackground();
    setWindowTitle(mainWindowTitle());
    setStatusBar();

    m_timer1 = new QTimer(this);
    m_timer1->setObjectName(QStringLiteral("Timer1"));
    m_timer1->setInterval(1000);
    connect(m_timer1, &QTimer::timeout, this, &frmMain::updateClock);
    m_timer1->start();
    resize(1100, 720);
}

frmMain::~frmMain()
{
    if (dialogs::ownerWindow() == this)
        dialogs::setOwnerWindow(nullptr);
    screens::setOpener({});
    screens::setTeller({});
}

void frmMain::adaptMenuToMode()
{
    if (printShopMode())
        return;
    m_menu.action(QStringLiteral("mnuOrdini"))->setVisible(false);
    for (int i = 0; i < 4; ++i)
        m_menu.action(QStringLiteral("mnuTab_") + QString::number(i))->setVisible(false);
}

void frmMain::setToolbar()
{
    m_tlbMain = addToolBar(QStringLiteral("Barra degli strumenti"));
    m_tlbMain->setObjectName(QStringLiteral("tlbMain"));
    m_tlbMain->setMovable(false);
    m_tlbMain->setIconSize(QSize(24, 24));
    for (const ToolButton& button : kToolButtons) {
        const QString key = QString::fromLatin1(button.key);
        if (key == QLatin1String("Ordini") && !printShopMode())
            continue;
        QAction* action =
            m_tlbMain->addAction(menuIcon(QString::fromLatin1(button.icon)), QString::fromUtf8(button.tooltip));
        action->setObjectName(key);
        action->setToolTip(QString::fromUtf8(button.tooltip));
        const QString command = QString::fromLatin1(button.command);
        connect(action, &QAction::triggered, this, [this, command] { runCommand(command); });
        if (key == QLatin1String("Movimenti")) {
            m_docDropDown = new QMenu(this);
            m_docDropDown->setObjectName(QStringLiteral("tlbMain_Movimenti"));
            action->setMenu(m_docDropDown);
            if (auto* tool = qobject_cast<QToolButton*>(m_tlbMain->widgetForAction(action)))
                tool->setPopupMode(QToolButton::MenuButtonPopup);
        }
    }
    if (!counterSalesProgram().isEmpty()) {
        QAction* action =
            m_tlbMain->addAction(menuIcon(QStringLiteral("VenditaBanco")), QStringLiteral("Vendita al Banco"));
        action->setObjectName(QStringLiteral("VenditaBanco"));
        connect(action, &QAction::triggered, this, &frmMain::launchCounterSales);
    }
}

QString frmMain::counterSalesProgram()
{
    const QString path = QDir(programFolder()).filePath(QStringLiteral("prgOrvantisClientVB/prgOrvantisClientVB"));
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable() ? path : QString();
}

void frmMain::launchCounterSales()
{
    const QString program = counterSalesProgram();
    if (!program.isEmpty())
        QProcess::startDetached(program, {}, QFileInfo(program).absolutePath());
}

void frmMain::clearMenuDocumenti()
{
    if (m_docDropDown)
        m_docDropDown->clear();
    for (QAction* action : std::as_const(m_documentItems))
        m_menu.removeItem(action->objectName());
    m_documentItems.clear();
}

void frmMain::fillMenuDocumenti()
{
    clearMenuDocumenti();
    QAction* first = m_menu.action(kFirstDocumentItem);
    QMenu* documenti = m_menu.menu(QStringLiteral("mnuDocumenti"));

    auto addDropDown = [this](const QString& caption, const QString& key) {
        QAction* entry = m_docDropDown->addAction(caption);
        entry->setObjectName(key);
        connect(entry, &QAction::triggered, this, [this, key, caption] { openDocumentKey(key, caption); });
    };
    if (m_docDropDown)
        addDropDown(QStringLiteral("Seleziona Documento esistente..."), documentMenuKey(0));

    const QList<DocumentMenuEntry> entries = documentMenuEntries();
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const DocumentMenuEntry& entry = entries.at(i);
        if (m_docDropDown)
            addDropDown(entry.descrizione, documentMenuKey(entry.rid));
        QAction* item = first;
        if (i > 0) {
            item =
                m_menu.addItem(documenti, QStringLiteral("mnudocumento_") + QString::number(i + 3), entry.descrizione);
            connect(item, &QAction::triggered, this, [this, item] { runCommand(item->objectName()); });
            m_documentItems.append(item);
        }
        item->setText(entry.descrizione);
        item->setData(entry.rid);
        item->setEnabled(true);
    }
    if (entries.isEmpty()) {
        first->setText(QStringLiteral("(Nessun Documento)"));
        first->setData(QVariant());
        first->setEnabled(false);
    }
}

void frmMain::openDocumentKey(const QString& key, const QString& caption)
{
    const int rid = documentMenuRid(key);
    if (rid > 0)
        openOrTell(QStringLiteral("frmMovimento"), rid, caption);
    else if (rid == 0)
        openOrTell(QStringLiteral("frmSelezionaDocumento"), QVariant(), caption);
}

void frmMain::openOrTell(const QString& screen, const QVariant& argument, const QString& caption)
{
    screens::openOrTell(screen, argument, plainCaption(caption));
}

void frmMain::runCommand(const QString& name)
{
    if (name == QLatin1String("mnuEsci")) {
        close();
        return;
    }
    if (name.startsWith(QLatin1String("mnudocumento_")) && name.mid(13).toInt() >= 3) {
        if (const QAction* item = m_menu.action(name); item && item->data().isValid())
            openOrTell(QStringLiteral("frmMovimento"), item->data(), item->text());
        return;
    }
    const MenuNode* node = m_menu.node(name);
    if (!node || node->screen.isEmpty())
        return;
    if (node->screen == QLatin1String("help")) {
        openHelp(node->argument.toString());
        return;
    }
    openOrTell(node->screen, node->argument, node->caption);
}

void frmMain::showNotYetAvailable(const QString& caption)
{
    statusBar()->showMessage(caption + QStringLiteral(": funzione non ancora disponibile in questa versione."), 5000);
}

QWidget* frmMain::openScreen(const QString& name, const QVariant& argument)
{
    const screens::ScreenEntry* entry = screens::findScreen(name);
    if (!entry)
        return nullptr;
    if (entry->kind == screens::Kind::Dialog) {
        std::unique_ptr<QWidget> widget(entry->create(this, argument));
        if (auto* dialog = qobject_cast<QDialog*>(widget.get()))
            dialogs::exec(*dialog);
        return nullptr;
    }
    if (entry->single) {
        const QList<QMdiSubWindow*> windows = m_mdiMain->subWindowList();
        for (QMdiSubWindow* window : windows) {
            // A screen opened on another argument (another table) is another window.
            if (window->widget() && window->widget()->objectName() == name
                && window->widget()->property("screenArgument") == argument) {
                window->showNormal();
                m_mdiMain->setActiveSubWindow(window);
                return window->widget();
            }
        }
    }
    QWidget* screen = entry->create(m_mdiMain, argument);
    if (!screen)
        return nullptr;
    screen->setProperty("screenArgument", argument);
    QMdiSubWindow* window = m_mdiMain->addSubWindow(screen);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowIcon(screen->windowIcon());
    screen->show();
    // A child window never gets smaller than its screen's layout allows, by
    // hand or by "Affianca": squeezed, its fields would be cut off at the
    // border. The frame scrolls to whatever does not fit.
    window->setMinimumSize(window->minimumSizeHint());
    return screen;
}

QWidget* frmMain::showScreenForPicture(const QString& nameAndArgument)
{
    // "frmSimpleForm:mnuTab_10": the screen and the argument of its menu item.
    const QString name = nameAndArgument.section(QLatin1Char(':'), 0, 0);
    const QString argument = nameAndArgument.section(QLatin1Char(':'), 1);
    const QVariant shown = argument.isEmpty() ? QVariant() : QVariant(argument);
    const screens::ScreenEntry* entry = screens::findScreen(name);
    if (!entry)
        return nullptr;
    if (entry->kind == screens::Kind::Child)
        return openScreen(name, shown);
    QWidget* dialog = entry->create(this, shown);
    if (dialog) {
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->show();
    } else if (QMdiSubWindow* opened = m_mdiMain->activeSubWindow()) {
        // An entry that opens a child window of its own, as a print opens its preview.
        return opened->widget();
    }
    return dialog;
}

void frmMain::setBackground()
{
    // A picture "bg.res" in the report folder is laid on the frame, when there is one.
    const QPixmap picture(QDir(gSession().strReportPath).filePath(QStringLiteral("bg.res")));
    m_mdiMain->setBackground(picture.isNull() ? QBrush(QColor(0x6d, 0x83, 0x9b)) : QBrush(picture));
}

void frmMain::setStatusBar()
{
    QStatusBar* bar = statusBar();
    bar->setObjectName(QStringLiteral("stbMain"));
    const QStringList texts{QStringLiteral("Anno Corrente: ") + gOptions().annoCorrente,
                            QStringLiteral("Versione: ") + versionText(), QString()};
    for (qsizetype i = 0; i < texts.size(); ++i) {
        auto* panel = new QLabel(texts.at(i), bar);
        panel->setObjectName(QStringLiteral("stbMain_") + QString::number(i));
        panel->setFrameShape(QFrame::StyledPanel);
        panel->setFrameShadow(QFrame::Sunken);
        panel->setContentsMargins(6, 0, 6, 0);
        bar->addPermanentWidget(panel);
        m_panelClock = panel;
    }
    updateClock();
}

void frmMain::updateClock()
{
    const QDateTime now = QDateTime::currentDateTime();
    m_panelClock->setText(formatDate(now.date()) + QStringLiteral(" - ")
                          + now.time().toString(QStringLiteral("HH:mm:ss")));
}

void frmMain::rebuildWindowList()
{
    QMenu* menu = m_menu.menu(QStringLiteral("mnuWindow"));
    menu->clear();
    const QList<QMdiSubWindow*> windows = m_mdiMain->subWindowList();
    if (windows.isEmpty()) {
        menu->addAction(QStringLiteral("(Nessuna finestra aperta)"))->setEnabled(false);
        return;
    }
    menu->addAction(QStringLiteral("&Sovrapponi"), m_mdiMain, &QMdiArea::cascadeSubWindows);
    menu->addAction(QStringLiteral("&Affianca"), m_mdiMain, &QMdiArea::tileSubWindows);
    menu->addSeparator();
    for (qsizetype i = 0; i < windows.size(); ++i) {
        QMdiSubWindow* window = windows.at(i);
        QAction* action =
            menu->addAction(QStringLiteral("&") + QString::number(i + 1) + QLatin1Char(' ') + window->windowTitle());
        action->setCheckable(true);
        action->setChecked(window == m_mdiMain->activeSubWindow());
        connect(action, &QAction::triggered, this, [this, window] {
            window->showNormal();
            m_mdiMain->setActiveSubWindow(window);
        });
    }
}

void frmMain::openHelp(const QString& anchor)
{
    QUrl url = QUrl::fromLocalFile(helpIndexFile());
    url.setFragment(anchor);
    dialogs::openUrl(url);
}

void frmMain::bringForward()
{
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
}

void frmMain::closeEvent(QCloseEvent* event)
{
    if (!gError().inError()
        && msgBox(QStringLiteral("Terminare l'esecuzione del programma?"),
                  vb::YesNo | vb::Question | vb::DefaultButton1)
            != vb::Yes) {
        event->ignore();
        return;
    }
    // Each child window may refuse to close (unsaved changes); then the program stays.
    m_mdiMain->closeAllSubWindows();
    if (!m_mdiMain->subWindowList().isEmpty()) {
        event->ignore();
        return;
    }
    m_timer1->stop();
    event->accept();
    Q_EMIT closed();
}
