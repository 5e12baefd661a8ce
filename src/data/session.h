#pragma once
// The session globals that the start-up composes from the machine settings
// and that everyone reads: back end, connection strings, report folder,
// text delimiter, the module name used in caller tags.

#include <QString>

struct SessionGlobals
{
    int tipoServer = 1;            // 0 SQL Server, 1 file database, 2 MySQL
    QString strConnessione;        // read by cAdoSqlServer::Connect
    QString strConnessioneModello; // the model file (file database only)
    QString strReportPath;
    QString strReportConnection;
    QString strDescrizioneDB; // shown on the splash and the login
    QString sqlSeparator = QStringLiteral("\u00A4");
    QString moduleName = QStringLiteral("bOrvantis");
    QString defaultPrinter;
    QString password;
};

SessionGlobals& gSession();
