#pragma once
// The classic message box, as every procedure of the system asks it. Engines
// and the data layer call msgBox(); the application installs the real dialog
// service at start, tests install a scripted responder. Without a handler the
// text goes to the standard error stream and the default button is taken.

#include <QString>

#include <functional>

namespace vb {
// Buttons
constexpr int OKOnly = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4, RetryCancel = 5;
// Icons
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
// Default button
constexpr int DefaultButton1 = 0, DefaultButton2 = 256, DefaultButton3 = 512;
// Answers
constexpr int OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7;
} // namespace vb

using MsgBoxHandler = std::function<int(const QString& prompt, int style, const QString& title)>;

// Shows the prompt; returns the button chosen (vb::OK, vb::Yes, ...).
// An empty title means the application title.
int msgBox(const QString& prompt, int style = vb::OKOnly, const QString& title = QString());

// The answer a box gives without anyone to ask: its default button.
int defaultAnswer(int style);

// Installs the handler; returns the previous one.
MsgBoxHandler setMsgBoxHandler(MsgBoxHandler handler);

// The application title used by every box ("prgOrvantis").
QString applicationTitle();
