#pragma once
// A control given its objectName as it is built: the name by which tests and
// the screen's own code find it.

#include <QString>

template <typename W> W* named(W* widget, const char* name)
{
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}
