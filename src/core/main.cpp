// prgOrvantis: the program's entry point.
#include "startup.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("prgOrvantis"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVANTIS_VERSION));

    QString out;
    QString err;
    const int code = runStart(parseStartOptions(QCoreApplication::arguments()), out, err);
    QTextStream(stdout) << out;
    QTextStream(stderr) << err;
    return code;
}
