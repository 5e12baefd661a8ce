#pragma once
// Literal builders: every value that goes into a statement passes here.
//
// Text values: sqlText(value) gives delimiter + value + delimiter, with the
// characters that the mark-up rewriting would touch (the delimiter, "‡", "¿",
// the block marks, backticks, "(", blanks and "#") replaced by private-use
// code points. The rewriting never sees them; the driver restores them just
// before the statement runs (restoreSqlValues), so a value reaches the
// database byte for byte whatever it holds. Half a character (a lone UTF-16
// surrogate, left by a cut in the middle of an emoji) is not text: it is
// written as U+FFFD, the replacement character, and never reaches a driver.

#include <QString>
#include <QStringList>
#include <QVariant>

// The text delimiter of the mark-up: "¤".
QString getSQLSeparator();

// ¤value¤ with the value protected from the rewriting.
QString sqlText(const QString& value);

// The right side of a LIKE that finds the text itself, whatever it holds:
// "¤text%¤" for the texts that start with it, "¤%text%¤" for those that
// contain it. The wildcards of every back end ("%", "_", and "[" of SQL
// Server's sets) match as themselves, and so does "\", which MariaDB takes
// for its escape even in NO_BACKSLASH_ESCAPES mode: when the text holds one
// of them, each of those characters (and the escape "!" itself) is led by
// "!" and " ESCAPE ¤!¤" follows the pattern. Other texts give the pattern
// alone. Case and accents follow the back end: SQLite ignores the case of
// ASCII letters, MariaDB's collation the case and accents of every letter.
enum class LikeMatch {
    StartsWith,
    Contains
};
QString sqlLikePattern(const QString& text, LikeMatch match);

// "INSERT INTO table (c1, c2) VALUES (v1, v2)" and "UPDATE table SET c1 =
// v1, c2 = v2 WHERE RID = rid", the values already written as literals.
QString sqlInsert(const QString& table, const QStringList& columns, const QStringList& values);
QString sqlUpdate(const QString& table, const QStringList& columns, const QStringList& values, int rid);

// The protection alone, and its inverse (applied by the driver as the last
// step of every statement; it also mends half characters anywhere in it).
QString protectSqlValue(const QString& value);
QString restoreSqlValues(const QString& sql);

// Date, date-time and time literals for a back end (0 SQL Server, 1 file
// database, 2 MySQL). Anything that is not a date, Null included, gives "Null";
// an unknown back end gives an empty text.
QString sqlDateFor(const QVariant& value, int tipoServer);
QString sqlDateTimeFor(const QVariant& value, int tipoServer);
QString sqlTimeFor(const QVariant& value, int tipoServer);

// Numbers for SQL: "12.5", "12,5" and "1.234,50" give 12.5, 12.5 and 1234.5;
// "1.234" gives 1.234; "" and "abc" give "Null" (or "0" for the OrZero form).
QString getSqlNumber(const QVariant& value);
QString getSqlNumberOrZero(const QVariant& value);
