#pragma once
// Connection strings as the settings store keeps them: "Key=Value;Key=Value".

#include <QMap>
#include <QString>
#include <QStringList>

// Keys in lower case; values trimmed. Values may be written in braces
// ("DRIVER={FreeTDS}") or double quotes; both are removed.
QMap<QString, QString> parseConnectionString(const QString& text);

// The data source names of the user's and the system's odbc.ini, sorted.
QStringList odbcDataSourceNames();

// The file of a file-database string ("Provider=SQLite;Data Source=/path/Orvantis.db").
QString fileDbPath(const QString& connectionString);

// "Provider=SQLite;Data Source=<path>"
QString fileDbConnectionString(const QString& path);

// What QMYSQL needs, from "Server=..;Port=..;Database=..;Uid=..;Pwd=..;Socket=.."
// or "DSN=name;UID=..;PWD=.." (the data source read from odbc.ini).
struct MySqlParams
{
    QString host = QStringLiteral("127.0.0.1");
    int port = 3306;
    QString database;
    QString user;
    QString password;
    QString socket;
};
MySqlParams mySqlParams(const QString& connectionString);
