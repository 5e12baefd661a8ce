#pragma once
// The rewriting of the system's SQL mark-up for one back end.
//
// Statements are written once, with text values between the delimiter "¤"
// and the dialect-specific parts in blocks: "•A•...•/A•" for the file database,
// "•M•...•/M•" for MySQL, "•S•...•/S•" for SQL Server; "‡" is a comma and "¿"
// an AS that must survive until the last step, a backtick quotes an identifier.
// The functions here are pure text work; cAdoSqlServer calls them with its
// back end and reports their failures.

#include <QString>

namespace TipoServer {
constexpr int SqlServer = 0;
constexpr int FileDb = 1; // Access in the old days, SQLite here
constexpr int MySql = 2;
} // namespace TipoServer

// The result of a rewrite: ok is false when the text could not be rewritten
// (a clause that ends too early); the text is then empty.
struct DialectResult
{
    QString text;
    bool ok = true;
};

// The whole rewrite of a statement: apostrophes, blocks, TOP and FORMAT( on
// MySQL, backticks on SQL Server, then "‡" and "¿" on every back end.
DialectResult rewriteStatement(const QString& sql, int tipoServer);

// The block selection for a fragment: no apostrophes, "‡", "¿", backticks or
// TOP are touched; on MySQL the FORMAT( rewrite runs.
DialectResult rewriteFragment(const QString& sql, int tipoServer);

// Every "‡" becomes ",".
QString getPartSQLWithoutSP(const QString& sql);
