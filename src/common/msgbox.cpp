#include "common/msgbox.h"

#include "common/dialoggate.h"
#include "common/errorlog.h"

#include <QTextStream>

#include <cstdio>

namespace {
MsgBoxHandler& currentHandler()
{
    static MsgBoxHandler handler;
    return handler;
}
} // namespace

QString applicationTitle() { return QStringLiteral("prgOrvantis"); }

int defaultAnswer(int style)
{
    const int buttons = style & 0x7;
    const int which = (style & 0x300) >> 8; // 0 first, 1 second, 2 third
    switch (buttons) {
    case vb::OKCancel: return which == 1 ? vb::Cancel : vb::OK;
    case vb::AbortRetryIgnore: return which == 1 ? vb::Retry : which == 2 ? vb::Ignore : vb::Abort;
    case vb::YesNoCancel: return which == 1 ? vb::No : which == 2 ? vb::Cancel : vb::Yes;
    case vb::YesNo: return which == 1 ? vb::No : vb::Yes;
    case vb::RetryCancel: return which == 1 ? vb::Cancel : vb::Retry;
    default: return vb::OK;
    }
}

int msgBox(const QString& prompt, int style, const QString& title)
{
    const QString shownTitle = title.isEmpty() ? applicationTitle() : title;
    if (dialogGate::isClosed()) {
        if ((style & 0x7) == vb::OKOnly) {
            dialogGate::hold(QString::number(style) + QLatin1Char('|') + prompt,
                             [prompt, style, title] { msgBox(prompt, style, title); });
            return vb::OK;
        }
        // A fault of the program: reported (after the transaction), and the
        // default button answers.
        Err().raise(5, QStringLiteral("msgBox"), QStringLiteral("Domanda durante una transazione: ") + prompt);
        notifyError(QStringLiteral("msgBox"), QStringLiteral("msgBox"), QString(), false);
        return defaultAnswer(style);
    }
    if (const MsgBoxHandler& handler = currentHandler())
        return handler(prompt, style, shownTitle);
    QTextStream(stderr) << shownTitle << ": " << prompt << '\n';
    return defaultAnswer(style);
}

MsgBoxHandler setMsgBoxHandler(MsgBoxHandler handler)
{
    MsgBoxHandler previous = std::move(currentHandler());
    currentHandler() = std::move(handler);
    return previous;
}
