#pragma once
// A document as the document screen holds it beside its rows: the header,
// what its type and causal say about it, and the counterparty's terms. Here
// is what reads them from the database and the delete of a whole document;
// the screen only shows and asks.

#include "common/currency.h"
#include "documents/spedizione.h"

#include <QDate>
#include <QString>

class GrigliaDocumento;

// The kinds of origin and destination of a causal.
namespace lato {
constexpr int Nessuno = 0, Cliente = 1, Fornitore = 2, Magazzino = 3;
}

// What the document type and its causal say.
struct InfoDocumento
{
    int tipo = 0;
    int causale = 0;
    bool accompagnatorio = false; // goods travel with it: shipping details
    int numeratore = 0;
    QString report;
    bool operazione = false; // moves stock
    int origine = lato::Nessuno, destinazione = lato::Nessuno;
    bool generaScad = false, scadenzeNegative = false, generaPn = false;
    bool taglio = false;                      // cost lots by the row's net price (not with the moving average)
    int magazzinoOrig = 0, magazzinoDest = 0; // the causal's default warehouses

    // Warehouse to warehouse: no prices.
    bool trasferimento() const { return origine == lato::Magazzino && destinazione == lato::Magazzino; }
};

// Reads the type and its causal; false when the type is not there (or the
// read failed, already told).
bool getInfoDocumento(int tipoDocumento, InfoDocumento& info);

// A coded field as the screen shows it: key, code and the label beside it.
struct Codificato
{
    int rid = 0;
    QString codice, descrizione;
};

// The payment term, bank and discount of a counterparty.
struct InfoContropartita
{
    Codificato pagamento, banca;
    Currency sconto;
};
bool getInfoContropartita(int ridAnagrafica, InfoContropartita& info);

// The header of a document.
struct TestataDocumento
{
    int rid = 0;
    int progressivo = 0;
    int anno = 0;
    QDate data;
    QString numeroOriginale;
    QDate dataOriginale;
    Codificato tipo;
    // Kinds of origin and destination of the document's causal as it is
    // now; -1 when the causal is gone (the fields then stay empty).
    int tipoOrigine = -1, tipoDestinazione = -1;
    Codificato origine, destinazione; // a warehouse or a counterparty, by kind
    Codificato pagamento, banca;
    QString riferimenti, codPartita;
    QDate dataStampa;
    int primaNota = 0, pnPagamento = 0, progElencoSpeciale = 0;
    DatiSpedizione spedizione;
    QString rda1 = QStringLiteral("0"), rda2 = QStringLiteral("0");
    bool usaPrezziIva = false;
    QString denominazione; // the counterparty's name, for the caption
};

// The stored header by key (rid above 0) or by number, year and type.
// False when no document answers (or the read failed).
bool leggiTestata(int rid, int progressivo, int anno, int tipo, TestataDocumento& testata);

// The stored rows into the grid, in their stored order, kit parents with the
// sums of their children; stored rows of products deleted since are not
// shown. False when the read failed.
bool leggiRighe(int ridMovimento, GrigliaDocumento& griglia, int decimali, const QString& carattereDistinta);

// The question before a delete.
QString domandaEliminazione(const QString& tipo, int progressivo);
// Deletes the document, its rows, its journal entries and due dates, and
// gives its stock back as its rows stand stored, in one transaction. False
// when anything failed, or another workstation deleted it first: nothing is
// changed then.
bool eliminaDocumento(const TestataDocumento& testata, const InfoDocumento& info);

// The question when a printed document is about to change; empty when it
// was never printed.
QString domandaDataStampa(const QDate& dataStampa);
// The first print of a document: its date is written.
bool updateDataStampa(int ridMovimento, const QDate& oggi);
// The print date as stored now (another workstation may have printed the
// document since it was loaded); invalid for none or a failed read.
QDate leggiDataStampa(int ridMovimento);
