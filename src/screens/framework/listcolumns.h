#pragma once
// The columns of the lists of the search dialogs: which fields of a
// recordset they show, under which headers and widths, and the rows made
// from them. Column 0 of the list is hidden and holds each row's key
// ("RID12", "E_12"); values show in Italian form and sort by their value.

#include <QString>
#include <QStringList>

class QTreeWidget;
class QTreeWidgetItem;
class Recordset;

class ListColumns
{
public:
    // Every field but RID and the blank key column, headed by its name,
    // wide enough for its values.
    static ListColumns fromRecordset(const Recordset& rs);
    // "Marca¤800¤CODMARCA|Codice¤1800¤CODICE|": header, width in twips and
    // field of each column, every entry closed by "|".
    static ListColumns fromDescription(const QString& description);

    int count() const { return int(m_fields.size()); }
    QStringList headers() const { return m_headers; }

    void applyHeaders(QTreeWidget& list) const;
    // A row for the current record; its key is prefix + RID.
    QTreeWidgetItem* addRow(QTreeWidget& list, const Recordset& rs, const QString& keyPrefix) const;
    void fitWidths(QTreeWidget& list) const;

    // The row's key without its prefix.
    static QString itemKey(const QTreeWidgetItem& item, const QString& keyPrefix);

private:
    QStringList m_headers;
    QStringList m_fields;
    QList<int> m_widths; // pixels; 0 fits the values
};
