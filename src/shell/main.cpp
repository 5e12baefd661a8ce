// prgOrvantis: the program's entry point. The command-line jobs run without
// screens; everything else starts the application.
#include "core/startup.h"
#include "shell/shellapp.h"

#include <QApplication>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const StartOptions options = parseStartOptions(arguments);

    if (!startsScreens(options)) {
        QCoreApplication app(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("prgOrvantis"));
        QString out;
        QString err;
        const int code = runStart(options, out, err);
        QTextStream(stdout) << out;
        QTextStream(stderr) << err;
        return code;
    }

    // A picture, the demo data or a PDF need no screen: without a display the
    // offscreen platform stands in.
    if ((!options.screenshot.isEmpty() || options.demoData > 0 || !options.printPdf.isEmpty())
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("prgOrvantis"));
    QApplication::setApplicationVersion(QStringLiteral(ORVANTIS_VERSION));
    return runShell(options);
}
