#include "data/cadosqlserver.h"

#include "common/dialoggate.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"

#include <QSqlQuery>

#include <utility>

SessionGlobals& gSession()
{
    static SessionGlobals globals;
    return globals;
}

cAdoSqlServer& gAdoSqlServer()
{
    static cAdoSqlServer instance;
    return instance;
}

// --- cConnection -------------------------------------------------------------

int cConnection::State() const { return m_physical && m_physical->isOpen() ? 1 : 0; }

bool cConnection::reopen(int tipoServer, const QString& connectionString, DbError& error)
{
    if (m_physical)
        m_physical->close();
    driver::discardIdle(tipoServer, connectionString);
    m_physical = driver::acquire(tipoServer, connectionString, 60, error);
    return m_physical != nullptr;
}

void cConnection::close()
{
    if (m_physical) {
        driver::release(m_physical);
        m_physical.reset();
    }
}

// --- cAdoSqlServer -----------------------------------------------------------

cAdoSqlServer::cAdoSqlServer() { initClass(); }

cAdoSqlServer::~cAdoSqlServer() { closeAll(); }

void cAdoSqlServer::closeAll()
{
    for (const ConnectionPtr& c : std::as_const(m_stack))
        c->close();
    if (m_current)
        m_current->close();
    m_stack.clear();
    m_current.reset();
    m_count = 0;
    m_inTransaction = false;
    m_transactionFailed = false;
    dialogGate::open();
}

void cAdoSqlServer::initClass()
{
    m_className = className();
    m_tipoCursore = adUseServer;
    m_tipoServer = TipoServer::SqlServer;
}

QString cAdoSqlServer::getLastSQLCommand() const { return restoreSqlValues(m_lastCommand); }

QString cAdoSqlServer::getSQLSeparator() const { return ::getSQLSeparator(); }

QString cAdoSqlServer::busyMessage()
{
    return QStringLiteral("Il database è occupato da un'altra postazione: riprovare il salvataggio.");
}

QString cAdoSqlServer::connectionLostMessage()
{
    return QStringLiteral("La connessione al database si è interrotta: l'operazione è stata annullata e nulla è stato "
                          "salvato. Riprovare.");
}

// A busy database or a connection lost inside a transaction is no fault of
// the program: the user reads what happened and tries again, without an
// error report. While the transaction is open the message waits for its end.
bool cAdoSqlServer::reportUnavailable(const DbError& error)
{
    QString text;
    if (driver::isBusy(m_tipoServer, error)) {
        m_lastFailure = Failure::Busy;
        text = busyMessage();
    } else if (m_inTransaction && driver::isConnectionLost(m_tipoServer, error)) {
        m_lastFailure = Failure::ConnectionLost;
        text = connectionLostMessage();
    } else {
        return false;
    }
    if (m_inTransaction)
        m_transactionFailed = true;
    showAfterTransaction(text, vb::Exclamation);
    return true;
}

void cAdoSqlServer::showAfterTransaction(const QString& text, int style)
{
    // While a transaction is open the gate holds the box until its end.
    msgBox(text, style);
}

void cAdoSqlServer::report(const QString& procedure, const QString& information, const DbError* error)
{
    if (m_inTransaction && m_transactionFailed)
        return; // a statement refused after the transaction was lost: told already
    if (error && reportUnavailable(*error))
        return;
    if (m_lastFailure == Failure::None)
        m_lastFailure = Failure::Other;
    if (error)
        Err().raise(error->number, error->source, error->description);
    if (Err().source.isEmpty())
        Err().source = m_className;
    notifyError(m_className, procedure, information, true);
}

bool cAdoSqlServer::Connect(const QString& tag, int timeout, int /*spare*/, bool silent)
{
    const QString& connectionString = gSession().strConnessione;
    DbError error;
    PhysicalConnectionPtr physical = driver::acquire(m_tipoServer, connectionString, timeout, error);
    if (!physical) {
        if (!silent)
            report(QStringLiteral("Connect -> ") + tag, QStringLiteral("sStrConnection=") + connectionString, &error);
        return false;
    }
    auto connection = std::make_shared<cConnection>(std::move(physical));
    ++m_count;
    m_stack.append(connection);
    m_current = connection;
    return true;
}

void cAdoSqlServer::disconnect()
{
    if (m_count <= 0 || m_inTransaction)
        return;
    const qsizetype position = m_count - 1;
    if (position < m_stack.size()) {
        const ConnectionPtr connection = m_stack.at(position);
        if (connection && connection->State() != 0)
            connection->close();
        m_stack.removeAt(position);
    }
    --m_count;
}

void cAdoSqlServer::TerminateConnection()
{
    if (m_inTransaction && m_current && m_current->physical()) {
        DbError ignored;
        m_current->physical()->rollback(ignored);
    }
    if (m_inTransaction)
        dialogGate::open();
    m_inTransaction = false;
    if (m_current && m_current->State() == 1) {
        m_current->close();
        --m_count;
    }
    m_current.reset();
}

void cAdoSqlServer::setConnessione(const ConnectionPtr& connection) { m_current = connection; }

int cAdoSqlServer::ConnectionState() const { return m_current ? m_current->State() : -1; }

bool cAdoSqlServer::beginTrasaction(const QString& tag)
{
    m_lastFailure = Failure::None;
    m_transactionFailed = false;
    if (!Connect(QStringLiteral("N/D"), 60, 0, false))
        return false;
    DbError error;
    bool begun = m_current->physical()->begin(error);
    // A pooled connection that died while idle: one more try on a new one.
    if (!begun && driver::isConnectionLost(m_tipoServer, error)
        && m_current->reopen(m_tipoServer, gSession().strConnessione, error))
        begun = m_current->physical()->begin(error);
    if (!begun) {
        report(QStringLiteral("beginTrasaction -> ") + tag, QString(), &error);
        disconnect();
        return false;
    }
    m_inTransaction = true;
    dialogGate::close();
    return true;
}

bool cAdoSqlServer::commitTrasaction(const QString& tag)
{
    if (!m_inTransaction || !m_current || !m_current->physical())
        return false;
    if (m_transactionFailed)
        return false; // already undone by the server: the caller rolls back
    DbError error;
    if (!m_current->physical()->commit(error)) {
        report(QStringLiteral("commitTrasaction -> ") + tag, QString(), &error);
        return false;
    }
    m_inTransaction = false;
    disconnect();
    dialogGate::open();
    return true;
}

bool cAdoSqlServer::rollbackTrasaction(const QString& tag)
{
    if (!m_inTransaction || !m_current)
        return false;
    DbError error;
    // A connection that died took its transaction with it: nothing to undo.
    const bool alive = m_current->physical() && m_current->physical()->isOpen();
    bool ok = !alive || m_current->physical()->rollback(error);
    if (!ok && driver::isConnectionLost(m_tipoServer, error)) {
        m_current->physical()->close();
        ok = true;
    }
    m_inTransaction = false;
    m_transactionFailed = false;
    if (!ok) {
        report(QStringLiteral("rollbackTrasaction -> ") + tag, QString(), &error);
        dialogGate::open();
        return false;
    }
    disconnect();
    dialogGate::open();
    return true;
}

// --- rewriting ---------------------------------------------------------------

QString cAdoSqlServer::prepareSQL(const QString& sql)
{
    const DialectResult r = rewriteStatement(sql, gAdoSqlServer().TipoServer());
    if (!r.ok) {
        Err().raise(5, m_className, QStringLiteral("Chiamata di routine o argomento non validi."));
        report(QStringLiteral("prepareSQL"), QString());
    }
    return r.text;
}

QString cAdoSqlServer::getPartSQLByTipoServer(const QString& sql)
{
    const DialectResult r = rewriteFragment(sql, gAdoSqlServer().TipoServer());
    if (!r.ok) {
        Err().raise(5, m_className, QStringLiteral("Chiamata di routine o argomento non validi."));
        report(QStringLiteral("getPartSQLByTipoServer"), QString());
    }
    return r.text;
}

QString cAdoSqlServer::getPartSQLWithoutSP(const QString& sql) { return ::getPartSQLWithoutSP(sql); }

// --- statements --------------------------------------------------------------

bool cAdoSqlServer::connectOutsideTransaction()
{
    return m_inTransaction || Connect(QStringLiteral("N/D"), 60, 0, false);
}

bool cAdoSqlServer::run(const QString& prepared, QSqlQuery* query, DbError& error, int* rowsAffected)
{
    if (!m_current || !m_current->physical()) {
        error.number = driver::kConnectionClosed;
        error.source = m_className;
        error.description = QStringLiteral("Operazione non consentita se l'oggetto è chiuso.");
        return false;
    }
    if (m_inTransaction && m_transactionFailed) {
        // The transaction is already lost: nothing more may run in it, or it
        // would be written outside it. The failure was told once.
        error = DbError();
        error.number = driver::kConnectionClosed;
        error.source = m_className;
        error.description = QStringLiteral("Transazione annullata.");
        m_current->Errors.append(error);
        return false;
    }
    m_lastFailure = Failure::None;
    m_current->Errors.clear();
    const QString text = driver::finalSql(prepared, m_tipoServer);
    if (m_current->physical()->execute(text, query, error, rowsAffected))
        return true;
    if (driver::isConnectionLost(m_tipoServer, error)) {
        if (!m_inTransaction && retryOnNewConnection(text, query, error, rowsAffected))
            return true;
        if (m_inTransaction) {
            // The server has undone the transaction; the idle connections
            // most likely died with this one.
            driver::discardIdle(m_tipoServer, gSession().strConnessione);
            m_current->physical()->close();
        }
    }
    m_current->Errors.append(error);
    return false;
}

// Outside a transaction a statement whose connection died runs once more on
// a new one: a server restart costs the user nothing. A connection found
// dead at the statement never delivered it; only one that dies while the
// server is running the statement leaves it unknown whether it ran, the
// same doubt as any network failure.
bool cAdoSqlServer::retryOnNewConnection(const QString& finalText, QSqlQuery* query, DbError& error, int* rowsAffected)
{
    DbError reopenError;
    if (!m_current->reopen(m_tipoServer, gSession().strConnessione, reopenError))
        return false; // the server is still away: the first failure is told
    error = DbError();
    return m_current->physical()->execute(finalText, query, error, rowsAffected);
}

// A statement failed outside a transaction: the connection it took is given
// back at once, as after a statement that succeeded, so that failures leave
// nothing open.
void cAdoSqlServer::abandonCurrent()
{
    if (!m_inTransaction && m_current) {
        m_current->close();
        disconnect();
    }
}

bool cAdoSqlServer::openQuery(QString& text, QLatin1StringView procedure, const QString& tag, QLatin1StringView infoKey,
                              std::optional<QSqlQuery>& query)
{
    text = prepareSQL(text);
    m_lastCommand = text;
    if (!connectOutsideTransaction())
        return false;
    // Made on the statement's connection, the query runs the statement itself.
    const PhysicalConnection* physical = m_current ? m_current->physical() : nullptr;
    query.emplace(physical && physical->isOpen() ? physical->database() : QSqlDatabase());
    DbError error;
    if (!run(text, &*query, error)) {
        const QString name = procedure + tag;
        report(name, infoKey + getLastSQLCommand(), &error);
        abandonCurrent();
        return false;
    }
    return true;
}

RecordsetPtr cAdoSqlServer::openRecordset(QString& text, QLatin1StringView procedure, const QString& tag,
                                          QLatin1StringView infoKey)
{
    std::optional<QSqlQuery> query;
    if (!openQuery(text, procedure, tag, infoKey, query))
        return nullptr;
    return Recordset::fromQuery(*query);
}

RecordsetPtr cAdoSqlServer::getNewRecordset(QString& sql, const QString& tag, int /*cursorType*/, int /*lockType*/,
                                            int /*cursorLocation*/)
{
    // Every recordset is read to its end at once, so cursor type, lock type
    // and location make no difference to what the caller sees.
    return openRecordset(sql, QLatin1StringView("getNewRecordset -> "), tag, QLatin1StringView("SQL="));
}

RecordsetPtr cAdoSqlServer::getNewRecordset(const QString& sql, const QString& tag, int cursorType, int lockType,
                                            int cursorLocation)
{
    QString copy = sql;
    return getNewRecordset(copy, tag, cursorType, lockType, cursorLocation);
}

RecordsetPtr cAdoSqlServer::getNewRecordsetByCmd(QString& cmdText, const QString& tag, int, int, int)
{
    return openRecordset(cmdText, QLatin1StringView("getNewRecordsetByCmd -> "), tag, QLatin1StringView("CmdText="));
}

RecordsetPtr cAdoSqlServer::getNewRecordsetByCmd(const cCommand& cmd, const QString& tag, int cursorType, int lockType,
                                                 int cursorLocation)
{
    QString text = cmd.CommandText;
    text.remove(QStringLiteral("exec"), Qt::CaseSensitive);
    text = text.trimmed();
    return getNewRecordsetByCmd(text, tag, cursorType, lockType, cursorLocation);
}

void cAdoSqlServer::reportStatementFailure(const QString& procedure, const QString& sql, const DbError& error,
                                           bool withRA)
{
    if (driver::isIntegrityRefusal(m_tipoServer, error)) {
        m_lastFailure = Failure::Other;
        QString text = QStringLiteral("L'operazione non può essere completata nel rispetto dell'integrità dei dati.\r");
        if (!withRA)
            text += QStringLiteral("E' probabile che si sta tentando di eliminare un record che risulta vincolato ai "
                                   "dati di una o più tabelle.\r");
        text += QStringLiteral("\r[Messaggio Originale]:\r") + error.description;
        msgBox(text, vb::Information);
        return;
    }
    report(procedure, QStringLiteral("SQL=") + sql, &error);
}

// executeSQL and executeSQLWithRA: run one statement, show an integrity
// refusal as its message, report any other failure.
bool cAdoSqlServer::runStatement(QString& sql, QLatin1StringView procedure, const QString& tag, bool withRA,
                                 int* affected)
{
    sql = prepareSQL(sql);
    m_lastCommand = sql;
    if (!connectOutsideTransaction())
        return false;
    DbError error;
    if (!run(sql, nullptr, error, affected)) {
        const QString name = procedure + tag;
        reportStatementFailure(name, getLastSQLCommand(), error, withRA);
        abandonCurrent();
        return false;
    }
    if (!m_inTransaction)
        disconnect();
    return true;
}

int cAdoSqlServer::executeSQLWithRA(QString& sql, const QString& tag)
{
    int affected = -1;
    return runStatement(sql, QLatin1StringView("executeSQLWithRA -> "), tag, true, &affected) ? affected : -1;
}

int cAdoSqlServer::executeSQLWithRA(const QString& sql, const QString& tag)
{
    QString copy = sql;
    return executeSQLWithRA(copy, tag);
}

bool cAdoSqlServer::executeSQL(QString& sql, const QString& tag)
{
    return runStatement(sql, QLatin1StringView("executeSQL -> "), tag, false, nullptr);
}

bool cAdoSqlServer::executeSQL(const QString& sql, const QString& tag)
{
    QString copy = sql;
    return executeSQL(copy, tag);
}

std::unique_ptr<cCommand> cAdoSqlServer::getNewCmd()
{
    auto cmd = std::make_unique<cCommand>();
    cmd->ActiveConnection = m_current;
    cmd->CommandType = 4;
    return cmd;
}

bool cAdoSqlServer::executeCmd(cCommand& cmd, const QString& tag)
{
    const QString text = cmd.CommandText;
    m_lastCommand = text.left(5) == QLatin1String("exec ") ? text : QStringLiteral("exec ") + text;
    // A stored procedure: EXEC on SQL Server, CALL on MySQL; the file database
    // has none, so the text runs as a statement there.
    QString statement = text;
    if (text.left(5).compare(QLatin1String("exec "), Qt::CaseInsensitive) == 0)
        statement = text.mid(5);
    if (m_tipoServer == TipoServer::SqlServer)
        statement = QStringLiteral("EXEC ") + statement;
    else if (m_tipoServer == TipoServer::MySql)
        statement = QStringLiteral("CALL ") + statement;
    const ConnectionPtr connection = cmd.ActiveConnection ? cmd.ActiveConnection : m_current;
    const ConnectionPtr previous = m_current;
    m_current = connection;
    DbError error;
    run(statement, nullptr, error); // a failure stays in the connection's Errors
    const bool failed = checkForErrors(tag);
    m_current = previous;
    return !failed;
}

bool cAdoSqlServer::checkForErrors(const QString& tag)
{
    if (!m_current || m_current->Errors.isEmpty())
        return false;
    const DbError first = m_current->Errors.first();
    m_current->Errors.clear();
    report(QStringLiteral("checkForErrors -> ") + tag, QString(), &first);
    return true;
}

int cAdoSqlServer::getIDByInsert(QString& sql, const QString& tag, const QString& idField, const QString& tableName)
{
    const auto procedure = [&tag]() -> QString { return QStringLiteral("getIDByInsert -> ") + tag; };
    if (sql.isEmpty()) {
        Err().raise(9999, QStringLiteral("TLSOFT::cAdoSqlServer"),
                    QStringLiteral("Testo del Comando SQL non impostato in getIDByInsert"));
        report(procedure(),
               QStringLiteral("SQL1=\r\nServerTipo=") + QString::number(m_tipoServer) + QStringLiteral("\r\nSQL2="));
        return -1;
    }
    int id = -1;
    sql = prepareSQL(sql);
    m_lastCommand = sql;
    if (!connectOutsideTransaction())
        return -1;

    QString second;
    DbError error;
    bool ok = true;
    if (m_tipoServer == TipoServer::SqlServer) {
        second = QStringLiteral("SET NOCOUNT ON @01 SELECT SCOPE_IDENTITY() SET NOCOUNT OFF");
        second.replace(QStringLiteral("@01"), sql);
        QSqlQuery query;
        ok = run(second, &query, error);
        if (ok) {
            const RecordsetPtr rs = Recordset::fromQuery(query);
            if (!rs->eof())
                id = rs->value(0).toInt();
        }
    } else if (m_tipoServer == TipoServer::FileDb || m_tipoServer == TipoServer::MySql) {
        ok = run(sql, nullptr, error);
        // The key is the one the engine gave to this connection's insert: the
        // same as the highest key for a single user, and still right when two
        // workstations insert at the same moment. Without a table name the
        // second statement runs as written, and fails, as it always has; it
        // is written out only when it runs or a failure names it.
        const QVariant own = ok ? m_current->physical()->lastInsertId() : QVariant();
        if (!ok || !own.isValid() || own.isNull() || tableName.trimmed().isEmpty())
            second = QStringLiteral("SELECT MAX(") + idField + QStringLiteral(") FROM ") + tableName;
        if (ok && own.isValid() && !own.isNull() && !tableName.trimmed().isEmpty()) {
            id = own.toInt();
        } else if (ok) {
            QSqlQuery query;
            ok = run(second, &query, error);
            if (ok) {
                const RecordsetPtr rs = Recordset::fromQuery(query);
                if (!rs->eof())
                    id = rs->value(0).toInt();
            }
        }
    }
    if (!ok) {
        report(procedure(),
               QStringLiteral("SQL1=") + getLastSQLCommand() + QStringLiteral("\r\nServerTipo=")
                   + QString::number(m_tipoServer) + QStringLiteral("\r\nSQL2=") + restoreSqlValues(second),
               &error);
        abandonCurrent();
        return -1;
    }
    if (!m_inTransaction)
        disconnect();
    return id;
}

int cAdoSqlServer::getIDByInsert(const QString& sql, const QString& tag, const QString& idField,
                                 const QString& tableName)
{
    QString copy = sql;
    return getIDByInsert(copy, tag, idField, tableName);
}

QVariant cAdoSqlServer::getValueBySQL(QString& sql, const QString& tag)
{
    // The first field of the first row is read from the query itself.
    std::optional<QSqlQuery> query;
    if (!openQuery(sql, QLatin1StringView("getNewRecordset -> cAdoSqlServer.getValueBySQL -> "), tag,
                   QLatin1StringView("SQL="), query))
        return QVariant();
    QVariant value;
    if (query->next())
        value = query->value(0);
    query->finish();
    if (!m_inTransaction)
        disconnect();
    return value;
}

QVariant cAdoSqlServer::getValueBySQL(const QString& sql, const QString& tag)
{
    QString copy = sql;
    return getValueBySQL(copy, tag);
}

QVariant cAdoSqlServer::getStoredResult(QString& cmdText, const QString& tag)
{
    // No disconnect here: the connection stays on the stack, as the callers
    // of this operation have always had it.
    RecordsetPtr rs = getNewRecordsetByCmd(cmdText, tag, adOpenDynamic, adLockReadOnly, -1);
    if (!rs || rs->eof() || rs->fieldCount() == 0)
        return QVariant();
    return rs->value(0);
}

QVariant cAdoSqlServer::getStoredResult(const cCommand& cmd, const QString& tag)
{
    RecordsetPtr rs = getNewRecordsetByCmd(cmd, tag, adOpenDynamic, adLockReadOnly, -1);
    if (!rs || rs->eof() || rs->fieldCount() == 0)
        return QVariant();
    return rs->value(0);
}

QDateTime cAdoSqlServer::getDataOraServer(const QString& tag)
{
    QString sql =
        m_tipoServer == TipoServer::SqlServer ? QStringLiteral("SELECT GetDate()") : QStringLiteral("SELECT Now()");
    return toDateTime(getValueBySQL(sql, QStringLiteral("cAdoSqlServer.getDataOraServer -> ") + tag));
}

void cAdoSqlServer::setNewTable(const QString& rifForm, const QString& nome)
{
    const QString tag = QStringLiteral("cAdoSqlServer.setNewTable");
    const QVariant count =
        getValueBySQL(QStringLiteral("SELECT COUNT(RifForm) FROM ElencoTabelle WHERE RifForm = ") + sqlText(rifForm),
                      tag);
    if (!count.isValid() || count.toInt() != 0)
        return;
    const int before = m_count;
    const int id = getIDByInsert(QStringLiteral("INSERT INTO ElencoTabelle (RifForm, Nome) VALUES (") + sqlText(rifForm)
                                     + QStringLiteral(", ") + sqlText(nome) + QStringLiteral(")"),
                                 tag, QStringLiteral("ID"), QString());
    if (id < 0) {
        // The failed insert's connection goes back here: no caller holds it.
        if (m_count > before)
            disconnect();
        return;
    }
    const QVariant group = getValueBySQL(QStringLiteral("SELECT RID FROM GRUPPOUTENTI WHERE AMMINISTRATORE=1"), tag);
    executeSQL(QStringLiteral("INSERT INTO GRUPPOPERMESSI (FK_GRUPPOUTENTI, FK_TABELLE, VISUALIZZA, SCRIVI, ELIMINA, "
                              "STAMPA) VALUES (")
                   + getIDOrNullStr(group) + QStringLiteral(", ") + QString::number(id)
                   + QStringLiteral(", 1, 1, 1, 1)"),
               tag);
}

QString cAdoSqlServer::getSQLDate(const QVariant& value, int tipo) const
{
    return sqlDateFor(value, tipo < 0 ? m_tipoServer : tipo);
}

QString cAdoSqlServer::getSQLDateTime(const QVariant& value, int tipo) const
{
    return sqlDateTimeFor(value, tipo < 0 ? m_tipoServer : tipo);
}

QString cAdoSqlServer::getSQLTime(const QVariant& value, int tipo) const
{
    return sqlTimeFor(value, tipo < 0 ? m_tipoServer : tipo);
}
