#include "screens/framework/appearance.h"

#include <QApplication>
#include <QPalette>

void applyAppearance()
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0xE6, 0xE6, 0xE6));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x80, 0x80));
    QApplication::setPalette(palette);
}
