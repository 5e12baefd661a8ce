#include "data/driver.h"

#include "data/connectionstring.h"
#include "data/sqldialect.h"
#include "data/sqlitefunctions.h"
#include "data/sqlliteral.h"

#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QRegularExpression>

namespace {

// A pooled server connection idle for longer than this is checked before use.
constexpr qint64 kRecheckAfterMs = 5 * 60 * 1000;
// Idle connections kept per connection string.
constexpr int kMaxIdle = 4;
// How long a workstation waits for another one's lock, in seconds.
int& busyTimeoutSeconds()
{
    static int seconds = 15;
    return seconds;
}

QHash<QString, QList<PhysicalConnectionPtr>>& pool()
{
    static QHash<QString, QList<PhysicalConnectionPtr>> idle;
    return idle;
}

QString poolKey(int tipoServer, const QString& connectionString)
{
    return QString::number(tipoServer) + QLatin1Char('|') + connectionString;
}

QString newConnectionName()
{
    static quint64 counter = 0;
    return QStringLiteral("orvantis-") + QString::number(++counter);
}

bool runSetup(QSqlDatabase& db, const QStringList& statements, int tipoServer, DbError& error)
{
    for (const QString& sql : statements) {
        QSqlQuery q(db);
        if (!q.exec(sql)) {
            error = driver::fromQtError(q.lastError(), tipoServer);
            return false;
        }
    }
    return true;
}

bool openFileDb(const QString& name, const QString& connectionString, DbError& error)
{
    const QString path = fileDbPath(connectionString);
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        error.number = 14;
        error.nativeError = QStringLiteral("14");
        error.source = driver::sourceName(TipoServer::FileDb);
        error.description = QStringLiteral("Impossibile trovare il file '") + path + QStringLiteral("'.");
        return false;
    }
    // SQLite makes any file it writes to a database, and the journal mode set
    // below is a write: a file of 0 bytes, or one that does not begin as a
    // SQLite database, is refused before it is opened, and stays as it is.
    // (A new database is begun by the model's code, never here.)
    {
        QFile file(path);
        const bool readable = file.open(QIODevice::ReadOnly);
        const QByteArray head = readable ? file.read(16) : QByteArray();
        if (head != QByteArray("SQLite format 3", 16)) {
            error.number = 26;   // SQLITE_NOTADB
            error.nativeError = QStringLiteral("26");
            error.source = driver::sourceName(TipoServer::FileDb);
            if (!readable)
                error.description = QStringLiteral("Impossibile leggere il file '") + path + QStringLiteral("': ") + file.errorString();
            else if (head.isEmpty())
                error.description = QStringLiteral("Il file '") + path + QStringLiteral("' è vuoto: non è un database.");
            else
                error.description = QStringLiteral("Il file '") + path + QStringLiteral("' non è un database SQLite.");
            return false;
        }
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=") + QString::number(busyTimeoutSeconds() * 1000));
    if (!db.open()) {
        error = driver::fromQtError(db.lastError(), TipoServer::FileDb);
        return false;
    }
    if (!runSetup(db, {QStringLiteral("PRAGMA foreign_keys=ON"), QStringLiteral("PRAGMA journal_mode=WAL"),
                       QStringLiteral("PRAGMA synchronous=NORMAL")},
                  TipoServer::FileDb, error))
        return false;
    if (!registerFileDbFunctions(db)) {
        error.number = -1;
        error.source = driver::sourceName(TipoServer::FileDb);
        error.description = QStringLiteral("Impossibile registrare le funzioni del database locale.");
        return false;
    }
    return true;
}

bool openMySql(const QString& name, const QString& connectionString, int timeoutSeconds, DbError& error)
{
    const MySqlParams p = mySqlParams(connectionString);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
    db.setHostName(p.host);
    db.setPort(p.port);
    db.setDatabaseName(p.database);
    db.setUserName(p.user);
    db.setPassword(p.password);
    QString options = QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=") + QString::number(qMax(1, timeoutSeconds));
    if (!p.socket.isEmpty())
        options += QStringLiteral(";UNIX_SOCKET=") + p.socket;
    db.setConnectOptions(options);
    if (!db.open()) {
        error = driver::fromQtError(db.lastError(), TipoServer::MySql);
        return false;
    }
    // A backslash in a value is a backslash; strict mode refuses a text longer
    // than its column instead of cutting it. Each statement reads what other
    // workstations committed last (the engines lock the rows they will write
    // before reading them), and searches take no gap locks: without these,
    // two workstations adding rows at once block each other into deadlocks.
    // A workstation waits at most as long for a lock as on the file database.
    return runSetup(db,
                    {QStringLiteral("SET NAMES utf8mb4 COLLATE utf8mb4_unicode_ci"),
                     QStringLiteral("SET SESSION sql_mode='STRICT_TRANS_TABLES,NO_ZERO_IN_DATE,NO_ZERO_DATE,"
                                    "ERROR_FOR_DIVISION_BY_ZERO,NO_ENGINE_SUBSTITUTION,NO_BACKSLASH_ESCAPES'"),
                     QStringLiteral("SET SESSION TRANSACTION ISOLATION LEVEL READ COMMITTED"),
                     QStringLiteral("SET SESSION innodb_lock_wait_timeout = ") + QString::number(busyTimeoutSeconds())},
                    TipoServer::MySql, error);
}

bool openSqlServer(const QString& name, const QString& connectionString, int timeoutSeconds, DbError& error)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), name);
    db.setDatabaseName(connectionString);
    db.setConnectOptions(QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=") + QString::number(qMax(1, timeoutSeconds)));
    if (!db.open()) {
        error = driver::fromQtError(db.lastError(), TipoServer::SqlServer);
        return false;
    }
    return true;
}

PhysicalConnectionPtr openNew(int tipoServer, const QString& connectionString, int timeoutSeconds, DbError& error)
{
    auto connection = std::make_shared<PhysicalConnection>(tipoServer, connectionString, newConnectionName());
    const QString& name = connection->name();
    bool ok = false;
    switch (tipoServer) {
    case TipoServer::FileDb: ok = openFileDb(name, connectionString, error); break;
    case TipoServer::MySql: ok = openMySql(name, connectionString, timeoutSeconds, error); break;
    case TipoServer::SqlServer: ok = openSqlServer(name, connectionString, timeoutSeconds, error); break;
    default:
        error.number = -1;
        error.source = QStringLiteral("cAdoSqlServer");
        error.description = QStringLiteral("Tipo di database non previsto: ") + QString::number(tipoServer);
        break;
    }
    if (!ok)
        return nullptr;   // the destructor removes the half-made connection
    connection->touch();
    return connection;
}

// Turns "#MM/DD/YYYY#", "#MM/DD/YYYY Hh:Nn:Ss#" and "#Hh:Nn:Ss#" into ISO
// text literals.
QString isoFromFileDbLiteral(const QString& literal)
{
    static const QRegularExpression re(
        QStringLiteral("^(\\d{1,2})/(\\d{1,2})/(\\d{4})(?:\\s+(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?)?$"));
    auto two = [](const QString& s) { return s.rightJustified(2, QLatin1Char('0')); };
    // A time alone ("#Hh:Nn:Ss#"): the time of day as text.
    static const QRegularExpression time(QStringLiteral("^(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?$"));
    if (const QRegularExpressionMatch t = time.match(literal); t.hasMatch())
        return QLatin1Char('\'') + two(t.captured(1)) + QLatin1Char(':') + two(t.captured(2)) + QLatin1Char(':')
            + two(t.captured(3).isEmpty() ? QStringLiteral("0") : t.captured(3)) + QLatin1Char('\'');
    const QRegularExpressionMatch m = re.match(literal);
    if (!m.hasMatch())
        return QString();
    QString iso = m.captured(3) + QLatin1Char('-') + two(m.captured(1)) + QLatin1Char('-') + two(m.captured(2));
    if (!m.captured(4).isEmpty())
        iso += QLatin1Char(' ') + two(m.captured(4)) + QLatin1Char(':') + two(m.captured(5)) + QLatin1Char(':')
            + two(m.captured(6).isEmpty() ? QStringLiteral("0") : m.captured(6));
    return QLatin1Char('\'') + iso + QLatin1Char('\'');
}

// SQLite knows LIMIT, not TOP: "SELECT TOP n" loses its clause and the
// select it belongs to (up to its closing parenthesis, or the end) gets
// "LIMIT n". Quoted text is skipped.
QString topToLimit(QString sql)
{
    if (!sql.contains(QLatin1String("TOP"), Qt::CaseInsensitive))
        return sql;
    static const QRegularExpression top(QStringLiteral("\\bSELECT\\s+(DISTINCT\\s+)?TOP\\s+(\\d+)\\s+"),
                                        QRegularExpression::CaseInsensitiveOption);
    qsizetype from = 0;
    for (;;) {
        const QRegularExpressionMatch m = top.match(sql, from);
        if (!m.hasMatch())
            return sql;
        // Is the match inside quotes? Count quote characters before it.
        const QStringView before = QStringView(sql).left(m.capturedStart());
        if (before.count(QLatin1Char('\'')) % 2 == 1) {
            from = m.capturedEnd();
            continue;
        }
        const QString limit = QStringLiteral(" LIMIT ") + m.captured(2);
        const QString head = QStringLiteral("SELECT ") + m.captured(1);
        sql.replace(m.capturedStart(), m.capturedLength(), head);
        qsizetype i = m.capturedStart() + head.size();
        int depth = 0;
        QChar quote;
        for (; i < sql.size(); ++i) {
            const QChar c = sql.at(i);
            if (!quote.isNull()) {
                if (c == quote)
                    quote = QChar();
            } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
                quote = c;
            } else if (c == QLatin1Char('(')) {
                ++depth;
            } else if (c == QLatin1Char(')')) {
                if (depth == 0)
                    break;
                --depth;
            } else if (c == QLatin1Char(';') && depth == 0) {
                break;
            }
        }
        sql.insert(i, limit);
        from = m.capturedStart() + head.size();
    }
}

QString fileDbSql(const QString& sql)
{
    if (!sql.contains(QLatin1Char('#')) && !sql.contains(QLatin1Char('&')))
        return sql;
    QString out;
    out.reserve(sql.size() + 16);
    QChar quote;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql.at(i);
        if (!quote.isNull()) {
            out += c;
            if (c == quote)
                quote = QChar();
            continue;
        }
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            quote = c;
            out += c;
        } else if (c == QLatin1Char('&')) {
            out += QStringLiteral("||");
        } else if (c == QLatin1Char('#')) {
            const qsizetype end = sql.indexOf(QLatin1Char('#'), i + 1);
            const QString iso = end > i ? isoFromFileDbLiteral(sql.mid(i + 1, end - i - 1).trimmed()) : QString();
            if (iso.isEmpty()) {
                out += c;
            } else {
                out += iso;
                i = end;
            }
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

PhysicalConnection::PhysicalConnection(int tipoServer, QString connectionString, QString name)
    : m_tipoServer(tipoServer), m_connectionString(std::move(connectionString)), m_name(std::move(name))
{
}

PhysicalConnection::~PhysicalConnection()
{
    close();
}

bool PhysicalConnection::isOpen() const
{
    return QSqlDatabase::contains(m_name) && QSqlDatabase::database(m_name, false).isOpen();
}

void PhysicalConnection::close()
{
    if (!QSqlDatabase::contains(m_name))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
    m_inTransaction = false;
}

bool PhysicalConnection::execute(const QString& sql, QSqlQuery* query, DbError& error, int* rowsAffected)
{
    touch();
    if (!isOpen()) {
        error.number = driver::kConnectionClosed;
        error.nativeError.clear();
        error.source = driver::sourceName(m_tipoServer);
        error.description = QStringLiteral("La connessione al database è chiusa.");
        return false;
    }
    QSqlQuery q(QSqlDatabase::database(m_name, false));
    q.setForwardOnly(true);
    if (!q.exec(sql)) {
        error = driver::fromQtError(q.lastError(), m_tipoServer);
        return false;
    }
    if (rowsAffected)
        *rowsAffected = q.numRowsAffected();
    if (!q.isSelect())
        m_lastInsertId = q.lastInsertId();
    if (query)
        *query = std::move(q);
    return true;
}

bool PhysicalConnection::begin(DbError& error)
{
    QSqlDatabase db = QSqlDatabase::database(m_name, false);
    bool ok = false;
    if (m_tipoServer == TipoServer::FileDb) {
        // Take the write lock at once: two workstations that both read first
        // and then write would otherwise fail one another.
        ok = execute(QStringLiteral("BEGIN IMMEDIATE"), nullptr, error);
    } else {
        ok = db.transaction();
        if (!ok)
            error = driver::fromQtError(db.lastError(), m_tipoServer);
    }
    m_inTransaction = ok;
    return ok;
}

bool PhysicalConnection::commit(DbError& error)
{
    QSqlDatabase db = QSqlDatabase::database(m_name, false);
    bool ok = false;
    if (m_tipoServer == TipoServer::FileDb) {
        ok = execute(QStringLiteral("COMMIT"), nullptr, error);
    } else {
        ok = db.commit();
        if (!ok)
            error = driver::fromQtError(db.lastError(), m_tipoServer);
    }
    if (ok)
        m_inTransaction = false;
    return ok;
}

bool PhysicalConnection::rollback(DbError& error)
{
    QSqlDatabase db = QSqlDatabase::database(m_name, false);
    bool ok = false;
    if (m_tipoServer == TipoServer::FileDb) {
        ok = execute(QStringLiteral("ROLLBACK"), nullptr, error);
    } else {
        ok = db.rollback();
        if (!ok)
            error = driver::fromQtError(db.lastError(), m_tipoServer);
    }
    m_inTransaction = false;
    return ok;
}

namespace driver {

QString sourceName(int tipoServer)
{
    switch (tipoServer) {
    case TipoServer::SqlServer: return QStringLiteral("SQL Server");
    case TipoServer::FileDb: return QStringLiteral("SQLite");
    case TipoServer::MySql: return QStringLiteral("MariaDB");
    default: return QStringLiteral("cAdoSqlServer");
    }
}

DbError fromQtError(const QSqlError& e, int tipoServer)
{
    DbError error;
    error.nativeError = e.nativeErrorCode();
    bool numeric = false;
    const qint64 native = error.nativeError.toLongLong(&numeric);
    error.number = numeric ? native : -1;
    error.description = e.databaseText().trimmed().isEmpty() ? e.driverText() : e.databaseText();
    error.source = sourceName(tipoServer);
    return error;
}

bool isIntegrityRefusal(int tipoServer, const DbError& error)
{
    const QString code = error.nativeError.trimmed();
    switch (tipoServer) {
    case TipoServer::FileDb: return code == QLatin1String("787");
    case TipoServer::MySql: return code == QLatin1String("1451") || code == QLatin1String("1217");
    case TipoServer::SqlServer: return code.split(QLatin1Char(';')).contains(QLatin1String("547"));
    default: return false;
    }
}

bool isBusy(int tipoServer, const DbError& error)
{
    const QString code = error.nativeError.trimmed();
    switch (tipoServer) {
    case TipoServer::FileDb: {
        // SQLITE_BUSY and SQLITE_LOCKED, with their extended codes.
        bool numeric = false;
        const int primary = code.toInt(&numeric) & 0xff;
        return numeric && (primary == 5 || primary == 6);
    }
    case TipoServer::MySql: return code == QLatin1String("1213") || code == QLatin1String("1205");
    case TipoServer::SqlServer: {
        const QStringList codes = code.split(QLatin1Char(';'));
        return codes.contains(QLatin1String("1205")) || codes.contains(QLatin1String("1222"));
    }
    default: return false;
    }
}

bool isConnectionLost(int tipoServer, const DbError& error)
{
    if (error.number == kConnectionClosed)
        return true;
    const QString code = error.nativeError.trimmed();
    switch (tipoServer) {
    case TipoServer::MySql: {
        // Server gone away, lost during a query, killed, closed for
        // inactivity, lost while reading the answer.
        static const QStringList lost{QStringLiteral("2006"), QStringLiteral("2013"), QStringLiteral("1927"),
                                      QStringLiteral("4031"), QStringLiteral("2055"), QStringLiteral("1053")};
        return lost.contains(code);
    }
    case TipoServer::SqlServer:
        // ODBC states of a broken link.
        return code.contains(QLatin1String("08S01")) || code.contains(QLatin1String("08003"))
            || code.contains(QLatin1String("08007"));
    default: return false;
    }
}

void discardIdle(int tipoServer, const QString& connectionString)
{
    const QList<PhysicalConnectionPtr> idle = pool().take(poolKey(tipoServer, connectionString));
    for (const PhysicalConnectionPtr& connection : idle)
        connection->close();
}

void setBusyTimeout(int seconds)
{
    busyTimeoutSeconds() = qMax(1, seconds);
}

QList<PhysicalConnectionPtr> idleConnections(int tipoServer, const QString& connectionString)
{
    return pool().value(poolKey(tipoServer, connectionString));
}

PhysicalConnectionPtr acquire(int tipoServer, const QString& connectionString, int timeoutSeconds, DbError& error)
{
    QList<PhysicalConnectionPtr>& idle = pool()[poolKey(tipoServer, connectionString)];
    while (!idle.isEmpty()) {
        PhysicalConnectionPtr connection = idle.takeLast();
        if (!connection->isOpen())
            continue;
        if (tipoServer != TipoServer::FileDb && connection->idleMilliseconds() > kRecheckAfterMs) {
            DbError ignored;
            if (!connection->execute(QStringLiteral("SELECT 1"), nullptr, ignored))
                continue;   // dropped by the server meanwhile: open a new one
        }
        connection->touch();
        return connection;
    }
    return openNew(tipoServer, connectionString, timeoutSeconds, error);
}

void release(const PhysicalConnectionPtr& connection)
{
    if (!connection || !connection->isOpen())
        return;
    if (connection->inTransaction()) {
        DbError ignored;
        connection->rollback(ignored);
    }
    QList<PhysicalConnectionPtr>& idle = pool()[poolKey(connection->tipoServer(), connection->connectionString())];
    if (idle.contains(connection))
        return;
    if (idle.size() >= kMaxIdle) {
        connection->close();
        return;
    }
    connection->touch();
    idle.append(connection);
}

void closeIdle()
{
    for (QList<PhysicalConnectionPtr>& list : pool())
        for (const PhysicalConnectionPtr& connection : list)
            connection->close();
    pool().clear();
}

QString finalSql(const QString& preparedSql, int tipoServer)
{
    const QString sql = tipoServer == TipoServer::FileDb ? topToLimit(fileDbSql(preparedSql)) : preparedSql;
    return restoreSqlValues(sql);
}

} // namespace driver
