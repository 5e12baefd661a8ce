#pragma once
// The report templates shipped with the program, and the report folders
// that hold the templates the users may change.

#include <QString>
#include <QStringList>

// The file names of the shipped templates.
QStringList modelliReportForniti();

// Copies into `cartella` the shipped templates it does not have yet (a
// template changed by the user stays as it is); creates the folder. Returns
// how many were copied, -1 when the folder cannot be written.
int installaModelliReport(const QString& cartella);
