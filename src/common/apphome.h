#pragma once
#include <QString>

// The program folder: $ORVANTIS_HOME when set, otherwise the per-user data
// folder (~/.local/share/Orvantis). It holds the database file, the model,
// the logs, the report folders and the help. Created on first use.
QString programFolder();

// A file inside the program folder.
QString programFile(const QString& name);

// Overrides the program folder for this process (the --home switch); an empty
// text goes back to the environment rule.
void setProgramFolder(const QString& path);
