#pragma once
// The pattern of every screen that edits one row of a table: a code field,
// the fields of the row, the hidden key label lblRID (empty or 0 for a new
// record) and the four commands Nuovo [F2], Salva [F5], Elimina [F7],
// Aggiorna [F11]. A screen declares its fields once (setFields): their
// controls, the read, the insert and update statements, the missing fields
// and the input limits follow from that list; the screen adds its own rules.
// The flows are the same for all.

#include "screens/services/fieldlist.h"

#include <QHash>
#include <QStringList>
#include <QWidget>

#include <functional>

class QButtonGroup;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class Recordset;
class cKeyFunction;
class cFieldLeave;
class cLookupField;
class cTextBox;

class cRecordScreen : public QWidget
{
    Q_OBJECT

public:
    cRecordScreen(const QString& typeName, const QString& title, QWidget* parent = nullptr);
    ~cRecordScreen() override;

    // keepCase false puts the description in upper case; the code always is.
    // newRecord true starts empty, otherwise the record with key rid is shown.
    void startMe(bool keepCase, bool newRecord, int rid);

    // The record by key, or by code when rid is below 1.
    virtual void showData(int rid, const QString& codice);
    virtual bool saveRecord();
    virtual bool newRecord();
    virtual bool deleteRecord();
    virtual void refreshRecord();
    // True when faults were found and shown.
    bool controllaInserimento();

    void cmdCommand_Click(int index);
    virtual void cmdSfoglia_Click(int index);

    QString typeName() const { return m_typeName; }
    QString title() const { return m_title; }
    // The key of the shown record, 0 for a new one.
    int currentRid() const;

    // "Attenzione:" and the faults, one a line.
    static QString faultsMessage(const QStringList& faults);

    const fields::FieldList& fieldList() const { return m_fields; }
    // The control of a declared field: a line edit, check box or combo box,
    // the first option button of a choice.
    QWidget* control(const QString& name) const;
    // The line edit of a text, number or date field, and what it shows.
    QLineEdit* lineEdit(const QString& name) const;
    QString text(const QString& name) const;
    // Whether the check box of a flag is ticked.
    bool isChecked(const QString& name) const;
    // The look-up behind a key field.
    cLookupField* lookupOf(const QString& name) const;
    // The values as the controls hold them, in the order of the fields.
    QStringList shownValues() const;

Q_SIGNALS:
    // The screen closes with a record shown.
    void evtUnloadWithRecord(int rid);

protected:
    // --- what each screen says; by default all of it comes from the fields
    virtual QString tableName() const { return m_fields.table(); }
    // "SELECT RID, CODICE, ... FROM Table", without WHERE and ORDER BY.
    virtual QString selectStatement() const { return m_fields.selectStatement(); }
    // The condition that finds the record of a code: "CODICE = 'IVA22'".
    virtual QString codeCondition(const QString& code) const;
    virtual void clearFields();
    virtual void fillFields(const Recordset& rs);
    // The lines of controllaInserimento (" - Campo [Codice] Obbligatorio."):
    // the required fields left blank; screens add their own rules.
    virtual QStringList faults() const;
    virtual QString insertStatement() const { return m_fields.insertStatement(shownValues()); }
    virtual QString updateStatement(int rid) const { return m_fields.updateStatement(shownValues(), rid); }
    // Inside the save's transaction: writes the row (insert for a rid of 0)
    // and gives its key, -1 on a failure already told.
    virtual int writeRecord(int rid);
    // Inside the same transaction, after the row: what belongs to it in other
    // tables (instalments, alternatives). No dialog here: the transaction is
    // open. False on a failure already told; everything is rolled back.
    virtual bool saveDetails(int rid)
    {
        Q_UNUSED(rid);
        return true;
    }
    // The statement of the search behind cmdSfoglia_Click(0).
    virtual QString searchStatement() const;

    // The row with key 1 belongs to the system: refused before any question.
    virtual bool protectsFirstRow() const { return false; }

    // --- the fields
    // Declares the fields and makes their controls in fraMain(): a line edit
    // (code, description, text, number, date), a check box, option buttons
    // control_0, control_1, ..., a combo box the screen fills, or for a key
    // the code field with its browse button and description label. The code
    // field (column CODICE) browses as cmdSfoglia_0, key fields as
    // cmdSfoglia_1, 2, ... in their order unless firstKeyIndex says otherwise.
    void setFields(fields::FieldList list, int firstKeyIndex = 1);
    // The table of the fields changes (the generic table editor).
    void setFieldsTable(const QString& table);
    // What a layout places for a field: the field with its browse button, a
    // key field with its description, the option buttons in a row.
    QWidget* fieldRow(const QString& name) const;
    // Every field in a form of captions and rows, in the order of the list.
    QFormLayout* layoutFields();
    // Some fields in a form of their own: a group box with the title, or a
    // plain panel without one (a tab's page).
    QWidget* fieldGroup(const QString& title, const QStringList& controls);
    void showValues(const QStringList& values);

    // --- for the screens
    // The area of the fields, above the commands.
    QWidget* fraMain() const { return m_fraMain; }
    cKeyFunction* keys() const { return m_keys; }
    // The code and description fields, wrapped (the code is upper case).
    void setCodeField(cTextBox* code);
    void setDescriptionField(cTextBox* description);
    cTextBox* codeField() const { return m_code; }
    QString codeText() const;
    // Leaving the code field with a code: by default the record of that code
    // is loaded when there is one.
    virtual void codeLeft(const QString& code);
    // The focus moved from the named control to another of this screen (the
    // Validate step of the field). False keeps the cursor in the field.
    virtual bool fieldLeft(const QString& controlName)
    {
        Q_UNUSED(controlName);
        return true;
    }
    // The caption of a command button (0 Nuovo ... 3 Aggiorna).
    void setCommandCaption(int index, const QString& caption);
    // The function keys F3 to F7 of the fields; F3 in the code field browses.
    virtual void onFunctionKey(const QString& controlName, int keyCode, int shift);
    void setRid(int rid);
    // The code field's text is the shown record's code (after the screen
    // wrote it there itself): leaving the field unchanged loads nothing.
    void codeShown();
    // The caption, and the name that leads the caller tags of the statements.
    void setTitle(const QString& title);
    void setTypeName(const QString& typeName) { m_typeName = typeName; }
    // The field with its browse button cmdSfoglia_<index> beside it; the
    // button (and F3 in the field) calls cmdSfoglia_Click(index).
    QWidget* withBrowseButton(QWidget* field, int index);
    // A field with the code of another table's row, browsed as cmdSfoglia_<index>.
    cLookupField* addLookup(int index, QLineEdit* field, QLabel* label,
                            std::function<bool(QString&, QString&, int&)> validate, const QString& searchSql);
    // The question before a delete: "Eliminare il record IVA22?".
    virtual QString deleteQuestion() const;
    // Deletes the shown record once the user said yes; true when gone.
    virtual bool removeRecord(int rid);

    void closeEvent(QCloseEvent* event) override;

private:
    void pressCommand(int index);
    void closeScreen();
    QString tag(const QString& procedure) const;

    QString m_typeName;
    QString m_title;
    QWidget* m_fraMain;
    QLabel* m_lblRID;
    QList<QPushButton*> m_cmdCommand;
    cKeyFunction* m_keys;
    cTextBox* m_code = nullptr;
    cTextBox* m_description = nullptr;
    bool m_unloadRaised = false;
    cFieldLeave* m_leave = nullptr;
    QHash<int, cLookupField*> m_lookups;
    // The code of the record as shown: leaving the code field unchanged
    // does not load it again over what was typed.
    QString m_shownCode;

    struct Bound
    {
        QWidget* control = nullptr;
        QWidget* row = nullptr;
        cTextBox* input = nullptr;
        cLookupField* lookup = nullptr;
        QButtonGroup* group = nullptr;
    };
    Bound bind(const fields::Field& field, int& keyIndex);
    void onCodeFieldLeft();
    fields::FieldList m_fields;
    QList<Bound> m_bound;
};
