#pragma once
// The one door for every box, question, file choice and modal dialog of the
// program. Screens call msgBox() (common/msgbox.h) and the functions below;
// the application shows real Qt dialogs, while tests and scripted runs put a
// Responder in place that answers in the place of a person.

#include <QString>

class QDialog;
class QUrl;
class QWidget;

namespace dialogs {

enum class FileChoice {
    Open,
    Save,
    Folder
};

class Responder
{
public:
    virtual ~Responder() = default;
    // A message box: returns the button chosen (vb::OK, vb::Yes, ...).
    virtual int message(const QString& prompt, int style, const QString& title) = 0;
    // A modal dialog, already shown: drives it and returns its result.
    virtual int dialog(QDialog& dialog) = 0;
    // A file or folder choice: the chosen path, empty when cancelled.
    virtual QString fileChoice(FileChoice kind, const QString& caption, const QString& filter) = 0;
    // A page handed to the desktop (help, web).
    virtual void openUrl(const QUrl& url) = 0;
};

// Routes msgBox() through the service; called once the QApplication exists.
void install();

// Puts a responder in place (nullptr: real dialogs again); returns the previous one.
Responder* setResponder(Responder* responder);

// Shows a dialog modally and returns its result code.
int exec(QDialog& dialog);

QString getOpenFileName(QWidget* parent, const QString& caption, const QString& folder, const QString& filter);
QString getSaveFileName(QWidget* parent, const QString& caption, const QString& folder, const QString& filter);
QString getExistingDirectory(QWidget* parent, const QString& caption, const QString& folder);

// Opens a page or file with the desktop's viewer.
bool openUrl(const QUrl& url);

// The window that owns boxes and dialogs (the main window once it is up).
QWidget* ownerWindow();
void setOwnerWindow(QWidget* window);

// The Qt message box for a classic MsgBox call; returns the vb:: answer.
int showMessageBox(QWidget* parent, const QString& prompt, int style, const QString& title);

} // namespace dialogs
