#pragma once
// A screen under test, shown as the active window and driven by the names of
// its controls: fields typed or entered, combos chosen, what a control shows.

#include "core/screenregistry.h"
#include "screens/framework/appearance.h"
#include "support/scripteddialogs.h"
#include "support/testdb.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>

namespace testdb {

template <class Form> struct Screen
{
    Form screen;
    // The arguments, when given, go to the screen's startMe.
    template <class... Start> explicit Screen(Start... start)
    {
        applyAppearance(); // as the program sets it at start
        if constexpr (sizeof...(Start) > 0)
            screen.startMe(start...);
        showActive(screen);
    }
    template <class T = QWidget> T* get(const QString& name)
    {
        T* widget = screen.template findChild<T*>(name);
        if (!widget)
            qWarning("no control %s", qPrintable(name));
        return widget;
    }
    // What a control shows: its text, its chosen entry, or "1"/"0".
    QString shown(const QString& name)
    {
        QWidget* w = get(name);
        if (auto* line = qobject_cast<QLineEdit*>(w))
            return line->text();
        if (auto* label = qobject_cast<QLabel*>(w))
            return label->text();
        if (auto* combo = qobject_cast<QComboBox*>(w))
            return combo->currentText();
        if (auto* plain = qobject_cast<QPlainTextEdit*>(w))
            return plain->toPlainText();
        if (auto* button = qobject_cast<QAbstractButton*>(w))
            return button->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
        return QString();
    }
    // What several controls show, in order.
    QStringList shown(const QStringList& names)
    {
        QStringList texts;
        for (const QString& name : names)
            texts << shown(name);
        return texts;
    }
    QString rid() { return shown(QStringLiteral("lblRID")); }
    // Types into a field (focused), clicks a button, picks a combo's entry or pastes text.
    void set(const QString& name, const QString& value)
    {
        QWidget* w = get(name);
        if (auto* button = qobject_cast<QAbstractButton*>(w)) {
            button->click();
        } else if (auto* combo = qobject_cast<QComboBox*>(w)) {
            combo->setCurrentIndex(combo->findText(value));
            QVERIFY2(combo->currentIndex() >= 0, qPrintable(value));
        } else if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
            plain->setFocus();
            plain->selectAll();
            plain->insertPlainText(value); // as pasted: the test keyboard is ASCII only
        } else {
            w->setFocus();
            typeInto(screen, name, value);
        }
    }
    // Several controls, each "name=value", in order: set() moves the focus
    // from one to the next (the look-ups run), type() leaves it alone.
    void set(const QStringList& pairs)
    {
        for (const QString& pair : pairs)
            set(pair.section('=', 0, 0), pair.section('=', 1));
    }
    void type(const QStringList& pairs)
    {
        for (const QString& pair : pairs)
            type(pair.section('=', 0, 0), pair.section('=', 1));
    }
    void type(const QString& name, const QString& text) { typeInto(screen, name, text); }
    // Types a code and moves on to `next`, which has the screen look it up.
    void lookUp(const QString& field, const QString& code, const QString& next = QStringLiteral("txtDescrizione"))
    {
        get(field)->setFocus();
        type(field, code);
        get(next)->setFocus();
    }
    // Types and leaves the field with Tab.
    void enter(const QString& name, const QString& text) { testdb::enter(screen, name, text); }
    void tick(const QString& name, bool on) { get<QAbstractButton>(name)->setChecked(on); }
    void key(const QString& name, Qt::Key key)
    {
        get(name)->setFocus();
        QTest::keyClick(get(name), key);
    }
    // Brings forward the tab page that holds a control.
    void reveal(const QString& name)
    {
        QWidget* w = get(name);
        for (auto* tabs : screen.template findChildren<QTabWidget*>())
            for (int i = 0; i < tabs->count(); ++i)
                if (tabs->widget(i)->isAncestorOf(w))
                    tabs->setCurrentIndex(i);
    }
};

// A screen known only by its registered name, built as the menu builds it, in
// a window of its own: Screen<RegisteredScreen> s("frmBanche").
class RegisteredScreen : public QWidget
{
public:
    QWidget* record = nullptr;

    void startMe(const QString& name, const QVariant& argument = QVariant())
    {
        const screens::ScreenEntry* entry = screens::findScreen(name);
        QVERIFY2(entry, qPrintable(QStringLiteral("no screen ") + name));
        record = entry->create(this, argument);
        QVERIFY(record);
        (new QVBoxLayout(this))->addWidget(record);
        setWindowTitle(record->windowTitle());
    }
};

// Drives the search dialog: types the filter and takes the row found with Return.
inline ScriptedDialogs::Driver searchFor(const QString& filter)
{
    return [filter](QDialog& dialog) {
        auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
        QTest::keyClicks(field, filter);
        QTest::keyClick(field, Qt::Key_Return);
    };
}

} // namespace testdb
