#include "screens/services/typedinput.h"

#include "common/italiantext.h"

#include <QDate>
#include <QTime>

namespace typedinput {

namespace {

const QChar kCarriageReturn(u'\r');
const QChar kBackspace(u'\b');

bool isDecimalKind(int kind) { return kind == Decimale || kind == DecimaleZero; }

bool isNumberKind(int kind)
{
    return kind == Intero || kind == Decimale || kind == InteroLibero || kind == InteroNonFormattato
        || kind == InteroZero || kind == DecimaleZero;
}

// "###,##0" with or without the thousands separator, and the decimals when asked.
QString formatNumber(const QString& text, int decimals, bool thousands)
{
    if (!isNumericIt(text.trimmed()))
        return text; // a text that is no number is left as it stands
    QString formatted =
        decimals < 0 ? formattaIntero(text.trimmed()) : formattaImporto(QVariant(text.trimmed()), decimals);
    if (!thousands)
        formatted.remove(QLatin1Char('.'));
    return formatted;
}

Validation validateDate(QString text, const QString& dateFormat)
{
    if (text.isEmpty())
        return {text, true};
    if (!text.contains(QLatin1Char('/')) && text.size() >= 6)
        text = text.left(2) + QLatin1Char('/') + text.mid(2, 2) + QLatin1Char('/') + text.mid(4);
    if (text.size() >= 8) {
        const QDate date = toDate(text);
        if (date.isValid())
            text = date.toString(qtDateFormat(dateFormat));
    }
    return {isDateIt(text) ? text : QString(), true};
}

QString validateTime(QString text)
{
    if (text.isEmpty())
        return text;
    text.replace(QLatin1Char('.'), QLatin1Char(':'));
    if (!text.contains(QLatin1Char(':'))) {
        if (text.size() == 6)
            text = text.left(2) + QLatin1Char(':') + text.mid(2, 2) + QLatin1Char(':') + text.mid(4);
        else if (text.size() == 4)
            text = text.left(2) + QLatin1Char(':') + text.mid(2);
    }
    const QStringList parts = text.split(QLatin1Char(':'));
    if (parts.size() < 2 || parts.size() > 3)
        return QString();
    int values[3] = {0, 0, 0};
    for (qsizetype i = 0; i < parts.size(); ++i) {
        bool ok = false;
        values[i] = parts.at(i).toInt(&ok);
        if (!ok || parts.at(i).isEmpty() || parts.at(i).size() > 2)
            return QString();
    }
    const QTime time(values[0], values[1], values[2]);
    return time.isValid() ? time.toString(QStringLiteral("HH:mm:ss")) : QString();
}

} // namespace

QString allowedCharacters(int kind)
{
    switch (kind) {
    case Data: return QStringLiteral("0123456789/");
    case Intero:
    case InteroLibero:
    case InteroNonFormattato:
    case InteroZero: return QStringLiteral("-0123456789");
    case Decimale:
    case DecimaleZero: return QStringLiteral("-0123456789,");
    case Ora: return QStringLiteral("0123456789.");
    case EspressioneData: return QStringLiteral("0123456789/+");
    default: return QString();
    }
}

bool alignsRight(int kind)
{
    return kind == Intero || kind == Decimale || kind == InteroNonFormattato || kind == InteroZero
        || kind == DecimaleZero;
}

int maxLength(int kind, const QString& dateFormat)
{
    if (kind == Data)
        return int(dateFormat.size());
    if (kind == Ora)
        return 8;
    return -1;
}

QChar filterKeyPress(int kind, int caseState, const QString& text, bool selectionCoversAll, QChar typed)
{
    const QString allowed = allowedCharacters(kind);
    if (isDecimalKind(kind)) {
        if (typed == QLatin1Char('.'))
            typed = QLatin1Char(',');
        if (typed == QLatin1Char(',') && text.contains(QLatin1Char(',')))
            return QChar();
    }
    if (isNumberKind(kind) && typed == QLatin1Char('-') && !text.isEmpty() && !selectionCoversAll)
        return QChar();
    if (typed != kCarriageReturn && typed != kBackspace && !allowed.isEmpty()
        && !allowed.contains(typed, Qt::CaseInsensitive))
        return QChar();
    if (caseState == 1)
        return typed.toUpper();
    if (caseState == 2)
        return typed.toLower();
    return typed;
}

Validation contentValidate(int kind, const QString& text, int decimalPrecision, bool separatoreMigliaia,
                           const QString& dateFormat)
{
    switch (kind) {
    case DecimaleZero:
    case Decimale: {
        const QString value = kind == DecimaleZero && text.trimmed().isEmpty() ? QStringLiteral("0") : text;
        if (decimalPrecision == -1)
            return {value, false};
        return {formatNumber(value, decimalPrecision, separatoreMigliaia), true};
    }
    case InteroZero:
    case Intero: {
        const QString value = kind == InteroZero && text.trimmed().isEmpty() ? QStringLiteral("0") : text;
        return {formatNumber(value, -1, separatoreMigliaia), false};
    }
    case Data: return validateDate(text, dateFormat);
    case Ora: return {validateTime(text), false};
    default: return {text, false};
    }
}

QString qtDateFormat(const QString& dateFormat)
{
    QString format = dateFormat;
    format.replace(QStringLiteral("DD"), QStringLiteral("dd"));
    format.replace(QStringLiteral("YYYY"), QStringLiteral("yyyy"));
    format.replace(QStringLiteral("YY"), QStringLiteral("yy"));
    return format;
}

} // namespace typedinput
