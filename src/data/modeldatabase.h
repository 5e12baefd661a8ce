#pragma once
// Making databases: the model file, the firm's file database created from
// it, and a server database prepared with the same tables and rows.

#include <QString>

namespace model {

// Creates every table, index and reference on the database named by the
// connection string (which must be empty of tables).
bool createTables(int tipoServer, const QString& connectionString, QString* message = nullptr);

// Writes the seed rows, the schema version among them, through gAdoSqlServer, in one
// transaction, on the session's current database.
bool seedDatabase(QString* message = nullptr);

// Builds the model file (SQLite) from scratch at `path`.
bool buildModelFile(const QString& path, QString* message = nullptr);

// When `dbPath` is missing, copies the model there, building the model first
// when that is missing too. True when the database file exists afterwards.
bool ensureFileDatabase(const QString& dbPath, const QString& modelPath, QString* message = nullptr);

// Prepares a server database (MariaDB or SQL Server): creates the database
// when the server allows it, then the tables and the seed. A database that
// already holds the option table is left alone and reported as ready.
bool initServerDatabase(int tipoServer, const QString& connectionString, QString* message = nullptr);

// The schema version stored in the current database, -1 when unreadable.
int storedSchemaVersion();

} // namespace model
