#pragma once
// A field that holds the code of a row of another table: beside it the
// description label and the browse button, behind it the row's key. Leaving
// the field with a changed code looks the code up with its valida...
// procedure (an unknown code empties field and label); the browse button
// and F3 search the table and take the row chosen.

#include <QObject>
#include <QPointer>
#include <QVariant>

#include <functional>

class QAbstractButton;
class QLabel;
class QLineEdit;
class cRecordScreen;

class cLookupField : public QObject
{
    Q_OBJECT

public:
    // The valida... procedure: code, description and key by reference;
    // true when a row was found.
    using Validator = std::function<bool(QString& codice, QString& descrizione, int& rid)>;

    cLookupField(QLineEdit* field, QLabel* label, Validator validate, const QString& searchSql, QObject* parent);

    int rid() const { return m_rid; }
    // Shows the row with this key (0 clears the field).
    void setRid(int rid);
    // Shows a row already read (with the record that refers to it).
    void setRecord(int rid, const QString& code, const QString& description);
    void clear();
    // Searches the table and takes the row chosen.
    void browse();
    void setSearchTitle(const QString& title) { m_searchTitle = title; }
    // Another table behind the field, for a field whose table follows a
    // choice made elsewhere on the screen. The field is emptied.
    void setTable(Validator validate, const QString& searchSql, const QString& searchTitle);
    // Looks up a code typed and not yet left, as leaving the field does.
    void validate();
    // Field, label and browse button together.
    void setEnabled(bool enabled);
    // The browse button that goes with the field (its click calls browse()).
    void setButton(QAbstractButton* button);
    // The screen that makes a new row of the table (a record screen, by its
    // registered name). A button beside the browse button, and F4 in the
    // field, open it on a new record; the record it closes with comes back
    // into the field, so a user can create it in the middle of typing. When
    // that screen is already open with work in it, the user is asked first.
    void setEditor(const QString& screen, const QVariant& argument = QVariant());
    void openEditor();
    QLineEdit* field() const { return m_field; }

Q_SIGNALS:
    // The key changed by the user (0 when the code was emptied or unknown).
    void changed(int rid);

private:
    void takeBack(int rid);
    // A new record with nothing typed in it: nothing to lose.
    static bool isBlank(const cRecordScreen& screen);
    void show(const QString& code, const QString& description);

    QLineEdit* m_field;
    QLabel* m_label;
    QPointer<QAbstractButton> m_button;
    QPointer<QAbstractButton> m_newButton;
    QString m_editor;
    QVariant m_editorArgument;
    Validator m_validate;
    QString m_searchSql;
    QString m_searchTitle;
    QString m_shownCode;
    int m_rid = 0;
};
