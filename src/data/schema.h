#pragma once
// The one definition of the main database's tables. The DDL of every back end
// is generated from it; the model database and a new server database are built
// from it and from the seed rows (modelseed.h).

#include <QList>
#include <QString>
#include <QStringList>

namespace schema {

enum class ColKind {
    Key,      // auto-number primary key (RID)
    Ref,      // reference to another table's RID (FK_..., IK_...); 32-bit integer
    Text,     // text of `length` characters
    Memo,     // long text (notes, rich text, the report footer)
    Amount,   // money: DECIMAL(19,4) on the servers, REAL on SQLite
    Quantity, // quantities and stock figures
    Percent,  // percentages
    Number,   // any other number with decimals
    Flag,     // 0/1 (causal booleans also -1): small integer, may be Null
    Int,      // whole number (32-bit)
    Date,     // date
    DateTime, // date and time
};

struct Column
{
    QString name;
    ColKind kind = ColKind::Text;
    int length = 0;   // Text only
    QString refTable; // Ref only: the table whose RID it names; empty = no constraint
};

struct Index
{
    QString name;
    QStringList columns;
    bool unique = false;
};

struct Table
{
    QString name;
    QList<Column> columns;
    QList<Index> indexes;
    bool programKey = false; // the program writes RID itself (no identity on SQL Server)
    bool hasKey() const;     // first column is a Key
};

// Version of the schema written into the model; raise it with every change.
int schemaVersion();
// The table and column that hold the version row.
QString versionTable();
QString versionColumn();

// All tables, in an order in which each referenced table precedes its users
// where possible (self references and cycles are allowed).
const QList<Table>& tables();
const Table* findTable(const QString& name); // case-insensitive

// DDL statements for one back end (0 SQL Server, 1 SQLite file database,
// 2 MySQL/MariaDB), in execution order: tables, then indexes, then foreign
// keys where the back end adds them apart. Plain SQL, not the mark-up.
QStringList createStatements(int tipoServer);

// SQL type of a column on one back end (exposed for tests and tools).
QString sqlType(const Column& c, int tipoServer);

} // namespace schema
