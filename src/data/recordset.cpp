#include "data/recordset.h"

#include "common/italiantext.h"

#include <QSqlQuery>
#include <QSqlRecord>

namespace {

// Above this many columns a search by name goes through an index.
constexpr int kIndexFrom = 12;

bool isAscii(QStringView s)
{
    for (const QChar c : s)
        if (c.unicode() >= 0x80)
            return false;
    return true;
}

char16_t asciiLower(char16_t c) { return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c; }

// The names are equal once both are in lower case.
bool sameName(const QString& a, const QString& b)
{
    if (!isAscii(a) || !isAscii(b))
        return a.toLower() == b.toLower();
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (asciiLower(a.at(i).unicode()) != asciiLower(b.at(i).unicode()))
            return false;
    return true;
}

} // namespace

std::unique_ptr<Recordset> Recordset::fromQuery(QSqlQuery& query)
{
    auto rs = std::make_unique<Recordset>();
    rs->m_record = query.record();
    const int columns = rs->m_record.count();
    rs->m_columns = columns;
    rs->m_values.reserve(columns);
    while (query.next()) {
        for (int i = 0; i < columns; ++i)
            rs->m_values.append(query.value(i));
        ++rs->m_rowCount;
    }
    query.finish();
    rs->m_open = true;
    return rs;
}

void Recordset::close()
{
    m_open = false;
    m_values.clear();
    m_rowCount = 0;
    m_position = 0;
}

int Recordset::fieldIndex(const QString& name) const
{
    if (m_columns <= kIndexFrom) {
        if (m_names.isEmpty())
            for (int i = 0; i < m_columns; ++i)
                m_names.append(m_record.fieldName(i));
        for (int i = m_columns - 1; i >= 0; --i)
            if (sameName(m_names.at(i), name))
                return i;
        return -1;
    }
    if (m_index.isEmpty())
        for (int i = 0; i < m_columns; ++i)
            m_index.insert(m_record.fieldName(i).toLower(), i);
    return m_index.value(name.toLower(), -1);
}

QVariant Recordset::value(int index) const
{
    if (eof() || m_position < 0 || index < 0 || index >= m_columns)
        return QVariant();
    return m_values.at(m_position * m_columns + index);
}

QVariant Recordset::value(const QString& name) const { return value(fieldIndex(name)); }

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

bool Recordset::flag(const QString& name) const { return getChekByBool(value(name)) != 0; }
