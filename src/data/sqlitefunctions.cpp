#include "data/sqlitefunctions.h"

#include "common/italiantext.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QString>
#include <QVariant>

#include <cmath>
#include <sqlite3.h>

namespace {

QString textArg(sqlite3_value* v)
{
    const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(v));
    return data ? QString::fromUtf8(data, sqlite3_value_bytes(v)) : QString();
}

bool isNullArg(sqlite3_value* v) { return sqlite3_value_type(v) == SQLITE_NULL; }

void resultText(sqlite3_context* ctx, const QString& s)
{
    const QByteArray utf8 = s.toUtf8();
    sqlite3_result_text(ctx, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

QDateTime dateTimeArg(sqlite3_value* v)
{
    if (isNullArg(v))
        return {};
    return toDateTime(QVariant(textArg(v)));
}

QString isoDate(const QDate& d) { return d.toString(QStringLiteral("yyyy-MM-dd")); }

QString isoDateTime(const QDateTime& dt) { return dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")); }

void fnNow(sqlite3_context* ctx, int, sqlite3_value**) { resultText(ctx, isoDateTime(QDateTime::currentDateTime())); }

void fnDate(sqlite3_context* ctx, int, sqlite3_value**) { resultText(ctx, isoDate(QDate::currentDate())); }

template <int Part> void fnDatePart(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    const QDateTime dt = dateTimeArg(argv[0]);
    if (!dt.isValid()) {
        sqlite3_result_null(ctx);
        return;
    }
    const QDate d = dt.date();
    sqlite3_result_int(ctx, Part == 0 ? d.year() : Part == 1 ? d.month() : d.day());
}

// DateAdd(interval, number, date) with the intervals "yyyy", "q", "m", "ww",
// "d"/"y"/"w", "h", "n", "s".
void fnDateAdd(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    const QString interval = textArg(argv[0]).toLower();
    const int n = sqlite3_value_int(argv[1]);
    const QDateTime dt = dateTimeArg(argv[2]);
    if (!dt.isValid()) {
        sqlite3_result_null(ctx);
        return;
    }
    QDateTime r = dt;
    if (interval == QLatin1String("yyyy"))
        r = dt.addYears(n);
    else if (interval == QLatin1String("q"))
        r = dt.addMonths(3 * n);
    else if (interval == QLatin1String("m"))
        r = dt.addMonths(n);
    else if (interval == QLatin1String("ww"))
        r = dt.addDays(7 * qint64(n));
    else if (interval == QLatin1String("h"))
        r = dt.addSecs(3600 * qint64(n));
    else if (interval == QLatin1String("n"))
        r = dt.addSecs(60 * qint64(n));
    else if (interval == QLatin1String("s"))
        r = dt.addSecs(n);
    else
        r = dt.addDays(n);
    const bool hasTime = textArg(argv[2]).size() > 10 || r.time() != QTime(0, 0);
    resultText(ctx, hasTime ? isoDateTime(r) : isoDate(r.date()));
}

// Format(value, mask): zero masks ("0000", "00000", "0.00") for numbers, and
// the date letters d, m, y, h, n, s for dates.
QString formatByMask(sqlite3_value* value, const QString& mask)
{
    const bool numericMask = !mask.isEmpty() && std::all_of(mask.begin(), mask.end(), [](QChar c) {
        return c == QLatin1Char('0') || c == QLatin1Char('#') || c == QLatin1Char('.');
    });
    if (numericMask) {
        const double v = sqlite3_value_double(value);
        const qsizetype dot = mask.indexOf(QLatin1Char('.'));
        const int decimals = dot < 0 ? 0 : int(mask.size() - dot - 1);
        const int width = int(dot < 0 ? mask.count(QLatin1Char('0')) : mask.left(dot).count(QLatin1Char('0')));
        QString text = QString::number(std::fabs(v), 'f', decimals);
        const qsizetype intLen = decimals > 0 ? text.indexOf(QLatin1Char('.')) : text.size();
        if (intLen < width)
            text.prepend(QString(width - intLen, QLatin1Char('0')));
        return v < 0 ? QLatin1Char('-') + text : text;
    }
    const QDateTime dt = dateTimeArg(value);
    if (!dt.isValid())
        return textArg(value);
    QString out;
    for (qsizetype i = 0; i < mask.size();) {
        const QChar c = mask.at(i).toLower();
        qsizetype run = 1;
        while (i + run < mask.size() && mask.at(i + run).toLower() == c)
            ++run;
        auto num = [&](int v, int w) { return QString::number(v).rightJustified(w, QLatin1Char('0')); };
        if (c == QLatin1Char('y'))
            out += run >= 4 ? num(dt.date().year(), 4) : num(dt.date().year() % 100, 2);
        else if (c == QLatin1Char('m'))
            out += num(dt.date().month(), run >= 2 ? 2 : 1);
        else if (c == QLatin1Char('d'))
            out += num(dt.date().day(), run >= 2 ? 2 : 1);
        else if (c == QLatin1Char('h'))
            out += num(dt.time().hour(), run >= 2 ? 2 : 1);
        else if (c == QLatin1Char('n'))
            out += num(dt.time().minute(), run >= 2 ? 2 : 1);
        else if (c == QLatin1Char('s'))
            out += num(dt.time().second(), run >= 2 ? 2 : 1);
        else
            out += mask.mid(i, run);
        i += run;
    }
    return out;
}

void fnFormat(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (isNullArg(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    resultText(ctx, argc < 2 ? textArg(argv[0]) : formatByMask(argv[0], textArg(argv[1])));
}

void fnIIf(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    const bool condition = !isNullArg(argv[0]) && sqlite3_value_double(argv[0]) != 0;
    sqlite3_result_value(ctx, condition ? argv[1] : argv[2]);
}

void fnNz(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (!isNullArg(argv[0]))
        sqlite3_result_value(ctx, argv[0]);
    else if (argc > 1)
        sqlite3_result_value(ctx, argv[1]);
    else
        sqlite3_result_int(ctx, 0);
}

void fnLeft(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (isNullArg(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    resultText(ctx, textArg(argv[0]).left(qMax(0, sqlite3_value_int(argv[1]))));
}

void fnRight(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (isNullArg(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    resultText(ctx, textArg(argv[0]).right(qMax(0, sqlite3_value_int(argv[1]))));
}

void fnMid(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (isNullArg(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    const int start = qMax(1, sqlite3_value_int(argv[1]));
    const QString s = textArg(argv[0]);
    resultText(ctx, argc > 2 ? s.mid(start - 1, qMax(0, sqlite3_value_int(argv[2]))) : s.mid(start - 1));
}

void fnLen(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (isNullArg(argv[0]))
        sqlite3_result_null(ctx);
    else
        sqlite3_result_int(ctx, int(textArg(argv[0]).size()));
}

// Val: the leading number of a text, with "." as the decimal point; 0 when none.
void fnVal(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    const QString s = textArg(argv[0]).trimmed();
    qsizetype end = 0;
    if (end < s.size() && (s.at(end) == QLatin1Char('-') || s.at(end) == QLatin1Char('+')))
        ++end;
    bool dot = false;
    while (end < s.size() && (s.at(end).isDigit() || (!dot && s.at(end) == QLatin1Char('.')))) {
        dot = dot || s.at(end) == QLatin1Char('.');
        ++end;
    }
    bool ok = false;
    const double v = s.left(end).toDouble(&ok);
    sqlite3_result_double(ctx, ok ? v : 0.0);
}

template <int Kind> void fnText(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (isNullArg(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    const QString s = textArg(argv[0]);
    resultText(ctx, Kind == 0 ? s.toUpper() : Kind == 1 ? s.toLower() : Kind == 2 ? s.trimmed() : s);
}

void fnCLng(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    sqlite3_result_int64(ctx, std::llrint(sqlite3_value_double(argv[0]))); // banker's rounding as CLng
}

void fnCDbl(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    sqlite3_result_double(ctx, sqlite3_value_double(argv[0]));
}

struct FunctionDef
{
    const char* name;
    int args;
    void (*fn)(sqlite3_context*, int, sqlite3_value**);
    bool deterministic;
};

const FunctionDef kFunctions[] = {
    {"Now", 0, fnNow, false},
    {"Date", 0, fnDate, false},
    {"Year", 1, fnDatePart<0>, true},
    {"Month", 1, fnDatePart<1>, true},
    {"Day", 1, fnDatePart<2>, true},
    {"DateAdd", 3, fnDateAdd, true},
    {"Format", 1, fnFormat, true},
    {"Format", 2, fnFormat, true},
    {"IIf", 3, fnIIf, true},
    {"Nz", 1, fnNz, true},
    {"Nz", 2, fnNz, true},
    {"Left", 2, fnLeft, true},
    {"Right", 2, fnRight, true},
    {"Mid", 2, fnMid, true},
    {"Mid", 3, fnMid, true},
    {"Len", 1, fnLen, true},
    {"Val", 1, fnVal, true},
    {"UCase", 1, fnText<0>, true},
    {"LCase", 1, fnText<1>, true},
    {"Trim", 1, fnText<2>, true},
    {"CStr", 1, fnText<3>, true},
    {"CLng", 1, fnCLng, true},
    {"CDbl", 1, fnCDbl, true},
};

} // namespace

bool registerFileDbFunctions(QSqlDatabase& db)
{
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return false;
    sqlite3* sqlite = *static_cast<sqlite3* const*>(handle.constData());
    if (!sqlite)
        return false;
    for (const FunctionDef& f : kFunctions) {
        const int flags = SQLITE_UTF8 | (f.deterministic ? SQLITE_DETERMINISTIC : 0);
        if (sqlite3_create_function_v2(sqlite, f.name, f.args, flags, nullptr, f.fn, nullptr, nullptr, nullptr)
            != SQLITE_OK)
            return false;
    }
    return true;
}
