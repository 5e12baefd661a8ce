#include "serversettings.h"

#include "apphome.h"
#include "cadosqlserver.h"
#include "connectionstring.h"
#include "session.h"
#include "sqldialect.h"

#include <QDir>
#include <QSettings>

namespace {
const QString kMySqlPrompt = QStringLiteral("digitare una stringa di connessione MySQL (solo per esperti)");
const QString kSqlSrvPrompt = QStringLiteral("digitare una stringa di connessione Sql Server (solo per esperti)");
const QString kReportPrompt = QStringLiteral("digitare una stringa di connessione per Crystal Report (solo per esperti)");

QString withoutLineEnds(QString s)
{
    return s.remove(QLatin1Char('\r')).remove(QLatin1Char('\n'));
}
} // namespace

QSettings& machineSettings()
{
    static QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Orvantis"),
                              QStringLiteral("prgOrvantis"));
    return settings;
}

QString defaultDatabasePath()
{
    return programFile(QStringLiteral("Orvantis.db"));
}

QString defaultModelPath()
{
    return programFile(QStringLiteral("OModel.db"));
}

void readServerSettings()
{
    QSettings& s = machineSettings();
    s.sync();
    s.beginGroup(QStringLiteral("Server"));
    const int tipo = s.value(QStringLiteral("DBType"), QStringLiteral("1")).toInt();
    const QString path = s.value(QStringLiteral("Path"), defaultDatabasePath()).toString();
    const QString modelPath = s.value(QStringLiteral("ModelPath"), defaultModelPath()).toString();
    const QString mySql = s.value(QStringLiteral("MySql"), kMySqlPrompt).toString();
    const QString sqlSrv = s.value(QStringLiteral("SqlSrv"), kSqlSrvPrompt).toString();
    const QString odbcReports = QDir(programFolder()).filePath(QStringLiteral("ODBCReports")) + QLatin1Char('/');
    const QString accessReports = QDir(programFolder()).filePath(QStringLiteral("AccessReports")) + QLatin1Char('/');
    const QString reportAccess = s.value(QStringLiteral("ReportPathAccess"), accessReports).toString();
    const QString reportMySql = s.value(QStringLiteral("ReportPathMySql"), odbcReports).toString();
    const QString reportSqlSrv = s.value(QStringLiteral("ReportPathSqlSrv"), odbcReports).toString();
    const QString rptAccess = s.value(QStringLiteral("RptConnectionAccess"), fileDbConnectionString(defaultDatabasePath())).toString();
    const QString rptMySql = s.value(QStringLiteral("RptConnectionMySql"), kReportPrompt).toString();
    const QString rptSqlSrv = s.value(QStringLiteral("RptConnectionSqlSrv"), kReportPrompt).toString();
    s.endGroup();

    SessionGlobals& g = gSession();
    g.tipoServer = tipo;
    gAdoSqlServer().setTipoServer(tipo);
    switch (tipo) {
    case TipoServer::SqlServer:
        g.strConnessione = sqlSrv;
        g.strReportPath = reportSqlSrv;
        g.strReportConnection = rptSqlSrv;
        g.strDescrizioneDB = QStringLiteral("SQL Server: ") + withoutLineEnds(sqlSrv);
        break;
    case TipoServer::MySql:
        g.strConnessione = mySql;
        g.strReportPath = reportMySql;
        g.strReportConnection = rptMySql;
        g.strDescrizioneDB = QStringLiteral("MySql: ") + withoutLineEnds(mySql.section(QLatin1Char(';'), 0, 0));
        break;
    default:
        g.strConnessione = fileDbConnectionString(path);
        g.strConnessioneModello = fileDbConnectionString(modelPath);
        g.strReportPath = reportAccess;
        g.strReportConnection = rptAccess;
        g.strDescrizioneDB = QStringLiteral("SQLite: ") + path;
        break;
    }
}

void saveServerConnection(int tipoServer, const QString& connectionString)
{
    QSettings& s = machineSettings();
    s.beginGroup(QStringLiteral("Server"));
    s.setValue(QStringLiteral("DBType"), QString::number(tipoServer));
    if (tipoServer == TipoServer::MySql)
        s.setValue(QStringLiteral("MySql"), connectionString);
    else if (tipoServer == TipoServer::SqlServer)
        s.setValue(QStringLiteral("SqlSrv"), connectionString);
    else
        s.setValue(QStringLiteral("Path"), fileDbPath(connectionString));
    s.endGroup();
    s.sync();
}
