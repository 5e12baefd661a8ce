#pragma once
// Numbers drawn as the highest in use plus one (the card numbers of the
// customers and suppliers, of the address book). Inside the caller's
// transaction the draw is serialised: a second workstation drawing at the
// same moment waits until the first has committed, and then draws the next
// number, on every back end. A unique index on the column is the last guard.

#include <QString>

// The highest value of `column` in `table` plus one, 1 for an empty table.
// Only inside a transaction; -1 on a failure already reported.
int nextNumber(const QString& table, const QString& column, const QString& tag);
