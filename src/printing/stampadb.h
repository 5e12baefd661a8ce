#pragma once
// The print database: before every print of a document the system writes a
// small SQLite file with flat copies of the document (header with all its
// looked-up texts, rows with units and VAT, due dates, the firm's logo), and
// the document templates read only that file. So one template works on
// every back end, and what a document prints (bank text, footer, kit rows)
// is decided here and not in the templates.
//
// The file is a SQLite database made anew for every print from the table
// definitions in stampadb.cpp, in the program folder ("printdb.db"), or one
// level above it with `sopra`. Tables: Movimenti, DettagliMovimento,
// Scadenze, Logo, BARCODE. Dates are ISO text ('YYYY-MM-DD'), amounts and
// quantities REAL as stored, texts never Null (a missing look-up is an
// empty text). Only the file that can't be made is told with a box; a
// statement that fails is reported (notifyError) like everywhere else.

#include <QString>

// The working copy's path.
QString percorsoStampaDB(bool sopra = false);
// The connection the templates are given: "DSN=" and the path.
QString connessioneStampaDB(bool sopra = false);

// Writes the documents of `filtro` (such as "M.RID = 15") into a new print
// database, rows in the order of document, POS and key. `extraProg` above 0
// keeps only the rows of that progressive. Kit rows follow the options
// DistintaBase and TipoStampaDistinta. One transaction: on a failure the
// file is left empty (its tables, no rows) and the answer is false.
bool creaStampaDB(const QString& filtro, bool& sopra, long& extraProg);

// A new, empty print database (the tables without rows, the logo row), for
// prints that fill it themselves such as the barcode labels (BARCODE takes
// its rows by position: PROG, EAN13CODE, TESTO1, TESTO2, PREZZO). False
// after telling the user.
bool creaStampaDBVuoto(bool sopra = false);
