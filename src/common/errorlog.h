#pragma once
// The one report path for failures. A procedure that fails sets the run-time
// error (Err()), reports it through gError.notifyError with its own module and
// procedure names and the information at hand, and returns its empty result.
// The report is appended to "Err.log" in the program folder and then shown by
// the handler that the application installs (the warning dialog); the handler
// says whether the user goes on or leaves the program.

#include <QString>

#include <functional>

class QDateTime;

// The run-time error of the moment: number, description and source.
struct RuntimeError
{
    qint64 number = 0;
    QString description;
    QString source;

    void raise(qint64 n, const QString& src, const QString& descr)
    {
        number = n;
        source = src;
        description = descr;
    }
    void clear() { *this = RuntimeError(); }
};

RuntimeError& Err();

// One report as the warning dialog shows it.
struct ErrorReport
{
    qint64 number = 0;
    QString description;
    QString source;
    QString module;      // module or class name
    QString procedure;   // procedure text
    QString information; // statement or values at hand
    bool fatal = true;
};

// Shows a report; returns 1 to go on, 0 to leave the program at once.
using ErrorReportHandler = std::function<int(const ErrorReport&)>;

class cError
{
public:
    // Appends the report to Err.log and hands it to the handler, after the
    // open transaction if there is one (dialoggate.h). When the handler
    // answers 0, the leave-hook runs (the application ends at once).
    void notifyError(const QString& module, const QString& procedure, const QString& information, bool fatal = true);

    ErrorReportHandler setHandler(ErrorReportHandler handler);
    void setLeaveHook(std::function<void()> hook);

    // True while a report is being shown; the main window skips its exit question.
    bool inError() const { return m_inError; }

    // Number of reports made in this process (used by tests and the benchmark).
    int reportCount() const { return m_reportCount; }

    // The text that one report adds to Err.log.
    static QString logEntry(const ErrorReport& report, const QDateTime& when);

private:
    void showReport(const ErrorReport& report);

    ErrorReportHandler m_handler;
    std::function<void()> m_leaveHook;
    bool m_inError = false;
    int m_reportCount = 0;
};

cError& gError();

// Shorthand for gError().notifyError(...).
void notifyError(const QString& module, const QString& procedure, const QString& information, bool fatal = true);

// Appends "YYYYMMDD-HhNnSs text" to debug.txt in the program folder; a failure
// to write is ignored.
void writeDebugLine(const QString& text);
