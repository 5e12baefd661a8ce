#include "printing/anteprima.h"

#include "common/apphome.h"
#include "common/errorlog.h"
#include "core/screenregistry.h"
#include "data/session.h"
#include "printing/creport.h"
#include "printing/frmpreview.h"
#include "printing/frmsceltastampante.h"
#include "screens/framework/waitcursor.h"

#include <QDir>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

namespace {

const QString kFrmPreview = QStringLiteral("frmPreview");

// The template: a print with its own data (a connection given) reads the
// copy lying in the program folder next to that data, when there is one.
QString percorsoTemplate(const QString& report, const QString& connessione)
{
    if (!connessione.isEmpty()) {
        const QString copia = QDir(programFolder()).filePath(report);
        if (QFileInfo::exists(copia))
            return copia;
    }
    return QDir(gSession().strReportPath).filePath(report);
}

QString datiReport(const QString& percorso, const QString& selezione, const QString& formule)
{
    const QString fineRiga = QStringLiteral("\r\n");
    return QStringLiteral("ReportFileName=") + percorso + fineRiga + QStringLiteral("SelFormula=") + selezione
        + fineRiga + QStringLiteral("Formule=") + formule + fineRiga;
}

// A window of the main area opens as large as the area allows.
void allarga(QWidget* finestra)
{
    auto* cornice = qobject_cast<QMdiSubWindow*>(finestra->parentWidget());
    if (!cornice || !cornice->mdiArea())
        return;
    const QSize area = cornice->mdiArea()->viewport()->size();
    cornice->resize(cornice->size().expandedTo(area * 0.92).boundedTo(area));
}

} // namespace

void registerPreviewScreens()
{
    screens::registerScreen(kFrmPreview,
                            {screens::Kind::Child,
                             [](QWidget* parent, const QVariant&) -> QWidget* { return new frmPreview(parent); },
                             false});
}

QWidget* mostraAnteprima(const QString& report, const QString& selezione, const QString& titolo, const QString& formule,
                         bool selezioneInSubreport, const QString& testo, const QString& connessione,
                         const QString& stampante)
{
    // A printer named by the caller (the one of a document type) becomes the
    // application's, when the system has it.
    const QString nome = stampante.trimmed();
    if (!nome.isEmpty() && nome.compare(QStringLiteral("Predefinita"), Qt::CaseInsensitive) != 0
        && stampanteInstallata(nome))
        gSession().defaultPrinter = nome;
    const QString device = stampanteApplicazione();

    Anteprima anteprima;
    anteprima.percorso = percorsoTemplate(report, connessione);
    anteprima.selezione = selezione;
    anteprima.titolo = titolo;
    anteprima.formule = formule;
    anteprima.selezioneInSubreport = selezioneInSubreport;
    anteprima.testo = testo;
    anteprima.connessione = connessione;

    auto rpt = std::make_shared<cReport>();
    rpt->setReportFileName(anteprima.percorso);
    rpt->setFormulaList(formule);
    rpt->setConnect(connessione);
    rpt->setSelectionFormula(selezione);
    const QStringList subreport =
        getSubReportName(anteprima.percorso).split(gSession().sqlSeparator, Qt::SkipEmptyParts);
    for (const QString& nomeSub : subreport) {
        rpt->setSubreportToChange(nomeSub);
        rpt->setConnect(connessione);
        if (selezioneInSubreport)
            rpt->setSelectionFormula(selezione);
    }
    rpt->setSubreportToChange(QString());
    rpt->setDestination(cReport::Finestra);
    rpt->setPrinterName(device);
    rpt->setPrinterPort(portaStampante(device));
    if (!testo.isEmpty())
        rpt->setText(testo);

    bool preparato = false;
    {
        WaitCursor attesa;
        preparato = rpt->prepare();
    }
    if (!preparato) {
        if (!rpt->error().isEmpty())
            Err().raise(9998, QStringLiteral("cReport"), rpt->error());
        notifyError(kFrmPreview, QStringLiteral("mostraAnteprima"), datiReport(anteprima.percorso, selezione, formule));
        return nullptr;
    }

    if (!screens::findScreen(kFrmPreview))
        registerPreviewScreens();
    auto* finestra = qobject_cast<frmPreview*>(screens::openScreen(kFrmPreview));
    if (!finestra)
        return nullptr;
    allarga(finestra);
    finestra->avvia(anteprima, rpt, device);
    return finestra;
}

QPushButton* pulsanteStampaElenco(QWidget* parent, const QString& report, const QString& titolo, const char* nome)
{
    auto* stampa =
        new QPushButton(QIcon::fromTheme(QStringLiteral("document-print-preview")), QStringLiteral("Stampa"), parent);
    stampa->setObjectName(QString::fromLatin1(nome));
    stampa->setAutoDefault(false);
    QObject::connect(stampa, &QPushButton::clicked, stampa,
                     [report, titolo] { mostraAnteprima(report, QString(), titolo); });
    return stampa;
}
