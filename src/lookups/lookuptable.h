#pragma once
// The tables that a field may refer to by code: where the code and the
// description are, which rows count, the order of the search, the valida...
// procedure that looks a code up, and the record screen that makes a new
// row (by its registered name, with its argument). Screens, the options
// and the field lists share these declarations.

#include <QString>

using LookupValidator = bool (*)(QString& codice, QString& descrizione, int& rid);

struct LookupTable
{
    const char* table;
    const char* codeColumn;
    const char* descriptionColumn;
    const char* condition; // "TIPO = ¤C¤", or empty
    const char* order;     // the column the search sorts by
    LookupValidator validate;
    const char* editor = ""; // the screen that makes a row, or empty
    const char* editorArgument = "";
};

// "SELECT RID, <code>, <description> FROM <table> [WHERE ...] ORDER BY <order> "
QString lookupSearch(const LookupTable& table);

namespace lookup {

extern const LookupTable iva;
extern const LookupTable categorieSconti;
extern const LookupTable clienti;
extern const LookupTable fornitori;
extern const LookupTable tipoDocumenti;
extern const LookupTable causali;
extern const LookupTable pianoConti; // in the order of the codes
extern const LookupTable gruppi;
extern const LookupTable marche;
extern const LookupTable pagamenti;
extern const LookupTable unitaMisura;
extern const LookupTable collezioni;
extern const LookupTable magazzini;
extern const LookupTable banche;
extern const LookupTable fasceClienti;
extern const LookupTable categorie; // of goods
extern const LookupTable prodotti;

} // namespace lookup
