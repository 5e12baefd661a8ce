#pragma once
// What the typed input fields accept and how they format their text when
// the user leaves them. Plain functions on text, so that the rules can be
// tested without widgets; cTextBox applies them to a line edit.

#include <QChar>
#include <QString>

namespace typedinput {

// The data kind of a field (cTextBox::TypeFormat).
enum Kind : qint16 {
    Testo = 0,               // free text
    Data = 1,                // date
    Intero = 2,              // whole number, "###,##0"
    Decimale = 3,            // decimal number
    Ora = 4,                 // time
    EspressioneData = 5,     // date expression ("+30")
    InteroLibero = 6,        // whole number, left as typed
    InteroNonFormattato = 7, // whole number, right aligned, left as typed
    InteroZero = 8,          // whole number, empty becomes 0
    DecimaleZero = 9         // decimal number, empty becomes 0
};

// The characters a kind accepts; empty means any. Carriage return and
// backspace are always accepted.
QString allowedCharacters(int kind);

// Kinds 2, 3, 7, 8 and 9 align their text right.
bool alignsRight(int kind);

// The maximum length a kind imposes: the date format's length for dates, 8
// for times, -1 otherwise.
int maxLength(int kind, const QString& dateFormat);

// The character that a key press puts in the field: "." becomes "," in the
// decimal kinds, the case rule applies. A null QChar means the key is refused.
// `text` is the field's text and `selectionCoversAll` whether the selection
// spans all of it (a minus goes only in front).
QChar filterKeyPress(int kind, int caseState, const QString& text, bool selectionCoversAll, QChar typed);

struct Validation
{
    QString text;    // the field's text afterwards
    bool raiseEvent; // evtContentValidate follows
};

// The formatting on leaving a field (contentValidate).
Validation contentValidate(int kind, const QString& text, int decimalPrecision, bool separatoreMigliaia,
                           const QString& dateFormat);

// A classic date format ("DD/MM/YYYY") as a Qt date format ("dd/MM/yyyy").
QString qtDateFormat(const QString& dateFormat);

} // namespace typedinput
