#include "data/driver.h"

#include "data/connectionstring.h"
#include "data/sqldialect.h"
#include "data/sqlitefunctions.h"
#include "data/sqlliteral.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <optional>
#include <vector>

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

// The idle connections of one database. A program uses one or two
// databases at a time: the lists are found by a plain search, the latest one
// first, without building or hashing a key at each acquire and release.
struct IdleList
{
    int tipoServer;
    QString connectionString;
    QList<PhysicalConnectionPtr> connections;
};

std::vector<std::unique_ptr<IdleList>>& pool()
{
    static std::vector<std::unique_ptr<IdleList>> lists;
    return lists;
}

IdleList* findIdle(int tipoServer, const QString& connectionString)
{
    static IdleList* latest = nullptr;
    if (latest && latest->tipoServer == tipoServer && latest->connectionString == connectionString)
        return latest;
    for (const std::unique_ptr<IdleList>& list : pool())
        if (list->tipoServer == tipoServer && list->connectionString == connectionString)
            return latest = list.get();
    return nullptr;
}

IdleList& idleList(int tipoServer, const QString& connectionString)
{
    if (IdleList* list = findIdle(tipoServer, connectionString))
        return *list;
    pool().push_back(std::make_unique<IdleList>(IdleList{tipoServer, connectionString, {}}));
    return *pool().back();
}

driver::TraceHook traceHook = nullptr;

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

bool openFileDb(QSqlDatabase& db, const QString& name, const QString& connectionString, DbError& error)
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
            error.number = 26; // SQLITE_NOTADB
            error.nativeError = QStringLiteral("26");
            error.source = driver::sourceName(TipoServer::FileDb);
            if (!readable)
                error.description =
                    QStringLiteral("Impossibile leggere il file '") + path + QStringLiteral("': ") + file.errorString();
            else if (head.isEmpty())
                error.description =
                    QStringLiteral("Il file '") + path + QStringLiteral("' è vuoto: non è un database.");
            else
                error.description = QStringLiteral("Il file '") + path + QStringLiteral("' non è un database SQLite.");
            return false;
        }
    }
    db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=") + QString::number(busyTimeoutSeconds() * 1000));
    if (!db.open()) {
        error = driver::fromQtError(db.lastError(), TipoServer::FileDb);
        return false;
    }
    if (!runSetup(db,
                  {QStringLiteral("PRAGMA foreign_keys=ON"), QStringLiteral("PRAGMA journal_mode=WAL"),
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

bool openMySql(QSqlDatabase& db, const QString& name, const QString& connectionString, int timeoutSeconds,
               DbError& error)
{
    const MySqlParams p = mySqlParams(connectionString);
    db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
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

bool openSqlServer(QSqlDatabase& db, const QString& name, const QString& connectionString, int timeoutSeconds,
                   DbError& error)
{
    db = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), name);
    db.setDatabaseName(connectionString);
    db.setConnectOptions(QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=") + QString::number(qMax(1, timeoutSeconds)));
    if (!db.open()) {
        error = driver::fromQtError(db.lastError(), TipoServer::SqlServer);
        return false;
    }
    return true;
}

} // namespace

class DriverAccess
{
public:
    static PhysicalConnectionPtr openNew(int tipoServer, const QString& connectionString, int timeoutSeconds,
                                         DbError& error)
    {
        auto connection = std::make_shared<PhysicalConnection>(tipoServer, connectionString, newConnectionName());
        const QString& name = connection->name();
        QSqlDatabase& db = connection->m_db;
        bool ok = false;
        switch (tipoServer) {
        case TipoServer::FileDb: ok = openFileDb(db, name, connectionString, error); break;
        case TipoServer::MySql: ok = openMySql(db, name, connectionString, timeoutSeconds, error); break;
        case TipoServer::SqlServer: ok = openSqlServer(db, name, connectionString, timeoutSeconds, error); break;
        default:
            error.number = -1;
            error.source = QStringLiteral("cAdoSqlServer");
            error.description = QStringLiteral("Tipo di database non previsto: ") + QString::number(tipoServer);
            break;
        }
        if (!ok)
            return nullptr; // the destructor removes the half-made connection
        connection->touch();
        return connection;
    }

    // A pooled connection idle for long still answers.
    static bool answers(PhysicalConnection& connection)
    {
        DbError ignored;
        return connection.run(QStringLiteral("SELECT 1"), nullptr, ignored, nullptr);
    }
};

namespace {

bool isAsciiDigit(QChar c) { return c.unicode() >= u'0' && c.unicode() <= u'9'; }

// A blank between a date and its time: space, tab, and the line and page breaks.
bool isAsciiBlank(QChar c) { return c.unicode() == u' ' || (c.unicode() >= 9 && c.unicode() <= 13); }

bool isAsciiWordChar(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9') || u == u'_';
}

// The run of ASCII digits at `at`, which moves past it; empty when there is none.
QStringView digitRun(QStringView s, qsizetype& at)
{
    const qsizetype from = at;
    while (at < s.size() && isAsciiDigit(s[at]))
        ++at;
    return s.mid(from, at - from);
}

bool oneOrTwo(QStringView digits) { return digits.size() == 1 || digits.size() == 2; }

void appendTwoDigits(QString& out, QStringView digits)
{
    if (digits.size() < 2)
        out += QLatin1Char('0');
    out += digits;
}

// "Hh:Nn" or "Hh:Nn:Ss" from `at` to the end of `s`, written as "HH:NN:SS";
// false, and nothing written, for anything else.
bool appendTime(QString& out, QStringView s, qsizetype at)
{
    const QStringView hours = digitRun(s, at);
    if (!oneOrTwo(hours) || at >= s.size() || s[at] != u':')
        return false;
    ++at;
    const QStringView minutes = digitRun(s, at);
    if (!oneOrTwo(minutes))
        return false;
    QStringView seconds;
    if (at < s.size()) {
        if (s[at] != u':')
            return false;
        ++at;
        seconds = digitRun(s, at);
        if (!oneOrTwo(seconds) || at != s.size())
            return false;
    }
    appendTwoDigits(out, hours);
    out += QLatin1Char(':');
    appendTwoDigits(out, minutes);
    out += QLatin1Char(':');
    if (seconds.isEmpty())
        out += QLatin1String("00");
    else
        appendTwoDigits(out, seconds);
    return true;
}

// Turns "MM/DD/YYYY", "MM/DD/YYYY Hh:Nn:Ss" and "Hh:Nn:Ss" (the text between
// the "#" of a literal, trimmed) into an ISO text literal; empty when the
// text is none of them. Month, day and the parts of the time have one or two
// digits, the year four.
QString isoFromFileDbLiteral(QStringView literal)
{
    QString out;
    out.reserve(22);
    out += QLatin1Char('\'');
    if (appendTime(out, literal, 0))
        return out += QLatin1Char('\'');
    qsizetype at = 0;
    const QStringView month = digitRun(literal, at);
    if (!oneOrTwo(month) || at >= literal.size() || literal[at] != u'/')
        return QString();
    ++at;
    const QStringView day = digitRun(literal, at);
    if (!oneOrTwo(day) || at >= literal.size() || literal[at] != u'/')
        return QString();
    ++at;
    const QStringView year = digitRun(literal, at);
    if (year.size() != 4)
        return QString();
    out += year;
    out += QLatin1Char('-');
    appendTwoDigits(out, month);
    out += QLatin1Char('-');
    appendTwoDigits(out, day);
    if (at < literal.size()) {
        const qsizetype blanks = at;
        while (at < literal.size() && isAsciiBlank(literal[at]))
            ++at;
        if (at == blanks)
            return QString();
        out += QLatin1Char(' ');
        if (!appendTime(out, literal, at))
            return QString();
    }
    return out += QLatin1Char('\'');
}

// The keyword (in capitals) at `at`, in any case. A long s (U+017F) counts as
// an s, as it always has in this search.
bool keywordAt(QStringView s, qsizetype at, QLatin1StringView keyword)
{
    if (at < 0 || at + keyword.size() > s.size())
        return false;
    for (qsizetype i = 0; i < keyword.size(); ++i) {
        const char16_t c = s[at + i].unicode();
        const char16_t k = char16_t(keyword[i].unicode());
        if (c != k && c != k + 32 && !(k == u'S' && c == 0x017F))
            return false;
    }
    return true;
}

qsizetype skipBlanks(QStringView s, qsizetype at)
{
    while (at < s.size() && isAsciiBlank(s[at]))
        ++at;
    return at;
}

// "SELECT [DISTINCT] TOP n " (any case, one or more blanks between the
// words, the SELECT not inside a longer word) at or after `from`.
struct TopClause
{
    qsizetype start = -1;
    qsizetype end = -1;
    QStringView distinct; // "DISTINCT" and its blanks, as written
    QStringView count;
};

TopClause findTopClause(QStringView s, qsizetype from)
{
    TopClause m;
    for (qsizetype p = from; p + 6 <= s.size(); ++p) {
        // A word boundary: a letter, digit or "_" on one side only (a long s
        // is none of them).
        const bool boundary = (p > 0 && isAsciiWordChar(s[p - 1])) != isAsciiWordChar(s[p]);
        if (!boundary || !keywordAt(s, p, QLatin1StringView("SELECT")))
            continue;
        qsizetype at = skipBlanks(s, p + 6);
        if (at == p + 6)
            continue;
        QStringView distinct;
        if (keywordAt(s, at, QLatin1StringView("DISTINCT"))) {
            const qsizetype after = skipBlanks(s, at + 8);
            if (after > at + 8) {
                distinct = s.mid(at, after - at);
                at = after;
            }
        }
        if (!keywordAt(s, at, QLatin1StringView("TOP")))
            continue;
        qsizetype digits = skipBlanks(s, at + 3);
        if (digits == at + 3)
            continue;
        qsizetype end = digits;
        const QStringView count = digitRun(s, end);
        if (count.isEmpty())
            continue;
        const qsizetype blanksEnd = skipBlanks(s, end);
        if (blanksEnd == end)
            continue;
        m.start = p;
        m.end = blanksEnd;
        m.distinct = distinct;
        m.count = count;
        return m;
    }
    return m;
}

// SQLite knows LIMIT, not TOP: "SELECT TOP n" loses its clause and the
// select it belongs to (up to its closing parenthesis, or the end) gets
// "LIMIT n". Quoted text is skipped.
QString topToLimit(QString sql)
{
    // A text with half a character in it stays as it is, as the search has
    // always left it; restoreSqlValues mends the character afterwards.
    for (qsizetype i = 0; i < sql.size(); ++i) {
        if (!sql.at(i).isSurrogate())
            continue;
        if (!sql.at(i).isHighSurrogate() || i + 1 == sql.size() || !sql.at(i + 1).isLowSurrogate())
            return sql;
        ++i;
    }
    qsizetype from = 0;
    for (;;) {
        const TopClause m = findTopClause(sql, from);
        if (m.start < 0)
            return sql;
        // Is the match inside quotes? Count quote characters before it.
        const QStringView before = QStringView(sql).left(m.start);
        if (before.count(QLatin1Char('\'')) % 2 == 1) {
            from = m.end;
            continue;
        }
        const QString limit = QStringLiteral(" LIMIT ") + m.count;
        const QString head = QStringLiteral("SELECT ") + m.distinct;
        sql.replace(m.start, m.end - m.start, head);
        qsizetype i = m.start + head.size();
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
        from = m.start + head.size();
    }
}

// Date literals to ISO text and "&" to "||", outside quotes.
QString fileDbSql(const QString& sql)
{
    QString out;
    out.reserve(sql.size() + 16);
    const QStringView text(sql);
    qsizetype written = 0; // the text before this is in `out`
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql.at(i);
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            // Quoted text goes as it is, up to its closing quote (or the end).
            const qsizetype close = sql.indexOf(c, i + 1);
            if (close < 0)
                break;
            i = close;
        } else if (c == QLatin1Char('&')) {
            out += text.mid(written, i - written);
            out += QLatin1String("||");
            written = i + 1;
        } else if (c == QLatin1Char('#')) {
            const qsizetype end = sql.indexOf(QLatin1Char('#'), i + 1);
            const QString iso = end > i ? isoFromFileDbLiteral(text.mid(i + 1, end - i - 1).trimmed()) : QString();
            if (!iso.isEmpty()) {
                out += text.mid(written, i - written);
                out += iso;
                i = end;
                written = end + 1;
            }
        }
    }
    out += text.mid(written);
    return out;
}

// The letters "top" in a row, in any case.
bool hasTopLetters(QStringView s)
{
    for (const QChar p : {QLatin1Char('p'), QLatin1Char('P')})
        for (qsizetype i = s.indexOf(p, 2); i >= 0; i = s.indexOf(p, i + 1))
            if ((s[i - 1].unicode() | 0x20) == u'o' && (s[i - 2].unicode() | 0x20) == u't')
                return true;
    return false;
}

} // namespace

PhysicalConnection::PhysicalConnection(int tipoServer, QString connectionString, QString name)
    : m_tipoServer(tipoServer)
    , m_connectionString(std::move(connectionString))
    , m_name(std::move(name))
{ }

PhysicalConnection::~PhysicalConnection() { close(); }

void PhysicalConnection::close()
{
    if (!m_db.isValid())
        return;
    if (m_db.isOpen())
        m_db.close();
    m_db = QSqlDatabase(); // the last handle goes before the name is removed
    QSqlDatabase::removeDatabase(m_name);
    m_inTransaction = false;
}

bool PhysicalConnection::execute(const QString& sql, QSqlQuery* query, DbError& error, int* rowsAffected)
{
    if (Q_UNLIKELY(traceHook))
        traceHook(driver::TraceEvent::Statement, sql);
    return run(sql, query, error, rowsAffected);
}

bool PhysicalConnection::run(const QString& sql, QSqlQuery* query, DbError& error, int* rowsAffected)
{
    if (!m_db.isOpen()) {
        error.number = driver::kConnectionClosed;
        error.nativeError.clear();
        error.source = driver::sourceName(m_tipoServer);
        error.description = QStringLiteral("La connessione al database è chiusa.");
        return false;
    }
    // A query the caller made on this connection runs the statement itself.
    std::optional<QSqlQuery> own;
    QSqlQuery* q = query;
    if (!q || q->driver() != m_db.driver())
        q = &own.emplace(m_db);
    q->setForwardOnly(true);
    if (!q->exec(sql)) {
        error = driver::fromQtError(q->lastError(), m_tipoServer);
        return false;
    }
    if (rowsAffected)
        *rowsAffected = q->numRowsAffected();
    if (!q->isSelect())
        m_lastInsertId = q->lastInsertId();
    if (query && own)
        *query = std::move(*own);
    return true;
}

bool PhysicalConnection::begin(DbError& error)
{
    if (Q_UNLIKELY(traceHook))
        traceHook(driver::TraceEvent::Begin, QString());
    bool ok = false;
    if (m_tipoServer == TipoServer::FileDb) {
        // Take the write lock at once: two workstations that both read first
        // and then write would otherwise fail one another.
        ok = run(QStringLiteral("BEGIN IMMEDIATE"), nullptr, error, nullptr);
    } else {
        ok = m_db.transaction();
        if (!ok)
            error = driver::fromQtError(m_db.lastError(), m_tipoServer);
    }
    m_inTransaction = ok;
    return ok;
}

bool PhysicalConnection::commit(DbError& error)
{
    if (Q_UNLIKELY(traceHook))
        traceHook(driver::TraceEvent::Commit, QString());
    bool ok = false;
    if (m_tipoServer == TipoServer::FileDb) {
        ok = run(QStringLiteral("COMMIT"), nullptr, error, nullptr);
    } else {
        ok = m_db.commit();
        if (!ok)
            error = driver::fromQtError(m_db.lastError(), m_tipoServer);
    }
    if (ok)
        m_inTransaction = false;
    return ok;
}

bool PhysicalConnection::rollback(DbError& error)
{
    if (Q_UNLIKELY(traceHook))
        traceHook(driver::TraceEvent::Rollback, QString());
    bool ok = false;
    if (m_tipoServer == TipoServer::FileDb) {
        ok = run(QStringLiteral("ROLLBACK"), nullptr, error, nullptr);
    } else {
        ok = m_db.rollback();
        if (!ok)
            error = driver::fromQtError(m_db.lastError(), m_tipoServer);
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
    IdleList* list = findIdle(tipoServer, connectionString);
    if (!list)
        return;
    const QList<PhysicalConnectionPtr> idle = std::exchange(list->connections, {});
    for (const PhysicalConnectionPtr& connection : idle)
        connection->close();
}

void setTraceHook(TraceHook hook) { traceHook = hook; }

void setBusyTimeout(int seconds) { busyTimeoutSeconds() = qMax(1, seconds); }

QList<PhysicalConnectionPtr> idleConnections(int tipoServer, const QString& connectionString)
{
    const IdleList* list = findIdle(tipoServer, connectionString);
    return list ? list->connections : QList<PhysicalConnectionPtr>();
}

PhysicalConnectionPtr acquire(int tipoServer, const QString& connectionString, int timeoutSeconds, DbError& error)
{
    if (IdleList* list = findIdle(tipoServer, connectionString)) {
        QList<PhysicalConnectionPtr>& idle = list->connections;
        while (!idle.isEmpty()) {
            PhysicalConnectionPtr connection = idle.takeLast();
            if (!connection->isOpen())
                continue;
            if (tipoServer != TipoServer::FileDb && connection->idleMilliseconds() > kRecheckAfterMs
                && !DriverAccess::answers(*connection))
                continue; // dropped by the server meanwhile: open a new one
            return connection;
        }
    }
    return DriverAccess::openNew(tipoServer, connectionString, timeoutSeconds, error);
}

void release(const PhysicalConnectionPtr& connection)
{
    if (!connection || !connection->isOpen())
        return;
    if (connection->inTransaction()) {
        DbError ignored;
        connection->rollback(ignored);
    }
    QList<PhysicalConnectionPtr>& idle = idleList(connection->tipoServer(), connection->connectionString()).connections;
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
    for (const std::unique_ptr<IdleList>& list : pool()) {
        const QList<PhysicalConnectionPtr> idle = std::exchange(list->connections, {});
        for (const PhysicalConnectionPtr& connection : idle)
            connection->close();
    }
}

QString finalSql(const QString& preparedSql, int tipoServer)
{
    if (tipoServer != TipoServer::FileDb)
        return restoreSqlValues(preparedSql);
    // Each step only when the statement holds what it rewrites.
    const bool dateOrConcat = preparedSql.contains(QLatin1Char('#')) || preparedSql.contains(QLatin1Char('&'));
    const bool top = hasTopLetters(preparedSql);
    if (!dateOrConcat && !top)
        return restoreSqlValues(preparedSql);
    const QString sql = dateOrConcat ? fileDbSql(preparedSql) : preparedSql;
    return restoreSqlValues(top ? topToLimit(sql) : sql);
}

} // namespace driver
