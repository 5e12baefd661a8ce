#include "screenregistry.h"

#include "dialogservice.h"

#include <QDialog>
#include <QMap>
#include <memory>

namespace screens {

namespace {
QMap<QString, ScreenEntry>& registry()
{
    static QMap<QString, ScreenEntry> entries;
    return entries;
}

Opener& opener()
{
    static Opener current;
    return current;
}
} // namespace

void registerScreen(const QString& name, ScreenEntry entry)
{
    registry().insert(name, std::move(entry));
}

const ScreenEntry* findScreen(const QString& name)
{
    const auto it = registry().constFind(name);
    return it == registry().constEnd() ? nullptr : &it.value();
}

QStringList registeredScreens()
{
    return registry().keys();
}

void setOpener(Opener next)
{
    opener() = std::move(next);
}

QWidget* openScreen(const QString& name, const QVariant& argument)
{
    if (opener())
        return opener()(name, argument);
    const ScreenEntry* entry = findScreen(name);
    if (!entry)
        return nullptr;
    QWidget* screen = entry->create(nullptr, argument);
    if (!screen)
        return nullptr;
    if (auto* dialog = qobject_cast<QDialog*>(screen); dialog && entry->kind == Kind::Dialog) {
        std::unique_ptr<QDialog> owned(dialog);
        dialogs::exec(*dialog);
        return nullptr;
    }
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->show();
    return screen;
}

} // namespace screens
