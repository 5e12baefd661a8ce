#include "common/italiantext.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QRegularExpression>
#include <QTime>

#include <charconv>
#include <cmath>
#include <limits>

// Nothing here looks at the machine's locale: text is scanned character by
// character, and the only conversions between binary and decimal go through
// std::to_chars / std::from_chars, which are locale-independent.

namespace {

// An exact decimal number: value = 0.digits * 10^intDigits, digits without
// leading or trailing zeros (empty for zero). intDigits is the count of digits
// before the decimal point and may be zero, negative or beyond the digits.
struct Decimal
{
    bool negative = false;
    QByteArray digits;
    int intDigits = 0;

    bool isZero() const { return digits.isEmpty(); }

    void normalize()
    {
        qsizetype lead = 0;
        while (lead < digits.size() && digits.at(lead) == '0')
            ++lead;
        digits.remove(0, lead);
        intDigits -= int(lead);
        qsizetype len = digits.size();
        while (len > 0 && digits.at(len - 1) == '0')
            --len;
        digits.truncate(len);
        if (digits.isEmpty())
            intDigits = 0;
    }
};

bool isAsciiDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

// The Italian reading of a number (see parseNumberIt), as an exact decimal.
std::optional<Decimal> parseDecimalIt(const QString& text)
{
    const QString s = text.trimmed();
    const qsizetype n = s.size();
    qsizetype i = 0;
    Decimal d;

    if (i < n && (s.at(i) == QLatin1Char('+') || s.at(i) == QLatin1Char('-'))) {
        d.negative = s.at(i) == QLatin1Char('-');
        ++i;
    }

    bool sawComma = false;
    bool lastWasDigit = false;
    int mantissaDigits = 0;
    for (; i < n; ++i) {
        const QChar c = s.at(i);
        if (isAsciiDigit(c)) {
            d.digits.append(char(c.unicode()));
            ++mantissaDigits;
            lastWasDigit = true;
        } else if (c == QLatin1Char('.')) {
            // A thousands separator stands between digits of the integer part.
            if (sawComma || !lastWasDigit || i + 1 >= n || !isAsciiDigit(s.at(i + 1)))
                return std::nullopt;
            lastWasDigit = false;
        } else if (c == QLatin1Char(',')) {
            if (sawComma)
                return std::nullopt;
            sawComma = true;
            d.intDigits = mantissaDigits;
            lastWasDigit = false;
        } else {
            break;
        }
    }
    if (mantissaDigits == 0)
        return std::nullopt;
    if (!sawComma)
        d.intDigits = mantissaDigits;

    if (i < n) {
        if (s.at(i) != QLatin1Char('E') && s.at(i) != QLatin1Char('e'))
            return std::nullopt;
        ++i;
        bool negativeExponent = false;
        if (i < n && (s.at(i) == QLatin1Char('+') || s.at(i) == QLatin1Char('-'))) {
            negativeExponent = s.at(i) == QLatin1Char('-');
            ++i;
        }
        if (i >= n)
            return std::nullopt;
        int exponent = 0;
        for (; i < n; ++i) {
            if (!isAsciiDigit(s.at(i)))
                return std::nullopt;
            // Far beyond any finite double; capped to keep the arithmetic safe.
            if (exponent < 100000)
                exponent = exponent * 10 + (s.at(i).unicode() - '0');
        }
        d.intDigits += negativeExponent ? -exponent : exponent;
    }

    d.normalize();
    return d;
}

// The decimal in the plain form that std::from_chars reads: "-0.DIGITSe<n>".
QByteArray scientificText(const Decimal& d)
{
    QByteArray text;
    if (d.negative)
        text += '-';
    if (d.isZero())
        return text + '0';
    text += "0." + d.digits + 'e' + QByteArray::number(d.intDigits);
    return text;
}

// Correctly rounded binary value of a decimal; no value on overflow,
// zero on underflow.
template <typename F> std::optional<F> decimalToFloating(const Decimal& d)
{
    const QByteArray text = scientificText(d);
    F value = 0;
    const auto [end, ec] = std::from_chars(text.constData(), text.constData() + text.size(), value);
    Q_UNUSED(end);
    if (ec == std::errc::result_out_of_range) {
        if (d.intDigits > 0)
            return std::nullopt;
        return d.negative ? -F(0) : F(0);
    }
    if (ec != std::errc())
        return std::nullopt;
    return value;
}

// Nearest ten-thousandth of an exact decimal, ties to even, saturating.
Currency decimalToCurrency(const Decimal& d)
{
    if (d.isZero())
        return Currency();
    const int keep = d.intDigits + 4; // digits of the raw count
    const Currency limit = Currency::fromRaw(d.negative ? std::numeric_limits<std::int64_t>::min()
                                                        : std::numeric_limits<std::int64_t>::max());
    if (keep > 19)
        return limit;
    if (keep < 0)
        return Currency();

    unsigned __int128 raw = 0;
    for (int k = 0; k < keep; ++k)
        raw = raw * 10 + (k < d.digits.size() ? d.digits.at(k) - '0' : 0);
    if (keep < d.digits.size()) {
        const char first = d.digits.at(keep);
        const bool moreDigits = keep + 1 < d.digits.size(); // nonzero, being normalized
        if (first > '5' || (first == '5' && (moreDigits || (raw & 1))))
            ++raw;
    }
    const unsigned __int128 max = static_cast<unsigned __int128>(std::numeric_limits<std::int64_t>::max());
    if (raw > max + (d.negative ? 1 : 0))
        return limit;
    if (d.negative)
        return Currency::fromRaw(static_cast<std::int64_t>(-static_cast<__int128>(raw)));
    return Currency::fromRaw(static_cast<std::int64_t>(raw));
}

// The decimal a reader sees for a binary value at `significant` digits.
template <typename F> Decimal floatingToDecimal(F value, int significant)
{
    char buffer[64];
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, significant - 1);
    Decimal d;
    if (ec != std::errc())
        return d;
    // "-d.ddde+XX"
    const char* p = buffer;
    if (*p == '-') {
        d.negative = true;
        ++p;
    }
    for (; p < end && *p != 'e'; ++p) {
        if (*p != '.')
            d.digits.append(*p);
    }
    int exponent = 0;
    if (p < end)
        std::from_chars(p + (p[1] == '+' ? 2 : 1), end, exponent);
    d.intDigits = exponent + 1;
    d.normalize();
    return d;
}

Decimal integerToDecimal(qint64 value)
{
    Decimal d;
    d.negative = value < 0;
    const quint64 magnitude = d.negative ? 0 - static_cast<quint64>(value) : static_cast<quint64>(value);
    d.digits = QByteArray::number(magnitude);
    d.intDigits = int(d.digits.size());
    d.normalize();
    return d;
}

Decimal currencyToDecimal(Currency value)
{
    Decimal d = integerToDecimal(value.raw());
    d.intDigits -= 4;
    if (d.isZero())
        d.intDigits = 0;
    return d;
}

constexpr int DoubleDigits = 15;
constexpr int SingleDigits = 7;

// A number variant or a numeric text; no value for anything else.
struct Number
{
    enum Kind {
        Integer,
        Real,
        Float,
        Text
    } kind = Integer;
    qint64 integer = 0;
    double real = 0;
    float single = 0;
    Decimal text;
};

std::optional<Number> numberOf(const QVariant& v)
{
    if (v.isNull())
        return std::nullopt;
    Number n;
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::SChar:
    case QMetaType::Char:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::UInt:
        n.kind = Number::Integer;
        n.integer = v.toLongLong();
        return n;
    case QMetaType::ULong:
    case QMetaType::ULongLong: {
        const qulonglong u = v.toULongLong();
        if (u <= qulonglong(std::numeric_limits<qint64>::max())) {
            n.kind = Number::Integer;
            n.integer = qint64(u);
        } else {
            n.kind = Number::Real;
            n.real = double(u);
        }
        return n;
    }
    case QMetaType::Double:
        n.kind = Number::Real;
        n.real = v.toDouble();
        if (!std::isfinite(n.real))
            return std::nullopt;
        return n;
    case QMetaType::Float:
        n.kind = Number::Float;
        n.single = v.toFloat();
        if (!std::isfinite(n.single))
            return std::nullopt;
        return n;
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        std::optional<Decimal> d = parseDecimalIt(v.toString());
        if (!d || !decimalToFloating<double>(*d))
            return std::nullopt;
        n.kind = Number::Text;
        n.text = *d;
        return n;
    }
    default: return std::nullopt;
    }
}

// The decimal digits a number shows before any pattern is applied.
Decimal decimalOf(const Number& n)
{
    switch (n.kind) {
    case Number::Integer: return integerToDecimal(n.integer);
    case Number::Real: return floatingToDecimal(n.real, DoubleDigits);
    case Number::Float: return floatingToDecimal(n.single, SingleDigits);
    case Number::Text: return n.text;
    }
    return {};
}

QString groupThousands(const QByteArray& integerDigits)
{
    QString out;
    const qsizetype n = integerDigits.size();
    out.reserve(n + n / 3);
    for (qsizetype k = 0; k < n; ++k) {
        if (k > 0 && (n - k) % 3 == 0)
            out += QLatin1Char('.');
        out += QLatin1Char(integerDigits.at(k));
    }
    return out;
}

// "###,##0.00…" with half away from zero at `decimals` fractional digits.
QString formatDecimal(Decimal d, int decimals)
{
    decimals = qMax(0, decimals);
    int intDigits = d.intDigits;
    QByteArray kept;
    const qsizetype keep = qsizetype(intDigits) + decimals;
    if (!d.isZero() && keep >= 0) {
        if (keep >= d.digits.size()) {
            kept = d.digits + QByteArray(keep - d.digits.size(), '0');
        } else {
            kept = d.digits.left(keep);
            if (d.digits.at(keep) >= '5') {
                qsizetype k = kept.size() - 1;
                while (k >= 0 && kept.at(k) == '9')
                    kept[k--] = '0';
                if (k >= 0) {
                    kept[k] = char(kept.at(k) + 1);
                } else {
                    kept.prepend('1');
                    ++intDigits;
                }
            }
        }
    } else {
        intDigits = 0;
    }
    // kept holds intDigits + decimals digits (or none when the value is lost).
    if (intDigits < 0)
        kept.prepend(QByteArray(-intDigits, '0'));
    kept = kept.rightJustified(decimals, '0');
    QByteArray integerPart = kept.left(kept.size() - decimals);
    const QByteArray fractionPart = kept.right(decimals);
    while (integerPart.size() > 1 && integerPart.at(0) == '0')
        integerPart.remove(0, 1);
    if (integerPart.isEmpty())
        integerPart = "0";

    const bool allZero = kept.count('0') == kept.size();
    QString out;
    if (d.negative && !allZero)
        out += QLatin1Char('-');
    // The pattern always ends in its decimal separator, even without decimals.
    out += groupThousands(integerPart) + QLatin1Char(',') + QLatin1String(fractionPart);
    return out;
}

QString defaultAmountText(int decimals) { return QLatin1String("0,") + QString(qMax(0, decimals), QLatin1Char('0')); }

// Plain text of digits already cut to `significant`: positional while the
// decimal exponent lies between -4 and `significant` - 1, exponent form outside
// (never with positionalOnly).
QString plainDecimalText(const Decimal& d, int significant, QChar point, bool positionalOnly = false)
{
    if (d.isZero())
        return QStringLiteral("0");
    QString out;
    if (d.negative)
        out += QLatin1Char('-');
    const QString digits = QString::fromLatin1(d.digits);
    const int exponent = d.intDigits - 1; // of the first digit
    if (!positionalOnly && (exponent >= significant || exponent < -4)) {
        out += digits.left(1);
        if (digits.size() > 1)
            out += point + digits.mid(1);
        out += QLatin1Char('E') + QLatin1Char(exponent < 0 ? '-' : '+')
            + QString::number(qAbs(exponent)).rightJustified(2, QLatin1Char('0'));
        return out;
    }
    if (d.intDigits <= 0) {
        out += QLatin1Char('0') + point + QString(-d.intDigits, QLatin1Char('0')) + digits;
    } else if (d.intDigits >= digits.size()) {
        out += digits + QString(d.intDigits - digits.size(), QLatin1Char('0'));
    } else {
        out += digits.left(d.intDigits) + point + digits.mid(d.intDigits);
    }
    return out;
}

QString twoDigits(int v) { return QString::number(v).rightJustified(2, QLatin1Char('0')); }

// A two-digit year as the classic runtime reads it: 00-29 this century,
// 30-99 the last.
int expandYear(int year, int digits)
{
    if (digits == 2)
        return year < 30 ? 2000 + year : 1900 + year;
    return year;
}

bool readTime(const QRegularExpressionMatch& m, int first, QTime& time)
{
    if (!m.hasCaptured(first)) {
        time = QTime(0, 0);
        return true;
    }
    const int h = m.captured(first).toInt();
    const int mi = m.captured(first + 1).toInt();
    const int s = m.hasCaptured(first + 2) ? m.captured(first + 2).toInt() : 0;
    int ms = 0;
    if (m.hasCaptured(first + 3))
        ms = m.captured(first + 3).leftJustified(3, QLatin1Char('0')).left(3).toInt();
    time = QTime(h, mi, s, ms);
    return time.isValid();
}

// The date and time a text holds; false when it holds neither form.
bool parseDateTimeText(const QString& text, QDate& date, QTime& time)
{
    // Time: "Hh:Nn[:Ss[.zzz]]", "." also accepted as the separator.
    static const QString timePart = QStringLiteral("(\\d{1,2})[:.](\\d{2})(?:[:.](\\d{2})(?:[.,](\\d+))?)?");
    static const QRegularExpression italian(QStringLiteral("^(\\d{1,2})([/-])(\\d{1,2})\\2(\\d{4}|\\d{2})(?:\\s+")
                                            + timePart + QStringLiteral(")?$"));
    static const QRegularExpression iso(QStringLiteral("^(\\d{4})-(\\d{1,2})-(\\d{1,2})(?:[T ]") + timePart
                                        + QStringLiteral(")?$"));

    const QString s = text.trimmed();
    QRegularExpressionMatch m = iso.match(s);
    if (m.hasMatch()) {
        date = QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
        return date.isValid() && readTime(m, 4, time);
    }
    m = italian.match(s);
    if (m.hasMatch()) {
        const QString y = m.captured(4);
        date = QDate(expandYear(y.toInt(), int(y.size())), m.captured(3).toInt(), m.captured(1).toInt());
        return date.isValid() && readTime(m, 5, time);
    }
    return false;
}

} // namespace

// --- text to number -------------------------------------------------------

std::optional<double> parseNumberIt(const QString& text)
{
    const std::optional<Decimal> d = parseDecimalIt(text);
    if (!d)
        return std::nullopt;
    return decimalToFloating<double>(*d);
}

bool isNumericIt(const QString& text) { return parseNumberIt(text).has_value(); }

Currency getValoreCurrency(const QVariant& v)
{
    const std::optional<Number> n = numberOf(v);
    if (!n)
        return Currency();
    switch (n->kind) {
    case Number::Integer: return decimalToCurrency(integerToDecimal(n->integer));
    case Number::Real: return Currency::fromDouble(n->real);
    case Number::Float: return Currency::fromDouble(n->single);
    case Number::Text:
        // Straight from the digits: "0,00005" is an exact tie, not a double near one.
        return decimalToCurrency(n->text);
    }
    return Currency();
}

Single getValoreSingle(const QVariant& v)
{
    const std::optional<Number> n = numberOf(v);
    if (!n)
        return 0;
    switch (n->kind) {
    case Number::Integer: return Single(n->integer);
    case Number::Real: return toSingle(n->real);
    case Number::Float: return n->single;
    case Number::Text:
        // Decimal to float in one rounding, not through a double.
        return decimalToFloating<Single>(n->text).value_or(0);
    }
    return 0;
}

double getValoreNumerico(const QVariant& v)
{
    const std::optional<Number> n = numberOf(v);
    if (!n)
        return 0;
    switch (n->kind) {
    case Number::Integer: return double(n->integer);
    case Number::Real: return n->real;
    case Number::Float: return n->single;
    case Number::Text: return decimalToFloating<double>(n->text).value_or(0);
    }
    return 0;
}

// --- number to text -------------------------------------------------------

QString formattaImporto(const QVariant& value, int decimals, bool emptyWhenNull)
{
    const std::optional<Number> n = numberOf(value);
    if (!n)
        return emptyWhenNull ? QString() : defaultAmountText(decimals);
    return formatDecimal(decimalOf(*n), decimals);
}

QString formattaImporto(Currency value, int decimals) { return formatDecimal(currencyToDecimal(value), decimals); }

QString formattaImporto(double value, int decimals)
{
    if (!std::isfinite(value))
        return defaultAmountText(decimals);
    return formatDecimal(floatingToDecimal(value, DoubleDigits), decimals);
}

QString formattaImportoSingle(Single value, int decimals)
{
    if (!std::isfinite(value))
        return defaultAmountText(decimals);
    return formatDecimal(floatingToDecimal(value, SingleDigits), decimals);
}

QString formattaIntero(const QVariant& value)
{
    // "###,##0" has no decimal separator: the amount pattern less its final comma.
    QString text = formattaImporto(value, 0, false);
    text.chop(1);
    return text;
}

QString plainTextIt(double value)
{
    if (!std::isfinite(value))
        return QStringLiteral("0");
    return plainDecimalText(floatingToDecimal(value, DoubleDigits), DoubleDigits, QLatin1Char(','));
}

QString plainTextIt(Currency value)
{
    QString text = value.toPlainString();
    text.replace(QLatin1Char('.'), QLatin1Char(','));
    return text;
}

QString plainTextSingleIt(Single value)
{
    if (!std::isfinite(value))
        return QStringLiteral("0");
    return plainDecimalText(floatingToDecimal(value, SingleDigits), SingleDigits, QLatin1Char(','));
}

QString formatMask(qint64 value, const QString& mask)
{
    const int width = int(mask.count(QLatin1Char('0')));
    const quint64 magnitude = value < 0 ? 0 - static_cast<quint64>(value) : static_cast<quint64>(value);
    QString digits = QString::number(magnitude).rightJustified(width, QLatin1Char('0'));
    return value < 0 ? QLatin1Char('-') + digits : digits;
}

// --- dates ----------------------------------------------------------------

QString formatDate(const QDate& d)
{
    if (!d.isValid())
        return QString();
    return twoDigits(d.day()) + QLatin1Char('/') + twoDigits(d.month()) + QLatin1Char('/')
        + QString::number(d.year()).rightJustified(4, QLatin1Char('0'));
}

QString formatDate(const QVariant& v) { return formatDate(toDate(v)); }

QString formatDateTime(const QDateTime& dt)
{
    if (!dt.isValid())
        return QString();
    const QTime t = dt.time();
    return formatDate(dt.date()) + QLatin1Char(' ') + twoDigits(t.hour()) + QLatin1Char(':') + twoDigits(t.minute())
        + QLatin1Char(':') + twoDigits(t.second());
}

QString formatDateTime(const QVariant& v) { return formatDateTime(toDateTime(v)); }

QString formatStamp(const QDateTime& dt)
{
    if (!dt.isValid())
        return QString();
    const QDate d = dt.date();
    const QTime t = dt.time();
    return QString::number(d.year()).rightJustified(4, QLatin1Char('0')) + twoDigits(d.month()) + twoDigits(d.day())
        + QLatin1Char('-') + twoDigits(t.hour()) + twoDigits(t.minute()) + twoDigits(t.second());
}

QString formatTimeHM(const QTime& t)
{
    if (!t.isValid())
        return QString();
    return twoDigits(t.hour()) + QLatin1Char(':') + twoDigits(t.minute());
}

QDate toDate(const QVariant& v)
{
    if (v.isNull())
        return QDate();
    switch (v.typeId()) {
    case QMetaType::QDate: return v.toDate();
    case QMetaType::QDateTime: return v.toDateTime().date();
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        QDate date;
        QTime time;
        return parseDateTimeText(v.toString(), date, time) ? date : QDate();
    }
    default: return QDate();
    }
}

QDateTime toDateTime(const QVariant& v)
{
    if (v.isNull())
        return QDateTime();
    switch (v.typeId()) {
    case QMetaType::QDate: {
        const QDate d = v.toDate();
        return d.isValid() ? QDateTime(d, QTime(0, 0)) : QDateTime();
    }
    case QMetaType::QDateTime: return v.toDateTime();
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        QDate date;
        QTime time;
        return parseDateTimeText(v.toString(), date, time) ? QDateTime(date, time) : QDateTime();
    }
    default: return QDateTime();
    }
}

bool isDateIt(const QVariant& v) { return toDate(v).isValid(); }

// --- helpers shared by every screen ---------------------------------------

QString getIDOrNullStr(const QVariant& value)
{
    const std::optional<Number> n = numberOf(value);
    if (!n)
        return QStringLiteral("Null");
    const Decimal d = decimalOf(*n);
    if (d.isZero() || d.negative)
        return QStringLiteral("Null");
    // Keys are whole numbers; anything else is still written as SQL can read it.
    return plainDecimalText(d, DoubleDigits, QLatin1Char('.'), true);
}

qint16 getChekByBool(const QVariant& value)
{
    if (value.isNull())
        return 0;
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? 1 : 0;
    if (value.typeId() == QMetaType::QString) {
        const QString s = value.toString().trimmed();
        if (s.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
            return 1;
        if (s.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
            return 0;
    }
    const std::optional<Number> n = numberOf(value);
    if (!n)
        return 0;
    // The absolute value, rounded half to even as an integer assignment does.
    const double a = std::nearbyint(std::fabs(getValoreNumerico(value)));
    return a >= 32767 ? qint16(32767) : qint16(a);
}

QString padRight(const QString& value, int n)
{
    if (n <= 0)
        return QString();
    return value.leftJustified(n, QLatin1Char(' '), true);
}

QString leftChars(const QString& value, int n)
{
    if (n <= 0)
        return QString();
    qsizetype units = 0;
    for (int taken = 0; taken < n && units < value.size(); ++taken) {
        const bool pair =
            value.at(units).isHighSurrogate() && units + 1 < value.size() && value.at(units + 1).isLowSurrogate();
        units += pair ? 2 : 1;
    }
    return value.left(units);
}
