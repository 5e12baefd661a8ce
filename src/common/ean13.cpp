#include "common/ean13.h"

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
