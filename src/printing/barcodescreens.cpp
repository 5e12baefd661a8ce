#include "printing/barcodescreens.h"

#include "core/screenregistry.h"
#include "printing/frmgenerabarcode.h"
#include "printing/frmstampabarcode.h"

void registerBarcodeScreens()
{
    screens::registerScreen(
        QStringLiteral("frmGeneraBarCodeIntoProdotti"),
        {screens::Kind::Child,
         [](QWidget* parent, const QVariant&) -> QWidget* { return new frmGeneraBarCodeIntoProdotti(parent); }, true});
    // From the menu without argument; from a document with its products
    // (another list, another window).
    screens::registerScreen(QStringLiteral("frmStampaBarCode"),
                            {screens::Kind::Child,
                             [](QWidget* parent, const QVariant& argomento) -> QWidget* {
                                 auto* screen = new frmStampaBarCode(parent);
                                 screen->startMe(argomento.toString());
                                 return screen;
                             },
                             true});
}
