#pragma once
// The report object: which template, against which data, with which
// selection and formulas, to which destination. One object a print, so that
// parallel prints never share state.
//
// Data: with an empty connection the template reads the live database of the
// session (its SQL rewritten for the back end); with "DSN=<file>" (or the
// file's path) it reads that SQLite file, such as the print database of a
// document.
//
// Running is two steps: prepare() reads the template and the rows on the
// calling thread (the database connections belong to it); layout() makes
// the pages from them and touches no database, so it may run on a worker
// thread while the screen keeps drawing.

#include "printing/reportpages.h"
#include "printing/reporttemplate.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

namespace report {

// The rows of a data source: one column per field reference the template
// uses, keyed "table.field" in lower case.
struct ReportRows
{
    QHash<QString, int> columns;
    QList<QVariantList> rows;
};

} // namespace report

class cReport
{
public:
    enum Destinazione {
        Finestra = 0,
        Stampante = 1,
        File = 2
    };

    cReport();
    ~cReport();

    // Full path of the template.
    void setReportFileName(const QString& path);
    QString reportFileName() const { return m_file; }
    // Formula `index` of the list: an item "NAME = 'value'" that replaces the
    // template's formula of that name.
    void setFormulas(int index, const QString& item);
    // The whole list, items joined by the separator "¤".
    void setFormulaList(const QString& formule);
    void setSelectionFormula(const QString& formula);
    void setConnect(const QString& connessione);
    // Further settings go to that subreport; an empty name returns to the main report.
    void setSubreportToChange(const QString& name);
    void setDestination(int destinazione) { m_destinazione = destinazione; }
    int destination() const { return m_destinazione; }
    void setPrinterName(const QString& device) { m_printer = device; }
    void setPrinterPort(const QString& port) { m_port = port; }
    void setPrinterDriver(const QString& driver) { m_driver = driver; }
    QString printerName() const { return m_printer; }
    QString printerPort() const { return m_port; }
    void setCopiesToPrinter(int copies) { m_copies = copies < 1 ? 1 : copies; }
    int copies() const { return m_copies; }
    void setPrinterStartPage(int page) { m_firstPage = page; }
    void setPrinterStopPage(int page) { m_lastPage = page; }
    // The file written by the file destination (CSV) or by the "PDF" printer.
    void setPrintFileName(const QString& path) { m_printFile = path; }
    void setText(const QString& testo) { m_text = testo; }

    // The template's orientation: 1 portrait, 2 landscape; 0 before prepare().
    int orientation() const;

    // Reads the template and its rows. False with the reason in error().
    bool prepare();
    // Lays the prepared rows out into pages; no database, any thread.
    report::RenderedReport layout() const;
    // prepare(), layout() and the destination: the window destination only
    // lays out (the caller shows `pages`); the printer prints the pages
    // through the system's print service (a PDF file for the printer "PDF");
    // the file destination writes the CSV. False with the reason in error().
    bool run(report::RenderedReport* pages = nullptr);
    // Sends laid-out pages to the destination.
    bool output(const report::RenderedReport& pages);

    QString error() const { return m_error; }
    const report::ReportDefinition* definition() const { return m_definition.get(); }

private:
    struct SubreportSettings
    {
        QString connessione;
        QString selezione;
    };
    bool readRows(const report::ReportDefinition& def, const QString& connessione, const QString& selezione,
                  report::ReportRows& rows);

    QString m_file;
    QList<std::pair<QString, QString>> m_formulas; // name, expression
    QString m_selection;
    QString m_connection;
    QString m_currentSubreport;
    QHash<QString, SubreportSettings> m_subreports; // by lower-case name
    int m_destinazione = Finestra;
    QString m_printer;
    QString m_port;
    QString m_driver;
    int m_copies = 1;
    int m_firstPage = 0;
    int m_lastPage = 0;
    QString m_printFile;
    QString m_text;
    mutable QString m_error; // layout() tells its faults here too
    std::shared_ptr<report::ReportDefinition> m_definition;
    report::ReportRows m_rows;
    QHash<QString, report::ReportRows> m_subRows; // by lower-case name
};

// Prints without a preview. destinazione 1 printer, 2 file; `report` is a full
// path. Refuses with "Periferica di stampa non selezionata!" unless printer
// and port are given. The layout runs on a worker thread while the calling
// screen keeps drawing. `fileDestinazione` is the file the CSV export or
// the "PDF" printer writes. `pagine`, when given, are the pages already laid
// out by a preview: they are printed as shown, even if their data has been
// written over since (the print database of another document). False when
// nothing was printed.
bool stampaReport(int destinazione, const QString& report, const QString& selezione, const QString& formule,
                  bool selezioneInSubreport, const QString& testo, const QString& connessione, const QString& stampante,
                  const QString& porta, qint16 copie, qint16 paginaDa, qint16 paginaA,
                  const QString& fileDestinazione = QString(), const report::RenderedReport* pagine = nullptr);

// The names of the template's subreports joined by "¤", or an empty text.
QString getSubReportName(const QString& percorso);

// The printer name that stands for a PDF file.
QString stampantePdf(); // "PDF"

// Runs `work` on a worker thread; meanwhile the screens keep drawing but
// take no input. Without an application it simply runs it.
void eseguiInBackground(const std::function<void()>& work);
