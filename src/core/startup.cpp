#include "core/startup.h"

#include "common/apphome.h"
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/modeldatabase.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqldialect.h"

#include <QFileInfo>

StartOptions parseStartOptions(const QStringList& arguments)
{
    StartOptions o;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& a = arguments.at(i);
        auto next = [&](QString& target) {
            if (i + 1 < arguments.size())
                target = arguments.at(++i);
            else
                o.error = QStringLiteral("Manca il valore dopo ") + a;
        };
        if (a == QLatin1String("--home")) {
            next(o.home);
        } else if (a == QLatin1String("--init-db")) {
            o.initDb = true;
        } else if (a == QLatin1String("--db-type")) {
            QString v;
            next(v);
            bool ok = false;
            o.dbType = v.toInt(&ok);
            if (!ok || o.dbType < 0 || o.dbType > 2)
                o.error = QStringLiteral("--db-type vuole 0 (SQL Server), 1 (file locale) o 2 (MySQL/MariaDB)");
        } else if (a == QLatin1String("--connection")) {
            next(o.connection);
        } else if (a == QLatin1String("--build-model")) {
            next(o.buildModel);
        } else if (a == QLatin1String("--password")) {
            o.hasPassword = true;
            next(o.password);
        } else if (a == QLatin1String("--screenshot")) {
            next(o.screenshot);
        } else if (a == QLatin1String("--open")) {
            next(o.open);
        } else if (a == QLatin1String("--demo-data")) {
            QString v;
            next(v);
            bool ok = false;
            o.demoData = v.toInt(&ok);
            if (!ok || o.demoData < 7)
                o.error = QStringLiteral("--demo-data vuole il numero di documenti da creare (almeno 7)");
        } else if (a == QLatin1String("--print-pdf")) {
            next(o.printPdf);
            if (o.error.isEmpty())
                next(o.printPdfFile);
            if (o.error.isEmpty() && o.printPdf.count(QLatin1Char(':')) < 2)
                o.error =
                    QStringLiteral("--print-pdf vuole TIPO:ANNO:NUMERO e il file PDF (es. FV:2026:17 fattura.pdf)");
        } else if (a == QLatin1String("--help") || a == QLatin1String("-h")) {
            o.help = true;
        } else {
            o.error = QStringLiteral("Opzione sconosciuta: ") + a;
        }
    }
    return o;
}

QString usageText()
{
    return QStringLiteral(
        "Uso: prgOrvantis [opzioni]\n"
        "  --home DIR           cartella del programma (database, log, report), con le sue\n"
        "                       impostazioni in DIR/prgOrvantis.ini\n"
        "  --init-db            prepara il database: crea il file locale dal modello se manca, oppure\n"
        "                       crea tabelle e dati iniziali sul server indicato\n"
        "  --db-type N          con --init-db: 0 SQL Server, 1 file locale, 2 MySQL/MariaDB\n"
        "  --connection TEXT    con --init-db: stringa di connessione del server\n"
        "                       (es. \"Server=127.0.0.1;Port=3306;Database=orvantis;Uid=utente;Pwd=...\")\n"
        "  --build-model FILE   ricrea il database modello nel file indicato\n"
        "  --password TEXT      risponde alla richiesta della password di accesso\n"
        "  --screenshot FILE    dopo l'avvio salva l'immagine della finestra principale (PNG) ed esce;\n"
        "                       senza schermo usa la piattaforma \"offscreen\"\n"
        "  --open NAME          con --screenshot: apre prima la schermata indicata (es. frmOptionServer,\n"
        "                       frmSimpleForm:mnuTab_10 per una tabella del menu)\n"
        "  --demo-data N        riempie la ditta, se vuota, con dati dimostrativi: clienti, fornitori,\n"
        "                       prodotti, distinte base, range di sconto e N documenti dell'anno corrente;\n"
        "                       vuole anche --password; poi esce (o salva l'immagine di --screenshot)\n"
        "  --print-pdf TIPO:ANNO:NUMERO FILE\n"
        "                       scrive il documento indicato (es. FV:2026:17) come file PDF e lo segna\n"
        "                       come stampato; vuole anche --password; poi esce\n");
}

bool startsScreens(const StartOptions& options)
{
    return options.error.isEmpty() && !options.help && !options.initDb && options.buildModel.isEmpty();
}

bool prepareFileDatabase(bool mayCreate, QString* message, bool* created)
{
    if (created)
        *created = false;
    if (gSession().tipoServer != TipoServer::FileDb)
        return true;
    const QString path = fileDbPath(gSession().strConnessione);
    QString detail;
    model::FileDbState state = model::inspectFileDatabase(path, &detail);
    if (state == model::FileDbState::Missing && mayCreate) {
        const QString model = fileDbPath(gSession().strConnessioneModello);
        if (!model::ensureFileDatabase(path, model, &detail)) {
            if (message)
                *message = QStringLiteral("Impossibile preparare il database ") + path + QStringLiteral(": ") + detail;
            return false;
        }
        if (created)
            *created = true;
        if (message)
            *message = QStringLiteral("Creato il database ") + path + QStringLiteral(" dal modello ") + model;
        state = model::inspectFileDatabase(path, &detail);
    }
    if (state != model::FileDbState::Ours) {
        if (message)
            *message = model::fileDbProblem(state, path, detail);
        return false;
    }
    return true;
}

namespace {

int openFileDatabase(bool mayCreate, QString& out, QString& err)
{
    QString message;
    bool created = false;
    if (!prepareFileDatabase(mayCreate, &message, &created)) {
        err = message + QLatin1Char('\n');
        return 1;
    }
    if (created)
        out += message + QLatin1Char('\n');
    return 0;
}

int checkConnection(QString& out, QString& err)
{
    cAdoSqlServer& db = gAdoSqlServer();
    if (!connectionCheck(true)) {
        err = QStringLiteral("Impossibile connettere il DataBase! (") + gSession().strDescrizioneDB
            + QStringLiteral(")\n");
        return 1;
    }
    const int version = model::storedSchemaVersion();
    const QString year = getOpzione(QStringLiteral("AnnoCorrente"));
    out += QStringLiteral("Database pronto: ") + gSession().strDescrizioneDB + QStringLiteral(" (schema ")
        + QString::number(version) + QStringLiteral(", anno corrente ") + year + QStringLiteral(").\n");
    return 0;
}

} // namespace

int runStart(const StartOptions& options, QString& out, QString& err)
{
    if (!options.error.isEmpty()) {
        err = options.error + QLatin1Char('\n') + usageText();
        return 2;
    }
    if (options.help) {
        out = usageText();
        return 0;
    }
    if (!options.home.isEmpty())
        setProgramFolder(options.home);

    if (!options.buildModel.isEmpty()) {
        // The model is built from scratch: an existing file there is replaced,
        // unless it is the firm's database or not a database of this program.
        readServerSettings();
        const QFileInfo target(options.buildModel);
        if (target.exists()) {
            const bool firmDatabase = gSession().tipoServer == TipoServer::FileDb
                && target.canonicalFilePath() == QFileInfo(fileDbPath(gSession().strConnessione)).canonicalFilePath();
            QString detail;
            const model::FileDbState state = model::inspectFileDatabase(options.buildModel, &detail);
            if (firmDatabase || state != model::FileDbState::Ours) {
                err = QStringLiteral("Il modello non viene scritto su ") + options.buildModel
                    + (firmDatabase ? QStringLiteral(": è il database della ditta.")
                                    : QStringLiteral(": il file esiste e non è un database di Orvantis."))
                    + QStringLiteral(" Il file non è stato modificato.\n");
                return 1;
            }
        }
        QString message;
        if (!model::buildModelFile(options.buildModel, &message)) {
            err = QStringLiteral("Impossibile creare il modello: ") + message + QLatin1Char('\n');
            return 1;
        }
        out = QStringLiteral("Modello creato: ") + options.buildModel + QLatin1Char('\n');
        return 0;
    }

    if (options.initDb && options.dbType >= 0) {
        const QString connection = options.dbType == TipoServer::FileDb && options.connection.isEmpty()
            ? fileDbConnectionString(defaultDatabasePath())
            : options.connection;
        saveServerConnection(options.dbType, connection);
    }
    readServerSettings();

    if (gSession().tipoServer == TipoServer::FileDb) {
        // --init-db makes the file when it is missing, and only then.
        if (const int code = openFileDatabase(options.initDb, out, err))
            return code;
    } else if (options.initDb) {
        QString message;
        const bool ok = model::initServerDatabase(gSession().tipoServer, gSession().strConnessione, &message);
        (ok ? out : err) += message + QLatin1Char('\n');
        if (!ok)
            return 1;
    }
    const int code = checkConnection(out, err);
    gAdoSqlServer().closeAll();
    driver::closeIdle();
    return code;
}
