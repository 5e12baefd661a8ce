#include "screenregistry.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>

namespace screens {

namespace {
QMap<QString, ScreenEntry>& registry()
{
    static QMap<QString, ScreenEntry> entries;
    return entries;
}

struct Subscriber
{
    QPointer<QObject> receiver;
    std::function<void()> handler;
};

QList<Subscriber>& documentTypeSubscribers()
{
    static QList<Subscriber> subscribers;
    return subscribers;
}

struct Opener
{
    QPointer<QObject> receiver;
    std::function<void(const QString&, const QVariant&)> open;
};

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

void notifyDocumentTypesChanged()
{
    QList<Subscriber>& subscribers = documentTypeSubscribers();
    subscribers.removeIf([](const Subscriber& s) { return s.receiver.isNull(); });
    // A handler may subscribe again: call a copy.
    const QList<Subscriber> current = subscribers;
    for (const Subscriber& s : current)
        if (s.receiver)
            s.handler();
}

void onDocumentTypesChanged(QObject* receiver, std::function<void()> handler)
{
    documentTypeSubscribers().append({receiver, std::move(handler)});
}

void requestScreen(const QString& name, const QVariant& argument)
{
    const Opener current = opener();
    if (current.receiver && current.open)
        current.open(name, argument);
}

void setScreenOpener(QObject* receiver, std::function<void(const QString&, const QVariant&)> open)
{
    opener() = {receiver, std::move(open)};
}

} // namespace screens
