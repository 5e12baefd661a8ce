#include "core/dialogservice.h"

#include "common/msgbox.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QUrl>

namespace dialogs {

namespace {
Responder* g_responder = nullptr;
QPointer<QWidget> g_owner;

struct ButtonSpec
{
    int answer;
    QString caption;
    QMessageBox::ButtonRole role;
};

QList<ButtonSpec> buttonsFor(int style)
{
    const ButtonSpec ok{vb::OK, QStringLiteral("OK"), QMessageBox::AcceptRole};
    const ButtonSpec cancel{vb::Cancel, QStringLiteral("Annulla"), QMessageBox::RejectRole};
    const ButtonSpec yes{vb::Yes, QStringLiteral("&Sì"), QMessageBox::YesRole};
    const ButtonSpec no{vb::No, QStringLiteral("&No"), QMessageBox::NoRole};
    const ButtonSpec abort{vb::Abort, QStringLiteral("&Interrompi"), QMessageBox::RejectRole};
    const ButtonSpec retry{vb::Retry, QStringLiteral("&Riprova"), QMessageBox::AcceptRole};
    const ButtonSpec ignore{vb::Ignore, QStringLiteral("I&gnora"), QMessageBox::AcceptRole};
    switch (style & 0x7) {
    case vb::OKCancel: return {ok, cancel};
    case vb::AbortRetryIgnore: return {abort, retry, ignore};
    case vb::YesNoCancel: return {yes, no, cancel};
    case vb::YesNo: return {yes, no};
    case vb::RetryCancel: return {retry, cancel};
    default: return {ok};
    }
}

QMessageBox::Icon iconFor(int style)
{
    switch (style & 0x70) {
    case vb::Critical: return QMessageBox::Critical;
    case vb::Question: return QMessageBox::Question;
    case vb::Exclamation: return QMessageBox::Warning;
    case vb::Information: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

QWidget* parentOr(QWidget* parent)
{
    if (parent)
        return parent;
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return g_owner.data();
}
} // namespace

int showMessageBox(QWidget* parent, const QString& prompt, int style, const QString& title)
{
    QMessageBox box(parentOr(parent));
    box.setWindowTitle(title.isEmpty() ? applicationTitle() : title);
    box.setText(QString(prompt)
                    .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
                    .replace(QLatin1Char('\r'), QLatin1Char('\n')));
    box.setIcon(iconFor(style));
    const QList<ButtonSpec> specs = buttonsFor(style);
    const int defaultIndex = qMin(int((style & 0x300) >> 8), int(specs.size()) - 1);
    QList<QPushButton*> buttons;
    for (const ButtonSpec& spec : specs)
        buttons.append(box.addButton(spec.caption, spec.role));
    box.setDefaultButton(buttons.at(defaultIndex));
    // Esc answers like the window's close button: Cancel, No, or the only button.
    for (qsizetype i = 0; i < specs.size(); ++i) {
        if (specs.at(i).answer == vb::Cancel || (specs.at(i).answer == vb::No && specs.size() == 2))
            box.setEscapeButton(buttons.at(i));
    }
    if (specs.size() == 1)
        box.setEscapeButton(buttons.first());
    box.exec();
    const qsizetype chosen = buttons.indexOf(qobject_cast<QPushButton*>(box.clickedButton()));
    return chosen >= 0 ? specs.at(chosen).answer : defaultAnswer(style);
}

void install()
{
    setMsgBoxHandler([](const QString& prompt, int style, const QString& title) {
        if (g_responder)
            return g_responder->message(prompt, style, title);
        QApplication::restoreOverrideCursor();
        return showMessageBox(nullptr, prompt, style, title);
    });
}

Responder* setResponder(Responder* responder)
{
    Responder* previous = g_responder;
    g_responder = responder;
    return previous;
}

int exec(QDialog& dialog)
{
    if (g_responder) {
        dialog.show();
        const int result = g_responder->dialog(dialog);
        dialog.hide();
        return result;
    }
    return dialog.exec();
}

QString getOpenFileName(QWidget* parent, const QString& caption, const QString& folder, const QString& filter)
{
    if (g_responder)
        return g_responder->fileChoice(FileChoice::Open, caption, filter);
    return QFileDialog::getOpenFileName(parentOr(parent), caption, folder, filter);
}

QString getSaveFileName(QWidget* parent, const QString& caption, const QString& folder, const QString& filter)
{
    if (g_responder)
        return g_responder->fileChoice(FileChoice::Save, caption, filter);
    return QFileDialog::getSaveFileName(parentOr(parent), caption, folder, filter);
}

QString getExistingDirectory(QWidget* parent, const QString& caption, const QString& folder)
{
    if (g_responder)
        return g_responder->fileChoice(FileChoice::Folder, caption, QString());
    return QFileDialog::getExistingDirectory(parentOr(parent), caption, folder);
}

bool openUrl(const QUrl& url)
{
    if (g_responder) {
        g_responder->openUrl(url);
        return true;
    }
    return QDesktopServices::openUrl(url);
}

QWidget* ownerWindow() { return g_owner.data(); }

void setOwnerWindow(QWidget* window) { g_owner = window; }

} // namespace dialogs
