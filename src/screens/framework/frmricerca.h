#pragma once
// The general search dialog: a SELECT whose first column is RID, shown in a
// list with a filter box; it gives back the key of the row chosen. The
// filter searches the sort column, from the start of the text or, with
// chkLike, anywhere in it; a click on a header makes that column the sort
// and search column. The filter is text to look for, as typed: "%", "_" and
// "[" are characters like the others, never wildcards, and nothing typed
// can change the statement.

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class cTextBox;

class frmRicerca : public QDialog
{
    Q_OBJECT

public:
    explicit frmRicerca(QWidget* parent = nullptr);
    ~frmRicerca() override;

    // Prepares and fills the list. startEmpty keeps it empty until a filter
    // is typed; allowNew shows "&Nuovo"; sortColumn counts the visible
    // columns from 1 (0: the first); a title replaces the caption; optionKey
    // names the setting of section "Options" that keeps chkLike. The mode is
    // kept for the callers that pass one and changes nothing.
    void startMe(const QString& sql, int mode, bool startEmpty = false, bool allowNew = false, int sortColumn = 0,
                 const QString& title = QString(), const QString& optionKey = QString(), bool multiSelect = false);
    // The filter run of a shown dialog.
    void startMe(const QString& sFiltro);

    // The key chosen: -1 until a choice or for "&Nuovo", 0 when cancelled.
    int RID() const { return m_rid; }
    // The keys chosen, each led by a comma ("-1" for "&Nuovo").
    QString StrRID() const { return m_strRid; }
    // The column (counted from 1) as it can stand in a WHERE clause.
    QString getNomeCampo(int column) const;

    // The usual call: start, show modally, give back RID.
    static int cerca(const QString& sql, const QString& title = QString(), int sortColumn = 0, bool startEmpty = false,
                     bool allowNew = false, const QString& optionKey = QString());

protected:
    void showEvent(QShowEvent* event) override;
    void done(int result) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void bindData(const QString& statement);
    void choose();
    void chooseNew();
    void sortBy(int listColumn);

    QTreeWidget* m_lswMain;
    QLineEdit* m_txtFiltro;
    QLineEdit* m_txtMax;
    QCheckBox* m_chkLike;
    QPushButton* m_cmdNuovo;
    QLabel* m_lblInfo;
    cTextBox* m_filtro;
    cTextBox* m_max;

    QString m_sqlGiven;
    QString m_sql; // the statement in use, before the filter and the limit
    QString m_optionKey;
    int m_sortColumn = 1; // counted from 1, the key excluded
    Qt::SortOrder m_order = Qt::AscendingOrder;
    int m_rid = -1;
    QString m_strRid;
};
