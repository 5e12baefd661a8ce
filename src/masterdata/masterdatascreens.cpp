#include "masterdatascreens.h"

#include "frmiva.h"
#include "screenregistry.h"

void registerMasterdataScreens()
{
    screens::registerScreen(QStringLiteral("frmIva"), {screens::Kind::Child, [](QWidget* parent, const QVariant&) -> QWidget* {
        auto* screen = new frmIva(parent);
        screen->startMe(false, true, 0);
        return screen;
    }, true});
}
