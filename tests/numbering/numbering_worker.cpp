// Takes numbers from one numerator, each in a transaction of its own, and
// prints them one a line: one workstation of the concurrency test.
// Arguments: back end, connection string, numerator, year, how many.
#include "data/cadosqlserver.h"
#include "data/driver.h"
#include "numbering/numeratore.h"
#include "data/session.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QThread>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 6)
        return 2;
    gAdoSqlServer().setTipoServer(args.at(1).toInt());
    gSession().tipoServer = args.at(1).toInt();
    gSession().strConnessione = args.at(2);
    QTextStream out(stdout);
    int code = 0;
    for (int i = 0; i < args.at(5).toInt() && code == 0; ++i) {
        if (!gAdoSqlServer().beginTrasaction(QStringLiteral("worker"))) {
            code = 1;
            break;
        }
        const int numero = getNewNumeratoreAnnuale(args.at(3).toInt(), args.at(4));
        QThread::msleep(3);   // the rest of a document save, with the counter taken
        if (numero <= 0 || !gAdoSqlServer().commitTrasaction(QStringLiteral("worker")))
            code = 1;
        else
            out << numero << '\n';
        out.flush();
    }
    // The pooled connections go before the application object.
    gAdoSqlServer().closeAll();
    driver::closeIdle();
    return code;
}
