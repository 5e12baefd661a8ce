#include "common/ean13.h"

#include <algorithm>

namespace {

int digitAt(const QString& codice, int index)
{
    if (index >= codice.size())
        return 0;
    const QChar c = codice.at(index);
    return c >= QLatin1Char('0') && c <= QLatin1Char('9') ? c.unicode() - '0' : 0;
}

} // namespace

qint16 getEAN13ChekDigit(const QString& codice)
{
    if (codice.size() < 12)
        return -1;
    int sum = 0;
    for (int i = 0; i < 12; ++i)
        sum += digitAt(codice, i) * (i % 2 == 0 ? 1 : 3);
    return qint16((10 - sum % 10) % 10);
}

QString EncodeEAN13(const QString& codice)
{
    // For digits 3 to 7: the first digits that keep set A at that place.
    static constexpr QLatin1StringView kSetA[] = {QLatin1StringView("0123"), QLatin1StringView("0478"),
                                                  QLatin1StringView("01459"), QLatin1StringView("02567"),
                                                  QLatin1StringView("03689")};
    const QChar first = QChar('0' + digitAt(codice, 0));
    QString out = codice.left(1);
    out += QChar(65 + digitAt(codice, 1));
    for (int i = 2; i <= 6; ++i)
        out += QChar((kSetA[i - 2].contains(first) ? 65 : 75) + digitAt(codice, i));
    out += QLatin1Char('*');
    for (int i = 7; i <= 12; ++i)
        out += QChar(97 + digitAt(codice, i));
    return out + QLatin1Char('+');
}

ModuliEAN13 moduliEAN13(const QString& codiceOFont)
{
    // Set A (odd parity), set B (even parity) and set C of each digit.
    static const char* const kA[] = {"0001101", "0011001", "0010011", "0111101", "0100011",
                                     "0110001", "0101111", "0111011", "0110111", "0001011"};
    static const char* const kB[] = {"0100111", "0110011", "0011011", "0100001", "0011101",
                                     "0111001", "0000101", "0010001", "0001001", "0010111"};
    static const char* const kC[] = {"1110010", "1100110", "1101100", "1000010", "1011100",
                                     "1001110", "1010000", "1000100", "1001000", "1110100"};
    const QString code = codiceOFont.trimmed();
    QString font;
    if (code.size() == 13 && std::all_of(code.begin(), code.end(), [](QChar c) { return c.isDigit(); }))
        font = EncodeEAN13(code);
    else
        font = code;
    // The font text: digit, six of A/B, "*", six of C, "+".
    if (font.size() != 15 || !font.at(0).isDigit() || font.at(7) != QLatin1Char('*') || font.at(14) != QLatin1Char('+'))
        return {};
    ModuliEAN13 out;
    out.cifre = font.left(1);
    out.moduli = QStringLiteral("101");
    for (int i = 1; i <= 6; ++i) {
        const int c = font.at(i).unicode();
        if (c >= 65 && c <= 74)
            out.moduli += QLatin1String(kA[c - 65]);
        else if (c >= 75 && c <= 84)
            out.moduli += QLatin1String(kB[c - 75]);
        else
            return {};
        out.cifre += QChar('0' + (c >= 75 ? c - 75 : c - 65));
    }
    out.moduli += QStringLiteral("01010");
    for (int i = 8; i <= 13; ++i) {
        const int c = font.at(i).unicode();
        if (c < 97 || c > 106)
            return {};
        out.moduli += QLatin1String(kC[c - 97]);
        out.cifre += QChar('0' + c - 97);
    }
    out.moduli += QStringLiteral("101");
    return out;
}
