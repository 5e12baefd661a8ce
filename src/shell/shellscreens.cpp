#include "shell/shellscreens.h"

#include "core/screenregistry.h"
#include "shell/frmcambiapw.h"
#include "shell/frminformazioni.h"
#include "shell/frmoptionserver.h"
#include "shell/frmpw.h"

namespace {
template <typename Dialog> void registerDialog(const QString& name)
{
    screens::registerScreen(name,
                            {screens::Kind::Dialog,
                             [](QWidget* parent, const QVariant&) -> QWidget* { return new Dialog(parent); }, true});
}
} // namespace

void registerShellScreens()
{
    registerDialog<frmOptionServer>(QStringLiteral("frmOptionServer"));
    registerDialog<frmCambiaPW>(QStringLiteral("frmCambiaPW"));
    registerDialog<frmInformazioni>(QStringLiteral("frmInformazioni"));
    registerDialog<frmPw>(QStringLiteral("frmPw"));
}
