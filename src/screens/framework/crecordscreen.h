#pragma once
// The pattern of every screen that edits one row of a table: a code field,
// the fields of the row, the hidden key label lblRID (empty or 0 for a new
// record) and the four commands Nuovo [F2], Salva [F5], Elimina [F7],
// Aggiorna [F11]. A screen says which table, which columns, how its fields
// are filled and written, and which faults its checks find; the flows are
// the same for all.

#include <QHash>
#include <QStringList>
#include <functional>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class Recordset;
class cKeyFunction;
class cLookupField;
class cTextBox;
class QLabel;

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
    // The faults of an empty code field and an empty description field.
    QStringList requiredFaults() const;

Q_SIGNALS:
    // The screen closes with a record shown.
    void evtUnloadWithRecord(int rid);

protected:
    // --- what each screen says
    virtual QString tableName() const = 0;
    // "SELECT RID, CODICE, ... FROM Table", without WHERE and ORDER BY.
    virtual QString selectStatement() const = 0;
    virtual void clearFields() = 0;
    virtual void fillFields(const Recordset& rs) = 0;
    // The lines of controllaInserimento (" - Campo [Codice] Obbligatorio.").
    virtual QStringList faults() const = 0;
    virtual QString insertStatement() const = 0;
    virtual QString updateStatement(int rid) const = 0;
    // The statement of the search behind cmdSfoglia_Click(0).
    virtual QString searchStatement() const = 0;

    // The row with key 1 belongs to the system and cannot be deleted.
    virtual bool protectsFirstRow() const { return true; }

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
    // The caption of a command button (0 Nuovo ... 3 Aggiorna).
    void setCommandCaption(int index, const QString& caption);
    // The function keys F3 to F7 of the fields; F3 in the code field browses.
    virtual void onFunctionKey(const QString& controlName, int keyCode, int shift);
    void setRid(int rid);
    // The caption, and the name that leads the caller tags of the statements.
    void setTitle(const QString& title);
    void setTypeName(const QString& typeName) { m_typeName = typeName; }
    // The field with its browse button cmdSfoglia_<index> beside it; the
    // button (and F3 in the field) calls cmdSfoglia_Click(index).
    QWidget* withBrowseButton(QWidget* field, int index);
    // A field with the code of another table's row, browsed as cmdSfoglia_<index>.
    cLookupField* addLookup(int index, QLineEdit* field, QLabel* label,
                            std::function<bool(QString&, QString&, int&)> validate, const QString& searchSql);
    // Deletes the shown record after the screen's own questions; true when gone.
    bool removeRecord(int rid);

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
    QMetaObject::Connection m_focusWatch;
    QHash<int, cLookupField*> m_lookups;
};
