#include "masterdatascreens.h"

#include "frmiva.h"
#include "frmnumeratori.h"
#include "frmtipodocumento.h"
#include "frmsimpleform.h"
#include "screenregistry.h"

void registerMasterdataScreens()
{
    screens::registerScreen(QStringLiteral("frmIva"), {screens::Kind::Child, [](QWidget* parent, const QVariant&) -> QWidget* {
        auto* screen = new frmIva(parent);
        screen->startMe(false, true, 0);
        return screen;
    }, true});

    screens::registerScreen(QStringLiteral("frmTipoDocumento"), {screens::Kind::Child, [](QWidget* parent, const QVariant&) -> QWidget* {
        auto* screen = new frmTipoDocumento(parent);
        // Descriptions keep their case: they are the captions of the document menu.
        screen->startMe(true, true, 0);
        return screen;
    }, true});

    screens::registerScreen(QStringLiteral("frmNumeratori"), {screens::Kind::Child, [](QWidget* parent, const QVariant&) -> QWidget* {
        return new frmNumeratori(parent);
    }, true});

    // One window per code table: the menu item is the argument.
    screens::registerScreen(QStringLiteral("frmSimpleForm"), {screens::Kind::Child, [](QWidget* parent, const QVariant& item) -> QWidget* {
        const SimpleFormUse use = simpleFormUse(item.toString());
        if (use.tabella.isEmpty())
            return nullptr;
        auto* screen = new frmSimpleForm(parent);
        screen->startMe(use.nome, use.titolo, use.tabella, false, true, 0);
        return screen;
    }, true});
}
