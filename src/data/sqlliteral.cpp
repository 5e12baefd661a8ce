#include "data/sqlliteral.h"

#include "common/italiantext.h"
#include "data/sqldialect.h"

#include <QDateTime>
#include <cmath>

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
            out = text;   // the first half character: copy once
        out[i] = QChar(QChar::ReplacementCharacter);
    }
    return out.isNull() ? text : out;
}

QString twoDigits(int n)
{
    return QString::number(n).rightJustified(2, QLatin1Char('0'));
}

QString isoDate(const QDate& d)
{
    return QString::number(d.year()).rightJustified(4, QLatin1Char('0')) + QLatin1Char('-') + twoDigits(d.month())
        + QLatin1Char('-') + twoDigits(d.day());
}

QString usDate(const QDate& d)
{
    return twoDigits(d.month()) + QLatin1Char('/') + twoDigits(d.day()) + QLatin1Char('/')
        + QString::number(d.year()).rightJustified(4, QLatin1Char('0'));
}

QString hms(const QTime& t)
{
    return twoDigits(t.hour()) + QLatin1Char(':') + twoDigits(t.minute()) + QLatin1Char(':') + twoDigits(t.second());
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
    case QMetaType::UShort:
        return QString::number(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return std::isfinite(value.toDouble()) ? numberText(value.toDouble()) : fallback;
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    default:
        break;
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

QString getSQLSeparator()
{
    return QStringLiteral("\u00A4");
}

QString protectSqlValue(const QString& value)
{
    QString out;
    out.reserve(value.size() + 8);
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c.isSurrogate()) {
            // A pair goes as it is. Half a pair is no character at all:
            // SQLite would read the next code unit, the closing apostrophe,
            // as its other half and take the rest of the statement for SQL.
            if (pairAt(value, i)) {
                out += c;
                out += value.at(++i);
            } else {
                out += QChar(QChar::ReplacementCharacter);
            }
            continue;
        }
        const qsizetype index = kProtected.indexOf(c);
        if (index < 0) {
            out += c;
        } else {
            out += QChar(kEscape);
            out += QChar(char16_t(kFirst + index));
        }
    }
    return out;
}

QString restoreSqlValues(const QString& sql)
{
    // Values come here well formed from sqlText; anything else that was
    // written into the statement (a name, a value not built by sqlText) is
    // mended too, so that no engine ever reads half a character.
    const QString whole = wellFormedText(sql);
    qsizetype at = whole.indexOf(QChar(kEscape));
    if (at < 0)
        return whole;
    QString out = whole.left(at);
    out.reserve(whole.size());
    for (; at < whole.size(); ++at) {
        const QChar c = whole.at(at);
        if (c == QChar(kEscape) && at + 1 < whole.size()) {
            const int index = whole.at(at + 1).unicode() - kFirst;
            if (index >= 0 && index < kProtected.size()) {
                out += kProtected.at(index);
                ++at;
                continue;
            }
        }
        out += c;
    }
    return out;
}

QString sqlText(const QString& value)
{
    return getSQLSeparator() + protectSqlValue(value) + getSQLSeparator();
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
    case TipoServer::FileDb:
        return QLatin1Char('#') + usDate(d) + QLatin1Char('#');
    default:
        return getSQLSeparator() + isoDate(d) + getSQLSeparator();
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
    case TipoServer::FileDb:
        return QLatin1Char('#') + hms(t) + QLatin1Char('#');
    default:
        return getSQLSeparator() + hms(t) + getSQLSeparator();
    }
}

QString getSqlNumber(const QVariant& value)
{
    return sqlNumber(value, QStringLiteral("Null"));
}

QString getSqlNumberOrZero(const QVariant& value)
{
    return sqlNumber(value, QStringLiteral("0"));
}

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
