#pragma once
// Printing a stored document: the print database of the document, the
// template of its type copied next to it in the program folder, the printer
// of the type for this workstation. The screens then show the preview or
// print at once; the command line writes a PDF.

#include <QDate>
#include <QString>

struct StampaDocumento
{
    int rid = 0;
    QString report;      // the template's bare file name (TipoDocumenti.REPORT)
    QString percorso;    // the copy in the program folder
    QString selezione;   // "{Movimenti.RID}=" and the key
    QString connessione; // the print database
    QString titolo;      // "Stampa " the type's description, a blank and the code
    QString stampante;   // of the type for this workstation; empty: the default
    QString codiceTipo;
    QDate dataStampa; // the document's print date before this print; invalid: never printed
};

// Fills the print database for the document `rid` and copies its template.
// False after telling the user (nothing to print); a key of 0 or less is
// an unsaved document: false at once, without a word.
bool preparaStampaDocumento(int rid, StampaDocumento& stampa);

// The same for the special list of the document: template of the option
// "ReportElencoSpeciale", selection limited to the rows of the list.
bool preparaStampaElencoSpeciale(int rid, StampaDocumento& stampa);

// After a print: a document printed for the first time gets today as its
// print date. Gives the document's print date now (invalid when it could
// not be written).
QDate segnaStampato(const StampaDocumento& stampa);

// The stored document of type code, year and number, or 0.
int cercaDocumento(const QString& codiceTipo, int anno, int numero);

// Writes the document as PDF without a display (the --print-pdf switch),
// and marks it printed. False with the reason in `errore`.
bool documentoInPdf(int rid, const QString& file, QString* errore);
