#include "shell/shellapp.h"

#include "common/apphome.h"
#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "core/screenregistry.h"
#include "core/startup.h"
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "data/session.h"
#include "demo/datidimostrativi.h"
#include "demo/demoscreens.h"
#include "documents/documentscreens.h"
#include "masterdata/masterdatascreens.h"
#include "printing/anteprima.h"
#include "printing/barcodescreens.h"
#include "printing/cartellareport.h"
#include "printing/printscreens.h"
#include "printing/stampadocumento.h"
#include "screens/framework/appearance.h"
#include "screens/framework/frameworkscreens.h"
#include "screens/framework/frmselectelement.h"
#include "shell/frmmain.h"
#include "shell/frmwarning.h"
#include "shell/shellscreens.h"
#include "shell/singleinstance.h"
#include "shell/startsequence.h"
#include "stock/stockscreens.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTextStream>
#include <QTranslator>

// The icon is compiled into a static library: register it explicitly.
static void initIconResource() { Q_INIT_RESOURCE(orvantis); }

namespace {

// Lets pending layout and paint work finish before a picture is taken.
void settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
}

int takeScreenshot(frmMain& main, const StartOptions& options)
{
    QWidget* target = &main;
    if (!options.open.isEmpty()) {
        QWidget* screen = main.showScreenForPicture(options.open);
        if (!screen) {
            QTextStream(stderr) << "Schermata sconosciuta: " << options.open << '\n'
                                << "Schermate disponibili: " << screens::registeredScreens().join(QStringLiteral(", "))
                                << '\n';
            return 2;
        }
        if (screen->isWindow())
            target = screen;
    }
    settle(300);
    if (!target->grab().save(options.screenshot, "PNG")) {
        QTextStream(stderr) << "Impossibile salvare l'immagine " << options.screenshot << '\n';
        return 1;
    }
    QTextStream(stdout) << "Immagine salvata: " << options.screenshot << '\n';
    return 0;
}

// --demo-data: the firm just opened gets its demo data; a line every few
// percent tells how far the run is.
int fillDemoData(int documents)
{
    QTextStream out(stdout);
    int shown = -5;
    const auto progress = [&out, &shown](int done, int total, const QString& what) {
        const int percent = total > 0 ? int(qint64(done) * 100 / total) : 100;
        if (percent / 5 != shown / 5 || done >= total) {
            shown = percent;
            out << "Dati dimostrativi: " << percent << "% (" << done << '/' << total << ") " << what << Qt::endl;
        }
        return true;
    };
    QElapsedTimer timer;
    timer.start();
    QString error;
    RiepilogoDemo summary;
    const bool ok = generaDatiDimostrativi(documents, progress, &error, &summary);
    if (!ok)
        QTextStream(stderr) << error << '\n';
    out << testoRiepilogo(summary) << '\n'
        << "Tempo: " << QString::number(double(timer.elapsed()) / 1000.0, 'f', 1) << " s\n";
    return ok ? 0 : 1;
}

// --print-pdf TYPE:YEAR:NUMBER FILE: the stored document as a PDF file,
// marked printed as a print from its screen would.
int printDocumentPdf(const QString& documento, const QString& file)
{
    const QStringList parti = documento.split(QLatin1Char(':'));
    bool annoOk = false, numeroOk = false;
    const int numero = parti.size() >= 3 ? parti.last().trimmed().toInt(&numeroOk) : 0;
    const int anno = parti.size() >= 3 ? parti.at(parti.size() - 2).trimmed().toInt(&annoOk) : 0;
    const QString tipo = parti.mid(0, parti.size() - 2).join(QLatin1Char(':')).trimmed();
    if (!annoOk || !numeroOk || tipo.isEmpty()) {
        QTextStream(stderr) << "--print-pdf vuole TIPO:ANNO:NUMERO, non " << documento << '\n';
        return 1;
    }
    const int rid = cercaDocumento(tipo, anno, numero);
    if (rid <= 0) {
        QTextStream(stderr) << "Documento non trovato: " << tipo << ' ' << numero << '/' << anno << '\n';
        return 1;
    }
    QString errore;
    if (!documentoInPdf(rid, file, &errore)) {
        QTextStream(stderr) << "Stampa non riuscita: " << errore << '\n';
        return 1;
    }
    QTextStream(stdout) << "PDF salvato: " << QFileInfo(file).absoluteFilePath() << '\n';
    return 0;
}

} // namespace

QIcon programIcon()
{
    initIconResource();
    // The drawing where Qt reads SVG, its pictures at the usual sizes elsewhere.
    if (QImageReader::supportedImageFormats().contains("svg"))
        return QIcon(QStringLiteral(":/icons/orvantis.svg"));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/orvantis-%1.png").arg(size), QSize(size, size));
    return icon;
}

void setupDesktop()
{
    // Every window, the child windows of the main one too, carries the program's icon.
    QApplication::setWindowIcon(programIcon());
    QGuiApplication::setDesktopFileName(QStringLiteral("orvantis"));
    applyAppearance();

    // Some platforms (offscreen among them) know no icon folders of their own.
    QStringList iconPaths = QIcon::themeSearchPaths();
    const QStringList dataIcons = QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                                            QStringLiteral("icons"), QStandardPaths::LocateDirectory);
    for (const QString& path : dataIcons) {
        if (!iconPaths.contains(path))
            iconPaths.append(path);
    }
    QIcon::setThemeSearchPaths(iconPaths);
    QIcon::setFallbackThemeName(QStringLiteral("Tango"));
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == QLatin1String("hicolor"))
        QIcon::setThemeName(QStringLiteral("Tango"));
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    auto* translator = new QTranslator(qApp);
    if (translator->load(QLocale(QLocale::Italian), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
}

int runShell(const StartOptions& options)
{
    if (!options.home.isEmpty())
        setProgramFolder(options.home);
    QApplication::setQuitOnLastWindowClosed(false);
    setupDesktop();

    ShellOptions shell;
    shell.hasPassword = options.hasPassword;
    shell.password = options.password;
    const bool printPdf = !options.printPdf.isEmpty();
    shell.interactive = options.screenshot.isEmpty() && options.demoData == 0 && !printPdf;
    // A PDF is made beside a running copy of the program, not instead of it.
    if (printPdf)
        shell.instanceKey = SingleInstance::keyForProgramFolder() + QStringLiteral("-pdf-")
            + QString::number(QCoreApplication::applicationPid());
    if (shell.interactive) {
        dialogs::install();
        frmWarning::install();
    } else {
        shell.pauseMs = 0;
        if (!options.hasPassword) {
            QTextStream(stderr) << (printPdf                   ? "--print-pdf"
                                        : options.demoData > 0 ? "--demo-data"
                                                               : "--screenshot")
                                << " vuole anche --password\n";
            return 2;
        }
    }
    registerShellScreens();
    registerMasterdataScreens();
    registerDocumentScreens();
    registerStockScreens();
    registerDemoScreens();
    registerPrintScreens();
    registerPreviewScreens();
    registerBarcodeScreens();
    installElementChooser();
    registerFrameworkScreens();

    int code = 0;
    {
        StartSequence start(shell);
        std::unique_ptr<frmMain> main = start.run();
        // A new report folder gets the shipped templates; changed ones stay.
        if (main && installaModelliReport(gSession().strReportPath) < 0)
            QTextStream(stderr) << "Impossibile copiare i modelli di stampa in " << gSession().strReportPath << '\n';
        if (!main) {
            code = start.exitCode();
        } else if (printPdf) {
            code = printDocumentPdf(options.printPdf, options.printPdfFile);
        } else if (options.demoData > 0) {
            code = fillDemoData(options.demoData);
            if (code == 0 && !options.screenshot.isEmpty())
                code = takeScreenshot(*main, options);
        } else if (!options.screenshot.isEmpty()) {
            code = takeScreenshot(*main, options);
        } else {
            QObject::connect(main.get(), &frmMain::closed, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
            code = QApplication::exec();
        }
    }
    // The database connections go before Qt's own objects do.
    gAdoSqlServer().closeAll();
    driver::closeIdle();
    return code;
}
