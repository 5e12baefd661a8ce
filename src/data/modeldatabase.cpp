#include "modeldatabase.h"

#include "cadosqlserver.h"
#include "connectionstring.h"
#include "errorlog.h"
#include "italiantext.h"
#include "modelseed.h"
#include "schema.h"
#include "session.h"
#include "sqldialect.h"
#include "sqlliteral.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

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
        : m_tipo(gAdoSqlServer().TipoServer()), m_connection(gSession().strConnessione)
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
    return QStringLiteral("IF DB_ID(N'") + name + QStringLiteral("') IS NULL CREATE DATABASE [") + name + QLatin1Char(']');
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
    if (!db.beginTrasaction(tag)) {
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
    if (!ok) {
        db.rollbackTrasaction(tag);
        return false;
    }
    return db.commitTrasaction(tag);
}

bool buildModelFile(const QString& path, QString* message)
{
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    QDir().mkpath(QFileInfo(path).absolutePath());
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            say(message, QStringLiteral("Impossibile creare il file ") + path);
            return false;
        }
    }
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
    if (QFileInfo(dbPath).isFile())
        return true;
    if (!QFileInfo(modelPath).isFile() && !buildModelFile(modelPath, message))
        return false;
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
        const bool hasTables = probe->execute(QStringLiteral("SELECT COUNT(*) FROM Opzioni"), &query, error) && query.next();
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

int storedSchemaVersion()
{
    const QVariant v = gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT MAX(") + schema::versionColumn()
                                                         + QStringLiteral(") FROM ") + schema::versionTable(),
                                                     QStringLiteral("model.storedSchemaVersion"));
    return v.isValid() && !v.isNull() ? v.toInt() : -1;
}

} // namespace model
