#pragma once
// EAN-13 barcodes: the check digit, and the text that a barcode font shows
// as the symbol (stored in Prodotti.EAN13CODE and printed on labels).

#include <QString>

// The check digit of the first 12 digits (weights 1 and 3 from the left);
// -1 when the text has fewer than 12 characters. A character that is not a
// digit counts 0.
qint16 getEAN13ChekDigit(const QString& codice);

// The font text of a 13-digit code: the first digit, the left half in the
// sets A (letters from 'A') and B (from 'K') as the first digit chooses, the
// centre "*", the right half in set C (from 'a') and the end mark "+".
// Callers pass 13 digits; nothing is checked here.
QString EncodeEAN13(const QString& codice);

// The 95 modules of the symbol ('1' dark, '0' light) with the digits it
// shows, from 13 digits or from the font text above; an empty result for
// anything else. Lets a report draw the bars without the font.
struct ModuliEAN13
{
    QString moduli;
    QString cifre;
};
ModuliEAN13 moduliEAN13(const QString& codiceOFont);
