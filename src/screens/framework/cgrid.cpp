#include "screens/framework/cgrid.h"

#include "screens/framework/cinputs.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace {

// The editor of a cell: a line edit with the typed behaviour of its column.
class TypedDelegate : public QStyledItemDelegate
{
public:
    explicit TypedDelegate(cGrid* grid)
        : QStyledItemDelegate(grid)
        , m_grid(grid)
    { }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const override
    {
        const int kind = m_grid->kindOf(index.column());
        if (kind < 0)
            return nullptr;
        auto* editor = new QLineEdit(parent);
        editor->setFrame(false);
        auto* typed = new cTextBox(editor, kind, editor);
        typed->setDecimalPrecision(m_grid->decimalsOf(index.column()));
        // Arrows move between cells, not between the screen's fields.
        typed->setNoTabSend(true);
        return editor;
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override
    {
        auto* line = static_cast<QLineEdit*>(editor);
        const auto validation =
            typedinput::contentValidate(m_grid->kindOf(index.column()), line->text(),
                                        m_grid->decimalsOf(index.column()), true, QStringLiteral("DD/MM/YYYY"));
        model->setData(index, validation.text);
        Q_EMIT m_grid->cellEdited(index.row(), index.column());
    }

private:
    cGrid* m_grid;
};

} // namespace

cGrid::cGrid(const QString& name, const QStringList& headers, QWidget* parent)
    : QTableWidget(0, int(headers.size()), parent)
{
    setObjectName(name);
    setHorizontalHeaderLabels(headers);
    verticalHeader()->setVisible(false);
    horizontalHeader()->setStretchLastSection(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::AllEditTriggers);
    setTabKeyNavigation(true);
    setItemDelegate(new TypedDelegate(this));
}

void cGrid::setEditable(int column, int kind, int decimals) { m_editable.insert(column, {kind, decimals}); }

int cGrid::kindOf(int column) const { return m_editable.value(column, {-1, 0}).first; }

int cGrid::decimalsOf(int column) const { return m_editable.value(column, {-1, 0}).second; }

QString cGrid::text(int row, int column) const
{
    const QTableWidgetItem* cell = item(row, column);
    return cell ? cell->text() : QString();
}

void cGrid::setText(int row, int column, const QString& text)
{
    QTableWidgetItem* cell = item(row, column);
    if (!cell) {
        cell = new QTableWidgetItem;
        if (kindOf(column) < 0)
            cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
        if (typedinput::alignsRight(kindOf(column)))
            cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        setItem(row, column, cell);
    }
    cell->setText(text);
}

int cGrid::addRow(const QStringList& texts)
{
    const int row = rowCount();
    insertRow(row);
    for (int column = 0; column < columnCount(); ++column)
        setText(row, column, texts.value(column));
    return row;
}

void cGrid::clearRows() { setRowCount(0); }

QSize cGrid::sizeHint() const
{
    int width = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < columnCount(); ++column)
        width += columnWidth(column);
    return {width, QTableWidget::sizeHint().height()};
}
