#pragma once
// The main window: menu, toolbar, status bar and the area in which every
// record screen opens as a child window.

#include "shell/mainmenu.h"

#include <QMainWindow>
#include <QVariant>

class QCloseEvent;
class QLabel;
class QMdiArea;
class QMenu;
class QTimer;
class QToolBar;
class frmSplash;

class frmMain : public QMainWindow
{
    Q_OBJECT

public:
    explicit frmMain(frmSplash* splash = nullptr, QWidget* parent = nullptr);
    ~frmMain() override;

    // The document types in the "Documenti" menu and in the toolbar's drop-down.
    void fillMenuDocumenti();
    void clearMenuDocumenti();

    // Opens a registered screen: a dialog modally, a child window in the
    // frame. Returns the child window's screen, nullptr for a dialog or a
    // screen that does not exist yet.
    QWidget* openScreen(const QString& name, const QVariant& argument = QVariant());
    // Builds a screen and shows it without waiting, to take its picture.
    QWidget* showScreenForPicture(const QString& nameAndArgument);

    // Runs the command of a menu item or toolbar button by its control name.
    void runCommand(const QString& name);

    // Brings the window forward (a second copy of the program asked for it).
    void bringForward();

    QMdiArea* mdiArea() const { return m_mdiMain; }
    const MainMenu& mainMenu() const { return m_menu; }
    QToolBar* toolbar() const { return m_tlbMain; }
    QMenu* documentDropDown() const { return m_docDropDown; }

    // The counter-sales client, another program that may sit in the program folder.
    static QString counterSalesProgram();

    // The print-shop functions of the menu; off in this edition.
    static bool printShopMode() { return false; }

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void adaptMenuToMode();
    void setToolbar();
    void setStatusBar();
    void setBackground();
    void updateClock();
    void rebuildWindowList();
    void openDocumentKey(const QString& key, const QString& caption);
    // Opens a registered screen; a screen of a later version says so in the status bar.
    void openOrTell(const QString& screen, const QVariant& argument, const QString& caption);
    void openHelp(const QString& anchor);
    void launchCounterSales();
    void showNotYetAvailable(const QString& caption);

    MainMenu m_menu;
    QMdiArea* m_mdiMain;
    QToolBar* m_tlbMain = nullptr;
    QMenu* m_docDropDown = nullptr;
    QLabel* m_panelClock = nullptr;
    QTimer* m_timer1;
    QList<QAction*> m_documentItems;
};
