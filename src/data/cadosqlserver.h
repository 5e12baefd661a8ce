#pragma once
// All database work goes through cAdoSqlServer and its one global instance
// gAdoSqlServer(). A statement is written once in the mark-up (see
// sqldialect.h), rewritten for the back end in use, run on a connection of
// its own and its failure reported through notifyError; the operation then
// returns its empty result (false, -1, null, an empty value).
//
// Connections: outside a transaction every statement opens a logical
// connection (Connect), pushed on a stack; readers keep theirs until the
// caller calls disconnect(). beginTrasaction opens one more connection, which
// serves every statement until commit or rollback; meanwhile disconnect() does
// nothing. There is one transaction flag and no nesting. Physical connections
// are pooled under the logical stack.
//
// Statement arguments are taken by reference and receive the rewritten text,
// as the callers of this class have always expected; const overloads exist for
// temporaries.

#include "data/driver.h"
#include "data/recordset.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

// A logical connection: one entry of the stack.
class cConnection
{
public:
    explicit cConnection(PhysicalConnectionPtr physical)
        : m_physical(std::move(physical))
    { }

    int State() const; // 1 open, 0 closed
    void close();      // gives the physical connection back
    PhysicalConnection* physical() const { return m_physical.get(); }
    // A new physical connection in place of one that died.
    bool reopen(int tipoServer, const QString& connectionString, DbError& error);

    QList<DbError> Errors; // errors of the latest statement

private:
    PhysicalConnectionPtr m_physical;
};

using ConnectionPtr = std::shared_ptr<cConnection>;

// A stored-procedure command (command type 4).
struct cCommand
{
    QString CommandText;
    ConnectionPtr ActiveConnection;
    int CommandType = 4;
};

class cAdoSqlServer
{
public:
    // What made the latest statement fail.
    enum class Failure {
        None,
        Busy,           // another workstation held the lock, or a deadlock victim
        ConnectionLost, // the connection died inside a transaction
        Other,
    };

    // ADO numbers in use.
    static constexpr int adUseServer = 2, adUseClient = 3;
    static constexpr int adOpenForwardOnly = 0, adOpenDynamic = 2;
    static constexpr int adLockReadOnly = 1;

    cAdoSqlServer();
    ~cAdoSqlServer();
    cAdoSqlServer(const cAdoSqlServer&) = delete;
    cAdoSqlServer& operator=(const cAdoSqlServer&) = delete;

    void initClass();

    // --- connections and transactions
    bool Connect(const QString& tag = QStringLiteral("N/D"), int timeout = 60, int spare = 0, bool silent = false);
    void disconnect();
    void TerminateConnection();
    // Closes every connection still held (the program is ending).
    void closeAll();
    void setConnessione(const ConnectionPtr& connection);
    ConnectionPtr getActiveConnection() const { return m_current; }
    void setAppName(const QString& name) { m_appName = name; }
    QString getStrConnection() const { return m_strConnection; }
    // The latest statement after rewriting, with its values as they were given.
    QString getLastSQLCommand() const;
    QString getSQLSeparator() const;

    bool beginTrasaction(const QString& tag);
    bool commitTrasaction(const QString& tag);
    bool rollbackTrasaction(const QString& tag);
    bool inTransaction() const { return m_inTransaction; }
    // The kind of the latest failure; None after a statement that worked.
    Failure lastFailure() const { return m_lastFailure; }

    // A message box for the user: shown at once outside a transaction, else
    // held until the transaction ends, so that no one waits on a question
    // while the database is locked for the other workstations.
    void showAfterTransaction(const QString& text, int style);

    // The text shown when another workstation keeps the database busy.
    static QString busyMessage();
    static QString connectionLostMessage();

    int TipoCursore() const { return m_tipoCursore; }
    void setTipoCursore(int value) { m_tipoCursore = value; }
    int TipoServer() const { return m_tipoServer; }
    void setTipoServer(int value) { m_tipoServer = qint16(value); }
    int ConnectionState() const;
    int getConnectionCount() const { return m_count; }

    // --- rewriting
    QString prepareSQL(const QString& sql);
    QString getPartSQLByTipoServer(const QString& sql);
    QString getPartSQLWithoutSP(const QString& sql);

    // --- statements
    RecordsetPtr getNewRecordset(QString& sql, const QString& tag, int cursorType = adOpenDynamic,
                                 int lockType = adLockReadOnly, int cursorLocation = adUseClient);
    RecordsetPtr getNewRecordset(const QString& sql, const QString& tag, int cursorType = adOpenDynamic,
                                 int lockType = adLockReadOnly, int cursorLocation = adUseClient);
    RecordsetPtr getNewRecordsetByCmd(QString& cmdText, const QString& tag, int cursorType = adOpenDynamic,
                                      int lockType = adLockReadOnly, int cursorLocation = -1);
    RecordsetPtr getNewRecordsetByCmd(const cCommand& cmd, const QString& tag, int cursorType = adOpenDynamic,
                                      int lockType = adLockReadOnly, int cursorLocation = -1);
    bool executeSQL(QString& sql, const QString& tag);
    bool executeSQL(const QString& sql, const QString& tag);
    int executeSQLWithRA(QString& sql, const QString& tag);
    int executeSQLWithRA(const QString& sql, const QString& tag);
    std::unique_ptr<cCommand> getNewCmd();
    bool executeCmd(cCommand& cmd, const QString& tag);
    bool checkForErrors(const QString& tag);
    int getIDByInsert(QString& sql, const QString& tag, const QString& idField, const QString& tableName);
    int getIDByInsert(const QString& sql, const QString& tag, const QString& idField, const QString& tableName);
    // Empty (an invalid QVariant) when there is no row or the statement
    // failed; a database Null comes back as a valid, null QVariant.
    QVariant getValueBySQL(QString& sql, const QString& tag);
    QVariant getValueBySQL(const QString& sql, const QString& tag);
    QVariant getStoredResult(QString& cmdText, const QString& tag);
    QVariant getStoredResult(const cCommand& cmd, const QString& tag);
    QDateTime getDataOraServer(const QString& tag);
    void setNewTable(const QString& rifForm, const QString& nome);

    // --- literal builders (tipo < 0: this instance's back end)
    QString getSQLDate(const QVariant& value, int tipo = -1) const;
    QString getSQLDateTime(const QVariant& value, int tipo = -1) const;
    QString getSQLTime(const QVariant& value, int tipo = -1) const;

    static QString className() { return QStringLiteral("cAdoSqlServer"); }

private:
    bool connectOutsideTransaction();
    bool run(const QString& prepared, QSqlQuery* query, DbError& error, int* rowsAffected = nullptr);
    // The statement rewritten in place and run, its rows readable through
    // `query`. A failure is reported as of the procedure `procedure` + `tag`,
    // a name put together only then.
    bool openQuery(QString& text, QLatin1StringView procedure, const QString& tag, QLatin1StringView infoKey,
                   std::optional<QSqlQuery>& query);
    RecordsetPtr openRecordset(QString& text, QLatin1StringView procedure, const QString& tag,
                               QLatin1StringView infoKey);
    void report(const QString& procedure, const QString& information, const DbError* error = nullptr);
    bool runStatement(QString& sql, QLatin1StringView procedure, const QString& tag, bool withRA, int* affected);
    void reportStatementFailure(const QString& procedure, const QString& sql, const DbError& error, bool withRA);
    void abandonCurrent();
    bool retryOnNewConnection(const QString& finalText, QSqlQuery* query, DbError& error, int* rowsAffected);
    bool reportUnavailable(const DbError& error);

    ConnectionPtr m_current;
    int m_count = 0;
    QList<ConnectionPtr> m_stack;
    QString m_className;
    QString m_lastCommand;
    QString m_strConnection;
    bool m_inTransaction = false;
    // The transaction can no longer be committed (a deadlock undid it, or
    // its connection died): every statement is refused until the rollback.
    bool m_transactionFailed = false;
    Failure m_lastFailure = Failure::None;
    int m_tipoCursore = adUseServer;
    QString m_appName;
    qint16 m_tipoServer = 0;
};

cAdoSqlServer& gAdoSqlServer();
