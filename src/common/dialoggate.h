#pragma once
// No one may wait on a box while a database transaction holds its locks: the
// other workstations would wait with them. The data layer closes the gate
// when a transaction begins and opens it when the transaction ends. A message
// shown meanwhile waits and appears, in order, when the gate opens; an error
// report too (it is written to Err.log at once). A question cannot wait for
// its answer: it takes its default button, and the fault is written to
// Err.log, so questions belong before the transaction begins.

#include <QString>

#include <functional>

namespace dialogGate {

void close();
// Opens the gate and shows what waited.
void open();
bool isClosed();
// Keeps a box to show when the gate opens; the same box twice in a row is
// kept once.
void hold(const QString& key, std::function<void()> show);

} // namespace dialogGate
