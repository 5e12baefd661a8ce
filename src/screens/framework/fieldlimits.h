#pragma once
// The input limits of the fields that hold a table's text column, taken from
// the one definition of the tables (schema.h), never typed by hand: a text
// typed in a screen always fits its column, so no back end ever refuses it
// for its length.
//
// A line edit counts its maximum length in UTF-16 code units, as SQL
// Server's NVARCHAR does; MariaDB's VARCHAR counts characters (code points),
// of which a character outside the basic plane (an emoji) is one but takes
// two code units. The limit is therefore exact on SQL Server and at worst
// stricter on MariaDB (a text full of emoji stops at half the column), and
// SQLite keeps any length. A character that does not fit whole is left out,
// never halved.

#include <QString>

class QLineEdit;

// The length of a text column of the schema (table and column names are
// case-insensitive); 0 when the table or the column is unknown or the column
// is not text of a fixed length (a memo, a number, a key).
int columnLength(const QString& table, const QString& column);

// Limits the field to the length of its column and returns that length.
// For a column without a length the field is left as it is and 0 comes back.
int limitToColumn(QLineEdit* field, const QString& table, const QString& column);

// Keeps a field readable however its window shrinks (at the minimum size and
// after "Affianca"): at least eight of its widest characters and its frame,
// and no wider than `maximum` (0: as wide as the layout makes it).
void keepReadable(QLineEdit* field, int maximum = 0);
// The width of `characters` characters of the field's font with its frame.
int readableWidth(const QLineEdit* field, int characters);
