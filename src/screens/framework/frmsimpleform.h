#pragma once
// The one editor of every code table (RID, CODICE, DESCRIZIONE): which
// table, its caption and the name of its records come as arguments.

#include "screens/framework/ctablescreen.h"

// A use of the editor from the menu: the table, the caption, the record name.
struct SimpleFormUse
{
    QString tabella;
    QString titolo;
    QString nome;
};

// The use behind a menu item ("mnuTab_5", "mnuCollezioni"); empty when none.
SimpleFormUse simpleFormUse(const QString& menuItem);

class frmSimpleForm : public cTableScreen
{
    Q_OBJECT

public:
    explicit frmSimpleForm(QWidget* parent = nullptr);

    // nuovo true starts on a new record, otherwise the record rid is shown.
    // modale is kept for the opener, which shows the screen as it needs.
    void startMe(const QString& nome, const QString& titolo, const QString& tabella, bool modale, bool nuovo, int rid);

    QString nome() const { return m_nome; }
    QString tabella() const { return m_tabella; }
    bool modale() const { return m_modale; }

    bool deleteRecord() override;

private:
    QString m_nome;
    QString m_tabella;
    bool m_modale = false;
};
