#include "printing/stampadocumento.h"

#include "common/apphome.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "core/optionstore.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "documents/documento.h"
#include "masterdata/stampantidocumenti.h"
#include "printing/creport.h"
#include "printing/stampadb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString kModulo = QStringLiteral("modStampa");

QString tag(const char* procedure) { return kModulo + QLatin1Char('.') + QLatin1String(procedure); }

// What the document and its type say about its print.
struct DatiDocumento
{
    QString codiceTipo, descrizioneTipo, report;
    QDate dataStampa;
};

// False when the document is not there (or the read failed, already told).
bool leggiDocumento(int rid, DatiDocumento& d)
{
    const cReader rs(QStringLiteral("SELECT M.RID, M.DATASTAMPA, TD.CODICE, TD.DESCRIZIONE, TD.REPORT FROM Movimenti M "
                                    "INNER JOIN TipoDocumenti TD ON M.FK_TIPODOCUMENTO = TD.RID WHERE M.RID = ")
                         + QString::number(rid),
                     tag("leggiDocumento"));
    if (!rs || rs->eof())
        return false;
    d.codiceTipo = rs->text(QStringLiteral("CODICE")).trimmed();
    d.descrizioneTipo = rs->text(QStringLiteral("DESCRIZIONE")).trimmed();
    d.report = rs->text(QStringLiteral("REPORT")).trimmed();
    d.dataStampa = toDate(rs->value(QStringLiteral("DATASTAMPA")));
    return true;
}

// The template from the report folder into the program folder, where it
// sees the print database beside it; an older copy, read-only or not, is
// replaced. Empty on success, else the reason.
QString copiaModello(const QString& report, QString& copia)
{
    if (report.isEmpty())
        return QStringLiteral("Nessun modello di stampa indicato per il tipo di documento.");
    const QString sorgente = QDir(gSession().strReportPath).absoluteFilePath(report);
    copia = QDir(programFolder()).absoluteFilePath(report);
    if (!QFileInfo::exists(sorgente))
        return QStringLiteral("Modello di stampa non trovato: ") + sorgente;
    if (QFileInfo(sorgente).canonicalFilePath() == QFileInfo(copia).canonicalFilePath())
        return QString(); // the report folder is the program folder itself
    const auto scrivibile = [](const QString& path) {
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner | QFileDevice::ReadOwner);
    };
    if (QFileInfo::exists(copia)) {
        scrivibile(copia);
        if (!QFile::remove(copia))
            return QStringLiteral("Impossibile sostituire la copia del modello di stampa: ") + copia;
    }
    if (!QFile::copy(sorgente, copia))
        return QStringLiteral("Impossibile copiare il modello di stampa ") + sorgente + QStringLiteral(" in ") + copia;
    scrivibile(copia);
    return QString();
}

// Steps of every document print: the saved document, its print database,
// its template beside the database, the printer of its type. `modello`
// empty takes the type's template. Empty on success; "#" for a failure
// already told (the print database tells its own), else the reason.
QString prepara(int rid, const QString& modello, StampaDocumento& s, QString* descrizioneTipo = nullptr)
{
    s = StampaDocumento();
    if (rid <= 0)
        return QStringLiteral("#");
    DatiDocumento d;
    if (!leggiDocumento(rid, d))
        return QStringLiteral("Documento non trovato.");
    const QString chiave = QString::number(rid);
    if (descrizioneTipo)
        *descrizioneTipo = d.descrizioneTipo;
    s.rid = rid;
    s.codiceTipo = d.codiceTipo;
    s.dataStampa = d.dataStampa;
    s.report = modello.isEmpty() ? d.report : modello;
    s.selezione = QStringLiteral("{Movimenti.RID}=") + chiave;
    s.titolo = QStringLiteral("Stampa ") + d.descrizioneTipo + QLatin1Char(' ') + d.codiceTipo;
    s.connessione = connessioneStampaDB();
    s.stampante = getStampanteDocumento(d.codiceTipo);

    bool sopra = false;
    long extraProg = 0;
    if (!creaStampaDB(QStringLiteral("M.RID = ") + chiave, sopra, extraProg))
        return QStringLiteral("#");
    return copiaModello(s.report, s.percorso);
}

// The reason of a failed preparation goes to the error report, as a
// run-time error of the procedure would.
bool riferisci(const QString& esito, const char* procedura, const StampaDocumento& s)
{
    if (esito.isEmpty())
        return true;
    if (esito != QLatin1String("#")) {
        Err().raise(53, kModulo, esito);
        notifyError(kModulo, QLatin1String(procedura),
                    QStringLiteral("ReportFileName=") + s.report + QStringLiteral("\r\nSelFormula=") + s.selezione
                        + QStringLiteral("\r\n"),
                    false);
    }
    return false;
}

} // namespace

bool preparaStampaDocumento(int rid, StampaDocumento& stampa)
{
    return riferisci(prepara(rid, QString(), stampa), "preparaStampaDocumento", stampa);
}

bool preparaStampaElencoSpeciale(int rid, StampaDocumento& stampa)
{
    if (rid <= 0)
        return false;
    const QString modello = gOptions().reportElencoSpeciale.trimmed();
    QString descrizioneTipo;
    const QString esito = modello.isEmpty()
        ? QStringLiteral("Nessun modello di stampa indicato per l'Elenco Speciale (opzione ReportElencoSpeciale).")
        : prepara(rid, modello, stampa, &descrizioneTipo);
    if (!esito.isEmpty())
        return riferisci(esito, "preparaStampaElencoSpeciale", stampa);
    stampa.selezione += QStringLiteral(" And {DettagliMovimento.ElencoSpeciale}=True");
    stampa.titolo = QStringLiteral("Stampa Elenco Speciale - ") + descrizioneTipo;
    return true;
}

QDate segnaStampato(const StampaDocumento& stampa)
{
    if (stampa.dataStampa.isValid())
        return stampa.dataStampa;
    const QDate oggi = QDate::currentDate();
    return updateDataStampa(stampa.rid, oggi) ? oggi : QDate();
}

int cercaDocumento(const QString& codiceTipo, int anno, int numero)
{
    const cReader rs(QStringLiteral("SELECT M.RID FROM Movimenti M INNER JOIN TipoDocumenti TD ON "
                                    "M.FK_TIPODOCUMENTO = TD.RID WHERE TD.CODICE = ")
                         + sqlText(codiceTipo.trimmed()) + QStringLiteral(" AND M.ANNO = ") + QString::number(anno)
                         + QStringLiteral(" AND M.PROGRESSIVO = ") + QString::number(numero),
                     tag("cercaDocumento"));
    if (!rs || rs->eof())
        return 0;
    return int(rs->integer(QStringLiteral("RID")));
}

bool documentoInPdf(int rid, const QString& file, QString* errore)
{
    const auto fallito = [errore](const QString& motivo) {
        if (errore)
            *errore = motivo;
        return false;
    };
    StampaDocumento s;
    const QString esito = prepara(rid, QString(), s);
    if (esito == QLatin1String("#"))
        return fallito(rid <= 0 ? QStringLiteral("Documento non salvato.")
                                : QStringLiteral("Impossibile preparare il database di stampa."));
    if (!esito.isEmpty())
        return fallito(esito);

    const QString destinazione = QFileInfo(file).absoluteFilePath();
    QFile::remove(destinazione);
    cReport report;
    report.setReportFileName(s.percorso);
    report.setConnect(s.connessione);
    report.setSelectionFormula(s.selezione);
    // Every subreport reads the same print database.
    const QString sottoreport = getSubReportName(s.percorso);
    if (!sottoreport.isEmpty()) {
        for (const QString& nome : sottoreport.split(gSession().sqlSeparator, Qt::SkipEmptyParts)) {
            report.setSubreportToChange(nome);
            report.setConnect(s.connessione);
        }
        report.setSubreportToChange(QString());
    }
    report.setDestination(cReport::Stampante);
    report.setPrinterName(stampantePdf());
    report.setPrinterPort(stampantePdf());
    report.setCopiesToPrinter(1);
    report.setPrintFileName(destinazione);
    if (!report.run())
        return fallito(report.error());
    if (!QFileInfo::exists(destinazione))
        return fallito(QStringLiteral("Il file PDF non è stato scritto: ") + destinazione);
    if (!segnaStampato(s).isValid())
        return fallito(QStringLiteral("Impossibile registrare la data di stampa del documento."));
    return true;
}
