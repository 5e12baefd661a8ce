#include "demo/demoscreens.h"

#include "common/msgbox.h"
#include "core/screenregistry.h"
#include "demo/datidimostrativi.h"
#include "demo/frmdatidimostrativi.h"

void registerDemoScreens()
{
    // Offered on an empty firm only: elsewhere the menu item says why not.
    screens::registerScreen(QStringLiteral("frmDatiDimostrativi"),
                            {screens::Kind::Dialog,
                             [](QWidget* parent, const QVariant&) -> QWidget* {
                                 if (const QString motivo = dittaNonVuota(); !motivo.isEmpty()) {
                                     msgBox(motivo, vb::Information);
                                     return nullptr;
                                 }
                                 return new frmDatiDimostrativi(parent);
                             },
                             true});
}
