#pragma once
// Numbers and dates as Italian text, independent of the machine's locale:
// decimal comma, dot as thousands separator, dates DD/MM/YYYY.

#include "common/currency.h"
#include "common/single.h"

#include <QString>
#include <QVariant>

#include <concepts>
#include <optional>

class QDate;
class QDateTime;
class QTime;

// --- text to number -------------------------------------------------------

// The Italian reading of a number written as text: optional blanks around,
// optional sign ("+" or "-", leading), digits with "." as thousands separator
// (placed anywhere between digits, ignored as the classic runtime does), at
// most one "," as decimal separator, optional exponent ("1,5E3"). Returns no
// value for anything else ("", "abc", "1,2,3", "-", ",").
std::optional<double> parseNumberIt(const QString& text);

// True when parseNumberIt reads the text.
bool isNumericIt(const QString& text);

// A value as it travels through screens: a number variant is taken as it is,
// a text is read the Italian way. Null, empty or non-numeric give 0 (a bool
// is not a number). Text goes straight from its digits: to Currency with ties
// to even on the decimal value, to Single in one rounding. Beware a database
// decimal handed over as text with a dot ("12.5000"): it reads as 125000;
// the data layer gives numbers as numbers.
Currency getValoreCurrency(const QVariant& v);
Single getValoreSingle(const QVariant& v);
double getValoreNumerico(const QVariant& v);

// --- number to text -------------------------------------------------------

// Pattern "###,##0." followed by `decimals` zeros in Italian form ("1.234,50"),
// rounding half away from zero on the decimal digits. The pattern ends in its
// separator, so decimals 0 gives "1.234,". A Null, empty or non-numeric value
// gives "0," and `decimals` zeros, or "" when emptyWhenNull is true. Text values are
// read the Italian way first.
// Rounding starts from the decimal digits the user would read for the value:
// text and Currency as written, a double at 15 significant digits, a Single
// at 7 (so 1.005 gives "1,01" and 0.145 * 3 gives "0,44", as typed; the
// binary error of the last bits never moves a half). A result that rounds to
// zero has no sign. NaN and infinities count as non-numeric.
QString formattaImporto(const QVariant& value, int decimals, bool emptyWhenNull = false);
QString formattaImporto(Currency value, int decimals);
QString formattaImporto(double value, int decimals);
QString formattaImportoSingle(Single value, int decimals);
// A Single argument goes to formattaImportoSingle (exact match; int and other
// arguments still go to the double overload).
template <typename T>
requires std::same_as<T, Single> QString formattaImporto(T value, int decimals)
{
    return formattaImportoSingle(value, decimals);
}

// Pattern "###,##0" (half away from zero); a Null or non-number gives "0".
QString formattaIntero(const QVariant& value);

// A number as plain Italian text, as the classic runtime writes it when no
// pattern is given: decimal comma, no thousands separator, trailing zeros
// dropped, 15 significant digits for a double and 7 for a Single, exponent
// form ("1,5E+20", "1E-05") outside that range. parseNumberIt reads it back.
// For SQL use Currency::toPlainString or replace the comma.
QString plainTextIt(double value);
QString plainTextIt(Currency value);
QString plainTextSingleIt(Single value);
template <typename T>
requires std::same_as<T, Single> QString plainTextIt(T value) { return plainTextSingleIt(value); }

// Zero-filled masks such as "0000" and "00000": Format(7, "0000") = "0007".
// Numbers longer than the mask are written whole; negatives keep their sign.
QString formatMask(qint64 value, const QString& mask);

// --- dates ----------------------------------------------------------------

QString formatDate(const QDate& d);          // "DD/MM/YYYY", "" when invalid
QString formatDate(const QVariant& v);       // a date, date-time or date text; "" otherwise
QString formatDateTime(const QDateTime& dt); // "DD/MM/YYYY Hh:Nn:Ss", "" when invalid
QString formatDateTime(const QVariant& v);
QString formatStamp(const QDateTime& dt); // "YYYYMMDD-HhNnSs" (debug.txt)
QString formatTimeHM(const QTime& t);     // "Hh:Mm"

// A date typed or stored as text: "DD/MM/YYYY", "D/M/YY", "DD-MM-YYYY",
// ISO "YYYY-MM-DD" and ISO date-times; QDate/QDateTime variants as they are.
// Invalid QDate for anything else (Null included). Two-digit years 00-29 are
// 20xx, 30-99 19xx; a time after a date may use ":" or "." between its parts.
QDate toDate(const QVariant& v);
QDateTime toDateTime(const QVariant& v);
bool isDateIt(const QVariant& v);

// --- helpers shared by every screen ---------------------------------------

// The key as text, or "Null" for Null, non-numeric, zero or negative values
// (a positive non-whole number is written with a dot, as SQL reads it).
QString getIDOrNullStr(const QVariant& value);
// Null gives 0, otherwise the absolute value (a check box's -1 or 1 gives 1).
// A bool, or the text "true"/"false", gives 1 or 0; a non-number gives 0.
qint16 getChekByBool(const QVariant& value);
// The value as text cut to n characters, or filled with blanks on the right.
QString padRight(const QString& value, int n);
// The first n characters of the text, cut on whole characters: a character
// outside the basic plane (an emoji) is kept whole or left out, never halved.
// n counts characters as a server's text column does (code points).
QString leftChars(const QString& value, int n);
