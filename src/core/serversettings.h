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

// The defaults of the keys that name files and folders.
QString defaultDatabasePath();
QString defaultModelPath();
