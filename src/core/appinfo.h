#pragma once
// The program's name, version and main window title.

#include <QDate>
#include <QString>

// "major.minor.revision" of the running program.
QString versionText();

// "Orvantis v.1.0.0 - Soluzione Gestionale per le Imprese by Tavernalogic©2007-2026"
QString mainWindowTitle(const QDate& today = QDate::currentDate());
