#pragma once
// Answers the program's dialogs from a script, in order: message boxes by a
// fragment of their text, modal dialogs by object name (a function drives
// the dialog's controls), file choices with a path. Anything unexpected,
// or a step not reached by the end, fails the test.

#include "common/msgbox.h"
#include "core/dialogservice.h"

#include <QDialog>
#include <QList>
#include <QStringList>
#include <QTreeWidget>
#include <QUrl>

#include <functional>
#include <optional>

namespace testdb {

class ScriptedDialogs : public dialogs::Responder
{
public:
    using Driver = std::function<void(QDialog&)>;

    ScriptedDialogs();
    ~ScriptedDialogs() override;

    void expectMessage(const QString& text, int answer = vb::OK) { m_steps.append({Message, text, answer, {}}); }
    void expectDialog(const QString& objectName, Driver drive) { m_steps.append({Dialog, objectName, 0, drive}); }
    void expectFile(const QString& answer) { m_steps.append({File, answer, 0, {}}); }

    // Everything shown, in order ("message: ...", "dialog: frmPw", "file: ...").
    QStringList shown;
    QList<QUrl> openedUrls;
    bool allAnswered() const { return m_steps.isEmpty(); }

    int message(const QString& prompt, int style, const QString& title) override;
    int dialog(QDialog& dialog) override;
    QString fileChoice(dialogs::FileChoice kind, const QString& caption, const QString& filter) override;
    void openUrl(const QUrl& url) override;

private:
    enum Kind {
        Message,
        Dialog,
        File
    };

    struct Step
    {
        Kind kind;
        QString text; // fragment, object name or file
        int answer = 0;
        Driver drive;
    };
    // The next step, when it is of `kind` and matches `what`.
    std::optional<Step> next(Kind kind, const QString& what);

    QList<Step> m_steps;
    dialogs::Responder* m_previous = nullptr;
    MsgBoxHandler m_previousBox;
};

// Types `text` into the child named `name` of `parent`; clicks a button by name.
void typeInto(QWidget& parent, const QString& name, const QString& text);
void click(QWidget& parent, const QString& name);
// Shows a screen as the active window: its function keys are shortcuts of
// the active window, and leaving a field needs real focus.
void showActive(QWidget& screen);
// Types text into a field and leaves it with Tab, as the user does.
void enter(QWidget& parent, const QString& name, const QString& text);
// Types any text into an emptied field, one key a character (a character
// beyond the basic plane is one key): keyClicks knows Latin-1 alone.
void typeKeys(QWidget* field, const QString& text);
// The texts of one column of a list, top to bottom.
QStringList listColumn(QTreeWidget* list, int column);

} // namespace testdb
