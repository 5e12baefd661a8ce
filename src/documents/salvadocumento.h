#pragma once
// The save of a document: its header, its rows with their stock, the
// journal entry and the due dates, all in one transaction. A failure rolls
// everything back and leaves the document on the screen as it was, so the
// save can be tried again. The questions come before: nothing here asks
// while the transaction is open.

#include "documents/documento.h"
#include "documents/totalidocumento.h"

#include <QStringList>

class GrigliaDocumento;

// The document as the screen holds it when it is saved.
struct DocumentoDaSalvare
{
    TestataDocumento testata; // rid 0 for a new document; origin and destination by the kinds of `info`
    InfoDocumento info;
    bool stampaElencoSpeciale = false; // the type numbers its special list
    TotaliDocumento totali;
};

// The counterparty of the document: the origin when it is a customer or
// supplier, else the destination when it is one; 0 for none.
int controparteDi(const DocumentoDaSalvare& documento);

// The faults that keep a document from being saved, one line each
// (" - Campo [Data] Obbligatorio."); none when it may be saved.
QStringList controllaInserimento(const DocumentoDaSalvare& documento, const GrigliaDocumento& griglia);

// Whether the journal entry of a stored document is rewritten needs asking
// (the entry is locked by the options); the question is put before the save.
bool chiedeAggiornamentoPrimaNota(const DocumentoDaSalvare& documento);
QString domandaAggiornamentoPrimaNota();

// Saves the document; `aggiornaPrimaNota` is the answer to the question
// above (true when it was not asked). On success the header gets its key,
// number, match code and journal entry, and true comes back; on failure
// nothing is written and the reason has been told.
bool salvaDocumento(DocumentoDaSalvare& documento, GrigliaDocumento& griglia, bool aggiornaPrimaNota);
