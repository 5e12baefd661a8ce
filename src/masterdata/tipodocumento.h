#pragma once
// A document type as the screen edits it, the checks before it is saved and
// the statements that read and write it. The rates travel as the screen
// shows them (Italian text); the flags are written 0 or 1.

#include <QString>
#include <QStringList>

class Recordset;

struct TipoDocumento
{
    QString codice;
    QString descrizione;
    QString descStampa;
    int fkCausale = 0;        // 0: none chosen
    int nContatore = 0;       // the numerator's key; 0: none chosen
    QString report;           // empty: none chosen
    bool accompagnatorio = false;
    bool mostraVB = false;
    bool nonStampareVB = false;
    bool stampaElencoSpeciale = false;
    bool modificaPrezzoAcquisto = false;
    bool usaPrezziIva = false;
    bool flexCounter = false;
    bool hideMenu = false;
    bool hideRicerca = false;
    bool usaRda = false;
    QString rda1;             // percent, "20,00"
    QString rda2;             // percent of the taxable amount
};

// The lines of controllaInserimento, all of them, in the screen's order.
QStringList tipoDocumentoFaults(const TipoDocumento& td);

// The read of the screen, without WHERE and ORDER BY: a type shows only with
// a valid numerator; the causal's code and description come along (CODCAUSALE,
// DESCCAUSALE). Columns keep their names, so RID and CODICE can be filtered.
QString tipoDocumentoSelect();
// The row read by tipoDocumentoSelect as a type.
TipoDocumento tipoDocumentoFromRecord(const Recordset& rs);

QString tipoDocumentoInsert(const TipoDocumento& td);
QString tipoDocumentoUpdate(const TipoDocumento& td, int rid);

// The search list of this screen: every type, hidden ones too.
QString tipoDocumentoSearch();
// The search list of the causals.
QString causaleSearch();
// The numerators of the combo (key, description).
QString numeratoriCombo();
// The report files offered for a function (1: documents), in key order.
QString reportFunzionalita(int funzionalita);
