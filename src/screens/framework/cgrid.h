#pragma once
// A grid of rows that the user edits cell by cell (instalments, quantity
// ranges): the editable columns take a typed field of their kind, which
// filters the keys and formats the value when the cell is left; the other
// columns are read-only. Cells hold text as the screen shows it.

#include <QTableWidget>

class cGrid : public QTableWidget
{
    Q_OBJECT

public:
    cGrid(const QString& name, const QStringList& headers, QWidget* parent = nullptr);

    // The column is edited as a field of the kind (typedinput::Kind).
    void setEditable(int column, int kind, int decimals = 2);
    int kindOf(int column) const;
    int decimalsOf(int column) const;

    QString text(int row, int column) const;
    void setText(int row, int column, const QString& text);
    int addRow(const QStringList& texts);
    void clearRows();

    // As wide as its columns.
    QSize sizeHint() const override;

Q_SIGNALS:
    // A cell was edited and formatted.
    void cellEdited(int row, int column);

private:
    QHash<int, QPair<int, int>> m_editable; // column: kind, decimals
};
