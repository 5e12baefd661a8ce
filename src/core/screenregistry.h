#pragma once
// The screens that the main window can open, by name. Each part of the
// program registers its screens at start; the menu, the toolbar and the
// --open switch reach them through here, so the main window does not depend
// on every screen.

#include <QString>
#include <QVariant>
#include <functional>

class QObject;
class QWidget;

namespace screens {

enum class Kind {
    Dialog,   // shown modally over the main window
    Child     // a child window of the main window
};

struct ScreenEntry
{
    Kind kind = Kind::Child;
    // Builds the screen; `argument` is what the menu item passes (a document
    // type, a table, ...). Returns nullptr when the screen refuses to open.
    std::function<QWidget*(QWidget* parent, const QVariant& argument)> create;
    // One window for the whole program: a second opening brings it forward.
    bool single = true;
};

void registerScreen(const QString& name, ScreenEntry entry);
const ScreenEntry* findScreen(const QString& name);
QStringList registeredScreens();

// A screen saved or deleted a document type: whoever shows the types (the
// main window's document menu) reads them again. A subscription ends with
// its receiver.
void notifyDocumentTypesChanged();
void onDocumentTypesChanged(QObject* receiver, std::function<void()> handler);

// A screen asks for another one (a related record's own screen); the main
// window opens it as from the menu. Nothing happens without an opener.
void requestScreen(const QString& name, const QVariant& argument = QVariant());
void setScreenOpener(QObject* receiver, std::function<void(const QString& name, const QVariant& argument)> opener);

} // namespace screens
