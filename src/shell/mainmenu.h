#pragma once
// The menu tree of the main window, written once as data: control name,
// caption with its access key, icon key, and the screen the item opens.

#include <QHash>
#include <QIcon>
#include <QList>
#include <QString>
#include <QVariant>

class QAction;
class QMenu;
class QMenuBar;

struct MenuNode
{
    QString name;      // the control name; an array element is name_index
    QString caption;   // "-" for a separator
    QString icon;      // image key, see menuIcon()
    QString screen;    // the screen the item opens, empty for none
    QVariant argument; // passed to the screen
    QList<MenuNode> children;
};

// The whole tree, in menu-bar order.
const QList<MenuNode>& mainMenuTree();

// The icon of an image key from the desktop's icon theme; a null icon for an
// unknown key.
QIcon menuIcon(const QString& key);
// Every image key that the menu and the toolbar use.
QStringList menuIconKeys();

// The menus and actions built from the tree, found by control name.
class MainMenu
{
public:
    void build(QMenuBar* bar);

    QAction* action(const QString& name) const { return m_actions.value(name); }
    QMenu* menu(const QString& name) const { return m_menus.value(name); }
    const MenuNode* node(const QString& name) const { return m_nodes.value(name); }
    QList<QAction*> actions() const { return m_actions.values(); }

    // The hidden popup of the document grid, with its two items.
    QMenu* popGrid() const { return m_popGrid; }

    // Adds an item to a menu after building (the document types).
    QAction* addItem(QMenu* menu, const QString& name, const QString& caption);
    void removeItem(const QString& name);

private:
    void addNodes(QMenu* parent, const QList<MenuNode>& nodes);

    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
    QHash<QString, const MenuNode*> m_nodes;
    QMenu* m_popGrid = nullptr;
};
