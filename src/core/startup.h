#pragma once
// What the program does from the command line before any screen exists:
// the program folder, the database check, and the preparation of a server
// database.

#include <QString>
#include <QStringList>

struct StartOptions
{
    QString home;             // --home DIR
    bool initDb = false;      // --init-db
    int dbType = -1;          // --db-type N (with --init-db)
    QString connection;       // --connection TEXT (with --init-db)
    QString buildModel;       // --build-model FILE
    bool hasPassword = false; // --password TEXT (answers the login)
    QString password;
    QString screenshot; // --screenshot FILE (picture of the main window, then exit)
    QString open;       // --open NAME (a screen opened before the picture)
    int demoData = 0;   // --demo-data N (fill the empty firm with demo data and N documents, then exit)
    QString printPdf;   // --print-pdf TYPE:YEAR:NUMBER FILE (the document as a PDF file, then exit)
    QString printPdfFile;
    bool help = false;
    QString error; // a switch that could not be read
};

StartOptions parseStartOptions(const QStringList& arguments);
QString usageText();

// True when the options start the screens; false for the command-line jobs
// (--help, --init-db, --build-model) and for unreadable switches.
bool startsScreens(const StartOptions& options);

// Checks the file database of the session before anything opens it: it must
// be a SQLite database with this program's tables. A missing file is made
// from the model only when `mayCreate` (the first start on the program
// folder, or --init-db); a missing file otherwise, and an empty, unknown or
// foreign file always, is refused and left as it is. Other back ends need
// nothing. On failure `message` names the file and says what is wrong; when
// the file was created it says so.
bool prepareFileDatabase(bool mayCreate, QString* message = nullptr, bool* created = nullptr);

// Runs a command-line job with the options; returns the process exit code and
// writes what it has to say to `out` and `err`.
int runStart(const StartOptions& options, QString& out, QString& err);
