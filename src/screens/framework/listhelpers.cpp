#include "screens/framework/listhelpers.h"

#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"

#include <QComboBox>
#include <QHeaderView>
#include <QTreeWidget>

#include <algorithm>

bool fillComboBox(QString& sql, QComboBox* combo)
{
    combo->clear();
    const QString form = combo->window() ? combo->window()->objectName() : QString();
    const cReader rs(sql, form + QLatin1Char('.') + combo->objectName() + QStringLiteral(".fillComboBox > bOrvantis"));
    if (!rs)
        return false;
    for (; !rs->eof(); rs->moveNext())
        combo->addItem(rs->value(1).toString(), rs->value(0));
    return true;
}

bool fillComboBox(const QString& sql, QComboBox* combo)
{
    QString copy = sql;
    return fillComboBox(copy, combo);
}

void setListindexByItemData(QComboBox* combo, const QVariant& value)
{
    for (int i = 0; i < combo->count(); ++i) {
        if (combo->itemData(i).toString() == value.toString()) {
            combo->setCurrentIndex(i);
            return;
        }
    }
    combo->setCurrentIndex(-1);
}

void orderListView(QTreeWidget* list, int column)
{
    const bool again = list->sortColumn() == column && list->header()->sortIndicatorOrder() == Qt::AscendingOrder;
    const Qt::SortOrder order = again ? Qt::DescendingOrder : Qt::AscendingOrder;
    list->sortItems(column, order);
    list->header()->setSortIndicator(column, order);
}

namespace {
bool lessThan(const QVariant& a, const QVariant& b)
{
    bool na = false, nb = false;
    const double da = a.toDouble(&na), db = b.toDouble(&nb);
    if (na && nb && a.typeId() != QMetaType::QString && b.typeId() != QMetaType::QString)
        return da < db;
    if (a.typeId() == QMetaType::QDate && b.typeId() == QMetaType::QDate)
        return a.toDate() < b.toDate();
    if (a.typeId() == QMetaType::QDateTime && b.typeId() == QMetaType::QDateTime)
        return a.toDateTime() < b.toDateTime();
    return a.toString().compare(b.toString(), Qt::CaseInsensitive) < 0;
}
} // namespace

void orderVbaList(QList<QVariantList>& rows, int column, bool descending)
{
    std::stable_sort(rows.begin(), rows.end(), [column, descending](const QVariantList& a, const QVariantList& b) {
        return descending ? lessThan(b.value(column), a.value(column)) : lessThan(a.value(column), b.value(column));
    });
}
