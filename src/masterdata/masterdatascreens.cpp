#include "masterdata/masterdatascreens.h"

#include "core/screenregistry.h"
#include "masterdata/frmanagrafica.h"
#include "masterdata/frmcategoriasconti.h"
#include "masterdata/frmcausali.h"
#include "masterdata/frmdistintabase.h"
#include "masterdata/frmiva.h"
#include "masterdata/frmnumeratori.h"
#include "masterdata/frmopzioni.h"
#include "masterdata/frmpagamenti.h"
#include "masterdata/frmpianoconti.h"
#include "masterdata/frmprodotto.h"
#include "masterdata/frmrangesconti.h"
#include "masterdata/frmricercaconto.h"
#include "masterdata/frmrubrica.h"
#include "masterdata/frmtipodocumento.h"
#include "screens/framework/ctablescreen.h"
#include "screens/framework/frmsimpleform.h"

namespace {

// A record screen: on a new record from the menu, on the record whose key
// is the argument when another screen opens it. A single screen is opened
// once and raised after; the others open a new copy each time.
template <typename Screen> void registerRecordScreen(const char* name, bool keepCase, bool single)
{
    screens::registerScreen(QString::fromLatin1(name),
                            {screens::Kind::Child,
                             [keepCase](QWidget* parent, const QVariant& rid) -> QWidget* {
                                 auto* screen = new Screen(parent);
                                 screen->startMe(keepCase, rid.toInt() <= 0, rid.toInt());
                                 return screen;
                             },
                             single});
}

// A record screen that is its fields alone.
void registerTableScreen(const char* name, const char* title, const fields::FieldList& list)
{
    screens::registerScreen(QString::fromLatin1(name),
                            {screens::Kind::Child,
                             [=](QWidget* parent, const QVariant&) -> QWidget* {
                                 auto* screen = new cTableScreen(QString::fromLatin1(name), QString::fromLatin1(title),
                                                                 list, parent);
                                 screen->startMe(true, true, 0);
                                 return screen;
                             },
                             true});
}

} // namespace

void registerMasterdataScreens()
{
    registerRecordScreen<frmIva>("frmIva", false, true);
    registerRecordScreen<frmCausali>("frmCausali", true, false);
    registerRecordScreen<frmPianoConti>("frmPianoConti", true, true);
    registerRecordScreen<frmPagamenti>("frmPagamenti", true, true);
    registerRecordScreen<frmAnagrafica>("frmAnagrafica", true, true);
    registerRecordScreen<frmCategoriaSconti>("frmCategoriaSconti", false, true);
    registerRecordScreen<frmProdotto>("frmProdotto", true, false);
    registerRecordScreen<frmDistintaBase>("frmDistintaBase", true, true);
    registerRecordScreen<frmRubrica>("frmRubrica", true, true);

    using namespace fields;
    const unsigned required = Required | Trimmed;
    registerTableScreen(
        "frmBanche", "Banche",
        {QStringLiteral("Banche"),
         {field("CODICE", "txtCodice", "Codice", required),
          field("DESCRIZIONE", "txtDescrizione", "Descrizione", required), field("ABI", "txtABI", "ABI", Trimmed),
          field("CAB", "txtCAB", "CAB", Trimmed), field("CIN", "txtCIN", "CIN", Trimmed),
          field("AGENZIA", "txtAgenzia", "Agenzia", Trimmed), field("INDIRIZZO", "txtIndirizzo", "Indirizzo", Trimmed),
          field("CIVICO", "txtCivico", "Civico", Trimmed), field("CAP", "txtCAP", "CAP", Trimmed),
          field("CITTA", "txtCitta", "Città", Trimmed), field("PROVINCIA", "txtProvincia", "Provincia", Trimmed),
          field("TELEFONO", "txtTelefono", "Telefono", Trimmed), field("FAX", "txtFax", "Fax", Trimmed)}});
    registerTableScreen("frmVenditore", "Venditori",
                        {QStringLiteral("Venditori"),
                         {field("CODICE", "txtCodice", "Codice", required),
                          field("DESCRIZIONE", "txtDescrizione", "Descrizione", required),
                          field("CODICEEXTRA", "txtCodiceExtra", "Codice tessera", Trimmed)}});

    // The ranges of a category, for a brand or a product: the argument is
    // the category and the brand or product.
    for (const auto& [name, tipo] :
         {std::pair{"frmRangeSconti", TipoRange::Sconti}, std::pair{"frmRangePrezzi", TipoRange::Prezzi}}) {
        const TipoRange t = tipo;
        screens::registerScreen(QString::fromLatin1(name),
                                {screens::Kind::Child,
                                 [t](QWidget* parent, const QVariant& argument) -> QWidget* {
                                     auto* screen = new frmRangeSconti(t, parent);
                                     QVariantList a = argument.toList();
                                     if (argument.typeId() == QMetaType::QString) // "category,brand" from --open
                                         a = QVariant(argument.toString().split(QLatin1Char(','))).toList();
                                     screen->startMe(a.value(0).toInt(), a.value(1).toInt());
                                     return screen;
                                 },
                                 false});
    }

    // The account tree, also by itself from --open.
    screens::registerScreen(QStringLiteral("frmRicercaConto"),
                            {screens::Kind::Dialog,
                             [](QWidget* parent, const QVariant&) -> QWidget* {
                                 auto* dialog = new frmRicercaConto(parent);
                                 dialog->getData();
                                 return dialog;
                             },
                             true});

    // A settings dialog with OK and Annulla: modal over the main window.
    screens::registerScreen(QStringLiteral("frmOpzioni"),
                            {screens::Kind::Dialog,
                             [](QWidget* parent, const QVariant&) -> QWidget* { return new frmOpzioni(parent); },
                             true});

    // Descriptions keep their case: they are the captions of the document menu.
    registerRecordScreen<frmTipoDocumento>("frmTipoDocumento", true, false);

    screens::registerScreen(QStringLiteral("frmNumeratori"),
                            {screens::Kind::Child,
                             [](QWidget* parent, const QVariant&) -> QWidget* { return new frmNumeratori(parent); },
                             true});

    // One window per code table: the menu item is the argument.
    screens::registerScreen(QStringLiteral("frmSimpleForm"),
                            {screens::Kind::Child,
                             [](QWidget* parent, const QVariant& item) -> QWidget* {
                                 const SimpleFormUse use = simpleFormUse(item.toString());
                                 if (use.tabella.isEmpty())
                                     return nullptr;
                                 auto* screen = new frmSimpleForm(parent);
                                 screen->startMe(use.nome, use.titolo, use.tabella, false, true, 0);
                                 return screen;
                             },
                             true});
}
