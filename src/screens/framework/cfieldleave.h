#pragma once
// Tells a screen that the cursor left one of its fields for another of its
// controls: the Validate step of the field. The handler may refuse, and the
// cursor goes back; a command button that took the focus then must not run,
// which the screen asks with refused(). Going to another window is no
// leaving: the field still has the cursor when the user comes back.

#include <QMetaObject>
#include <QObject>

#include <functional>

class QWidget;

class cFieldLeave : public QObject
{
public:
    // handler(old): false keeps the cursor in `old`.
    cFieldLeave(QWidget* screen, std::function<bool(QWidget* old)> handler);
    ~cFieldLeave() override;

    // Whether the last leaving was refused; asking forgets it.
    bool takeRefused() { return std::exchange(m_refused, false); }
    void clearRefused() { m_refused = false; }

private:
    QMetaObject::Connection m_watch;
    bool m_refocusing = false;
    bool m_refused = false;
};
