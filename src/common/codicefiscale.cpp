#include "common/codicefiscale.h"

namespace {

// The value of one character as numeric conversion gives it: 0 for anything
// that is not a digit, and for a position past the end.
int cifra(const QString& text, int position)
{
    if (position > text.size())
        return 0;
    const QChar c = text.at(position - 1);
    return c >= QLatin1Char('0') && c <= QLatin1Char('9') ? c.unicode() - '0' : 0;
}

// The 1-based position of c in table, 0 when absent.
int posizione(QLatin1StringView table, QChar c) { return int(table.indexOf(c)) + 1; }

} // namespace

bool checkCodiceFiscale(const QString& codice)
{
    // The odd-position tables: a digit's value is where it stands in the text
    // with the blanks, a letter's where it stands in the letter table.
    static constexpr QLatin1StringView kDispariCifre("10   2 3 4   5 6 7 8 9    ");
    static constexpr QLatin1StringView kDispariLettere("BAKPLCQDREVOSFTGUHMINJWZYX");
    static constexpr QLatin1StringView kCifre("0123456789");
    static constexpr QLatin1StringView kLettere("ABCDEFGHIJKLMNOPQRSTUVWXYZ");

    // Upper case one character at a time, so that no letter grows into two.
    QString s = codice.left(16);
    for (QChar& c : s)
        c = c.toUpper();
    s = s.leftJustified(16, QLatin1Char(' '));

    int totale = 0;
    for (int i = 1; i <= 15; ++i) {
        const QChar c = s.at(i - 1);
        const bool cifra = c >= QLatin1Char('0') && c <= QLatin1Char('9');
        const bool lettera = c >= QLatin1Char('A') && c <= QLatin1Char('Z');
        if (i % 2 == 0)
            totale += cifra ? posizione(kCifre, c) : lettera ? posizione(kLettere, c) : 0;
        else
            totale += cifra ? posizione(kDispariCifre, c) : lettera ? posizione(kDispariLettere, c) : 0;
    }
    // Each of the fifteen added its table value plus one. The remainder keeps
    // the sign of the sum, as the division of the original did.
    const int resto = (totale - 15) % 26;
    return QChar(65 + resto) == s.at(15);
}

bool checkPartitaIva(const QString& partitaIva)
{
    int totale = 0;
    for (int i = 1; i <= 9; i += 2) {
        totale += cifra(partitaIva, i);
        const int doppio = 2 * cifra(partitaIva, i + 1);
        totale += doppio / 10 + doppio % 10;
    }
    // No second reduction: a remainder of 0 asks for a control digit of 10.
    return 10 - totale % 10 == cifra(partitaIva, 11);
}
