#pragma once
// Rows of a new database: every option of the option store and a starter set
// that lets a new firm issue its first invoice at once.

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace schema {

// The rows of one table. Values are QVariant: int/qlonglong for keys, whole
// numbers and flags, double for amounts and percentages, QString for text,
// QDate/QDateTime for dates, a null QVariant for Null. Keys (RID) are given
// explicitly so that rows can refer to each other.
struct SeedTable
{
    QString table;
    QStringList columns;
    QList<QVariantList> rows;
};

// In insertion order: a referenced table comes before its users.
const QList<SeedTable>& seedData();

// The password that the model sets for the option "Amministratore".
QString defaultPassword();

} // namespace schema
