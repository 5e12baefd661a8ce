#pragma once
// The prints that the screens start: the list prints of the menu
// (customers, suppliers, products) and the print of a stored document from
// its screen, with the preview or straight to the printer of its type.

#include <QDate>

class QComboBox;

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

// Fills the combo with the templates of a function (1 documents, 2 product
// summary, 3 account statement, 4 sell-out, 5 special list), in key order;
// the item's data is the row's key. False when the read failed (told).
bool fillCmbReport(int funzionalita, QComboBox* combo);
