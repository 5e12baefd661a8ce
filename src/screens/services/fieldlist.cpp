#include "screens/services/fieldlist.h"

#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/schema.h"
#include "data/sqlliteral.h"

namespace fields {

namespace {

// A column whose name is a reserved word goes between back-quotes, which
// each back end turns into its own quoting.
QString sqlColumn(const QString& column)
{
    return column.compare(QLatin1String("NOTE"), Qt::CaseInsensitive) == 0
        ? QLatin1Char('`') + column + QLatin1Char('`')
        : column;
}

QStringList sqlColumns(const QList<Field>& fields)
{
    QStringList columns;
    for (const Field& f : fields)
        columns << sqlColumn(f.column);
    return columns;
}

Field declared(const char* column, const char* control, const char* caption, unsigned options)
{
    Field f;
    f.column = QString::fromLatin1(column);
    f.control = QString::fromLatin1(control);
    f.caption = QString::fromUtf8(caption);
    f.options = options;
    return f;
}

// The kind and length of a column from the schema.
void fromSchema(Field& f, const schema::Table& table)
{
    const schema::Column* column = nullptr;
    for (const schema::Column& c : table.columns)
        if (c.name.compare(f.column, Qt::CaseInsensitive) == 0)
            column = &c;
    Q_ASSERT_X(column, "FieldList", qPrintable(table.name + QLatin1Char('.') + f.column));
    if (!column || f.kind == Kind::Choice || f.kind == Kind::Combo)
        return;
    switch (column->kind) {
    case schema::ColKind::Text:
        f.kind = Kind::Text;
        f.length = column->length;
        break;
    case schema::ColKind::Memo: f.kind = Kind::Text; break;
    case schema::ColKind::Flag: f.kind = Kind::Flag; break;
    case schema::ColKind::Date:
    case schema::ColKind::DateTime: f.kind = Kind::Date; break;
    case schema::ColKind::Key:
    case schema::ColKind::Ref: f.kind = f.lookup ? Kind::Key : Kind::Number; break;
    case schema::ColKind::Int:
        f.kind = Kind::Number;
        f.options |= WholeNumber;
        f.decimals = 0;
        break;
    default: f.kind = Kind::Number; break;
    }
}

QString flagText(const QVariant& value) { return getChekByBool(value) > 0 ? QStringLiteral("1") : QStringLiteral("0"); }

bool blank(const Field& f, const QString& shown)
{
    switch (f.kind) {
    case Kind::Key: return shown.toInt() <= 0;
    case Kind::Combo: return f.has(ComboText) ? shown.isEmpty() : shown.toInt() <= 0;
    case Kind::Flag:
    case Kind::Choice: return false;
    default: return shown.trimmed().isEmpty();
    }
}

} // namespace

Field field(const char* column, const char* control, const char* caption, unsigned options)
{
    return declared(column, control, caption, options);
}

Field number(const char* column, const char* control, const char* caption, int decimals, unsigned options)
{
    Field f = declared(column, control, caption, options);
    f.decimals = decimals;
    return f;
}

Field key(const char* column, const char* control, const char* caption, const LookupTable& lookup, unsigned options)
{
    Field f = declared(column, control, caption, options);
    f.lookup = &lookup;
    return f;
}

Field choice(const char* column, const char* control, const char* caption, const QStringList& captions)
{
    Field f = declared(column, control, caption, None);
    f.kind = Kind::Choice;
    f.choices = captions;
    return f;
}

Field combo(const char* column, const char* control, const char* caption, unsigned options)
{
    Field f = declared(column, control, caption, options);
    f.kind = Kind::Combo;
    return f;
}

FieldList::FieldList(const QString& table, QList<Field> fields)
    : m_fields(std::move(fields))
{
    setTable(table);
}

void FieldList::setTable(const QString& table)
{
    m_table = table;
    if (const schema::Table* t = schema::findTable(table))
        for (Field& f : m_fields)
            fromSchema(f, *t);
}

int FieldList::indexOf(const QString& control) const
{
    for (int i = 0; i < size(); ++i)
        if (m_fields.at(i).control == control)
            return i;
    return -1;
}

const Field* FieldList::codeField() const
{
    for (const Field& f : m_fields)
        if (f.isCode())
            return &f;
    return nullptr;
}

QStringList FieldList::columns() const { return sqlColumns(m_fields); }

QString FieldList::selectStatement() const
{
    QString sql = QStringLiteral("SELECT RID");
    for (const Field& f : m_fields)
        sql += QStringLiteral(", ") + sqlColumn(f.column);
    return sql + QStringLiteral(" FROM ") + m_table;
}

QStringList FieldList::shownValues(const Recordset& rs) const
{
    QStringList shown;
    shown.reserve(size());
    for (const Field& f : m_fields) {
        const QVariant value = rs.value(f.column);
        switch (f.kind) {
        case Kind::Text: shown << value.toString(); break;
        case Kind::Number:
            shown << (value.isNull()           ? QString()
                          : f.has(WholeNumber) ? QString::number(value.toLongLong())
                                               : formattaImporto(value, f.decimals));
            break;
        case Kind::Date:
            shown << (value.isNull() ? QString() : toDate(value).toString(QStringLiteral("dd/MM/yyyy")));
            break;
        case Kind::Flag: shown << flagText(value); break;
        case Kind::Choice: shown << QString::number(value.toInt()); break;
        case Kind::Key: shown << (value.toInt() > 0 ? QString::number(value.toInt()) : QString()); break;
        case Kind::Combo:
            shown << (f.has(ComboText)        ? value.toString()
                          : value.toInt() > 0 ? QString::number(value.toInt())
                                              : QString());
            break;
        }
    }
    return shown;
}

QStringList FieldList::emptyValues() const
{
    QStringList shown;
    for (const Field& f : m_fields)
        shown << (f.kind == Kind::Flag || f.kind == Kind::Choice ? QStringLiteral("0") : QString());
    return shown;
}

QStringList FieldList::sqlValues(const QStringList& shown) const
{
    QStringList values;
    values.reserve(size());
    for (int i = 0; i < size(); ++i) {
        const Field& f = m_fields.at(i);
        const QString& v = shown.at(i);
        switch (f.kind) {
        case Kind::Text: values << sqlText(f.has(Trimmed) ? v.trimmed() : v); break;
        case Kind::Number: values << (f.has(ZeroWhenEmpty) ? getSqlNumberOrZero(v) : getSqlNumber(v)); break;
        case Kind::Date: values << gAdoSqlServer().getSQLDate(toDate(v)); break;
        case Kind::Flag:
            values << (v == QLatin1String("1") ? (f.has(FlagMinusOne) ? QStringLiteral("-1") : QStringLiteral("1"))
                                               : QStringLiteral("0"));
            break;
        case Kind::Choice: values << QString::number(v.toInt()); break;
        case Kind::Key: values << getIDOrNullStr(v.toInt()); break;
        case Kind::Combo: values << (f.has(ComboText) ? sqlText(v) : getIDOrNullStr(v.toInt())); break;
        }
    }
    return values;
}

QString FieldList::insertStatement(const QStringList& shown) const
{
    return sqlInsert(m_table, columns(), sqlValues(shown));
}

QString FieldList::updateStatement(const QStringList& shown, int rid) const
{
    return sqlUpdate(m_table, columns(), sqlValues(shown), rid);
}

QStringList FieldList::missing(const QStringList& shown) const
{
    QStringList found;
    for (int i = 0; i < size(); ++i)
        if (m_fields.at(i).has(Required) && blank(m_fields.at(i), shown.at(i)))
            found << obbligatorio(m_fields.at(i).caption);
    return found;
}

QString obbligatorio(const QString& caption)
{
    return QStringLiteral(" - Campo [") + caption + QStringLiteral("] Obbligatorio.");
}

QString errato(const QString& caption) { return QStringLiteral(" - Campo [") + caption + QStringLiteral("] Errato."); }

} // namespace fields
