#include "stock/stockscreens.h"

#include "core/screenregistry.h"
#include "stock/frmricalcologiacenze.h"

void registerStockScreens()
{
    screens::registerScreen(
        QStringLiteral("frmRicalcoloGiacenze"),
        {screens::Kind::Child,
         [](QWidget* parent, const QVariant&) -> QWidget* { return new frmRicalcoloGiacenze(parent); }, true});
}
