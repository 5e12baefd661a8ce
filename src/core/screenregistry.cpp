#include "core/screenregistry.h"

#include "core/dialogservice.h"

#include <QDialog>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>

#include <memory>

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

Opener& opener()
{
    static Opener current;
    return current;
}
Teller& teller()
{
    static Teller current;
    return current;
}
} // namespace

void registerScreen(const QString& name, ScreenEntry entry) { registry().insert(name, std::move(entry)); }

const ScreenEntry* findScreen(const QString& name)
{
    const auto it = registry().constFind(name);
    return it == registry().constEnd() ? nullptr : &it.value();
}

QStringList registeredScreens() { return registry().keys(); }

void setOpener(Opener next) { opener() = std::move(next); }

void setTeller(Teller next) { teller() = std::move(next); }

QWidget* openOrTell(const QString& name, const QVariant& argument, const QString& caption)
{
    if (findScreen(name))
        return openScreen(name, argument);
    if (teller())
        teller()(caption);
    return nullptr;
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

} // namespace screens
