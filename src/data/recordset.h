#pragma once
// The rows of one statement, read to the end at once so that no lock or
// cursor stays open on the database while the caller walks them. Fields are
// read by name (case-insensitive) or by position; a database Null comes back
// as a null QVariant.

#include "common/currency.h"

#include <QHash>
#include <QList>
#include <QSqlRecord>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class QSqlQuery;

class Recordset
{
public:
    Recordset() = default;
    // Reads every row of an executed query.
    static std::unique_ptr<Recordset> fromQuery(QSqlQuery& query);

    bool isOpen() const { return m_open; } // State: 1 open, 0 closed
    int State() const { return m_open ? 1 : 0; }
    void close();

    bool eof() const { return m_position >= m_rowCount || m_rowCount == 0; }
    bool bof() const { return m_position < 0 || m_rowCount == 0; }
    void moveNext()
    {
        if (m_position < m_rowCount)
            ++m_position;
    }
    void movePrevious()
    {
        if (m_position >= 0)
            --m_position;
    }
    void moveFirst() { m_position = 0; }
    void moveLast() { m_position = m_rowCount == 0 ? 0 : m_rowCount - 1; }
    int recordCount() const { return int(m_rowCount); }
    int absolutePosition() const { return int(m_position) + 1; }

    int fieldCount() const { return m_columns; }
    QString fieldName(int index) const
    {
        return index >= 0 && index < m_columns ? m_record.fieldName(index) : QString();
    }
    int fieldIndex(const QString& name) const; // -1 when missing; the last of equal names

    // The current row's field; a null QVariant for Null, for a missing field
    // and when there is no current row.
    QVariant value(int index) const;
    QVariant value(const QString& name) const;
    QVariant operator[](const QString& name) const { return value(name); }
    bool isNull(const QString& name) const { return value(name).isNull(); }

    // Typed readers for the usual column kinds; Null reads as 0 or empty.
    QString text(const QString& name) const;
    qint64 integer(const QString& name) const;
    double number(const QString& name) const;
    Currency amount(const QString& name) const;
    bool flag(const QString& name) const; // not zero; Null is false

private:
    QSqlRecord m_record; // the names, as the driver gives them
    int m_columns = 0;
    QVariantList m_values; // the rows one after the other
    qsizetype m_rowCount = 0;
    qsizetype m_position = 0;
    bool m_open = false;
    // Made at the first search by name: the names of a narrow record,
    // searched one by one, or lower-case name -> position for a wide one.
    mutable QStringList m_names;
    mutable QHash<QString, int> m_index;
};

using RecordsetPtr = std::unique_ptr<Recordset>;
