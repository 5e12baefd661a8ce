#include "screenregistry.h"

#include <QMap>

namespace screens {

namespace {
QMap<QString, ScreenEntry>& registry()
{
    static QMap<QString, ScreenEntry> entries;
    return entries;
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

} // namespace screens
