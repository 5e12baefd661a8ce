#include "screens/framework/listcolumns.h"

#include "common/italiantext.h"
#include "data/recordset.h"

#include <QDate>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTreeWidget>

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kMaxFittedWidth = 420;
constexpr int kSortRole = Qt::UserRole + 1;

// Sorts by the values behind the texts: numbers as numbers, the rest as text.
class SortedItem : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        const QVariant a = data(column, kSortRole);
        const QVariant b = other.data(column, kSortRole);
        const bool numbers = a.typeId() == QMetaType::Double && b.typeId() == QMetaType::Double;
        if (numbers)
            return a.toDouble() < b.toDouble();
        return QString::localeAwareCompare(a.toString(), b.toString()) < 0;
    }
};

bool isNumber(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float: return true;
    default: return false;
    }
}

// The text of a value as the list shows it.
QString shown(const QVariant& v)
{
    if (v.isNull())
        return QString();
    if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float)
        return formattaImporto(v.toDouble(), 2);
    if (v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime)
        return formatDate(v);
    if (v.typeId() == QMetaType::QString) {
        // Dates kept as ISO text by the file database.
        static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}( 00:00:00)?$"));
        const QString text = v.toString();
        if (iso.match(text).hasMatch())
            return formatDate(v);
        return text;
    }
    return v.toString();
}

QVariant sortValue(const QVariant& v)
{
    if (isNumber(v))
        return v.toDouble();
    if (v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime)
        return toDate(v).toString(Qt::ISODate);
    return v.toString();
}

} // namespace

ListColumns ListColumns::fromRecordset(const Recordset& rs)
{
    ListColumns columns;
    for (int i = 0; i < rs.fieldCount(); ++i) {
        const QString name = rs.fieldName(i);
        if (name.compare(QLatin1String("RID"), Qt::CaseInsensitive) == 0
            || name.compare(QLatin1String("BLANK"), Qt::CaseInsensitive) == 0)
            continue;
        columns.m_headers << name;
        columns.m_fields << name;
        columns.m_widths << 0;
    }
    return columns;
}

ListColumns ListColumns::fromDescription(const QString& description)
{
    ListColumns columns;
    const QStringList entries = description.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString& entry : entries) {
        const QStringList parts = entry.split(QChar(0x00A4));
        if (parts.size() < 3)
            continue;
        columns.m_headers << parts.at(0);
        columns.m_widths << parts.at(1).toInt() / kTwipsPerPixel;
        columns.m_fields << parts.at(2);
    }
    return columns;
}

void ListColumns::applyHeaders(QTreeWidget& list) const
{
    list.setColumnCount(count() + 1);
    list.setHeaderLabels(QStringList(QString()) + m_headers);
    list.setColumnHidden(0, true);
}

QTreeWidgetItem* ListColumns::addRow(QTreeWidget& list, const Recordset& rs, const QString& keyPrefix) const
{
    auto* item = new SortedItem(&list);
    item->setData(0, Qt::UserRole, QString(keyPrefix + rs.value(QStringLiteral("RID")).toString()));
    for (int c = 0; c < count(); ++c) {
        const QVariant value = rs.value(m_fields.at(c));
        item->setText(c + 1, shown(value));
        item->setData(c + 1, kSortRole, sortValue(value));
        if (isNumber(value))
            item->setTextAlignment(c + 1, Qt::AlignRight | Qt::AlignVCenter);
    }
    return item;
}

void ListColumns::fitWidths(QTreeWidget& list) const
{
    for (int c = 0; c < count(); ++c) {
        if (m_widths.at(c) > 0) {
            list.setColumnWidth(c + 1, m_widths.at(c));
        } else {
            list.resizeColumnToContents(c + 1);
            list.setColumnWidth(c + 1, qMin(list.columnWidth(c + 1) + 12, kMaxFittedWidth));
        }
    }
}

QString ListColumns::itemKey(const QTreeWidgetItem& item, const QString& keyPrefix)
{
    QString key = item.data(0, Qt::UserRole).toString();
    if (key.startsWith(keyPrefix))
        key.remove(0, keyPrefix.size());
    return key;
}
