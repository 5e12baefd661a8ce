#pragma once
// A record screen made from a list of text columns: one labelled field a
// column, code and description required, each field as long as its column. For the tables whose rows are
// plain text (banks, sales agents).

#include "crecordscreen.h"

#include <QList>

class QFormLayout;
class QLineEdit;

struct TableColumn
{
    const char* column;     // "CODICE"
    const char* caption;    // "Codice:"
    const char* control;    // "txtCodice"
    int width = 0;          // the field's maximum width in pixels; 0 the whole row
};

class cTableScreen : public cRecordScreen
{
    Q_OBJECT

public:
    cTableScreen(const QString& typeName, const QString& title, const QString& table, QList<TableColumn> columns,
                 QWidget* parent = nullptr);

protected:
    // The table, and the fields' limits from its columns.
    void setTable(const QString& table);
    // The form of the fields, for screens that add rows of their own.
    QFormLayout* form() const { return m_form; }
    QLineEdit* field(int column) const { return m_fields.at(column); }
    QString tableName() const override { return m_table; }
    QString selectStatement() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    QString insertStatement() const override;
    QString updateStatement(int rid) const override;
    QString searchStatement() const override;

private:
    void limitFields();
    QStringList columnNames() const;
    QStringList columnValues() const;

    QString m_table;
    QList<TableColumn> m_columns;
    QList<QLineEdit*> m_fields;
    QFormLayout* m_form;
};
