#pragma once
// The prints that the screens start: the list prints of the menu
// (customers, suppliers, products) and the print of a stored document from
// its screen, with the preview or straight to the printer of its type.

#include <QDate>

// Registers the list prints under the names the menu uses.
void registerPrintScreens();

// Prints the stored document `rid`: the preview, or, with
// `nonMostrareAnteprima`, straight to the printer of its type (one copy).
// A document printed for the first time gets today as its print date.
// Gives the document's print date after the print; invalid when nothing
// was printed (an unsaved document, a failure already told).
QDate stampaDocumentoDaSchermata(int rid, bool nonMostrareAnteprima);

// The same for the special list of the document.
QDate stampaElencoSpecialeDaSchermata(int rid, bool nonMostrareAnteprima);
