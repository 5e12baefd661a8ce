// The common layer: Currency to the ten-thousandth, numbers and dates as Italian text, the value checks and their
// messages, the control characters of tax codes, VAT numbers and EAN-13 barcodes, and the error log.
#include "common/apphome.h"
#include "common/codicefiscale.h"
#include "common/currency.h"
#include "common/ean13.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/single.h"
#include "common/valuecheck.h"
#include "support/columns.h"
#include "support/localerows.h"

#include <QtTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(Currency)

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 RawMax = std::numeric_limits<qint64>::max();
constexpr qint64 RawMin = std::numeric_limits<qint64>::min();
QVariant text(const char* s) { return QVariant(QString::fromUtf8(s)); }
QString str(const char* s) { return QString::fromUtf8(s); }
template <typename T> QVariant typedNull() { return QVariant(QMetaType::fromType<T>()); } // a database Null
QVariant money(qint64 raw) { return QVariant::fromValue(Currency::fromRaw(raw)); }
// The columns of a table; with columns(), the process locale's first.
template <typename... T, typename... N> void columns(N... names) { testdb::columns<QString, T...>("locale", names...); }
// Rows named by their input, for inputs that speak for themselves.
template <typename... V> void quoted(const char* in, const V&... v) { addRows(qPrintable("'" + str(in) + "'"), v...); }

} // namespace

class TestCommon : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;
    QString read(const QString& name)
    {
        QFile f(programFile(name));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }

private Q_SLOTS:
    void initTestCase() { setProgramFolder(m_home.path()); }
    // The saturating conversion and the checked one: the same amount in range, the checked one none beyond it.
    void fromDouble_data()
    {
        columns<double, qint64, bool>("value", "raw", "inRange");
        const auto row = [](const char* name, double v, qint64 raw) { addRows(name, v, raw, true); };
        const auto beyond = [](const char* name, double v, qint64 raw) { addRows(name, v, raw, false); };
        // Odd multiples of 1/32 are the only doubles that fall exactly halfway.
        row("tie 1/32 down to even", 0.03125, 312);
        row("tie 3/32 up to even", 0.09375, 938);
        row("negative tie -1/32", -0.03125, -312);
        row("negative tie -3/32", -0.09375, -938);
        // A decimal half is not a binary half: the exact value decides.
        row("0.00005 lies above the half", 0.00005, 1);
        row("0.00015 lies below the half", 0.00015, 1);
        row("negative zero", -0.0, 0);
        // Doubles are 1/8 apart at the limits: the last one inside, the first beyond.
        row("largest double in range", 922337203685477.5, Q_INT64_C(9223372036854775000));
        row("lowest double in range", -922337203685477.5, Q_INT64_C(-9223372036854775000));
        beyond("first double above the range", 922337203685477.625, RawMax);
        beyond("first double below the range", -922337203685477.625, RawMin);
        beyond("infinity", std::numeric_limits<double>::infinity(), RawMax);
        beyond("minus infinity", -std::numeric_limits<double>::infinity(), RawMin);
        beyond("NaN", std::numeric_limits<double>::quiet_NaN(), 0);
        // A Single enters at its own binary value.
        row("Single 0.00015f is 0.000150000007...", double(0.00015f), 2);
    }

    void fromDouble()
    {
        LOCALE_SCOPE;
        QFETCH(double, value);
        QFETCH(qint64, raw);
        QFETCH(bool, inRange);
        QCOMPARE(Currency::fromDouble(value).raw(), raw);
        QCOMPARE(Currency::fromLongDouble(value).raw(), raw);
        const std::optional<Currency> checked = inRange ? std::optional(Currency::fromRaw(raw)) : std::nullopt;
        QCOMPARE(Currency::fromDoubleChecked(value), checked);
        QCOMPARE(Currency::fromLongDoubleChecked(value), checked);
    }

    // Sums, differences, negations and products at the limits: the plain operation saturates, the checked one tells.
    void arithmetic_data()
    {
        testdb::columns<QString, qint64, qint64, qint64, bool>("op", "a", "b", "saturated", "inRange");
        const auto row = [](const char* name, const char* op, qint64 a, qint64 b, qint64 r, bool in) {
            QTest::newRow(name) << QString::fromLatin1(op) << a << b << r << in;
        };
        row("sum reaching the maximum", "+", RawMax - 1, 1, RawMax, true);
        row("sum beyond the maximum", "+", RawMax, 1, RawMax, false);
        row("sum beyond the minimum", "+", RawMin, -1, RawMin, false);
        row("the limits together", "+", RawMin, RawMax, -1, true);
        row("difference", "-", 10000, 25000, -15000, true);
        row("difference below the minimum", "-", RawMin, 1, RawMin, false);
        row("minimum taken from zero", "-", 0, RawMin, RawMax, false);
        row("negation", "neg", 12345, 0, -12345, true);
        row("negation of the minimum", "neg", RawMin, 0, RawMax, false);
        row("product", "*", 15000, 15000, 22500, true);
        row("product beyond the maximum", "*", RawMax, 20000, RawMax, false);
        row("product beyond the minimum", "*", RawMax, -20000, RawMin, false);
        row("product rounding to the maximum", "*", RawMax, 10000, RawMax, true);
        // The product rounds half to even, and may need more than 64 bits before the division.
        row("product half down to even", "*", 1, 5000, 0, true);
        row("product half up to even", "*", 3, 5000, 2, true);
        row("product negative half to even", "*", -3, 5000, -2, true);
        row("product negative times negative", "*", -3, -5000, 2, true);
        row("product above half", "*", 1, 6000, 1, true);
        row("product negative below half", "*", -7, 4999, -3, true);
        row("product wide intermediate", "*", 922337203685, 100000000, 9223372036850000, true);
        row("product wide tie", "*", 1234567891235, 75000, 9259259184262, true);
    }

    void arithmetic()
    {
        QFETCH(QString, op);
        QFETCH(qint64, a);
        QFETCH(qint64, b);
        QFETCH(qint64, saturated);
        QFETCH(bool, inRange);
        const Currency x = Currency::fromRaw(a), y = Currency::fromRaw(b);
        Currency plain;
        std::optional<Currency> checked;
        if (op == u"+") {
            plain = x + y;
            checked = checkedAdd(x, y);
            Currency total = x;
            QCOMPARE(addChecked(total, y), inRange);
            QCOMPARE(total, inRange ? Currency::fromRaw(saturated) : x); // unchanged on failure
            QCOMPARE(Currency(x) += y, plain);
        } else if (op == u"-") {
            plain = x - y;
            checked = checkedSub(x, y);
            QCOMPARE(Currency(x) -= y, plain);
        } else if (op == u"neg") {
            plain = -x;
            checked = checkedNeg(x);
        } else {
            plain = CyMul(x, y);
            checked = CyMulChecked(x, y);
            QCOMPARE(CyMulChecked(y, x), checked);
            QCOMPARE(CyMul(y, x), plain);
        }
        QCOMPARE(plain.raw(), saturated);
        QCOMPARE(checked, inRange ? std::optional(plain) : std::nullopt);
    }

    // With a 64-bit mantissa both ends of the range are reachable, one ten-thousandth further is out, and value * 10000
    // is exact: rint (ties to even) is then an independent reference for fromDouble.
    void extendedPrecision()
    {
        if (std::numeric_limits<long double>::digits < 64)
            QSKIP("long double is no wider than double here");
        QCOMPARE(Currency::fromLongDoubleChecked(922337203685477.5807L), std::optional(Currency::max()));
        QCOMPARE(Currency::fromLongDoubleChecked(-922337203685477.5808L), std::optional(Currency::min()));
        QVERIFY(!Currency::fromLongDoubleChecked(922337203685477.5808L));
        QVERIFY(!Currency::fromLongDoubleChecked(-922337203685477.5809L));
        // 33/32 plus a bit beyond double precision: no longer a tie.
        const long double above = 1.03125L + std::ldexp(1.0L, -60);
        QCOMPARE(Currency::fromLongDouble(above).raw(), qint64(10313));
        QCOMPARE(Currency::fromLongDouble(-above).raw(), qint64(-10313));
        QCOMPARE(Currency::fromDouble(static_cast<double>(above)).raw(), qint64(10312));
        QRandomGenerator rng(20240611);
        for (int i = 0; i < 200000; ++i) {
            double v;
            if (i % 4 == 0) { // on and around the exact ties k/32
                v = double(rng.bounded(2000000) * 2 + 1) / 32.0;
                const int steps = int(rng.bounded(5)) - 2;
                for (int s = 0; s < std::abs(steps); ++s)
                    v = std::nextafter(v, steps < 0 ? 0.0 : 1e300);
            } else {
                v = rng.generateDouble() * std::pow(10.0, int(rng.bounded(16)) - 5);
            }
            if (i % 2)
                v = -v;
            const long double reference = std::rint(static_cast<long double>(v) * 10000.0L);
            if (Currency::fromDouble(v).raw() != static_cast<qint64>(reference))
                QFAIL(qPrintable(QStringLiteral("fromDouble(%1)").arg(v, 0, 'g', 17)));
        }
    }

    void toDoubleRoundTrips()
    {
        QRandomGenerator rng(7);
        for (int i = 0; i < 100000; ++i) {
            const qint64 raw = qint64(rng.generate64() >> 12) * (i % 2 ? -1 : 1); // below 2^52
            const Currency c = Currency::fromRaw(raw);
            if (Currency::fromDouble(c.toDouble()) != c || Currency::fromLongDouble(c.toLongDouble()) != c)
                QFAIL(qPrintable(QStringLiteral("raw %1").arg(raw)));
        }
        QCOMPARE(Currency::fromRaw(12345).toDouble(), 1.2345);
    }

    // The messages engines hand back for a value they will not store.
    void valueMessages_data()
    {
        columns<QString, QDate, double, QString, QString>("kind", "date", "number", "campo", "expected");
        const QString limiti = " (sono ammessi importi da -922.337.203.685.477,5808 a 922.337.203.685.477,5807).";
        const QString fuori = "Importo fuori dai limiti consentiti";
        const QString intervallo = " (la data deve essere compresa tra il 01/01/1753 e il 31/12/9999).";
        const QString nonNumero = " (il valore non è un numero).";
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const auto date = [](const char* name, const QDate& d, const char* campo, const QString& expected) {
            addRows(name, u"date"_s, d, 0.0, QString(campo), expected);
        };
        const auto number = [](const char* name, const char* kind, double v, const char* campo, const QString& text) {
            addRows(name, QString(kind), QDate(), v, QString(campo), text);
        };
        date("no date", QDate(), "Data valuta", "Data non valida: Data valuta (data mancante o inesistente).");
        date("before 1753", QDate(1752, 12, 31), "Data", "Data non valida: Data" + intervallo);
        date("after 9999", QDate(10000, 1, 1), "Data", "Data non valida: Data" + intervallo);
        date("no field named", QDate(), "", "Data non valida (data mancante o inesistente).");
        date("first date kept", QDate(1753, 1, 1), "Data", "");
        date("last date kept", QDate(9999, 12, 31), "Data", "");
        number("quantity NaN", "quantity", nan, "Quantità", "Quantità non valida: Quantità" + nonNumero);
        number("quantity too large for a Single", "quantity", 1e39, "Qta", "Quantità non valida: Qta" + nonNumero);
        number("quantity kept", "quantity", -1e30, "Qta", "");
        number("amount NaN", "amount", nan, "Importo", "Importo non valido: Importo" + nonNumero);
        number("amount too large", "amount", 1e15, "Importo", fuori + ": Importo" + limiti);
        number("amount infinite", "amount", -qInf(), "Totale", fuori + ": Totale" + limiti);
        number("amount kept", "amount", -922337203685477.5, "Importo", "");
        number("out of range, no field", "limits", 0, "", fuori + limiti);
    }

    void valueMessages()
    {
        LOCALE_SCOPE;
        QFETCH(QString, kind);
        QFETCH(QDate, date);
        QFETCH(double, number);
        QFETCH(QString, campo);
        QFETCH(QString, expected);
        QString message;
        if (kind == "date"_L1) {
            message = erroreData(date, campo);
            QCOMPARE(isDataValida(date), expected.isEmpty());
        } else if (kind == "quantity"_L1) {
            // A double too large for a Single becomes an infinity: refused as well.
            message = erroreQuantita(toSingle(number), campo);
            QCOMPARE(toSingleChecked(number).has_value(), expected.isEmpty());
        } else if (kind == "amount"_L1) {
            message = erroreImporto(number, campo);
        } else {
            message = messaggioImportoFuoriLimiti(campo);
        }
        QCOMPARE(message, expected);
    }

    void parseNumber_data()
    {
        columns<QString, bool, double>("input", "valid", "value");
        const auto ok = [](const char* name, const char* in, double v) { addRows(name, str(in), true, v); };
        ok("dot for thousands, comma for decimals", "1.234,50", 1234.5);
        ok("separators anywhere between digits", "1.2.3", 123);
        ok("negative", "-3,5", -3.5);
        ok("plus sign", "+4", 4);
        ok("blanks around", " 7 ", 7);
        ok("leading comma", ",5", 0.5);
        ok("trailing comma", "5,", 5);
        ok("exponent", "1,5E3", 1500);
        ok("negative exponent", "2e-2", 0.02);
        ok("correctly rounded", "0,3", 0.3);
        ok("many digits", "0,1000000000000000055511151231257827", 0.1);
        for (const char* in : {"", "   ", "12abc", "1,2,3", "-", "3-", "- 3", "1 234", ".5", "12.", "1..2", "1,234.5",
                               "1E", "1E400", "١٢"})
            quoted(in, str(in), false, 0.0);
    }

    void parseNumber()
    {
        LOCALE_SCOPE;
        QFETCH(QString, input);
        QFETCH(bool, valid);
        QFETCH(double, value);
        const std::optional<double> parsed = parseNumberIt(input);
        QCOMPARE(parsed.has_value(), valid);
        QCOMPARE(isNumericIt(input), valid);
        if (valid)
            QVERIFY2(*parsed == value, qPrintable(QString::number(*parsed, 'g', 17)));
    }

    void getValore_data()
    {
        columns<QVariant, qint64, float, double>("value", "raw", "single", "numeric");
        addRows("Null", QVariant(), qint64(0), 0.0f, 0.0);
        addRows("typed Null", typedNull<double>(), qint64(0), 0.0f, 0.0);
        addRows("not numeric", text("abc"), qint64(0), 0.0f, 0.0);
        addRows("bool is not a number", QVariant(true), qint64(0), 0.0f, 0.0);
        addRows("Italian text", text("1.234,5678"), qint64(12345678), 1234.5678f, 1234.5678);
        addRows("negative text", text("-0,5"), qint64(-5000), -0.5f, -0.5);
        addRows("int", QVariant(12), qint64(120000), 12.0f, 12.0);
        addRows("double", QVariant(2.5), qint64(25000), 2.5f, 2.5);
        addRows("float enters at its value", QVariant(0.1f), qint64(1000), 0.1f, double(0.1f));
        // Text is rounded from its digits: a decimal half is a tie there.
        addRows("text half to even, down", text("0,00005"), qint64(0), 0.00005f, 0.00005);
        addRows("text half to even, up", text("0,00015"), qint64(2), 0.00015f, 0.00015);
        addRows("text just above half", text("0,0000500001"), qint64(1), 0.0000500001f, 0.0000500001);
        // 1 + 2^-24 + a little: a float tie through a double, above the tie read straight.
        addRows("Single in one rounding", text("1,00000005960464477539062500000001"), qint64(10000), 1.00000012f,
                1.0000000596046448);
        addRows("Single beyond 2^24", text("16.777.217"), qint64(167772170000), 16777216.0f, 16777217.0);
    }

    void getValore()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(qint64, raw);
        QFETCH(float, single);
        QFETCH(double, numeric);
        QCOMPARE(getValoreCurrency(value).raw(), raw);
        QVERIFY2(getValoreSingle(value) == single, qPrintable(QString::number(getValoreSingle(value), 'g', 9)));
        QVERIFY2(getValoreNumerico(value) == numeric, qPrintable(QString::number(getValoreNumerico(value), 'g', 17)));
    }

    // One table for every overload: a double or float gives the same text through its own overload and a QVariant.
    void formattaImporto_data()
    {
        columns<QVariant, int, QString, QString>("value", "decimals", "expected", "emptyWhenNull");
        const auto row = [](const char* name, const QVariant& v, int decimals, const char* expected,
                            const char* whenEmpty = nullptr) {
            addRows(name, v, decimals, str(expected), whenEmpty ? str(whenEmpty) : str(expected));
        };
        row("Null", QVariant(), 2, "0,00", "");
        row("typed Null", typedNull<qlonglong>(), 3, "0,000", "");
        row("not numeric", text("abc"), 2, "0,00", "");
        row("zero is a value", QVariant(0), 2, "0,00");
        row("NaN is no value", QVariant(std::numeric_limits<double>::quiet_NaN()), 2, "0,00", "");
        row("text read the Italian way", text("1234,5"), 2, "1.234,50");
        row("text with separators", text("1.234.567,891"), 2, "1.234.567,89");
        row("text half away from zero", text("0,125"), 2, "0,13");
        row("negative text half away", text("-0,125"), 2, "-0,13");
        row("text with a dot only", text("12.5"), 0, "125,");
        row("beyond double precision", QVariant(qlonglong(9007199254740993LL)), 0, "9.007.199.254.740.993,");
        row("Currency grouping", money(12345678900), 2, "1.234.567,89");
        row("Currency half away", money(1250), 2, "0,13");
        row("Currency negative half away", money(-1250), 2, "-0,13");
        row("Currency below half", money(1249), 2, "0,12");
        row("Currency carry to a thousand", money(9999950), 2, "1.000,00");
        row("Currency no decimals", money(-25000), 0, "-3,");
        row("Currency padded", money(15000), 6, "1,500000");
        row("Currency minimum", money(std::numeric_limits<qint64>::min()), 2, "-922.337.203.685.477,58");
        row("Currency maximum", money(std::numeric_limits<qint64>::max()), 4, "922.337.203.685.477,5807");
        row("rounds to zero, no sign", money(-40), 2, "0,00");
        // Binary 1.00499999..., 2.67499999..., 0.43499999...: the digits read, not the binary error, decide the half.
        row("1.005", QVariant(1.005), 2, "1,01");
        row("-1.005", QVariant(-1.005), 2, "-1,01");
        row("0.145 times 3", QVariant(0.145 * 3), 2, "0,44");
        row("below half", QVariant(1.0049), 2, "1,00");
        row("-0.5 away from zero", QVariant(-0.5), 0, "-1,");
        row("large", QVariant(1e15), 0, "1.000.000.000.000.000,");
        row("double rounds to zero", QVariant(-0.001), 2, "0,00");
        // A Single shows seven significant digits.
        row("Single 2.675f", QVariant(2.675f), 2, "2,68");
        row("Single 1234.5678f", QVariant(1234.5678f), 6, "1.234,568000");
        row("Single 0.1f", QVariant(0.1f), 9, "0,100000000");
    }

    void formattaImporto()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(int, decimals);
        QFETCH(QString, expected);
        QFETCH(QString, emptyWhenNull);
        if (value.typeId() == qMetaTypeId<Currency>()) {
            QCOMPARE(::formattaImporto(value.value<Currency>(), decimals), expected);
            return;
        }
        QCOMPARE(::formattaImporto(value, decimals), expected);
        QCOMPARE(::formattaImporto(value, decimals, true), emptyWhenNull);
        if (value.typeId() == QMetaType::Double)
            QCOMPARE(::formattaImporto(value.toDouble(), decimals), expected);
        if (value.typeId() == QMetaType::Float)
            QCOMPARE(::formattaImporto(value.toFloat(), decimals), expected); // picks the Single overload
        if (decimals == 0)
            QCOMPARE(formattaIntero(value), expected.chopped(1)); // the same without the final comma
    }

    // The plain text of a number (for Currency also toPlainString, with a dot), and a whole number through a mask.
    void plainText_data()
    {
        columns<QVariant, QString, QString>("value", "mask", "expected"); // no mask: plainTextIt
        const auto plain = [](const char* name, const QVariant& v, const char* expected) {
            addRows(name, v, QString(), str(expected));
        };
        const auto mask = [](const char* name, qint64 v, const char* m, const char* expected) {
            addRows(name, QVariant(v), str(m), str(expected));
        };
        plain("zero", QVariant(0.0), "0");
        plain("decimal comma, no grouping", QVariant(1234.5), "1234,5");
        plain("small", QVariant(-0.0001), "-0,0001");
        plain("fifteen digits", QVariant(123456789012345.0), "123456789012345");
        plain("binary noise hidden", QVariant(0.1 + 0.2), "0,3");
        plain("exponent when large", QVariant(1e15), "1E+15");
        plain("exponent when small", QVariant(1.5e-5), "1,5E-05");
        plain("Single", QVariant(0.1f), "0,1");
        plain("Single, seven digits", QVariant(1234567.0f), "1234567");
        plain("Single, exponent beyond seven", QVariant(16777216.0f), "1,677722E+07");
        plain("Currency", money(-12345000), "-1234,5");
        plain("Currency zero", money(0), "0");
        plain("Currency smallest negative step", money(-1), "-0,0001");
        plain("Currency inner zeros kept", money(10203), "1,0203");
        plain("Currency whole, no separators", money(12345670000), "1234567");
        plain("Currency minimum", money(RawMin), "-922337203685477,5808");
        mask("mask filled", 7, "0000", "0007");
        mask("longer than the mask", 123456, "0000", "123456");
        mask("negative through a mask", -7, "0000", "-0007");
    }

    void plainText()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QString, mask);
        QFETCH(QString, expected);
        if (!mask.isEmpty()) {
            QCOMPARE(::formatMask(value.toLongLong(), mask), expected);
            return;
        }
        const QString written = value.typeId() == QMetaType::Float ? plainTextIt(value.toFloat())
            : value.typeId() == QMetaType::Double                  ? plainTextIt(value.toDouble())
                                                                   : plainTextIt(value.value<Currency>());
        QCOMPARE(written, expected);
        QVERIFY(isNumericIt(written)); // what is written reads back
        if (value.typeId() == qMetaTypeId<Currency>())
            QCOMPARE(value.value<Currency>().toPlainString(), QString(expected).replace(u',', u'.'));
    }

    void formatDates_data()
    {
        columns<QDateTime, QString, QString>("when", "dateTime", "stamp");
        const auto row = [](const char* name, const QDateTime& when, const char* dateTime, const char* stamp) {
            addRows(name, when, str(dateTime), str(stamp));
        };
        row("morning", QDateTime(QDate(2023, 12, 5), QTime(9, 5, 7)), "05/12/2023 09:05:07", "20231205-090507");
        row("evening", QDateTime(QDate(2024, 2, 29), QTime(23, 59)), "29/02/2024 23:59:00", "20240229-235900");
        row("short year", QDateTime(QDate(999, 1, 2), QTime(0, 0)), "02/01/0999 00:00:00", "09990102-000000");
        row("invalid", QDateTime(), "", "");
    }

    void formatDates()
    {
        LOCALE_SCOPE;
        QFETCH(QDateTime, when);
        QFETCH(QString, dateTime);
        QFETCH(QString, stamp);
        QCOMPARE(formatDateTime(when), dateTime);
        QCOMPARE(formatDate(when.date()), dateTime.left(10));
        QCOMPARE(formatDate(QVariant(when)), dateTime.left(10));
        QCOMPARE(formatStamp(when), stamp);
        QCOMPARE(formatTimeHM(when.time()), dateTime.mid(11, 5));
        QCOMPARE(formatDateTime(QVariant(dateTime)), dateTime); // what is written reads back
    }

    void toDateTime_data()
    {
        columns<QVariant, QDateTime>("value", "expected");
        const QDate d(2023, 12, 5);
        const QDateTime midnight(d, QTime(0, 0));
        const QDateTime withTime(d, QTime(10, 20, 30));
        addRows("Italian", text("05/12/2023"), midnight);
        addRows("Italian, short", text("5/12/23"), midnight);
        addRows("two-digit year of the last century", text("5/2/45"), QDateTime(QDate(1945, 2, 5), QTime(0, 0)));
        addRows("dashes", text("05-12-2023"), midnight);
        addRows("blanks around", text(" 05/12/2023 "), midnight);
        addRows("Italian with time", text("05/12/2023 10:20:30"), withTime);
        addRows("Italian with dotted time", text("05/12/2023 10.20.30"), withTime);
        addRows("ISO", text("2023-12-05"), midnight);
        addRows("ISO date-time", text("2023-12-05 10:20:30"), withTime);
        addRows("ISO with T and fraction", text("2023-12-05T10:20:30.500"), QDateTime(d, QTime(10, 20, 30, 500)));
        addRows("ISO without seconds", text("2023-12-05 10:20"), QDateTime(d, QTime(10, 20)));
        addRows("QDate", QVariant(d), midnight);
        addRows("QDateTime", QVariant(withTime), withTime);
        // No date: no such day or hour, mixed separators, a three-digit year, a number.
        for (const char* in : {"31/02/2023", "2023-12-05 25:00", "05/12-2023", "05/12/202", "12.5"})
            quoted(in, text(in), QDateTime());
        addRows("numeric variant", QVariant(45000), QDateTime());
        addRows("Null", QVariant(), QDateTime());
        addRows("typed Null", typedNull<QDate>(), QDateTime());
    }

    void toDateTime()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QDateTime, expected);
        QCOMPARE(::toDateTime(value), expected);
        QCOMPARE(toDate(value), expected.date());
        QCOMPARE(isDateIt(value), expected.isValid());
    }

    void screenHelpers_data()
    {
        columns<QVariant, QString, int>("value", "id", "chek");
        const QString null = str("Null");
        addRows("int", QVariant(15), str("15"), 15);
        addRows("whole double", QVariant(15.0), str("15"), 15);
        addRows("text", text(" 15 "), str("15"), 15);
        addRows("text with thousands", text("1.234"), str("1234"), 1234);
        addRows("beyond double precision", QVariant(qlonglong(9007199254740993LL)), str("9007199254740993"), 32767);
        addRows("Null", QVariant(), null, 0);
        addRows("typed Null", typedNull<int>(), null, 0);
        addRows("zero", QVariant(0), null, 0);
        addRows("check box -1", QVariant(-1), null, 1);
        addRows("one", QVariant(1), str("1"), 1);
        addRows("text -1", text("-1"), null, 1);
        addRows("true", QVariant(true), null, 1);
        addRows("not numeric", text("abc"), null, 0);
    }

    void screenHelpers()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QString, id);
        QFETCH(int, chek);
        QCOMPARE(getIDOrNullStr(value), id);
        QCOMPARE(int(getChekByBool(value)), chek);
    }

    // Tax codes (longer than 11 characters) and VAT numbers.
    void controlCharacter_data()
    {
        testdb::columns<QString, bool>("codice", "valido");
        QTest::newRow("right letter") << "RSSMRA85T10A562S" << true;
        QTest::newRow("wrong letter") << "RSSMRA85T10A562T" << false;
        QTest::newRow("lower case") << "rssmra85t10a562s" << true;
        QTest::newRow("15 characters") << "RSSMRA85T10A562" << false;
        QTest::newRow("judged on the first 16") << "RSSMRA85T10A562SXYZ" << true;
        QTest::newRow("longer, wrong letter") << "RSSMRA85T10A562TS" << false;
        // Omocodia: letters in the digits' places, with their own control letter.
        QTest::newRow("omocodia") << "RSSMRAURTMLARSNL" << true;
        QTest::newRow("omocodia, letter of the plain form") << "RSSMRAURTMLARSNS" << false;
        // A digit where a letter belongs is summed by the digit tables.
        QTest::newRow("digit in a letter's place") << "RSSMR185T10A562T" << true;
        // A blank adds nothing and shifts the sum by one.
        QTest::newRow("blank inside") << "RSS RA85T10A562F" << true;
        QTest::newRow("VAT right digit 7") << "00743110157" << true;
        QTest::newRow("VAT right digit 1") << "12345678911" << true;
        QTest::newRow("VAT wrong digit") << "00743110158" << false;
        QTest::newRow("VAT transposed") << "07043110157" << false;
        // The right control digit is 0, yet the number is judged wrong.
        QTest::newRow("VAT control digit 0") << "01234560090" << false;
        QTest::newRow("VAT all zeros") << "00000000000" << false;
        // Ten digits: the control digit reads as 0.
        QTest::newRow("VAT short") << "0074311015" << false;
        // Letters count 0: "A" in place of a 0 leaves the number right.
        QTest::newRow("VAT letter as zero") << "A0743110157" << true;
        QTest::newRow("empty") << "" << false;
    }

    void controlCharacter()
    {
        QFETCH(QString, codice);
        QFETCH(bool, valido);
        if (codice.size() <= 11) // a VAT number, or nothing
            QCOMPARE(checkPartitaIva(codice), valido);
        if (codice.size() > 11 || codice.isEmpty())
            QCOMPARE(checkCodiceFiscale(codice), valido);
    }

    void ean13_data()
    {
        testdb::columns<QString, int, QString>("codice", "cifra", "font");
        QTest::newRow("4006381333931") << "4006381333931" << 1 << "4AKGDSL*dddjdb+";
        QTest::newRow("9780201379624") << "9780201379624" << 4 << "9HSKCKB*dhjgce+";
        QTest::newRow("8001505005707") << "8001505005707" << 7 << "8AKBPKF*aafhah+";
        // A weighted sum that is a multiple of ten gives 0, not 10.
        QTest::newRow("check 0") << "0000000000000" << 0 << "0AAAAAA*aaaaaa+";
        QTest::newRow("first digit 0: set A throughout") << "0123456789012" << 2 << "0BCDEFG*hijabc+";
        QTest::newRow("12 digits") << "400638133393" << 1 << "";
        QTest::newRow("11 digits") << "40063813339" << -1 << "";
        QTest::newRow("empty") << "" << -1 << "";
    }

    void ean13()
    {
        QFETCH(QString, codice);
        QFETCH(int, cifra);
        QFETCH(QString, font);
        QCOMPARE(int(getEAN13ChekDigit(codice)), cifra);
        if (!font.isEmpty())
            QCOMPARE(EncodeEAN13(codice), font);
    }

    void errorLog()
    {
        const ErrorReport r{-2147217865,
                            "Tabella 'X' inesistente",
                            "MariaDB",
                            "cAdoSqlServer",
                            "getNewRecordset -> frmIva.showData",
                            "SQL=SELECT * FROM X"};
        QCOMPARE(cError::logEntry(r, QDateTime(QDate(2025, 1, 5), QTime(7, 8, 9))),
                 QString(80, '*')
                     + "\nData   05/01/2025 07:08:09\nErr.N. -2147217865\nDescr. Tabella 'X' inesistente\n"
                       "Source MariaDB\nModulo cAdoSqlServer.getNewRecordset -> frmIva.showData\n"
                       "Avanz. SQL=SELECT * FROM X\n");
        // A report appends to Err.log, takes the run-time error of the moment, clears it, and holds the in-error flag
        // while the handler shows it.
        QFile::remove(programFile("Err.log"));
        bool flagDuringReport = false, left = false;
        ErrorReport seen;
        gError().setLeaveHook([&] { left = true; });
        gError().setHandler([&](const ErrorReport& report) {
            flagDuringReport = gError().inError();
            seen = report;
            return 1;
        });
        Err().raise(9999, "TLSOFT::cAdoSqlServer", "Testo mancante");
        notifyError("bOrvantis", "getOpzione", QString());
        QVERIFY(flagDuringReport && !gError().inError() && !left);
        QCOMPARE(seen.number, qint64(9999));
        QCOMPARE(seen.source, u"TLSOFT::cAdoSqlServer"_s);
        QCOMPARE(Err().number, qint64(0));
        QVERIFY(read("Err.log").contains("\nModulo bOrvantis.getOpzione\nAvanz. \n"));
        // "Esci da Orvantis": the handler answers 0 and the program leaves.
        gError().setHandler([](const ErrorReport&) { return 0; });
        notifyError("bOrvantis", "x", QString());
        QVERIFY(left);
        QCOMPARE(read("Err.log").count(QString(80, '*')), 2);
        gError().setHandler({});
        gError().setLeaveHook({});
        // debug.txt: a line with its time stamp for each call.
        QFile::remove(programFile("debug.txt"));
        writeDebugLine("frmAnagrafica: caricamento");
        writeDebugLine("fine");
        const QStringList lines = read("debug.txt").split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY(QRegularExpression("^\\d{8}-\\d{6} frmAnagrafica: caricamento$").match(lines.at(0)).hasMatch());
    }
};

QTEST_GUILESS_MAIN(TestCommon)
#include "tst_common.moc"
