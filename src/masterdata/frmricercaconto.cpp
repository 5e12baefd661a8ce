#include "masterdata/frmricercaconto.h"

#include "core/dialogservice.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"

#include <QHBoxLayout>
#include <QHash>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

frmRicercaConto::frmRicercaConto(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRicercaConto"));
    setWindowTitle(QStringLiteral("Piano dei Conti"));
    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("TreeConti"));
    m_tree->setHeaderHidden(true);
    auto* cmdOk = new QPushButton(QStringLiteral("&OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    auto* cmdChiudi = new QPushButton(QStringLiteral("&Chiudi"), this);
    cmdChiudi->setObjectName(QStringLiteral("cmdChiudi"));
    cmdOk->setAutoDefault(false);
    cmdChiudi->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdChiudi);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tree, 1);
    layout->addLayout(buttons);
    connect(cmdOk, &QPushButton::clicked, this, &frmRicercaConto::choose);
    connect(cmdChiudi, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_tree, &QTreeWidget::itemActivated, this, &frmRicercaConto::choose);
    resize(460, 520);
}

QTreeWidgetItem* frmRicercaConto::addNode(QTreeWidgetItem* parent, const QString& key, const QString& code,
                                          const QString& description, int rid)
{
    auto* node = new QTreeWidgetItem(parent, {code + QLatin1Char(' ') + description});
    node->setData(0, Qt::UserRole, key);
    node->setData(0, Qt::UserRole + 1, rid);
    return node;
}

bool frmRicercaConto::getData()
{
    m_tree->clear();
    auto* root = new QTreeWidgetItem(m_tree, {QStringLiteral("Piano dei Conti")});
    root->setData(0, Qt::UserRole, QStringLiteral("ROT_"));
    const cReader rs(QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM PianoConti ORDER BY CODICE"),
                     objectName() + QStringLiteral(".getData"));
    if (!rs)
        return false;
    // The order by code puts every parent before its children. An account
    // whose parent row is missing hangs from the root, so it can still be chosen.
    QHash<QString, QTreeWidgetItem*> nodes;
    for (; !rs->eof(); rs->moveNext()) {
        const QString code = rs->text(QStringLiteral("CODICE"));
        const QString description = rs->text(QStringLiteral("DESCRIZIONE"));
        const int rid = int(rs->integer(QStringLiteral("RID")));
        QString key;
        QTreeWidgetItem* parent = root;
        switch (code.size()) {
        case 2: key = QStringLiteral("MAS_"); break;
        case 5:
            key = QStringLiteral("CON_");
            parent = nodes.value(QStringLiteral("MAS_") + code.left(2), root);
            break;
        case 8:
            key = QStringLiteral("SOT_");
            parent = nodes.value(QStringLiteral("CON_") + code.left(5), root);
            break;
        default: continue;
        }
        nodes.insert(key + code, addNode(parent, key + code, code, description, rid));
    }
    m_tree->expandAll();
    m_tree->setCurrentItem(root);
    return true;
}

void frmRicercaConto::choose()
{
    QTreeWidgetItem* node = m_tree->currentItem();
    if (!node || node->data(0, Qt::UserRole).toString() == QLatin1String("ROT_"))
        return;
    m_rid = node->data(0, Qt::UserRole + 1).toInt();
    accept();
}

int frmRicercaConto::scegli()
{
    frmRicercaConto dialog(dialogs::ownerWindow());
    if (!dialog.getData())
        return 0;
    return dialogs::exec(dialog) == QDialog::Accepted ? dialog.rid() : 0;
}
