#include "data/sqlliteral.h"

#include "common/italiantext.h"
#include "data/sqldialect.h"

#include <QDateTime>

#include <cmath>
#include <cstring>

namespace {

// A protected character is written as the escape code point followed by
// kFirst + its index in kProtected. The escape itself is protected too, so a
// value that already holds private-use characters comes back unchanged.
constexpr char16_t kEscape = 0xE000;
constexpr char16_t kFirst = 0xE100;
const QString kProtected = QString::fromUtf16(u"\u00A4\u2021\u00BF\u2022`( #\uE000");

// A high surrogate at i followed by its low half: one character.
bool pairAt(const QString& s, qsizetype i)
{
    return s.at(i).isHighSurrogate() && i + 1 < s.size() && s.at(i + 1).isLowSurrogate();
}

// The text with every lone UTF-16 surrogate replaced by U+FFFD; the text
// itself (no copy) when it has none.
QString wellFormedText(const QString& text)
{
    QString out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (pairAt(text, i)) {
            ++i;
            continue;
        }
        if (out.isNull())
            out = text; // the first half character: copy once
        out[i] = QChar(QChar::ReplacementCharacter);
    }
    return out.isNull() ? text : out;
}

// A number from 0 to 99 as two digits.
void appendTwoDigits(QString& out, int n)
{
    out += QLatin1Char(char('0' + n / 10));
    out += QLatin1Char(char('0' + n % 10));
}

// The year with at least four digits.
void appendYear(QString& out, int year)
{
    if (year >= 1 && year <= 9999) {
        appendTwoDigits(out, year / 100);
        appendTwoDigits(out, year % 100);
    } else {
        out += QString::number(year).rightJustified(4, QLatin1Char('0'));
    }
}

QString isoDate(const QDate& d)
{
    QString out;
    out.reserve(10);
    appendYear(out, d.year());
    out += QLatin1Char('-');
    appendTwoDigits(out, d.month());
    out += QLatin1Char('-');
    appendTwoDigits(out, d.day());
    return out;
}

QString usDate(const QDate& d)
{
    QString out;
    out.reserve(10);
    appendTwoDigits(out, d.month());
    out += QLatin1Char('/');
    appendTwoDigits(out, d.day());
    out += QLatin1Char('/');
    appendYear(out, d.year());
    return out;
}

QString hms(const QTime& t)
{
    QString out;
    out.reserve(8);
    appendTwoDigits(out, t.hour());
    out += QLatin1Char(':');
    appendTwoDigits(out, t.minute());
    out += QLatin1Char(':');
    appendTwoDigits(out, t.second());
    return out;
}

QTime toTime(const QVariant& value)
{
    if (value.isNull())
        return {};
    if (value.typeId() == QMetaType::QTime)
        return value.toTime();
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().time();
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString().trimmed().replace(QLatin1Char('.'), QLatin1Char(':'));
        for (const char* format : {"H:mm:ss", "H:mm"}) {
            const QTime t = QTime::fromString(text, QLatin1String(format));
            if (t.isValid())
                return t;
        }
        const QDateTime dt = toDateTime(value);
        if (dt.isValid())
            return dt.time();
    }
    return {};
}

QString numberText(double d)
{
    if (d == 0)
        return QStringLiteral("0");
    // Amounts and quantities have a few decimals. When d is the double
    // nearest to such a number, of at most 15 digits, the 15 significant
    // digits of d are that number: it is written from its integer.
    if (std::fabs(d) < 1e11) {
        qint64 scale = 1;
        for (int decimals = 0; decimals <= 4; ++decimals, scale *= 10) {
            const double whole = std::round(d * double(scale));
            if (whole / double(scale) != d)
                continue;
            // Integer part and decimals, from the last digit backwards.
            qint64 units = qint64(std::fabs(whole));
            char digits[24];
            char* p = digits + sizeof digits;
            bool significant = false;
            for (int i = 0; i < decimals; ++i, units /= 10) {
                const int digit = int(units % 10);
                significant = significant || digit != 0;
                if (significant)
                    *--p = char('0' + digit);
            }
            if (significant)
                *--p = '.';
            do {
                *--p = char('0' + units % 10);
                units /= 10;
            } while (units > 0);
            if (d < 0)
                *--p = '-';
            return QString::fromLatin1(p, digits + sizeof digits - p);
        }
    }
    return QString::number(d, 'g', 15);
}

QString sqlNumber(const QVariant& value, const QString& fallback)
{
    if (value.isNull())
        return fallback;
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort: return QString::number(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float: return std::isfinite(value.toDouble()) ? numberText(value.toDouble()) : fallback;
    case QMetaType::Bool: return value.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    default: break;
    }
    QString text = value.toString();
    if (!text.contains(QLatin1Char(',')))
        text.replace(QLatin1Char('.'), QLatin1Char(','));
    const std::optional<double> number = parseNumberIt(text);
    if (!number || !std::isfinite(*number))
        return fallback;
    return numberText(*number);
}

} // namespace

QString getSQLSeparator() { return QStringLiteral("\u00A4"); }

namespace {

// Whether a text holds UTF-16 surrogates, and the escape.
struct Found
{
    bool surrogate = false;
    bool escape = false;
};

// Nonzero when one of the four 16-bit lanes of v is zero.
quint64 zeroLanes(quint64 v) { return (v - 0x0001000100010001ULL) & ~v & 0x8000800080008000ULL; }

Found lookFor(QStringView s)
{
    const char16_t* p = s.utf16();
    const char16_t* const end = p + s.size();
    quint64 surrogates = 0, escapes = 0;
    for (; end - p >= 4; p += 4) {
        quint64 w;
        std::memcpy(&w, p, sizeof w);
        surrogates |= zeroLanes((w & 0xF800F800F800F800ULL) ^ 0xD800D800D800D800ULL);
        escapes |= zeroLanes(w ^ 0xE000E000E000E000ULL);
    }
    Found found{surrogates != 0, escapes != 0};
    for (; p != end; ++p) {
        found.surrogate = found.surrogate || (*p & 0xF800) == 0xD800;
        found.escape = found.escape || *p == kEscape;
    }
    return found;
}

// The position of a character in kProtected, -1 for every other one.
int protectedIndex(char16_t c)
{
    switch (c) {
    case 0x00A4: return 0;
    case 0x2021: return 1;
    case 0x00BF: return 2;
    case 0x2022: return 3;
    case u'`': return 4;
    case u'(': return 5;
    case u' ': return 6;
    case u'#': return 7;
    case kEscape: return 8;
    default: return -1;
    }
}

void appendProtected(QString& out, const QString& value)
{
    const QStringView text(value);
    qsizetype written = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isSurrogate()) {
            // A pair goes as it is. Half a pair is no character at all:
            // SQLite would read the next code unit, the closing apostrophe,
            // as its other half and take the rest of the statement for SQL.
            if (pairAt(value, i)) {
                ++i;
            } else {
                out += text.mid(written, i - written);
                out += QChar(QChar::ReplacementCharacter);
                written = i + 1;
            }
            continue;
        }
        const int index = protectedIndex(c.unicode());
        if (index < 0)
            continue;
        out += text.mid(written, i - written);
        out += QChar(kEscape);
        out += QChar(char16_t(kFirst + index));
        written = i + 1;
    }
    out += text.mid(written);
}

} // namespace

QString protectSqlValue(const QString& value)
{
    QString out;
    out.reserve(value.size() + 8);
    appendProtected(out, value);
    return out;
}

QString restoreSqlValues(const QString& sql)
{
    // Most statements hold no character outside the basic plane, and many
    // no protected value: one look at the text, four code units at a time.
    const Found found = lookFor(sql);
    if (!found.surrogate && !found.escape)
        return sql;
    // Values come here well formed from sqlText; anything else that was
    // written into the statement (a name, a value not built by sqlText) is
    // mended too, so that no engine ever reads half a character.
    const QString whole = found.surrogate ? wellFormedText(sql) : sql;
    qsizetype at = whole.indexOf(QChar(kEscape));
    if (at < 0)
        return whole;
    QString out;
    out.reserve(whole.size());
    qsizetype written = 0;
    while (at >= 0) {
        const int index = at + 1 < whole.size() ? whole.at(at + 1).unicode() - kFirst : -1;
        if (index >= 0 && index < kProtected.size()) {
            out += QStringView(whole).mid(written, at - written);
            out += kProtected.at(index);
            written = at + 2;
            at = whole.indexOf(QChar(kEscape), at + 2);
        } else {
            at = whole.indexOf(QChar(kEscape), at + 1);
        }
    }
    out += QStringView(whole).mid(written);
    return out;
}

QString sqlText(const QString& value)
{
    QString out;
    out.reserve(value.size() + 10);
    out += QChar(0x00A4);
    appendProtected(out, value);
    out += QChar(0x00A4);
    return out;
}

QString sqlLikePattern(const QString& text, LikeMatch match)
{
    static const QString special = QStringLiteral("%_[\\!");
    QString pattern = match == LikeMatch::Contains ? QStringLiteral("%") : QString();
    bool escaped = false;
    for (const QChar c : text) {
        if (special.contains(c)) {
            pattern += QLatin1Char('!');
            escaped = true;
        }
        pattern += c;
    }
    pattern += QLatin1Char('%');
    return escaped ? sqlText(pattern) + QStringLiteral(" ESCAPE ") + sqlText(QStringLiteral("!")) : sqlText(pattern);
}

QString sqlDateFor(const QVariant& value, int tipoServer)
{
    if (tipoServer < 0 || tipoServer > 2)
        return QString();
    const QDate d = toDate(value);
    if (!d.isValid())
        return QStringLiteral("Null");
    switch (tipoServer) {
    case TipoServer::SqlServer:
        return QStringLiteral("{ d ") + getSQLSeparator() + isoDate(d) + getSQLSeparator() + QStringLiteral(" }");
    case TipoServer::FileDb: return QLatin1Char('#') + usDate(d) + QLatin1Char('#');
    default: return getSQLSeparator() + isoDate(d) + getSQLSeparator();
    }
}

QString sqlDateTimeFor(const QVariant& value, int tipoServer)
{
    if (tipoServer < 0 || tipoServer > 2)
        return QString();
    const QDateTime dt = toDateTime(value);
    if (!dt.isValid())
        return QStringLiteral("Null");
    if (tipoServer == TipoServer::FileDb)
        return QLatin1Char('#') + usDate(dt.date()) + QLatin1Char(' ') + hms(dt.time()) + QLatin1Char('#');
    return getSQLSeparator() + isoDate(dt.date()) + QLatin1Char(' ') + hms(dt.time()) + getSQLSeparator();
}

QString sqlTimeFor(const QVariant& value, int tipoServer)
{
    if (tipoServer < 0 || tipoServer > 2)
        return QString();
    QTime t = toTime(value);
    // A date alone (a QDate, a date text) is its midnight, as its date-time.
    if (!t.isValid()) {
        const QDateTime dt = toDateTime(value);
        if (dt.isValid())
            t = dt.time();
    }
    if (!t.isValid())
        return QStringLiteral("Null");
    switch (tipoServer) {
    case TipoServer::SqlServer:
        return QStringLiteral("{ t ") + getSQLSeparator() + hms(t) + getSQLSeparator() + QStringLiteral(" }");
    case TipoServer::FileDb: return QLatin1Char('#') + hms(t) + QLatin1Char('#');
    default: return getSQLSeparator() + hms(t) + getSQLSeparator();
    }
}

QString getSqlNumber(const QVariant& value) { return sqlNumber(value, QStringLiteral("Null")); }

QString getSqlNumberOrZero(const QVariant& value) { return sqlNumber(value, QStringLiteral("0")); }

QString sqlInsert(const QString& table, const QStringList& columns, const QStringList& values)
{
    return QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") + columns.join(QStringLiteral(", "))
        + QStringLiteral(") VALUES (") + values.join(QStringLiteral(", ")) + QLatin1Char(')');
}

QString sqlUpdate(const QString& table, const QStringList& columns, const QStringList& values, int rid)
{
    QStringList sets;
    for (qsizetype i = 0; i < columns.size() && i < values.size(); ++i)
        sets << columns.at(i) + QStringLiteral(" = ") + values.at(i);
    return QStringLiteral("UPDATE ") + table + QStringLiteral(" SET ") + sets.join(QStringLiteral(", "))
        + QStringLiteral(" WHERE RID = ") + QString::number(rid);
}
