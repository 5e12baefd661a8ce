#include "printing/printscreens.h"

#include "core/dialogservice.h"
#include "core/screenregistry.h"
#include "data/session.h"
#include "printing/anteprima.h"
#include "printing/creport.h"
#include "printing/frmsceltastampante.h"
#include "printing/stampadocumento.h"
#include "screens/framework/listhelpers.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

struct ElencoMenu
{
    const char* schermata;
    const char* report;
    const char* titolo;
};
const ElencoMenu kElenchi[] = {{"stampaClienti", "RiepilogoClienti.rpt", "Stampa Elenco Contatti"},
                               {"stampaFornitori", "RiepilogoFornitori.rpt", "Stampa Elenco Fornitori"},
                               {"stampaProdotti", "RiepilogoProdotti.rpt", "Stampa Elenco Prodotti"}};

// The file of a print on the "PDF" printer, proposed in the documents
// folder with the template's name; empty when the user cancels.
QString filePdf(const StampaDocumento& s)
{
    QString cartella = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (cartella.isEmpty())
        cartella = QDir::homePath();
    const QString proposto = QDir(cartella).filePath(QFileInfo(s.report).completeBaseName() + QStringLiteral(".pdf"));
    QString file = dialogs::getSaveFileName(dialogs::ownerWindow(), QStringLiteral("Stampa in PDF"), proposto,
                                            QStringLiteral("File PDF (*.pdf)"));
    if (!file.isEmpty() && QFileInfo(file).suffix().isEmpty())
        file += QStringLiteral(".pdf");
    return file;
}

QDate stampa(bool preparato, const StampaDocumento& s, bool nonMostrareAnteprima)
{
    if (!preparato)
        return QDate();
    if (nonMostrareAnteprima) {
        // The printer of the type becomes the application's; without one
        // the application's printer prints.
        if (!s.stampante.isEmpty() && s.stampante.compare(QLatin1String("Predefinita"), Qt::CaseInsensitive) != 0
            && stampanteInstallata(s.stampante))
            gSession().defaultPrinter = s.stampante;
        const QString periferica = stampanteApplicazione();
        QString file;
        if (periferica == stampantePdf()) {
            file = filePdf(s);
            if (file.isEmpty())
                return QDate();
        }
        if (!stampaReport(cReport::Stampante, s.percorso, s.selezione, QString(), true, QString(), s.connessione,
                          periferica, portaStampante(periferica), 1, 0, 0, file))
            return QDate();
    } else if (!mostraAnteprima(s.report, s.selezione, s.titolo, QString(), false, QString(), s.connessione,
                                s.stampante)) {
        return QDate();
    }
    return segnaStampato(s);
}

} // namespace

void registerPrintScreens()
{
    for (const ElencoMenu& e : kElenchi) {
        const QString report = QString::fromLatin1(e.report);
        const QString titolo = QString::fromLatin1(e.titolo);
        screens::registerScreen(QString::fromLatin1(e.schermata),
                                {screens::Kind::Dialog,
                                 [report, titolo](QWidget*, const QVariant&) -> QWidget* {
                                     // The preview is a window of its own: nothing to keep here.
                                     mostraAnteprima(report, QString(), titolo);
                                     return nullptr;
                                 },
                                 true});
    }
}

QDate stampaDocumentoDaSchermata(int rid, bool nonMostrareAnteprima)
{
    StampaDocumento s;
    const bool preparato = preparaStampaDocumento(rid, s);
    return stampa(preparato, s, nonMostrareAnteprima);
}

QDate stampaElencoSpecialeDaSchermata(int rid, bool nonMostrareAnteprima)
{
    StampaDocumento s;
    const bool preparato = preparaStampaElencoSpeciale(rid, s);
    return stampa(preparato, s, nonMostrareAnteprima);
}

bool fillCmbReport(int funzionalita, QComboBox* combo)
{
    return fillComboBox(QStringLiteral("SELECT RID, REPORT FROM FunzionalitaReport WHERE Funzionalita = ")
                            + QString::number(funzionalita) + QStringLiteral(" ORDER BY RID"),
                        combo);
}
