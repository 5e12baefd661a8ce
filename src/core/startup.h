#pragma once
// What the program does from the command line before any screen exists:
// the program folder, the database check, and the preparation of a server
// database.

#include <QString>
#include <QStringList>

struct StartOptions
{
    QString home;              // --home DIR
    bool initDb = false;       // --init-db
    int dbType = -1;           // --db-type N (with --init-db)
    QString connection;        // --connection TEXT (with --init-db)
    QString buildModel;        // --build-model FILE
    bool help = false;
    QString error;             // a switch that could not be read
};

StartOptions parseStartOptions(const QStringList& arguments);
QString usageText();

// Runs the program with the options; returns the process exit code and
// writes what it has to say to `out` and `err`.
int runStart(const StartOptions& options, QString& out, QString& err);
