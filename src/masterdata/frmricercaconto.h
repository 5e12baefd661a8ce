#pragma once
// The chart of accounts as a tree, mastro > conto > sottoconto, to pick an
// account from.

#include <QDialog>

class QTreeWidget;
class QTreeWidgetItem;

class frmRicercaConto : public QDialog
{
    Q_OBJECT

public:
    explicit frmRicercaConto(QWidget* parent = nullptr);

    // Fills the tree from the table; false when the statement failed.
    bool getData();
    // The key of the account chosen, 0 for none.
    int rid() const { return m_rid; }

    // Shows the tree modally and gives back the key chosen, 0 for none.
    static int scegli();

private:
    QTreeWidgetItem* addNode(QTreeWidgetItem* parent, const QString& key, const QString& code,
                             const QString& description, int rid);
    void choose();

    QTreeWidget* m_tree;
    int m_rid = 0;
};
