#pragma once
// The journal engine: a document enters the journal as one entry of at most
// four lines (Dare 1, Dare 2, Avere 1, Avere 2) made from its total, its VAT
// and its withholding, on the accounts of its causal. Everything runs inside
// the caller's transaction; a failure asks the caller to roll back.

#include "common/currency.h"

#include <QDate>
#include <QString>

// The control accounts of customers and suppliers (options ContoClienti and
// ContoFornitori): a withholding is taken off the line that stands on them.
struct ContiControparti
{
    int clienti = 0;
    int fornitori = 0;
};

// The accounts of a causal.
struct ContiCausale
{
    int dare1 = 0;
    int dare2 = 0;
    int avere1 = 0;
    int avere2 = 0;
};

// The lines of an entry: an account of 0 writes no line.
struct RighePrimaNota
{
    ContiCausale conti;
    Currency dare1, dare2, avere1, avere2;
};

// The mapping from a document's amounts to the lines.
RighePrimaNota calcolaRighe(const ContiCausale& causale, Currency importo, Currency importoIva, Currency importoRda,
                            const ContiControparti& controparti);

struct DatiPrimaNota
{
    int rid = 0; // below 1: a new entry
    int fkCausale = 0;
    int fkAnagrafe = 0;
    QString descrizione;
    QString riferimenti;
    Currency importo;
    QDate data;
    QDate dataValuta;
    Currency importoIva;
    Currency importoRda;
    int fkPagamento = 0;
    QString codicePartita;
    QString numDocumento;
};

// Writes the entry and its lines; the entry's key, or -1 on a failure. A
// date that is no date or amounts whose lines leave the range of an amount
// write nothing: their message waits for the end of the transaction.
int salvaPrimaNota(const DatiPrimaNota& dati, const ContiControparti& controparti);

// Rewrites the lines of an entry: "#" done, "" a failure already reported,
// any other text a message for the caller.
QString saveDettagliPrimaNota(int ridPrimaNota, int fkCausale, Currency importo, Currency importoIva,
                              Currency importoRda, const ContiControparti& controparti);

// New amounts for an existing entry, its lines rewritten on its own causal:
// rid on success, 0 for no entry or a failed update, -1 on other failures.
int modificaImportoPrimaNota(int rid, Currency importo, Currency importoIva, Currency importoRda,
                             const ContiControparti& controparti);

// The next number of the calendar year of the date, under the lock of the
// year's counter until the caller's transaction ends; -1 when it cannot be
// read or no transaction is open (a failure reported).
int getNewProgressivoPrimaNota(const QDate& data);

// The number of an entry, 0 when it cannot be read.
int getProgPrimaNotaByID(int rid);
