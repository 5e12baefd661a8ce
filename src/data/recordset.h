#pragma once
// The rows of one statement, read to the end at once so that no lock or
// cursor stays open on the database while the caller walks them. Fields are
// read by name (case-insensitive) or by position; a database Null comes back
// as a null QVariant.

#include "common/currency.h"

#include <QHash>
#include <QList>
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

    bool isOpen() const { return m_open; }     // State: 1 open, 0 closed
    int State() const { return m_open ? 1 : 0; }
    void close();

    bool eof() const { return m_position >= m_rows.size() || m_rows.isEmpty(); }
    bool bof() const { return m_position < 0 || m_rows.isEmpty(); }
    void moveNext() { if (m_position < m_rows.size()) ++m_position; }
    void movePrevious() { if (m_position >= 0) --m_position; }
    void moveFirst() { m_position = 0; }
    void moveLast() { m_position = m_rows.isEmpty() ? 0 : m_rows.size() - 1; }
    int recordCount() const { return int(m_rows.size()); }
    int absolutePosition() const { return int(m_position) + 1; }

    int fieldCount() const { return int(m_names.size()); }
    QString fieldName(int index) const { return m_names.value(index); }
    int fieldIndex(const QString& name) const;   // -1 when missing

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
    bool flag(const QString& name) const;       // not zero; Null is false

private:
    QStringList m_names;
    QHash<QString, int> m_index;   // lower-case name -> position
    QList<QVariantList> m_rows;
    qsizetype m_position = 0;
    bool m_open = false;
};

using RecordsetPtr = std::unique_ptr<Recordset>;
