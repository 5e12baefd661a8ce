#include "common/currency.h"
#include "common/single.h"
#include "common/valuecheck.h"
#include "support/localerows.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr qint64 RawMax = std::numeric_limits<qint64>::max();
constexpr qint64 RawMin = std::numeric_limits<qint64>::min();

// The columns of a table: the process locale's, then those named.
template <typename... T, typename... Name> void columns(Name... names)
{
    QTest::addColumn<QString>("locale");
    (QTest::addColumn<T>(names), ...);
}

} // namespace

class TstCurrency : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The saturating conversion and the checked one side by side: the checked
    // form gives the same amount in range and none beyond it.
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
        row("-1.00005 lies beyond the half", -1.00005, -10001);
        row("large", 123456789012.3456, 1234567890123456);
        row("tiny", 1e-300, 0);
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
        row("Single 1234.5678f is 1234.56774...", double(1234.5678f), 12345677);
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

    // Sums, differences, negations and products at the limits: the plain
    // operation saturates, the checked one tells.
    void arithmetic_data()
    {
        QTest::addColumn<QString>("op");
        QTest::addColumn<qint64>("a");
        QTest::addColumn<qint64>("b");
        QTest::addColumn<qint64>("saturated");
        QTest::addColumn<bool>("inRange");
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
        // The product rounds half to even, and may need more than 64 bits
        // before the division.
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
            addRows(name, QStringLiteral("date"), d, 0.0, QString(campo), expected);
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
        if (kind == QLatin1String("date")) {
            message = erroreData(date, campo);
            QCOMPARE(isDataValida(date), expected.isEmpty());
        } else if (kind == QLatin1String("quantity")) {
            // A double too large for a Single becomes an infinity: refused as well.
            message = erroreQuantita(toSingle(number), campo);
            QCOMPARE(toSingleChecked(number).has_value(), expected.isEmpty());
        } else if (kind == QLatin1String("amount")) {
            message = erroreImporto(number, campo);
        } else {
            message = messaggioImportoFuoriLimiti(campo);
        }
        QCOMPARE(message, expected);
    }

    // With a 64-bit mantissa the limits themselves are reachable: both ends of
    // the range are in, one ten-thousandth further is out; a long double
    // keeps the width a double has not. And value * 10000 is exact there,
    // so rint, to nearest with ties to even, is an independent reference
    // for fromDouble.
    void extendedPrecision()
    {
        if constexpr (std::numeric_limits<long double>::digits < 64) {
            QSKIP("long double is no wider than double here");
        } else {
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
    }

    void toPlainString_data()
    {
        columns<qint64, QString>("raw", "text");
        addRows("zero", qint64(0), QStringLiteral("0"));
        addRows("trailing zeros dropped", qint64(12345000), QStringLiteral("1234.5"));
        addRows("smallest negative step", qint64(-1), QStringLiteral("-0.0001"));
        addRows("inner zeros kept", qint64(10203), QStringLiteral("1.0203"));
        addRows("whole, no separators", qint64(12345670000), QStringLiteral("1234567"));
        addRows("minimum", RawMin, QStringLiteral("-922337203685477.5808"));
    }
    void toPlainString()
    {
        LOCALE_SCOPE;
        QFETCH(qint64, raw);
        QFETCH(QString, text);
        QCOMPARE(Currency::fromRaw(raw).toPlainString(), text);
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
};

QTEST_GUILESS_MAIN(TstCurrency)
#include "tst_currency.moc"
