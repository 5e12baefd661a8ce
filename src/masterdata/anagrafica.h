#pragma once
// Customers and suppliers: the card number, the test of codes already in
// use, and the privacy notice of a card. No widgets: the card screen asks
// and shows.

#include <QString>

class QDate;

// The next card number: customers and suppliers draw from one sequence.
// Only inside the save's transaction; -1 on a failure already reported.
int getProgressivo();

// The cards of the same kind ('C' or 'F') that hold the tax code or the VAT
// number, one line each: "0007 - Rossi S.r.l." and a carriage return. Empty
// when both codes are empty or nobody holds them.
QString anagraficheConCodici(const QString& codiceFiscale, const QString& partitaIva, const QString& tipo);

// What the notice puts in place of its placeholders.
struct DatiInformativa
{
    QString nominativo, indirizzo, civico, cap, citta, provincia, partitaIva;
};

// The notice text with the card's data in place of "@NOMINATIVO" and the
// others, the date of the day for "@DATA", and the rich-text escapes of the
// accented vowels written as vowel and apostrophe.
QString preparaRichText(const QString& testo, const DatiInformativa& dati, const QDate& oggi);

// The notice as the firm keeps it (table Informativa).
QString testoInformativa();

// The notice as printed for this card, where the report reads it.
bool salvaInformativa(int rid, const QString& testo);
