#pragma once
// The program's help: HTML pages shipped inside the program and written to
// the "help" folder of the program folder, where the desktop's browser opens them.

#include <QString>

// Writes the pages when missing or out of date; returns the index page's path.
QString helpIndexFile();
