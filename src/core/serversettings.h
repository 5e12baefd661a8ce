#pragma once
// The machine settings of section "Server" and the session globals composed
// from them (back end, connection strings, report folder, description).

#include <QString>

class QSettings;

// The per-user settings store: INI file of application "prgOrvantis", kept
// in the program folder when that was given by --home.
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

// True when the settings show no earlier start on this program folder, the
// one case in which a missing database file may be made from the model
// without being asked (--init-db is the other). That is when:
//  - section "Server" has neither "DBType" nor "Path": nobody chose a back
//    end or a file, so the database in use is the default Orvantis.db of the
//    program folder;
//  - the nameless section does not give this program folder as the one of
//    the last start ("path" is written at every start, so the question must
//    come before saveRunningInfo()).
// Any other missing file is a mistyped path, a disk not mounted or a file
// moved away: an empty firm made in its place, opened by the default
// password, would hide that. A folder given by --home has settings of its
// own, so a new folder is a first start; one that was started once is not.
bool firstStartOnProgramFolder();

// Writes "ver" and "path" in the nameless section, at every start.
void saveRunningInfo(const QString& version);

// The defaults of the keys that name files and folders.
QString defaultDatabasePath();
QString defaultModelPath();
