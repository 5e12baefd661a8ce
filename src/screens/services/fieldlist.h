#pragma once
// The fields of a record screen, declared once. Each field names its column,
// its control, its caption and whether it is required; its kind and length
// come from the one definition of the tables. From this list come the read
// of a record, what each control shows, the insert and update statements,
// the "Attenzione:" lines of the missing fields and the input limits, so a
// column added to a screen is one line and no two lists can disagree.
//
// Values travel as the screen shows them: text as typed, numbers in Italian
// form ("22,00"), flags "1" or "0", keys the row's key as text ("" for none),
// a choice of option buttons its index, a combo its item's key (or text),
// dates "DD/MM/YYYY".

#include "lookups/lookuptable.h"

#include <QList>
#include <QString>
#include <QStringList>

class Recordset;

namespace fields {

enum class Kind {
    Text,   // a line edit; a memo column too
    Number, // a line edit of a numeric kind
    Date,   // a line edit of the date kind
    Flag,   // a check box
    Choice, // option buttons control_0, control_1, ...: the column holds the index
    Key,    // the code of another table's row; the column holds its key
    Combo,  // a list the screen fills: the column holds the item's key, or its text
};

// Options of a declaration, combined with |.
enum Option : unsigned {
    None = 0,
    Required = 1u << 0,      // blank is a fault: " - Campo [caption] Obbligatorio."
    FlagMinusOne = 1u << 1,  // a flag written -1 for yes (the causals' flags)
    ZeroWhenEmpty = 1u << 2, // an empty number is written 0, not Null
    WholeNumber = 1u << 3,   // a number without decimals
    Trimmed = 1u << 4,       // text written without leading and trailing blanks
    ComboText = 1u << 5,     // a combo whose column holds a text: the item's text data, or its caption
    Code = 1u << 6,          // the field that finds the record (column CODICE is one by itself)
};

struct Field
{
    QString column;
    QString control;
    QString caption; // without the colon: "Descrizione Stampa"
    unsigned options = None;
    Kind kind = Kind::Text;              // from the schema, unless a choice
    int length = 0;                      // text: the column's length, 0 none
    int decimals = 2;                    // number: shown decimals
    const LookupTable* lookup = nullptr; // key fields
    QStringList choices;                 // choice: the captions of the option buttons

    bool has(Option option) const { return (options & option) != 0; }
    bool isCode() const { return has(Code) || column.compare(QLatin1String("CODICE"), Qt::CaseInsensitive) == 0; }
    // The caption of the field's row: "Codice:".
    QString label() const { return caption + QLatin1Char(':'); }
};

// The declaration helpers: the kind is the schema's.
Field field(const char* column, const char* control, const char* caption, unsigned options = None);
Field number(const char* column, const char* control, const char* caption, int decimals, unsigned options = None);
Field key(const char* column, const char* control, const char* caption, const LookupTable& lookup,
          unsigned options = None);
Field choice(const char* column, const char* control, const char* caption, const QStringList& captions);
Field combo(const char* column, const char* control, const char* caption, unsigned options = None);

class FieldList
{
public:
    FieldList() = default;
    // The fields of one table; each field's kind and length are read from the
    // schema (an unknown column is a programming fault and stops a debug run).
    FieldList(const QString& table, QList<Field> fields);

    const QString& table() const { return m_table; }
    const QList<Field>& fields() const { return m_fields; }
    int size() const { return int(m_fields.size()); }
    const Field& at(int index) const { return m_fields.at(index); }
    // The position of the field of a control; -1 when none.
    int indexOf(const QString& control) const;
    // The field that finds the record; null when there is none.
    const Field* codeField() const;
    // Another table with the same fields (the generic table editor).
    void setTable(const QString& table);

    // The columns as statements name them, in the order of the fields.
    QStringList columns() const;
    // "SELECT RID, <columns> FROM <table>", without WHERE and ORDER BY.
    QString selectStatement() const;
    // The values of the current row of a read, as the controls show them.
    QStringList shownValues(const Recordset& rs) const;
    // The values of a new record: every field empty, flags "0", choices "0".
    QStringList emptyValues() const;
    // The SQL literals of shown values, in the order of the fields.
    QStringList sqlValues(const QStringList& shown) const;
    QString insertStatement(const QStringList& shown) const;
    QString updateStatement(const QStringList& shown, int rid) const;
    // The lines of the required fields left blank, in the order of the fields.
    QStringList missing(const QStringList& shown) const;

private:
    QString m_table;
    QList<Field> m_fields;
};

// The lines of controllaInserimento.
QString obbligatorio(const QString& caption);
QString errato(const QString& caption);

} // namespace fields
