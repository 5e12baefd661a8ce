#pragma once
#include <QString>

// The program folder: the folder given by --home, otherwise $ORVANTIS_HOME
// when set, otherwise the per-user data folder (~/.local/share/Orvantis). It
// holds the database file, the model, the logs, the report folders and the
// help. Created on first use.
QString programFolder();

// A file inside the program folder.
QString programFile(const QString& name);

// The program folder given on the command line (the --home switch) for this
// process; an empty text goes back to the environment rule. A folder given so
// keeps its machine settings inside it (see programFolderSettingsFile()).
void setProgramFolder(const QString& path);

// Where the machine settings live when they belong to the program folder:
// "prgOrvantis.ini" in the folder given by setProgramFolder(), so that two
// program folders never share their settings, and with them their database.
// Empty for the environment's folder: its settings stay in the per-user
// configuration folder (~/.config/Orvantis/prgOrvantis.ini).
QString programFolderSettingsFile();
