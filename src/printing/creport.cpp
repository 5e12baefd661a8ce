#include "printing/creport.h"

#include "common/errorlog.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "printing/reportlayout.h"
#include "printing/selezione.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QUuid>

namespace {

const QString kModulo = QStringLiteral("cReport");

// "DSN=<file>" or the bare path of a SQLite file; empty for the live database.
QString fileOfConnection(const QString& connessione)
{
    const QString c = connessione.trimmed();
    if (c.isEmpty())
        return QString();
    if (c.startsWith(QLatin1String("DSN="), Qt::CaseInsensitive))
        return c.mid(4).trimmed();
    return c;
}

// "{Table.Field} DESC" → "Table.Field DESC"; a group on an expression that
// is not a plain field is left to the order of the data.
QString orderTerm(const QString& text)
{
    QString t = text.trimmed();
    QString direction;
    if (t.endsWith(QLatin1String(" desc"), Qt::CaseInsensitive)) {
        direction = QStringLiteral(" DESC");
        t.chop(5);
        t = t.trimmed();
    } else if (t.endsWith(QLatin1String(" asc"), Qt::CaseInsensitive)) {
        t.chop(4);
        t = t.trimmed();
    }
    if (!t.startsWith(QLatin1Char('{')) || !t.endsWith(QLatin1Char('}')) || t.count(QLatin1Char('{')) != 1)
        return QString();
    const QString field = t.mid(1, t.size() - 2).trimmed();
    if (field.startsWith(QLatin1Char('@')) || !field.contains(QLatin1Char('.')))
        return QString();
    return field + direction;
}

} // namespace

cReport::cReport() = default;
cReport::~cReport() = default;

void cReport::setReportFileName(const QString& path)
{
    m_file = path;
    m_definition.reset();
}

void cReport::setFormulas(int index, const QString& item)
{
    const QList<std::pair<QString, QString>> parsed = splitFormule(item);
    if (parsed.isEmpty())
        return;
    if (index >= 0 && index < m_formulas.size())
        m_formulas[index] = parsed.first();
    else
        m_formulas << parsed.first();
}

void cReport::setFormulaList(const QString& formule) { m_formulas = splitFormule(formule); }

void cReport::setSelectionFormula(const QString& formula)
{
    if (m_currentSubreport.isEmpty())
        m_selection = formula;
    else
        m_subreports[m_currentSubreport].selezione = formula;
}

void cReport::setConnect(const QString& connessione)
{
    if (m_currentSubreport.isEmpty())
        m_connection = connessione;
    else
        m_subreports[m_currentSubreport].connessione = connessione;
}

void cReport::setSubreportToChange(const QString& name) { m_currentSubreport = name.trimmed().toLower(); }

int cReport::orientation() const
{
    if (!m_definition)
        return 0;
    return m_definition->landscape ? 2 : 1;
}

bool cReport::readRows(const report::ReportDefinition& def, const QString& connessione, const QString& selezione,
                       report::ReportRows& rows)
{
    rows = report::ReportRows();
    if (def.from.trimmed().isEmpty()) {
        // A report without data prints its sections once.
        rows.rows << QVariantList();
        return true;
    }
    QString fault;
    const QStringList fields = report::fieldsOf(def, &fault);
    if (!fault.isEmpty()) {
        m_error = fault;
        return false;
    }
    const QString file = fileOfConnection(connessione);
    const int tipo = file.isEmpty() ? gSession().tipoServer : TipoServer::FileDb;
    QStringList conditions;
    for (const QString& formula : {def.where, selezione}) {
        const SelezioneSql translated = selezioneInSql(formula, tipo);
        if (!translated.ok) {
            m_error = QStringLiteral("Formula di selezione non valida: ") + translated.errore;
            return false;
        }
        if (!translated.sql.isEmpty())
            conditions << QLatin1Char('(') + translated.sql + QLatin1Char(')');
    }
    QStringList select;
    for (int i = 0; i < fields.size(); ++i) {
        select << fields.at(i) + QStringLiteral(" AS c") + QString::number(i);
        rows.columns.insert(fields.at(i).toLower(), i);
    }
    if (select.isEmpty())
        select << QStringLiteral("1 AS c0");
    QStringList order;
    for (const report::Group& g : def.groups) {
        const QString term = orderTerm(g.expression);
        if (!term.isEmpty())
            order << term;
    }
    for (const QString& part : def.order.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString term = orderTerm(part);
        if (!term.isEmpty())
            order << term;
    }
    QString sql = QStringLiteral("SELECT ") + select.join(QStringLiteral(", ")) + QStringLiteral(" FROM ") + def.from;
    if (!conditions.isEmpty())
        sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    if (!order.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + order.join(QStringLiteral(", "));
    const int columns = qMax(1, int(fields.size()));

    if (file.isEmpty()) {
        cReader rs(sql, QStringLiteral("cReport.readRows"));
        if (!rs) {
            m_error = QStringLiteral("Lettura dei dati non riuscita: ") + gAdoSqlServer().getLastSQLCommand();
            return false;
        }
        for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
            QVariantList row;
            row.reserve(columns);
            for (int c = 0; c < columns; ++c)
                row << rs->value(c);
            rows.rows << row;
        }
        return true;
    }
    if (!QFileInfo::exists(file)) {
        m_error = QStringLiteral("Il database di stampa non esiste: ") + file;
        return false;
    }
    const DialectResult rewritten = rewriteStatement(sql, TipoServer::FileDb);
    const QString name = QStringLiteral("report-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(file);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            QSqlQuery query(db);
            query.setForwardOnly(true);
            if (rewritten.ok && query.exec(rewritten.text)) {
                while (query.next()) {
                    QVariantList row;
                    row.reserve(columns);
                    for (int c = 0; c < columns; ++c)
                        row << query.value(c);
                    rows.rows << row;
                }
                ok = true;
            } else {
                m_error = QStringLiteral("Lettura dei dati non riuscita: ") + query.lastError().text()
                    + QStringLiteral("\r\n") + rewritten.text;
            }
        } else {
            m_error = QStringLiteral("Impossibile aprire il database di stampa ") + file;
        }
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}

bool cReport::prepare()
{
    m_error.clear();
    QString fault;
    std::optional<report::ReportDefinition> def = report::loadTemplate(m_file, &fault);
    if (!def) {
        m_error = fault;
        return false;
    }
    // The formula list replaces the template's formulas of the same name.
    for (const auto& [name, expression] : m_formulas) {
        if (report::Formula* f = def->formula(name))
            f->expression = expression;
        else
            def->formulas << report::Formula{name, expression};
    }
    m_definition = std::make_shared<report::ReportDefinition>(std::move(*def));
    if (!readRows(*m_definition, m_connection, m_selection, m_rows))
        return false;
    m_subRows.clear();
    for (const auto& sub : m_definition->subreports) {
        const SubreportSettings settings = m_subreports.value(sub->name.toLower());
        report::ReportRows rows;
        const QString connessione = settings.connessione.isEmpty() ? m_connection : settings.connessione;
        if (!readRows(*sub, connessione, settings.selezione, rows)) {
            m_error = sub->name + QStringLiteral(": ") + m_error;
            return false;
        }
        m_subRows.insert(sub->name.toLower(), rows);
    }
    return true;
}

report::RenderedReport cReport::layout() const
{
    report::LayoutInput input;
    input.definition = m_definition.get();
    input.rows = &m_rows;
    for (auto it = m_subRows.cbegin(); it != m_subRows.cend(); ++it)
        input.subreportRows.insert(it.key(), &it.value());
    input.pictureFolder = QFileInfo(m_file).absolutePath();
    input.printTime = QDateTime::currentDateTime();
    QString fault;
    report::RenderedReport pages = report::layoutReport(input, &fault);
    if (!fault.isEmpty())
        m_error = fault;
    return pages;
}

bool cReport::output(const report::RenderedReport& pages)
{
    switch (m_destinazione) {
    case Finestra: return true;
    case File:
        if (m_printFile.isEmpty()) {
            m_error = QStringLiteral("Nessun file di destinazione");
            return false;
        }
        return report::writeCsv(pages, m_printFile, &m_error);
    default: break;
    }
    const int first = m_firstPage >= 1 && m_lastPage >= 1 ? m_firstPage : 0;
    const int last = m_firstPage >= 1 && m_lastPage >= 1 ? m_lastPage : 0;
    if (m_printer.compare(stampantePdf(), Qt::CaseInsensitive) == 0) {
        if (m_printFile.isEmpty()) {
            m_error = QStringLiteral("Nessun file di destinazione");
            return false;
        }
        return report::writePdf(pages, m_printFile, first, last, &m_error);
    }
    // A real printer: the pages go to the system's print service as PDF.
    const QString lp = QStandardPaths::findExecutable(QStringLiteral("lp"));
    if (lp.isEmpty()) {
        m_error = QStringLiteral("Il servizio di stampa del sistema (CUPS) non è disponibile.");
        return false;
    }
    QTemporaryDir folder;
    const QString pdf = folder.filePath(QStringLiteral("stampa.pdf"));
    if (!report::writePdf(pages, pdf, first, last, &m_error))
        return false;
    QStringList arguments;
    if (!m_printer.isEmpty() && m_printer != QLatin1String("Predefinita"))
        arguments << QStringLiteral("-d") << m_printer;
    arguments << QStringLiteral("-n") << QString::number(m_copies);
    if (!pages.title.isEmpty())
        arguments << QStringLiteral("-t") << pages.title;
    arguments << QStringLiteral("--") << pdf;
    QProcess process;
    process.start(lp, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        m_error = QStringLiteral("La stampa non è stata accettata dalla stampante ") + m_printer + QStringLiteral(": ")
            + QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
        return false;
    }
    return true;
}

bool cReport::run(report::RenderedReport* pages)
{
    if (!prepare())
        return false;
    const report::RenderedReport laid = layout();
    if (!m_error.isEmpty())
        return false;
    if (pages)
        *pages = laid;
    return output(laid);
}

void eseguiInBackground(const std::function<void()>& work)
{
    if (!QCoreApplication::instance()) {
        work();
        return;
    }
    // The screen keeps drawing, but takes no input until the work is done.
    QThread* thread = QThread::create(work);
    QEventLoop loop;
    QObject::connect(thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread->start();
    if (!thread->isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    thread->wait();
    delete thread;
}

bool stampaReport(int destinazione, const QString& report, const QString& selezione, const QString& formule,
                  bool selezioneInSubreport, const QString& testo, const QString& connessione, const QString& stampante,
                  const QString& porta, qint16 copie, qint16 paginaDa, qint16 paginaA, const QString& fileDestinazione,
                  const report::RenderedReport* pagine)
{
    if (stampante.isEmpty() || porta.isEmpty()) {
        msgBox(QStringLiteral("Periferica di stampa non selezionata!"), vb::Critical);
        return false;
    }
    // A new report object for every print: parallel prints share nothing.
    cReport rpt;
    rpt.setReportFileName(report);
    rpt.setFormulaList(formule);
    rpt.setConnect(connessione);
    rpt.setSelectionFormula(selezione);
    const QString subreports = getSubReportName(report);
    if (!subreports.isEmpty()) {
        for (const QString& name : subreports.split(gSession().sqlSeparator, Qt::SkipEmptyParts)) {
            rpt.setSubreportToChange(name);
            rpt.setConnect(connessione);
            if (selezioneInSubreport)
                rpt.setSelectionFormula(selezione);
        }
    }
    rpt.setSubreportToChange(QString());
    rpt.setDestination(destinazione);
    rpt.setPrinterName(stampante);
    rpt.setPrinterPort(porta);
    rpt.setPrinterDriver(QStringLiteral("CUPS"));
    rpt.setCopiesToPrinter(copie);
    if (paginaDa >= 1 && paginaA >= 1) {
        rpt.setPrinterStartPage(paginaDa);
        rpt.setPrinterStopPage(paginaA);
    }
    rpt.setPrintFileName(fileDestinazione);
    if (!testo.isEmpty())
        rpt.setText(testo);
    bool ok = pagine || rpt.prepare();
    if (ok)
        eseguiInBackground([&rpt, &ok, pagine] {
            if (pagine) {
                ok = rpt.output(*pagine);
                return;
            }
            const report::RenderedReport pages = rpt.layout();
            ok = rpt.error().isEmpty() && rpt.output(pages);
        });
    if (!ok) {
        notifyError(kModulo, QStringLiteral("stampaReport"),
                    rpt.error() + QStringLiteral("\r\nReportFileName=") + report + QStringLiteral("\r\nSelFormula=")
                        + selezione + QStringLiteral("\r\nFormule=") + formule + QStringLiteral("\r\n"));
        return false;
    }
    return true;
}

QString getSubReportName(const QString& percorso)
{
    QString fault;
    const std::optional<report::ReportDefinition> def = report::loadTemplate(percorso, &fault);
    if (!def)
        return QString();
    QStringList names;
    for (const auto& sub : def->subreports)
        names << sub->name;
    return names.join(gSession().sqlSeparator);
}

QString stampantePdf() { return QStringLiteral("PDF"); }
