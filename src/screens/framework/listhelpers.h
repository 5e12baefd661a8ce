#pragma once
// Small helpers of the screens' combos and lists.

#include <QList>
#include <QString>
#include <QVariant>

class QComboBox;
class QTreeWidget;

// Empties the combo and fills it from a statement whose first column is
// the key (the item data) and whose second is the text. False when the
// statement failed (already reported).
bool fillComboBox(QString& sql, QComboBox* combo);
bool fillComboBox(const QString& sql, QComboBox* combo);

// Selects the entry whose item data equals value; none (-1) when missing.
void setListindexByItemData(QComboBox* combo, const QVariant& value);

// Sorts a list by a column: a second call on the same column inverts the order.
void orderListView(QTreeWidget* list, int column);

// Sorts rows of values by one of their columns: numbers as numbers, dates
// as dates, text without regard to case.
void orderVbaList(QList<QVariantList>& rows, int column, bool descending = false);
