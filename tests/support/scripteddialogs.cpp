#include "support/scripteddialogs.h"

#include "common/msgbox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

namespace testdb {

ScriptedDialogs::ScriptedDialogs()
{
    m_previousBox = setMsgBoxHandler(
        [this](const QString& prompt, int style, const QString& title) { return message(prompt, style, title); });
    m_previous = dialogs::setResponder(this);
}

ScriptedDialogs::~ScriptedDialogs()
{
    dialogs::setResponder(m_previous);
    setMsgBoxHandler(m_previousBox);
    if (!m_steps.isEmpty())
        QTest::qFail(qPrintable(QStringLiteral("dialog script not finished, next: ") + m_steps.first().text), __FILE__,
                     __LINE__);
}

void ScriptedDialogs::expectMessage(const QString& fragment, int answer)
{
    m_steps.append({Step::Message, fragment, answer, {}});
}

void ScriptedDialogs::expectDialog(const QString& objectName, Driver drive)
{
    m_steps.append({Step::Dialog, objectName, 0, std::move(drive)});
}

void ScriptedDialogs::expectFile(const QString& answer) { m_steps.append({Step::File, answer, 0, {}}); }

bool ScriptedDialogs::next(Step::Kind kind, const QString& what, Step& step)
{
    if (m_steps.isEmpty()) {
        QTest::qFail(qPrintable(QStringLiteral("unexpected: ") + what), __FILE__, __LINE__);
        return false;
    }
    step = m_steps.takeFirst();
    const bool matches = step.kind == kind
        && (kind == Step::File || (kind == Step::Message ? what.contains(step.text) : what == step.text));
    if (!matches) {
        QTest::qFail(qPrintable(QStringLiteral("expected \"") + step.text + QStringLiteral("\", got: ") + what),
                     __FILE__, __LINE__);
        return false;
    }
    return true;
}

int ScriptedDialogs::message(const QString& prompt, int style, const QString&)
{
    shown.append(QStringLiteral("message: ") + prompt);
    Step step;
    return next(Step::Message, prompt, step) ? step.answer : defaultAnswer(style);
}

int ScriptedDialogs::dialog(QDialog& dialog)
{
    shown.append(QStringLiteral("dialog: ") + dialog.objectName());
    Step step;
    if (!next(Step::Dialog, dialog.objectName(), step)) {
        // Closed as its user would close it, so that a screen waiting on
        // it goes on (and the test fails) instead of asking again for ever.
        dialog.reject();
        return QDialog::Rejected;
    }
    if (step.drive)
        step.drive(dialog);
    if (dialog.isVisible())
        dialog.reject();
    return dialog.result();
}

QString ScriptedDialogs::fileChoice(dialogs::FileChoice, const QString& caption, const QString&)
{
    shown.append(QStringLiteral("file: ") + caption);
    Step step;
    return next(Step::File, caption, step) ? step.text : QString();
}

void ScriptedDialogs::openUrl(const QUrl& url)
{
    shown.append(QStringLiteral("url: ") + url.toString());
    openedUrls.append(url);
}

void typeInto(QWidget& parent, const QString& name, const QString& text)
{
    QWidget* field = parent.findChild<QWidget*>(name);
    QVERIFY2(field, qPrintable(QStringLiteral("no field ") + name));
    if (auto* line = qobject_cast<QLineEdit*>(field))
        line->clear();
    else if (auto* plain = qobject_cast<QPlainTextEdit*>(field))
        plain->clear();
    QTest::keyClicks(field, text);
}

void click(QWidget& parent, const QString& name)
{
    auto* button = parent.findChild<QAbstractButton*>(name);
    QVERIFY2(button, qPrintable(QStringLiteral("no button ") + name));
    QTest::mouseClick(button, Qt::LeftButton);
}

void showActive(QWidget& screen)
{
    screen.show();
    QApplication::setActiveWindow(&screen);
    QVERIFY(QTest::qWaitForWindowActive(&screen));
}

void enter(QWidget& parent, const QString& name, const QString& text)
{
    auto* field = parent.findChild<QLineEdit*>(name);
    QVERIFY2(field, qPrintable(QStringLiteral("no field ") + name));
    field->setFocus();
    field->clear();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Tab);
}

void typeKeys(QWidget* field, const QString& text)
{
    QVERIFY(field);
    if (auto* line = qobject_cast<QLineEdit*>(field))
        line->clear();
    field->setFocus();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qsizetype units = text.at(i).isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, text.mid(i, units), Qt::NoModifier);
        i += units - 1;
    }
}

QStringList listColumn(QTreeWidget* list, int column)
{
    QStringList texts;
    for (int i = 0; list && i < list->topLevelItemCount(); ++i)
        texts << list->topLevelItem(i)->text(column);
    return texts;
}

} // namespace testdb
