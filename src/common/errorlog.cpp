#include "common/errorlog.h"

#include "common/apphome.h"
#include "common/dialoggate.h"
#include "common/italiantext.h"

#include <QDateTime>
#include <QFile>
#include <QTextStream>

RuntimeError& Err()
{
    static RuntimeError err;
    return err;
}

cError& gError()
{
    static cError instance;
    return instance;
}

void notifyError(const QString& module, const QString& procedure, const QString& information, bool fatal)
{
    gError().notifyError(module, procedure, information, fatal);
}

QString cError::logEntry(const ErrorReport& r, const QDateTime& when)
{
    QString text;
    text += QString(80, QLatin1Char('*')) + QLatin1Char('\n');
    text += QStringLiteral("Data   ") + formatDateTime(when) + QLatin1Char('\n');
    text += QStringLiteral("Err.N. ") + QString::number(r.number) + QLatin1Char('\n');
    text += QStringLiteral("Descr. ") + r.description + QLatin1Char('\n');
    text += QStringLiteral("Source ") + r.source + QLatin1Char('\n');
    text += QStringLiteral("Modulo ") + r.module + QLatin1Char('.') + r.procedure + QLatin1Char('\n');
    text += QStringLiteral("Avanz. ") + r.information + QLatin1Char('\n');
    return text;
}

void cError::notifyError(const QString& module, const QString& procedure, const QString& information, bool fatal)
{
    ErrorReport report;
    report.number = Err().number;
    report.description = Err().description;
    report.source = Err().source;
    report.module = module;
    report.procedure = procedure;
    report.information = information;
    report.fatal = fatal;
    Err().clear();
    ++m_reportCount;

    m_inError = true;
    QFile log(programFile(QStringLiteral("Err.log")));
    if (log.open(QIODevice::Append | QIODevice::Text)) {
        QTextStream out(&log);
        out.setEncoding(QStringConverter::Utf8);
        out << logEntry(report, QDateTime::currentDateTime());
    }

    m_inError = false;
    if (dialogGate::isClosed())
        dialogGate::hold(QStringLiteral("notifyError|") + logEntry(report, QDateTime()),
                         [this, report] { showReport(report); });
    else
        showReport(report);
}

void cError::showReport(const ErrorReport& report)
{
    m_inError = true;
    int answer = 1;
    if (m_handler) {
        answer = m_handler(report);
    } else {
        QTextStream(stderr) << "Errore in " << report.module << '.' << report.procedure << ": " << report.description
                            << (report.information.trimmed().isEmpty()
                                    ? QString()
                                    : QStringLiteral(" [") + report.information + QLatin1Char(']'))
                            << '\n';
    }
    m_inError = false;
    if (answer == 0 && m_leaveHook)
        m_leaveHook();
}

ErrorReportHandler cError::setHandler(ErrorReportHandler handler)
{
    ErrorReportHandler previous = std::move(m_handler);
    m_handler = std::move(handler);
    return previous;
}

void cError::setLeaveHook(std::function<void()> hook) { m_leaveHook = std::move(hook); }

void writeDebugLine(const QString& text)
{
    QFile file(programFile(QStringLiteral("debug.txt")));
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return;
    QTextStream out(&file);
    out.setEncoding(QStringConverter::Utf8);
    out << formatStamp(QDateTime::currentDateTime()) << ' ' << text << '\n';
}
