#pragma once
// The control characters of the two Italian tax identifiers. These are
// control tests, not format tests: neither looks at the length nor at which
// kind of character stands where, and neither touches a database or a screen.
// The card of a counterparty turns a false into "Continuare?".

#include <QString>

// True when the 16th character of the personal tax code is the control
// letter of the first 15. Case-blind; a shorter text is padded with blanks
// (so it fails), a longer one is judged on its first 16 characters. A
// character outside the tables adds nothing and so shifts the sum.
bool checkCodiceFiscale(const QString& codice);

// True when the 11th character of the VAT number is the control digit of the
// first 10, in the Luhn manner without the final reduction modulo 10: a
// number whose right control digit is 0 is judged wrong, and so is the empty
// text. A character that is not a digit counts 0; a short text reads as
// zeros at the end.
bool checkPartitaIva(const QString& partitaIva);
