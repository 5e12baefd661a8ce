#pragma once
// The program with its screens: dialog service, error report dialog, the
// start sequence, then the main window until it closes.

struct StartOptions;

// Needs the QApplication; returns the process exit code.
int runShell(const StartOptions& options);

// Icon theme, Italian texts of Qt's own dialogs, Italian locale for widgets.
void setupDesktop();
