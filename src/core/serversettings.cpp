#include "core/serversettings.h"

#include "common/apphome.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/session.h"
#include "data/sqldialect.h"

#include <QDir>
#include <QHash>
#include <QSettings>

#include <functional>
#include <memory>

namespace {
const QString kMySqlPrompt = QStringLiteral("digitare una stringa di connessione MySQL (solo per esperti)");
const QString kSqlSrvPrompt = QStringLiteral("digitare una stringa di connessione Sql Server (solo per esperti)");
const QString kReportPrompt =
    QStringLiteral("digitare una stringa di connessione per Crystal Report (solo per esperti)");

QString withoutLineEnds(QString s) { return s.remove(QLatin1Char('\r')).remove(QLatin1Char('\n')); }
} // namespace

QSettings& machineSettings()
{
    // The store follows the program folder: a folder given by --home keeps its
    // own file, the environment's folder the per-user one. The object is made
    // again only when the folder changes (before the start, or between tests).
    static std::unique_ptr<QSettings> settings;
    static QString file;
    const QString wanted = programFolderSettingsFile();
    if (!settings || wanted != file) {
        if (settings)
            settings->sync();
        if (wanted.isEmpty())
            settings = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                                   QStringLiteral("Orvantis"), QStringLiteral("prgOrvantis"));
        else
            settings = std::make_unique<QSettings>(wanted, QSettings::IniFormat);
        file = wanted;
    }
    return *settings;
}

QString defaultDatabasePath() { return programFile(QStringLiteral("Orvantis.db")); }

QString defaultModelPath() { return programFile(QStringLiteral("OModel.db")); }

namespace {

// The keys of section "Server" that belong to one back end.
struct BackendKeys
{
    QString connection;
    QString reportPath;
    QString reportConnection;
};

BackendKeys keysFor(int tipoServer)
{
    switch (tipoServer) {
    case TipoServer::SqlServer:
        return {QStringLiteral("SqlSrv"), QStringLiteral("ReportPathSqlSrv"), QStringLiteral("RptConnectionSqlSrv")};
    case TipoServer::MySql:
        return {QStringLiteral("MySql"), QStringLiteral("ReportPathMySql"), QStringLiteral("RptConnectionMySql")};
    default: return {QStringLiteral("Path"), QStringLiteral("ReportPathAccess"), QStringLiteral("RptConnectionAccess")};
    }
}

QString reportFolder(const QString& name) { return QDir(programFolder()).filePath(name) + QLatin1Char('/'); }

// The value a key of section "Server" has when the settings lack it.
QString defaultOf(const QString& key)
{
    static const QHash<QString, std::function<QString()>> defaults{
        {QStringLiteral("DBType"), [] { return QStringLiteral("1"); }},
        {QStringLiteral("Path"), [] { return defaultDatabasePath(); }},
        {QStringLiteral("ModelPath"), [] { return defaultModelPath(); }},
        {QStringLiteral("MySql"), [] { return kMySqlPrompt; }},
        {QStringLiteral("SqlSrv"), [] { return kSqlSrvPrompt; }},
        {QStringLiteral("ReportPathAccess"), [] { return reportFolder(QStringLiteral("AccessReports")); }},
        {QStringLiteral("ReportPathMySql"), [] { return reportFolder(QStringLiteral("ODBCReports")); }},
        {QStringLiteral("ReportPathSqlSrv"), [] { return reportFolder(QStringLiteral("ODBCReports")); }},
        {QStringLiteral("RptConnectionAccess"), [] { return fileDbConnectionString(defaultDatabasePath()); }},
        {QStringLiteral("RptConnectionMySql"), [] { return kReportPrompt; }},
        {QStringLiteral("RptConnectionSqlSrv"), [] { return kReportPrompt; }},
        {QStringLiteral("Name"), [] { return defaultDatabasePath(); }},
    };
    const auto it = defaults.constFind(key);
    return it == defaults.constEnd() ? QString() : (*it)();
}

QString serverValue(const QString& key)
{
    return machineSettings().value(QStringLiteral("Server/") + key, defaultOf(key)).toString();
}

void setServerValue(const QString& key, const QString& value)
{
    machineSettings().setValue(QStringLiteral("Server/") + key, value);
}

} // namespace

ServerFields storedServerFields(int tipoServer)
{
    const BackendKeys keys = keysFor(tipoServer);
    return {serverValue(keys.connection), serverValue(keys.reportPath), serverValue(keys.reportConnection)};
}

void saveServerSettings(int tipoServer, const ServerFields& fields)
{
    const BackendKeys keys = keysFor(tipoServer);
    setServerValue(QStringLiteral("DBType"), QString::number(tipoServer));
    setServerValue(keys.connection, fields.connection);
    setServerValue(keys.reportPath, fields.reportPath);
    setServerValue(keys.reportConnection, fields.reportConnection);
    machineSettings().sync();
}

QString databaseName() { return serverValue(QStringLiteral("Name")); }

void saveDatabaseName(const QString& path)
{
    setServerValue(QStringLiteral("Name"), path);
    machineSettings().sync();
}

bool firstStartOnProgramFolder()
{
    QSettings& s = machineSettings();
    s.sync();
    if (s.contains(QStringLiteral("Server/DBType")) || s.contains(QStringLiteral("Server/Path")))
        return false;
    s.beginGroup(QString(QChar(0)));
    const QString lastFolder = s.value(QStringLiteral("path")).toString();
    s.endGroup();
    return lastFolder.isEmpty() || QDir::cleanPath(lastFolder) != QDir::cleanPath(programFolder());
}

void saveRunningInfo(const QString& version)
{
    QSettings& s = machineSettings();
    s.beginGroup(QString(QChar(0))); // the nameless section
    s.setValue(QStringLiteral("ver"), version);
    s.setValue(QStringLiteral("path"), programFolder());
    s.endGroup();
    s.sync();
}

void readServerSettings()
{
    machineSettings().sync();
    const int tipo = serverValue(QStringLiteral("DBType")).toInt();
    const ServerFields fields = storedServerFields(tipo);

    SessionGlobals& g = gSession();
    g.tipoServer = tipo;
    gAdoSqlServer().setTipoServer(tipo);
    g.strReportPath = fields.reportPath;
    g.strReportConnection = fields.reportConnection;
    switch (tipo) {
    case TipoServer::SqlServer:
        g.strConnessione = fields.connection;
        g.strDescrizioneDB = QStringLiteral("SQL Server: ") + withoutLineEnds(fields.connection);
        break;
    case TipoServer::MySql:
        g.strConnessione = fields.connection;
        g.strDescrizioneDB =
            QStringLiteral("MySql: ") + withoutLineEnds(fields.connection.section(QLatin1Char(';'), 0, 0));
        break;
    default:
        g.strConnessione = fileDbConnectionString(fields.connection);
        g.strConnessioneModello = fileDbConnectionString(serverValue(QStringLiteral("ModelPath")));
        g.strDescrizioneDB = QStringLiteral("SQLite: ") + fields.connection;
        break;
    }
}

void saveServerConnection(int tipoServer, const QString& connectionString)
{
    setServerValue(QStringLiteral("DBType"), QString::number(tipoServer));
    setServerValue(keysFor(tipoServer).connection,
                   tipoServer == TipoServer::FileDb ? fileDbPath(connectionString) : connectionString);
    machineSettings().sync();
}
