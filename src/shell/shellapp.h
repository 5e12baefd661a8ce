#pragma once
// The program with its screens: dialog service, error report dialog, the
// start sequence, then the main window until it closes.

class QIcon;
struct StartOptions;

// Needs the QApplication; returns the process exit code.
int runShell(const StartOptions& options);

// The program's icon, and the look of disabled fields, for every window;
// icon theme, Italian texts of Qt's own dialogs, Italian locale for widgets.
void setupDesktop();

// The program's own icon, from the resources.
QIcon programIcon();
