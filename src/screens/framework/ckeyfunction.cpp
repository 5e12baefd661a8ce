#include "screens/framework/ckeyfunction.h"

#include <QKeyEvent>

int cKeyFunction::keyCodeOf(const QKeyEvent& event)
{
    const int key = event.key();
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 112 + (key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Up: return 38;
    case Qt::Key_Down: return 40;
    case Qt::Key_Left: return 37;
    case Qt::Key_Right: return 39;
    case Qt::Key_Delete: return 46;
    default: return key < 128 ? key : 0;
    }
}

int cKeyFunction::shiftOf(const QKeyEvent& event)
{
    int shift = 0;
    if (event.modifiers() & Qt::ShiftModifier)
        shift |= 1;
    if (event.modifiers() & Qt::ControlModifier)
        shift |= 2;
    if (event.modifiers() & Qt::AltModifier)
        shift |= 4;
    return shift;
}

bool cKeyFunction::setFunctionKey(const QString& controlName, int keyCode, int shift)
{
    if (keyCode < vbKey::F3 || keyCode > vbKey::F7)
        return false;
    Q_EMIT evtFunctionKeyPressed(controlName, keyCode, shift);
    return true;
}
