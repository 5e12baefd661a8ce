#pragma once
// Checks of the values an engine is about to store: a date that is no date,
// a quantity that is no number, an amount outside the range of Currency.
// Each erroreXxx gives the Italian message for the user, naming the field, or
// an empty text when the value may be stored. Nothing here shows anything:
// an engine inside a transaction hands the message back to its caller, which
// shows it after the rollback.

#include "common/currency.h"
#include "common/single.h"

#include <QString>

class QDate;

// The dates every back end can store: from 01/01/1753 (the first day of a
// SQL Server date-time) to 31/12/9999.
bool isDataValida(const QDate& data);

// A Null or invalid date, or one outside the range above.
QString erroreData(const QDate& data, const QString& campo);

// A quantity that is NaN or infinite (also a double too large for a Single,
// which its narrowing turns into an infinity).
QString erroreQuantita(Single quantita, const QString& campo);

// A floating amount that is NaN, infinite, or whose nearest ten-thousandth
// lies outside the range of Currency.
QString erroreImporto(double importo, const QString& campo);

// "Importo fuori dai limiti consentiti: <campo> ...": for an amount or a
// result of amounts (a sum, a product) that leaves the range of Currency.
QString messaggioImportoFuoriLimiti(const QString& campo);
