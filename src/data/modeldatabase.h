#pragma once
// Making databases: the model file, the firm's file database created from
// it, and a server database prepared with the same tables and rows.

#include <QString>

namespace model {

// Creates every table, index and reference on the database named by the
// connection string (which must be empty of tables). A file database that is
// missing or has no bytes yet is made a database here first: this and the
// copy of the model are the only ways a new database file comes to be.
bool createTables(int tipoServer, const QString& connectionString, QString* message = nullptr);

// Writes the seed rows, the schema version among them, through gAdoSqlServer, in one
// transaction, on the session's current database.
bool seedDatabase(QString* message = nullptr);

// Builds the model file (SQLite) from scratch at `path`.
bool buildModelFile(const QString& path, QString* message = nullptr);

// When `dbPath` is missing, copies the model there, building the model first
// when that is missing too. True when the database file exists afterwards.
// An existing file is never touched; a model that is not a database of this
// program is not copied.
bool ensureFileDatabase(const QString& dbPath, const QString& modelPath, QString* message = nullptr);

// What a file named as a database of this program holds. It is looked at
// without being written: its first bytes are read, and only a file that
// starts as a SQLite database is opened, read-only, to look for the option
// table and the schema version table. (Opening a file for writing makes an
// empty or unknown one into a database, and the journal mode alone rewrites
// its header.)
enum class FileDbState {
    Ours,         // a SQLite database with this program's tables
    Missing,      // nothing at that path
    Empty,        // a file of 0 bytes
    NotADatabase, // not a SQLite database (or not a file)
    Foreign,      // a SQLite database without this program's tables
    Unreadable    // cannot be read (permissions, damaged file)
};
// With `version`, the schema version the file records (0 when none).
FileDbState inspectFileDatabase(const QString& path, QString* detail = nullptr, int* version = nullptr);

// The Italian text that tells the user what is wrong with the file, naming
// it; empty for FileDbState::Ours.
QString fileDbProblem(FileDbState state, const QString& path, const QString& detail = QString());

// Prepares a server database (MariaDB or SQL Server): creates the database
// when the server allows it, then the tables and the seed. A database that
// already holds the option table is left alone and reported as ready.
bool initServerDatabase(int tipoServer, const QString& connectionString, QString* message = nullptr);

// The schema version stored in the current database, -1 when unreadable.
int storedSchemaVersion();

} // namespace model
