#include "masterdatascreens.h"

#include "ctablescreen.h"
#include "frmcausali.h"
#include "frmiva.h"
#include "frmnumeratori.h"
#include "frmopzioni.h"
#include "frmpianoconti.h"
#include "frmricercaconto.h"
#include "frmtipodocumento.h"
#include "frmsimpleform.h"
#include "screenregistry.h"

namespace {

// A record screen: on a new record from the menu, on the record whose key
// is the argument when another screen opens it.
template <typename Screen>
void registerRecordScreen(const char* name, bool keepCase)
{
    screens::registerScreen(QString::fromLatin1(name), {screens::Kind::Child, [keepCase](QWidget* parent, const QVariant& rid) -> QWidget* {
        auto* screen = new Screen(parent);
        screen->startMe(keepCase, rid.toInt() <= 0, rid.toInt());
        return screen;
    }, true});
}

// A record screen of plain text columns.
void registerTableScreen(const char* name, const char* title, const char* table, QList<TableColumn> columns)
{
    screens::registerScreen(QString::fromLatin1(name), {screens::Kind::Child, [=](QWidget* parent, const QVariant&) -> QWidget* {
        auto* screen = new cTableScreen(QString::fromLatin1(name), QString::fromLatin1(title), QString::fromLatin1(table),
                                        columns, parent);
        screen->startMe(true, true, 0);
        return screen;
    }, true});
}

} // namespace

void registerMasterdataScreens()
{
    registerRecordScreen<frmIva>("frmIva", false);
    registerRecordScreen<frmCausali>("frmCausali", true);
    registerRecordScreen<frmPianoConti>("frmPianoConti", true);

    registerTableScreen("frmBanche", "Banche", "Banche",
                        {{"CODICE", "Codice:", "txtCodice", 140},
                         {"DESCRIZIONE", "Descrizione:", "txtDescrizione"},
                         {"ABI", "ABI:", "txtABI", 90},
                         {"CAB", "CAB:", "txtCAB", 90},
                         {"CIN", "CIN:", "txtCIN", 50},
                         {"AGENZIA", "Agenzia:", "txtAgenzia"},
                         {"INDIRIZZO", "Indirizzo:", "txtIndirizzo"},
                         {"CIVICO", "Civico:", "txtCivico", 90},
                         {"CAP", "CAP:", "txtCAP", 90},
                         {"CITTA", "Città:", "txtCitta"},
                         {"PROVINCIA", "Provincia:", "txtProvincia", 50},
                         {"TELEFONO", "Telefono:", "txtTelefono", 200},
                         {"FAX", "Fax:", "txtFax", 200}});
    registerTableScreen("frmVenditore", "Venditori", "Venditori",
                        {{"CODICE", "Codice:", "txtCodice", 140},
                         {"DESCRIZIONE", "Descrizione:", "txtDescrizione"},
                         {"CODICEEXTRA", "Codice tessera:", "txtCodiceExtra", 200}});

    // The account tree, also by itself from --open.
    screens::registerScreen(QStringLiteral("frmRicercaConto"), {screens::Kind::Dialog, [](QWidget* parent, const QVariant&) -> QWidget* {
        auto* dialog = new frmRicercaConto(parent);
        dialog->getData();
        return dialog;
    }, true});

    // A settings dialog with OK and Annulla: modal over the main window.
    screens::registerScreen(QStringLiteral("frmOpzioni"), {screens::Kind::Dialog, [](QWidget* parent, const QVariant&) -> QWidget* {
        return new frmOpzioni(parent);
    }, true});

    // Descriptions keep their case: they are the captions of the document menu.
    registerRecordScreen<frmTipoDocumento>("frmTipoDocumento", true);

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
