#include "shell/shellapp.h"

#include "common/apphome.h"
#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "core/screenregistry.h"
#include "core/startup.h"
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "demo/datidimostrativi.h"
#include "demo/demoscreens.h"
#include "documents/documentscreens.h"
#include "masterdata/masterdatascreens.h"
#include "screens/framework/appearance.h"
#include "screens/framework/frameworkscreens.h"
#include "screens/framework/frmselectelement.h"
#include "shell/frmmain.h"
#include "shell/frmwarning.h"
#include "shell/shellscreens.h"
#include "shell/startsequence.h"
#include "stock/stockscreens.h"

#include <QApplication>
#include <QElapsedTimer>
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
    shell.interactive = options.screenshot.isEmpty() && options.demoData == 0;
    if (shell.interactive) {
        dialogs::install();
        frmWarning::install();
    } else {
        shell.pauseMs = 0;
        if (!options.hasPassword) {
            QTextStream(stderr) << (options.demoData > 0 ? "--demo-data" : "--screenshot")
                                << " vuole anche --password\n";
            return 2;
        }
    }
    registerShellScreens();
    registerMasterdataScreens();
    registerDocumentScreens();
    registerStockScreens();
    registerDemoScreens();
    installElementChooser();
    registerFrameworkScreens();

    int code = 0;
    {
        StartSequence start(shell);
        std::unique_ptr<frmMain> main = start.run();
        if (!main) {
            code = start.exitCode();
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
