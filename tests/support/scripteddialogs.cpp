#include "support/scripteddialogs.h"

#include <QAbstractButton>
#include <QApplication>
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
        QTest::qFail(qPrintable("dialog script not finished, next: " + m_steps.first().text), __FILE__, __LINE__);
}

std::optional<ScriptedDialogs::Step> ScriptedDialogs::next(Kind kind, const QString& what)
{
    if (m_steps.isEmpty()) {
        QTest::qFail(qPrintable("unexpected: " + what), __FILE__, __LINE__);
        return std::nullopt;
    }
    const Step step = m_steps.takeFirst();
    if (step.kind != kind || (kind == Message && !what.contains(step.text)) || (kind == Dialog && what != step.text)) {
        QTest::qFail(qPrintable("expected \"" + step.text + "\", got: " + what), __FILE__, __LINE__);
        return std::nullopt;
    }
    return step;
}

int ScriptedDialogs::message(const QString& prompt, int style, const QString&)
{
    shown.append("message: " + prompt);
    const auto step = next(Message, prompt);
    return step ? step->answer : defaultAnswer(style);
}

int ScriptedDialogs::dialog(QDialog& dialog)
{
    shown.append("dialog: " + dialog.objectName());
    const auto step = next(Dialog, dialog.objectName());
    // Unexpected, it is closed as its user would: a screen waiting on it goes on, the test fails.
    if (step && step->drive)
        step->drive(dialog);
    if (!step || dialog.isVisible())
        dialog.reject();
    return dialog.result();
}

QString ScriptedDialogs::fileChoice(dialogs::FileChoice, const QString& caption, const QString&)
{
    shown.append("file: " + caption);
    const auto step = next(File, caption);
    return step ? step->text : QString();
}

void ScriptedDialogs::openUrl(const QUrl& url)
{
    shown.append("url: " + url.toString());
    openedUrls.append(url);
}

void typeInto(QWidget& parent, const QString& name, const QString& text)
{
    QWidget* field = parent.findChild<QWidget*>(name);
    QVERIFY2(field, qPrintable("no field " + name));
    if (auto* line = qobject_cast<QLineEdit*>(field))
        line->clear();
    else if (auto* plain = qobject_cast<QPlainTextEdit*>(field))
        plain->clear();
    QTest::keyClicks(field, text);
}

void click(QWidget& parent, const QString& name)
{
    auto* button = parent.findChild<QAbstractButton*>(name);
    QVERIFY2(button, qPrintable("no button " + name));
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
    QVERIFY2(field, qPrintable("no field " + name));
    field->setFocus();
    typeInto(parent, name, text);
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
