#pragma once
// One per screen: receives the function keys of all the screen's input
// wrappers and passes F3 to F7 on to the screen's single handler.

#include <QObject>

class QKeyEvent;

// Function keys as the classic runtime numbers them.
namespace vbKey {
constexpr int F1 = 112;
constexpr int F2 = 113;
constexpr int F3 = 114;
constexpr int F4 = 115;
constexpr int F5 = 116;
constexpr int F6 = 117;
constexpr int F7 = 118;
} // namespace vbKey

class cKeyFunction : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Key codes as the classic runtime numbers them: F1 is 112, F3 114, F7 118.
    static int keyCodeOf(const QKeyEvent& event);
    // Shift state: 1 shift, 2 control, 4 alt, added together.
    static int shiftOf(const QKeyEvent& event);

    // Raises evtFunctionKeyPressed for F3 to F7 (114 to 118); any other key is dropped.
    // Returns true when the key was passed on.
    bool setFunctionKey(const QString& controlName, int keyCode, int shift);

Q_SIGNALS:
    void evtFunctionKeyPressed(const QString& controlName, int keyCode, int shift);
};
