#pragma once
// The driver layer under cAdoSqlServer: physical connections to SQLite,
// MariaDB and SQL Server through Qt's SQL drivers, kept in a small pool so
// that the logical "one connection per statement" model stays cheap.

#include <QElapsedTimer>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>

#include <memory>

class QSqlQuery;
class QSqlError;

// One failure of the driver, as the error report shows it.
struct DbError
{
    qint64 number = 0;   // the engine's native code when numeric, else -1
    QString nativeError; // the native code as the driver gives it
    QString description;
    QString source; // "SQLite", "MariaDB", "SQL Server"

    bool isSet() const { return !description.isEmpty() || number != 0; }
};

class PhysicalConnection
{
public:
    PhysicalConnection(int tipoServer, QString connectionString, QString name);
    ~PhysicalConnection();
    PhysicalConnection(const PhysicalConnection&) = delete;
    PhysicalConnection& operator=(const PhysicalConnection&) = delete;

    int tipoServer() const { return m_tipoServer; }
    const QString& connectionString() const { return m_connectionString; }
    const QString& name() const { return m_name; }
    // The Qt connection itself; invalid once closed.
    const QSqlDatabase& database() const { return m_db; }
    bool isOpen() const { return m_db.isOpen(); }
    void close();

    bool inTransaction() const { return m_inTransaction; }

    // Runs one statement (already rewritten and restored). With `query` the
    // statement's rows stay readable through it. Returns false with `error` set.
    bool execute(const QString& sql, QSqlQuery* query, DbError& error, int* rowsAffected = nullptr);

    bool begin(DbError& error);
    bool commit(DbError& error);
    bool rollback(DbError& error);

    // The key given to the last row inserted on this connection.
    QVariant lastInsertId() const { return m_lastInsertId; }

    // Since the connection was opened or last given back to the pool.
    qint64 idleMilliseconds() const { return m_idle.isValid() ? m_idle.elapsed() : 0; }
    void touch() { m_idle.start(); }

private:
    friend class DriverAccess;
    bool run(const QString& sql, QSqlQuery* query, DbError& error, int* rowsAffected);

    int m_tipoServer;
    QString m_connectionString;
    QString m_name;
    QSqlDatabase m_db;
    bool m_inTransaction = false;
    QVariant m_lastInsertId;
    QElapsedTimer m_idle;
};

using PhysicalConnectionPtr = std::shared_ptr<PhysicalConnection>;

namespace driver {

// The number of the failure of a statement on a closed connection.
constexpr qint64 kConnectionClosed = 3704;

// A connection for the string: an idle one from the pool, or a new one.
// Returns null with `error` set when the database cannot be reached.
PhysicalConnectionPtr acquire(int tipoServer, const QString& connectionString, int timeoutSeconds, DbError& error);

// Back to the pool (an open transaction is rolled back first).
void release(const PhysicalConnectionPtr& connection);

// Closes every idle pooled connection (end of run, or after settings change).
void closeIdle();

// The statement as the engine must receive it: on the file database the date
// literals "#MM/DD/YYYY#" become ISO text and "&" becomes "||" outside quotes;
// on every back end the protected value characters are restored.
QString finalSql(const QString& preparedSql, int tipoServer);

// A referential-integrity refusal (delete of a referenced row, or a reference
// to a row that does not exist) by its native code.
bool isIntegrityRefusal(int tipoServer, const DbError& error);

// Another workstation held the lock too long, or the engine chose this
// transaction as the victim of a deadlock: the transaction is lost, a new
// attempt may well succeed.
bool isBusy(int tipoServer, const DbError& error);

// The connection is gone (server restarted, session killed, network down):
// nothing more can run on it.
bool isConnectionLost(int tipoServer, const DbError& error);

// What reaches the engines, for a benchmark or a diagnosis: every statement
// as sent (after the last rewriting step) and the transaction boundaries.
// Off unless a hook is set; the hook runs on the calling thread.
enum class TraceEvent {
    Statement,
    Begin,
    Commit,
    Rollback
};
using TraceHook = void (*)(TraceEvent event, const QString& sql);
void setTraceHook(TraceHook hook);

// Closes the idle pooled connections of one database: after one of them
// was found dead, the others most likely are too.
void discardIdle(int tipoServer, const QString& connectionString);

// How long a connection opened from now on waits for another workstation's
// lock before its statement fails as busy (15 seconds unless set).
void setBusyTimeout(int seconds);

// The idle pooled connections of one database.
QList<PhysicalConnectionPtr> idleConnections(int tipoServer, const QString& connectionString);

DbError fromQtError(const QSqlError& error, int tipoServer);
QString sourceName(int tipoServer);

} // namespace driver
