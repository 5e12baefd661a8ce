#pragma once
// The machine settings of section "Server" and the session globals composed
// from them (back end, connection strings, report folder, description).

#include <QString>

class QSettings;

// The per-user settings store: INI file of application "prgOrvantis".
QSettings& machineSettings();

// Reads every key of section "Server" with its default, sets the back end of
// gAdoSqlServer and composes the session globals.
void readServerSettings();

// Writes the back end and its connection string (the --init-db switches).
void saveServerConnection(int tipoServer, const QString& connectionString);

// The three fields that the connection settings dialog edits for one back
// end: the connection (the file path for the file database), the report
// folder and the report connection.
struct ServerFields
{
    QString connection;
    QString reportPath;
    QString reportConnection;
};

// The stored fields of a back end, with the defaults of the missing keys.
ServerFields storedServerFields(int tipoServer);

// Makes `tipoServer` the back end of this machine and stores its fields.
void saveServerSettings(int tipoServer, const ServerFields& fields);

// The database file shown by the login dialog (key "Name").
QString databaseName();
void saveDatabaseName(const QString& path);

// Writes "ver" and "path" in the nameless section, at every start.
void saveRunningInfo(const QString& version);

// The defaults of the keys that name files and folders.
QString defaultDatabasePath();
QString defaultModelPath();
