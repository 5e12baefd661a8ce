#pragma once
// Document numbers: one counter per numerator and calendar year, and the
// checks that guard a number typed or kept on the document screen. The
// document save calls these inside its transaction.

#include <QString>

class QDate;

// The next number of a numerator in a year (the document's year as text):
// 1 for a counter that is missing or still at 0. 0 when a statement failed
// or no transaction is open (a failure reported).
// The counter's row stays locked by the caller's transaction until it ends,
// so two workstations saving at once never take the same number.
int getNewNumeratoreAnnuale(int fkNumeratore, const QString& anno);

// No other document of the type holds the number in the year of the date
// (the document itself, rid, excepted). False also when nothing could be read.
bool checkNumeroDocumento(int fkTipoDocumento, const QDate& data, int progressivo, int rid);

// The type lets the user type numbers out of date order.
bool getFlexCounter(int fkTipoDocumento);

// The number fits the order of the dates within the type and year: above
// the highest number dated earlier, below the lowest dated later (65535
// when none is later). Documents of the same day do not count. rid is the
// document itself, -1 when it is not stored yet.
bool checkNumeroData(int fkTipoDocumento, const QDate& data, int progressivo, int rid);
