#pragma once
// The fields of the options screen, without widgets: which option each
// control edits, of what kind, on which tab, and for the key fields the
// table behind them, the look-up that checks a code and the statement of
// the search. The screen builds and fills its controls from this list.

#include "screens/services/fieldlist.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace opzioni {

// The frames of the screen, in the order of the tabs; Promozioni is the
// order-conversion frame, kept off the tabs.
enum Frame {
    Generali,
    Conti,
    Prodotti,
    VenditaBanco,
    DistintaBase,
    Logo,
    ElencoSpeciale,
    Promozioni
};

enum class Controllo {
    Testo,          // free text
    Anno,           // a year: digits, no thousands dot
    Intero,         // whole number
    Chiave,         // code of a row of another table, with browse button and description
    Flag,           // check box
    Opzione,        // one option button of a pair, a flag of its own
    OpzioniIndice,  // an array of option buttons, the option is the index
    TestoMultiriga, // text over several lines
    ComboReport,    // a report file of the report folder
    ComboNumeratore // a numerator, by key
};

// An option is a field like those of the record screens (fieldlist.h): its
// column is the option's NOME (or the machine setting's key), its caption
// the text shown beside or on the control, its length and look-up the
// field's; the options add how the control looks and where it stands.
struct Campo : fields::Field
{
    Controllo tipo = Controllo::Testo;
    Frame frame = Generali;
    bool macchina = false; // a machine option, kept in the settings store
    QString contenitore;   // the panel a check box shows (pctPrezzoMedio)
    int sfoglia = -1;      // index of cmdSfoglia, key fields

    // The description label of a key field: txtCliente gives lblCliente.
    QString etichettaDescrizione() const;
};

// Every field, in the order in which the screen shows them.
const QList<Campo>& campi();
const Campo* campo(const QString& controllo);

// The captions of the option buttons of TipoStampaDistinta, by value.
QStringList captionsDistintaBase();

// A check box and what it governs: a panel shown, or a control enabled.
struct Dipendenza
{
    const char* check;
    const char* dipendente;
    bool mostra; // true shows/hides, false enables/disables
};
const QList<Dipendenza>& dipendenze();

// Looks the field's code up (or its key, with an empty code): the code comes
// back empty, after the box, when it does not exist.
bool valida(const Campo& campo, QString& codice, QString& descrizione, int& rid);

// The caption of a frame's tab, its objectName, and the field that takes
// the focus when its tab is chosen (empty for none).
QString captionFrame(Frame frame);
QString nomeFrame(Frame frame);
QString primoCampo(Frame frame);

// The report templates of the report folder ("*.rpt"), sorted by name.
QStringList fileReport(const QString& cartella);

} // namespace opzioni
