#pragma once
// The chooser for a code that fits several rows: the rows of a recordset
// under the columns of a description ("Marca¤800¤CODMARCA|..."), one or
// more to pick. Each row's key is "E_" followed by its RID.

#include <QDialog>
#include <QStringList>

class QTreeWidget;
class QPushButton;
class Recordset;

class frmSelectElement : public QDialog
{
    Q_OBJECT

public:
    explicit frmSelectElement(QWidget* parent = nullptr);

    void startMe(const QString& columns, const Recordset& rs, bool multiSelect, bool allowNew);

    // The keys of the rows chosen ("E_12"), empty when closed without a choice.
    QStringList selectedKeys() const { return m_keys; }
    // "&Nuovo" was pressed.
    bool newRequested() const { return m_new; }

    // Shows the chooser modally through the dialog service.
    static QStringList choose(const QString& columns, const Recordset& rs, bool multiSelect, bool allowNew);

private:
    void fillRows(const QString& columns, const Recordset& rs);
    void select();

    QTreeWidget* m_lswElenco;
    QPushButton* m_cmdNew;
    QStringList m_keys;
    bool m_new = false;
};

// Makes frmSelectElement the chooser of the look-ups.
void installElementChooser();
