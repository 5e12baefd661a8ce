#pragma once
// The statement work of the search dialog, kept apart from its widgets:
// the blank first column that holds each row's key, the start-empty guard,
// the filter on the search column in every half of a UNION, the row limit
// and the column name to filter by.

#include <QString>

namespace ricerca {

// The caller's statement made ready for the list. Without DISTINCT every
// SELECT part (both sides of a UNION) gets the first column "¤¤ AS BLANK";
// with startEmpty a condition that no row meets keeps the list empty.
QString prepareStatement(const QString& sql, bool startEmpty);

// " field LIKE ¤text%¤ " (starts with), or "¤%text%¤" when contains is on.
// The text is a value like any other (sqlLikePattern): the delimiter, quotes
// or mark-up characters in it cannot change the statement, and its "%", "_",
// "[" and "\" are searched as they are typed, not as wildcards.
QString likeCondition(const QString& field, const QString& text, bool contains);

// Adds a condition to every part of a statement: before ORDER BY (or GROUP
// BY), joined by AND to an existing WHERE, otherwise with a new WHERE.
QString addCondition(const QString& statement, const QString& condition);

// The statement cut at maxRows rows ("500" when the text is not a number
// above 0). On SQL Server each part gets its own TOP; on the file database
// and MySQL the limit goes on the first SELECT only, where the driver turns
// it into a LIMIT that holds for the whole UNION.
QString withMaxRows(const QString& statement, const QString& maxRows, int tipoServer);

// The name by which the list's column (counted from 1, the key excluded)
// can be used in a WHERE clause: the expression before its AS, with the
// back end's block chosen and the protected commas restored.
QString nomeCampo(const QString& statement, int column);

} // namespace ricerca
