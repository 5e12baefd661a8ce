#include "screens/framework/frmselectelement.h"

#include "core/dialogservice.h"
#include "data/recordset.h"
#include "lookups/lookups.h"
#include "screens/framework/listcolumns.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
const QString kKeyPrefix = QStringLiteral("E_");
}

frmSelectElement::frmSelectElement(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSelectElement"));
    setWindowTitle(QStringLiteral("Seleziona"));
    m_lswElenco = new QTreeWidget(this);
    m_lswElenco->setObjectName(QStringLiteral("lswElenco"));
    m_lswElenco->setRootIsDecorated(false);
    m_lswElenco->setAlternatingRowColors(true);
    m_lswElenco->setAllColumnsShowFocus(true);
    m_lswElenco->setSortingEnabled(true);

    m_cmdNew = new QPushButton(QStringLiteral("&Nuovo"), this);
    m_cmdNew->setObjectName(QStringLiteral("cmdNew"));
    auto* cmdOK = new QPushButton(QStringLiteral("&Seleziona"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    auto* cmdCancel = new QPushButton(QStringLiteral("&Chiudi"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    for (QPushButton* b : {m_cmdNew, cmdOK, cmdCancel})
        b->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdNew);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_lswElenco, 1);
    layout->addLayout(buttons);

    connect(cmdOK, &QPushButton::clicked, this, &frmSelectElement::select);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_lswElenco, &QTreeWidget::itemActivated, this, &frmSelectElement::select);
    connect(m_cmdNew, &QPushButton::clicked, this, [this] {
        m_new = true;
        m_keys.clear();
        accept();
    });
    resize(560, 320);
}

void frmSelectElement::startMe(const QString& columns, const Recordset& rs, bool multiSelect, bool allowNew)
{
    m_lswElenco->setSelectionMode(multiSelect ? QAbstractItemView::ExtendedSelection
                                              : QAbstractItemView::SingleSelection);
    m_cmdNew->setVisible(allowNew);
    fillRows(columns, rs);
}

void frmSelectElement::fillRows(const QString& description, const Recordset& rs)
{
    const ListColumns columns = ListColumns::fromDescription(description);
    m_lswElenco->clear();
    columns.applyHeaders(*m_lswElenco);
    Recordset rows = rs;
    for (rows.moveFirst(); !rows.eof(); rows.moveNext())
        columns.addRow(*m_lswElenco, rows, kKeyPrefix);
    columns.fitWidths(*m_lswElenco);
    m_lswElenco->sortByColumn(-1, Qt::AscendingOrder); // the order of the recordset
    if (QTreeWidgetItem* first = m_lswElenco->topLevelItem(0))
        m_lswElenco->setCurrentItem(first);
}

void frmSelectElement::select()
{
    QList<QTreeWidgetItem*> chosen = m_lswElenco->selectedItems();
    if (chosen.isEmpty() && m_lswElenco->currentItem())
        chosen << m_lswElenco->currentItem();
    if (chosen.isEmpty())
        return;
    std::sort(chosen.begin(), chosen.end(), [this](QTreeWidgetItem* a, QTreeWidgetItem* b) {
        return m_lswElenco->indexOfTopLevelItem(a) < m_lswElenco->indexOfTopLevelItem(b);
    });
    m_keys.clear();
    for (QTreeWidgetItem* item : std::as_const(chosen))
        m_keys << item->data(0, Qt::UserRole).toString();
    accept();
}

QStringList frmSelectElement::choose(const QString& columns, const Recordset& rs, bool multiSelect, bool allowNew)
{
    frmSelectElement dialog(dialogs::ownerWindow());
    dialog.startMe(columns, rs, multiSelect, allowNew);
    if (dialogs::exec(dialog) != QDialog::Accepted)
        return {};
    return dialog.newRequested() ? QStringList{QStringLiteral("-1")} : dialog.selectedKeys();
}

void installElementChooser() { setElementChooser(&frmSelectElement::choose); }
