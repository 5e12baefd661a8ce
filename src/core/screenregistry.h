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
    Dialog, // shown modally over the main window
    Child   // a child window of the main window
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

// Opens a screen where the program shows its screens (the main window's
// area once it is up; a window of its own before) and gives it back, or
// nullptr when it did not open or was a modal dialog, already closed.
QWidget* openScreen(const QString& name, const QVariant& argument = QVariant());
using Opener = std::function<QWidget*(const QString& name, const QVariant& argument)>;
void setOpener(Opener opener);

// Opens the screen; one that this release does not have yet is announced
// instead (the main window says so in its status bar), under `caption`.
QWidget* openOrTell(const QString& name, const QVariant& argument, const QString& caption);
using Teller = std::function<void(const QString& caption)>;
void setTeller(Teller teller);

// A screen saved or deleted a document type: whoever shows the types (the
// main window's document menu) reads them again. A subscription ends with
// its receiver.
void notifyDocumentTypesChanged();
void onDocumentTypesChanged(QObject* receiver, std::function<void()> handler);

} // namespace screens
