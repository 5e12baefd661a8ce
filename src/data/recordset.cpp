#include "data/recordset.h"

#include "common/italiantext.h"

#include <QSqlQuery>
#include <QSqlRecord>

std::unique_ptr<Recordset> Recordset::fromQuery(QSqlQuery& query)
{
    auto rs = std::make_unique<Recordset>();
    const QSqlRecord record = query.record();
    const int columns = record.count();
    rs->m_names.reserve(columns);
    for (int i = 0; i < columns; ++i) {
        rs->m_names.append(record.fieldName(i));
        rs->m_index.insert(record.fieldName(i).toLower(), i);
    }
    while (query.next()) {
        QVariantList row;
        row.reserve(columns);
        for (int i = 0; i < columns; ++i)
            row.append(query.value(i));
        rs->m_rows.append(std::move(row));
    }
    query.finish();
    rs->m_open = true;
    return rs;
}

void Recordset::close()
{
    m_open = false;
    m_rows.clear();
    m_position = 0;
}

int Recordset::fieldIndex(const QString& name) const
{
    return m_index.value(name.toLower(), -1);
}

QVariant Recordset::value(int index) const
{
    if (eof() || m_position < 0 || index < 0 || index >= m_names.size())
        return QVariant();
    return m_rows.at(m_position).at(index);
}

QVariant Recordset::value(const QString& name) const
{
    return value(fieldIndex(name));
}

QString Recordset::text(const QString& name) const
{
    const QVariant v = value(name);
    return v.isNull() ? QString() : v.toString();
}

qint64 Recordset::integer(const QString& name) const
{
    const QVariant v = value(name);
    return v.isNull() ? 0 : v.toLongLong();
}

double Recordset::number(const QString& name) const
{
    const QVariant v = value(name);
    return v.isNull() ? 0.0 : v.toDouble();
}

Currency Recordset::amount(const QString& name) const
{
    const QVariant v = value(name);
    return v.isNull() ? Currency() : Currency::fromDouble(v.toDouble());
}

bool Recordset::flag(const QString& name) const
{
    return getChekByBool(value(name)) != 0;
}
