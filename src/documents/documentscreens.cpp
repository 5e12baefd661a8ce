#include "documents/documentscreens.h"

#include "core/screenregistry.h"
#include "documents/frmdettagliospedizione.h"
#include "documents/frmmovimento.h"

void registerDocumentScreens()
{
    // The argument is the document type of the menu item (0: any type), or
    // "D" and the key of a stored document to show.
    screens::registerScreen(QStringLiteral("frmMovimento"),
                            {screens::Kind::Child,
                             [](QWidget* parent, const QVariant& argomento) -> QWidget* {
                                 auto* screen = new frmMovimento(parent);
                                 const QString testo = argomento.toString();
                                 if (testo.startsWith(QLatin1Char('D')))
                                     screen->startMe(testo.mid(1).toInt(), 0);
                                 else
                                     screen->startMe(0, argomento.toInt());
                                 return screen;
                             },
                             false});
    registerSpedizioneScreen();
}
