#include "common/dialoggate.h"

#include <QList>
#include <QString>

#include <utility>

namespace {

struct Gate
{
    bool closed = false;
    QList<std::pair<QString, std::function<void()>>> waiting;
};

Gate& gate()
{
    static Gate g;
    return g;
}

} // namespace

namespace dialogGate {

void close() { gate().closed = true; }

void open()
{
    gate().closed = false;
    // A box shown now may begin another transaction: take the list first.
    const auto waiting = std::exchange(gate().waiting, {});
    for (const auto& [key, show] : waiting)
        show();
}

bool isClosed() { return gate().closed; }

void hold(const QString& key, std::function<void()> show)
{
    auto& waiting = gate().waiting;
    if (!waiting.isEmpty() && waiting.last().first == key)
        return;
    waiting.append({key, std::move(show)});
}

} // namespace dialogGate
