// Workstation stress: several processes saving on one database at once, as
// the workstations of an office do, and the kill test. Each save is one
// transaction: a document number, the document's header and rows, the
// stock postings of its products, its journal entry and due dates. Loads
// from a supplier put goods into cost lots, sales take them from the
// oldest lot in stock.
//
//   orvantis_stress [--backend sqlite|mariadb] [--processes N] [--seconds S]
//                   [--kill K] [--mysql "Server=..;Port=..;Uid=..;Pwd="]
//
// Without --kill, N processes save for S seconds; with --kill, K times a
// saving process is killed at a random moment and another started. Then
// the database is checked: saves and failures, numbers given twice or
// missing, every entry with its lines and due dates, every document with
// its rows and entry, and the stock of every lot against the rows of the
// documents (a recalculation) and every product's stock against its lots.
// The exit code is 0 when every check holds and no save failed. Prints
// figures; never judges a time.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "stressdb.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <memory>

namespace {

QTextStream out(stdout);

struct Options
{
    QString backend = QStringLiteral("sqlite");
    int processes = 4;
    int seconds = 20;
    int kills = 0;
    QString mysql = qEnvironmentVariable("ORVANTIS_TEST_MYSQL");
    // worker
    bool worker = false;
    int tipo = TipoServer::FileDb;
    QString connection;
    quint32 seed = 1;
};

Options parse(const QStringList& args)
{
    Options o;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& a = args.at(i);
        const QString next = i + 1 < args.size() ? args.at(i + 1) : QString();
        if (a == QLatin1String("--worker"))
            o.worker = true;
        else if (a == QLatin1String("--backend")) {
            o.backend = next;
            ++i;
        } else if (a == QLatin1String("--processes")) {
            o.processes = next.toInt();
            ++i;
        } else if (a == QLatin1String("--seconds")) {
            o.seconds = next.toInt();
            ++i;
        } else if (a == QLatin1String("--kill")) {
            o.kills = next.toInt();
            ++i;
        } else if (a == QLatin1String("--mysql")) {
            o.mysql = next;
            ++i;
        } else if (a == QLatin1String("--tipo")) {
            o.tipo = next.toInt();
            ++i;
        } else if (a == QLatin1String("--connection")) {
            o.connection = next;
            ++i;
        } else if (a == QLatin1String("--seed")) {
            o.seed = next.toUInt();
            ++i;
        }
    }
    return o;
}

void useDatabase(int tipo, const QString& connection)
{
    gAdoSqlServer().setTipoServer(tipo);
    gSession().tipoServer = tipo;
    gSession().strConnessione = connection;
}

// One workstation: saves until the time is up, then prints its figures.
int runWorker(const Options& o)
{
    useDatabase(o.tipo, o.connection);
    // The barcode run's own success box says nothing worth a report.
    setMsgBoxHandler([](const QString& prompt, int style, const QString&) {
        if (!prompt.startsWith(QLatin1String("Generazione dei Codici a Barre avvenuta")))
            QTextStream(stderr) << prompt << Qt::endl;
        return defaultAnswer(style);
    });
    stress::Fixture fixture;
    if (!stress::readFixture(fixture))
        return 3;
    QRandomGenerator random(o.seed);
    stress::Figures figures;
    QElapsedTimer clock;
    clock.start();
    QTextStream progress(stdout);
    while (clock.elapsed() < qint64(o.seconds) * 1000) {
        stress::save(fixture, random, figures);
        // After every save: a killed process still tells what it saved.
        progress << figures.line() << Qt::endl;
    }
    gAdoSqlServer().closeAll();
    driver::closeIdle();
    return 0;
}

QProcess* startWorker(const Options& o, int tipo, const QString& connection, quint32 seed, int seconds)
{
    auto* p = new QProcess;
    p->setProcessChannelMode(QProcess::SeparateChannels);
    p->start(QCoreApplication::applicationFilePath(),
             {QStringLiteral("--worker"), QStringLiteral("--tipo"), QString::number(tipo),
              QStringLiteral("--connection"), connection, QStringLiteral("--seed"), QString::number(seed),
              QStringLiteral("--seconds"), QString::number(seconds)});
    p->waitForStarted();
    return p;
}

// The last whole line of a worker: its figures so far.
stress::Figures figuresOf(QProcess* p)
{
    const QString text = QString::fromUtf8(p->readAllStandardOutput());
    const QStringList lines =
        text.left(text.lastIndexOf(QLatin1Char('\n'))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.isEmpty() ? stress::Figures() : stress::Figures::fromLine(lines.last());
}

// N processes for the given time.
stress::Figures runWorkstations(const Options& o, int tipo, const QString& connection)
{
    QList<QProcess*> workers;
    for (int i = 0; i < o.processes; ++i)
        workers << startWorker(o, tipo, connection, 1000 + quint32(i), o.seconds);
    stress::Figures total;
    for (QProcess* p : std::as_const(workers)) {
        p->waitForFinished(-1);
        total.add(figuresOf(p));
        const QByteArray errors = p->readAllStandardError();
        if (!errors.isEmpty())
            out << "worker messages:\n" << QString::fromUtf8(errors.left(2000)) << '\n';
        delete p;
    }
    return total;
}

// K kills at random moments; a killed process is replaced at once.
stress::Figures runKills(const Options& o, int tipo, const QString& connection)
{
    QRandomGenerator random(20261122);
    QList<QProcess*> workers;
    quint32 seed = 2000;
    const int processes = qMax(1, o.processes);
    for (int i = 0; i < processes; ++i)
        workers << startWorker(o, tipo, connection, seed++, 3600);
    stress::Figures total;
    int killedWhileSaving = 0;
    for (int k = 0; k < o.kills; ++k) {
        QThread::msleep(150 + random.bounded(450));
        const int victim = int(random.bounded(quint32(workers.size())));
        QProcess* p = workers.at(victim);
        p->kill();
        p->waitForFinished(-1);
        // Lines printed before the kill count its committed saves.
        total.add(figuresOf(p));
        ++killedWhileSaving;
        delete p;
        workers[victim] = startWorker(o, tipo, connection, seed++, 3600);
    }
    for (QProcess* p : std::as_const(workers)) {
        p->kill();
        p->waitForFinished(-1);
        delete p;
    }
    out << "killed " << killedWhileSaving << " saving processes (and " << workers.size() << " more at the end)\n";
    return total;
}

int runParent(const Options& o)
{
    QTemporaryDir dir;
    int tipo = TipoServer::FileDb;
    QString connection;
    if (o.backend == QLatin1String("mariadb")) {
        if (o.mysql.isEmpty()) {
            out << "no MariaDB server: give --mysql or ORVANTIS_TEST_MYSQL\n";
            return 2;
        }
        tipo = TipoServer::MySql;
        connection = o.mysql + QStringLiteral(";Database=orvantis_stress");
    } else {
        connection = fileDbConnectionString(dir.filePath(QStringLiteral("stress.db")));
    }
    QString message;
    if (!stress::createDatabase(tipo, o.mysql, connection, &message)) {
        out << "cannot prepare the database: " << message << '\n';
        return 2;
    }
    useDatabase(tipo, connection);
    if (!stress::prepareFixture(&message)) {
        out << "cannot prepare the data: " << message << '\n';
        return 2;
    }
    gAdoSqlServer().closeAll();
    driver::closeIdle();

    const QString name = tipo == TipoServer::MySql ? QStringLiteral("MariaDB") : QStringLiteral("SQLite");
    QElapsedTimer clock;
    clock.start();
    stress::Figures figures;
    if (o.kills > 0) {
        out << name << ": kill test, " << o.kills << " kills among " << o.processes << " saving processes\n";
        figures = runKills(o, tipo, connection);
    } else {
        out << name << ": " << o.processes << " processes saving for " << o.seconds << " s\n";
        figures = runWorkstations(o, tipo, connection);
    }
    const double seconds = double(clock.elapsed()) / 1000.0;
    out << "saves reported " << figures.saves << " (" << QString::number(figures.saves / seconds, 'f', 0)
        << " a second), failures " << figures.failures() << " (busy " << figures.busy << ", connection lost "
        << figures.lost << ", other " << figures.other << ")\n";
    out.flush();

    const stress::Check check = stress::checkDatabase(tipo);
    for (const QString& line : check.lines)
        out << "  " << line << '\n';
    out << (check.ok && figures.failures() == 0 ? "RESULT: every check holds\n" : "RESULT: FAILED\n");
    out.flush();
    gAdoSqlServer().closeAll();
    driver::closeIdle();
    if (tipo == TipoServer::MySql)
        stress::dropServerDatabase(o.mysql);
    // A kill test counts no failures: a killed save is neither saved nor failed.
    return check.ok && figures.failures() == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const Options o = parse(app.arguments());
    return o.worker ? runWorker(o) : runParent(o);
}
