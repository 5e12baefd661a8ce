#pragma once
// The numerators and their counters of the current year (option
// AnnoCorrente): add a numerator, delete one that no document type uses,
// write a counter by hand. The list drives the screen: the selected
// numerator's key sits in the tag of txtNumero.

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class cKeyFunction;

class frmNumeratori : public QWidget
{
    Q_OBJECT

public:
    explicit frmNumeratori(QWidget* parent = nullptr);

    void addNewNumeratore();
    void delNumeratore();
    void getNewNumeroByNumeratore();
    // Refills the list; the item of `rid` is selected, or the first one.
    void bindList(int rid = 0);
    // An item whose name is exactly `descrizione`.
    bool controllaPresenzaNum(const QString& descrizione) const;

    QString anno() const { return m_anno; }

private:
    void cmdCommand_Click(int index);
    void lswClick(QTreeWidgetItem* item);
    void txtDescrizioneChanged();
    int selectedRid() const;

    QString m_anno;
    QLabel* m_lblAnno;
    QTreeWidget* m_lswNumeratori;
    QLabel* m_lblDescrizione;
    QLineEdit* m_txtNumero;
    QLineEdit* m_txtDescrizione;
    QList<QPushButton*> m_cmdCommand;
    cKeyFunction* m_keys;
};
