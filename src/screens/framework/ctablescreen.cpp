#include "ctablescreen.h"

#include "cinputs.h"
#include "fieldlimits.h"
#include "recordset.h"
#include "sqlliteral.h"

#include <QFormLayout>
#include <QLineEdit>

cTableScreen::cTableScreen(const QString& typeName, const QString& title, const QString& table,
                           QList<TableColumn> columns, QWidget* parent)
    : cRecordScreen(typeName, title, parent)
    , m_table(table)
    , m_columns(std::move(columns))
{
    m_form = new QFormLayout(fraMain());
    QFormLayout* form = m_form;
    for (const TableColumn& c : std::as_const(m_columns)) {
        auto* edit = new QLineEdit(fraMain());
        edit->setObjectName(QString::fromLatin1(c.control));
        if (c.width > 0)
            edit->setMaximumWidth(c.width);
        m_fields << edit;
        const QString column = QString::fromLatin1(c.column);
        auto* input = new cTextBox(edit, typedinput::Testo, this);
        if (column == QLatin1String("CODICE")) {
            setCodeField(input);
            form->addRow(QString::fromUtf8(c.caption), withBrowseButton(edit, 0));
            continue;
        }
        if (column == QLatin1String("DESCRIZIONE"))
            setDescriptionField(input);
        else
            input->setCKeyRef(keys());
        form->addRow(QString::fromUtf8(c.caption), edit);
    }
    limitFields();
}

void cTableScreen::setTable(const QString& table)
{
    m_table = table;
    limitFields();
}

void cTableScreen::limitFields()
{
    if (m_table.isEmpty())
        return;   // the generic editor learns its table later
    for (qsizetype i = 0; i < m_columns.size(); ++i)
        limitToColumn(m_fields.at(i), m_table, QString::fromLatin1(m_columns.at(i).column));
}

QString cTableScreen::selectStatement() const
{
    return QStringLiteral("SELECT RID, ") + columnNames().join(QStringLiteral(", ")) + QStringLiteral(" FROM ") + m_table;
}

void cTableScreen::clearFields()
{
    for (QLineEdit* field : m_fields)
        field->clear();
}

void cTableScreen::fillFields(const Recordset& rs)
{
    for (qsizetype i = 0; i < m_columns.size(); ++i)
        m_fields.at(i)->setText(rs.text(QString::fromLatin1(m_columns.at(i).column)));
}

QStringList cTableScreen::faults() const
{
    return requiredFaults();
}

QStringList cTableScreen::columnNames() const
{
    QStringList names;
    for (const TableColumn& c : m_columns)
        names << QString::fromLatin1(c.column);
    return names;
}

QStringList cTableScreen::columnValues() const
{
    QStringList values;
    for (QLineEdit* field : m_fields)
        values << sqlText(field->text().trimmed());
    return values;
}

QString cTableScreen::insertStatement() const
{
    return sqlInsert(m_table, columnNames(), columnValues());
}

QString cTableScreen::updateStatement(int rid) const
{
    return sqlUpdate(m_table, columnNames(), columnValues(), rid);
}

QString cTableScreen::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM ") + m_table + QStringLiteral(" ORDER BY DESCRIZIONE");
}
