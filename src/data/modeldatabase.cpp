#include "data/modeldatabase.h"

#include "common/errorlog.h"
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/modelseed.h"
#include "data/schema.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

namespace {

void say(QString* message, const QString& text)
{
    if (message)
        *message = text;
}

// Switches the session to another database for the time of a job.
class SessionSwitch
{
public:
    SessionSwitch(int tipoServer, const QString& connectionString)
        : m_tipo(gAdoSqlServer().TipoServer())
        , m_connection(gSession().strConnessione)
    {
        gAdoSqlServer().setTipoServer(tipoServer);
        gSession().strConnessione = connectionString;
    }
    ~SessionSwitch()
    {
        gAdoSqlServer().setTipoServer(m_tipo);
        gSession().strConnessione = m_connection;
    }

private:
    int m_tipo;
    QString m_connection;
};

QString literal(const QVariant& v)
{
    if (!v.isValid() || v.isNull())
        return QStringLiteral("Null");
    switch (v.typeId()) {
    case QMetaType::QString: return sqlText(v.toString());
    case QMetaType::QDate: return gAdoSqlServer().getSQLDate(v);
    case QMetaType::QDateTime: return gAdoSqlServer().getSQLDateTime(v);
    case QMetaType::Bool: return v.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    default: return getSqlNumber(v);
    }
}

QString quoted(const QString& identifier, int tipoServer)
{
    return tipoServer == TipoServer::MySql ? QLatin1Char('`') + identifier + QLatin1Char('`') : identifier;
}

QString createDatabaseStatement(int tipoServer, const QString& name)
{
    if (tipoServer == TipoServer::MySql)
        return QStringLiteral("CREATE DATABASE IF NOT EXISTS `") + name
            + QStringLiteral("` CHARACTER SET utf8mb4 COLLATE utf8mb4_unicode_ci");
    return QStringLiteral("IF DB_ID(N'") + name + QStringLiteral("') IS NULL CREATE DATABASE [") + name
        + QLatin1Char(']');
}

// The same connection string without its database, to reach the server itself.
QString serverOnly(int tipoServer, const QString& connectionString, QString* database)
{
    QStringList kept;
    const QStringList parts = connectionString.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const QString key = part.section(QLatin1Char('='), 0, 0).trimmed().toLower();
        if (key == QLatin1String("database") || key == QLatin1String("initial catalog")) {
            *database = part.section(QLatin1Char('='), 1).trimmed();
            continue;
        }
        kept.append(part);
    }
    if (tipoServer == TipoServer::SqlServer)
        kept.append(QStringLiteral("DATABASE=master"));
    return kept.join(QLatin1Char(';'));
}

// Makes a missing or 0-byte file a SQLite database in write-ahead mode, on
// a connection of its own: the driver refuses to open a file that is not a
// database yet.
bool startFileDatabase(const QString& path, QString* message)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    static int counter = 0;
    const QString name = QStringLiteral("orvantis-new-file-") + QString::number(++counter);
    QString error;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        if (!db.open()) {
            error = db.lastError().text();
        } else {
            // The journal mode is written in the header: the file is a database from here on.
            QSqlQuery query(db);
            if (!query.exec(QStringLiteral("PRAGMA journal_mode=WAL")))
                error = query.lastError().text();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    if (error.isEmpty() && QFileInfo(path).size() == 0)
        error = QStringLiteral("il file è rimasto vuoto");
    if (!error.isEmpty()) {
        say(message, QStringLiteral("Impossibile creare il database ") + path + QStringLiteral(": ") + error);
        return false;
    }
    return true;
}

const QByteArray& sqliteHeader()
{
    static const QByteArray header("SQLite format 3", 16); // with its closing zero byte
    return header;
}

bool runPlain(int tipoServer, const QString& connectionString, const QStringList& statements, QString* message)
{
    DbError error;
    PhysicalConnectionPtr connection = driver::acquire(tipoServer, connectionString, 60, error);
    if (!connection) {
        say(message, QStringLiteral("Impossibile connettere il DataBase: ") + error.description);
        return false;
    }
    for (const QString& sql : statements) {
        if (!connection->execute(sql, nullptr, error)) {
            say(message, error.description + QStringLiteral("\n") + sql);
            connection->close();
            return false;
        }
    }
    driver::release(connection);
    return true;
}

} // namespace

namespace model {

bool createTables(int tipoServer, const QString& connectionString, QString* message)
{
    QStringList statements = schema::createStatements(tipoServer);
    if (tipoServer == TipoServer::FileDb) {
        const QString path = fileDbPath(connectionString);
        const QFileInfo file(path);
        if ((!file.exists() || (file.isFile() && file.size() == 0)) && !startFileDatabase(path, message))
            return false;
        statements.prepend(QStringLiteral("BEGIN"));
        statements.append(QStringLiteral("COMMIT"));
    }
    return runPlain(tipoServer, connectionString, statements, message);
}

bool seedDatabase(QString* message)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString tag = QStringLiteral("model.seedDatabase");
    const int tipo = db.TipoServer();
    cTransaction transaction(tag);
    if (!transaction) {
        say(message, QStringLiteral("Impossibile aprire la transazione."));
        return false;
    }
    bool ok = true;
    for (const schema::SeedTable& table : schema::seedData()) {
        const schema::Table* def = schema::findTable(table.table);
        const bool explicitKeys = tipo == TipoServer::SqlServer && def && def->hasKey() && !def->programKey
            && table.columns.contains(def->columns.first().name, Qt::CaseInsensitive);
        if (explicitKeys)
            ok = db.executeSQL(QStringLiteral("SET IDENTITY_INSERT ") + table.table + QStringLiteral(" ON"), tag);
        QStringList columns;
        for (const QString& c : table.columns)
            columns.append(quoted(c, tipo));
        const QString head = QStringLiteral("INSERT INTO ") + quoted(table.table, tipo) + QStringLiteral(" (")
            + columns.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (");
        for (const QVariantList& row : table.rows) {
            if (!ok)
                break;
            QStringList values;
            for (const QVariant& v : row)
                values.append(literal(v));
            ok = db.executeSQL(head + values.join(QStringLiteral(", ")) + QLatin1Char(')'), tag);
        }
        if (ok && explicitKeys)
            ok = db.executeSQL(QStringLiteral("SET IDENTITY_INSERT ") + table.table + QStringLiteral(" OFF"), tag);
        if (!ok) {
            say(message, QStringLiteral("Impossibile scrivere i dati iniziali nella tabella ") + table.table);
            break;
        }
    }
    return ok && transaction.commit();
}

bool buildModelFile(const QString& path, QString* message)
{
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    const QString connection = fileDbConnectionString(path);
    if (!createTables(TipoServer::FileDb, connection, message))
        return false;
    bool ok = false;
    {
        SessionSwitch use(TipoServer::FileDb, connection);
        ok = seedDatabase(message);
    }
    // Fold the write-ahead log into the file, so that a copy of the file alone
    // is a whole database.
    ok = ok && runPlain(TipoServer::FileDb, connection, {QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")}, message);
    driver::closeIdle();
    return ok;
}

bool ensureFileDatabase(const QString& dbPath, const QString& modelPath, QString* message)
{
    if (QFileInfo::exists(dbPath))
        return QFileInfo(dbPath).isFile();
    if (!QFileInfo::exists(modelPath)) {
        if (!buildModelFile(modelPath, message))
            return false;
    } else {
        QString detail;
        int version = 0;
        const FileDbState state = inspectFileDatabase(modelPath, &detail, &version);
        if (state != FileDbState::Ours) {
            say(message, QStringLiteral("Il modello non si può usare. ") + fileDbProblem(state, modelPath, detail));
            return false;
        }
        // The model is the program's own: one left by an earlier release is
        // built again, so that a new firm starts on the tables of this one.
        if (version < schema::schemaVersion() && !(QFile::remove(modelPath) && buildModelFile(modelPath, message)))
            return false;
    }
    QDir().mkpath(QFileInfo(dbPath).absolutePath());
    if (!QFile::copy(modelPath, dbPath)) {
        say(message, QStringLiteral("Impossibile copiare il modello ") + modelPath + QStringLiteral(" in ") + dbPath);
        return false;
    }
    QFile(dbPath).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::WriteGroup);
    return true;
}

bool initServerDatabase(int tipoServer, const QString& connectionString, QString* message)
{
    if (tipoServer != TipoServer::MySql && tipoServer != TipoServer::SqlServer) {
        say(message, QStringLiteral("Il database locale si crea dal modello al primo avvio."));
        return false;
    }
    QString database;
    const QString server = serverOnly(tipoServer, connectionString, &database);
    if (!database.isEmpty() && !runPlain(tipoServer, server, {createDatabaseStatement(tipoServer, database)}, message))
        return false;

    SessionSwitch use(tipoServer, connectionString);
    {
        DbError error;
        PhysicalConnectionPtr probe = driver::acquire(tipoServer, connectionString, 60, error);
        if (!probe) {
            say(message, QStringLiteral("Impossibile connettere il DataBase: ") + error.description);
            return false;
        }
        QSqlQuery query;
        const bool hasTables =
            probe->execute(QStringLiteral("SELECT COUNT(*) FROM Opzioni"), &query, error) && query.next();
        driver::release(probe);
        if (hasTables) {
            say(message, QStringLiteral("Il database contiene già le tabelle di Orvantis: nessuna modifica."));
            return true;
        }
    }
    if (!createTables(tipoServer, connectionString, message) || !seedDatabase(message))
        return false;
    say(message, QStringLiteral("Database preparato: tabelle e dati iniziali creati."));
    return true;
}

FileDbState inspectFileDatabase(const QString& path, QString* detail, int* version)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        return FileDbState::Missing;
    if (!info.isFile()) {
        say(detail, QStringLiteral("non è un file"));
        return FileDbState::NotADatabase;
    }
    QByteArray head;
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            say(detail, file.errorString());
            return FileDbState::Unreadable;
        }
        head = file.read(sqliteHeader().size());
    }
    if (head.isEmpty())
        return FileDbState::Empty;
    if (head != sqliteHeader())
        return FileDbState::NotADatabase;

    static int counter = 0;
    const QString name = QStringLiteral("orvantis-inspect-") + QString::number(++counter);
    QStringList tables;
    QSqlError error;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        // Immutable: a read-only look at a database in WAL mode would still
        // leave its -wal and -shm files beside it.
        QUrl uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
        uri.setQuery(QStringLiteral("immutable=1"));
        db.setDatabaseName(uri.toString(QUrl::FullyEncoded));
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
        if (!db.open()) {
            error = db.lastError();
        } else {
            QSqlQuery query(db);
            if (query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"))) {
                while (query.next())
                    tables.append(query.value(0).toString().toLower());
            } else {
                error = query.lastError();
            }
            if (version && tables.contains(schema::versionTable().toLower())) {
                QSqlQuery v(db);
                *version = v.exec(QStringLiteral("SELECT MAX(") + schema::versionColumn() + QStringLiteral(") FROM ")
                                  + schema::versionTable())
                        && v.next()
                    ? v.value(0).toInt()
                    : 0;
            }
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    if (error.isValid()) {
        say(detail, error.databaseText().isEmpty() ? error.text() : error.databaseText());
        // 26: not a database; 11: a damaged one.
        const QString code = error.nativeErrorCode();
        return code == QLatin1String("26") || code == QLatin1String("11") ? FileDbState::NotADatabase
                                                                          : FileDbState::Unreadable;
    }
    QStringList missing;
    for (const QString& table : {QStringLiteral("Opzioni"), schema::versionTable()}) {
        if (!tables.contains(table.toLower()))
            missing.append(table);
    }
    if (!missing.isEmpty()) {
        say(detail, QStringLiteral("mancano le tabelle ") + missing.join(QStringLiteral(", ")));
        return FileDbState::Foreign;
    }
    return FileDbState::Ours;
}

QString fileDbProblem(FileDbState state, const QString& path, const QString& detail)
{
    const QString untouched = QStringLiteral("\n\nIl file non è stato modificato.");
    const QString because = detail.isEmpty() ? QString() : QStringLiteral(" (") + detail + QLatin1Char(')');
    switch (state) {
    case FileDbState::Ours: return QString();
    case FileDbState::Missing:
        return QStringLiteral("Il file del database non esiste:\n") + path
            + QStringLiteral("\n\nControllare il percorso (un nome scritto male, un disco di rete non collegato?). "
                             "Un database nuovo si prepara con \"prgOrvantis --init-db\".");
    case FileDbState::Empty:
        return QStringLiteral("Il file del database è vuoto (0 byte), non è un database di Orvantis:\n") + path
            + untouched;
    case FileDbState::NotADatabase:
        return QStringLiteral("Il file indicato non è un database") + because + QStringLiteral(":\n") + path
            + untouched;
    case FileDbState::Foreign:
        return QStringLiteral("Il file è un database SQLite, ma non di Orvantis") + because + QStringLiteral(":\n")
            + path + untouched;
    case FileDbState::Unreadable:
        return QStringLiteral("Impossibile leggere il file del database") + because + QStringLiteral(":\n") + path;
    }
    return QString();
}

int storedSchemaVersion()
{
    const QVariant v = gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT MAX(") + schema::versionColumn()
                                                         + QStringLiteral(") FROM ") + schema::versionTable(),
                                                     QStringLiteral("model.storedSchemaVersion"));
    return v.isValid() && !v.isNull() ? v.toInt() : -1;
}

} // namespace model
