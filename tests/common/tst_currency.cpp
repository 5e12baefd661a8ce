#include "currency.h"
#include "single.h"

#include <QLocale>
#include <QRandomGenerator>
#include <QtTest>

#include "localerows.h"

#include <clocale>
#include <cmath>
#include <limits>

namespace {

constexpr qint64 RawMax = std::numeric_limits<qint64>::max();
constexpr qint64 RawMin = std::numeric_limits<qint64>::min();


} // namespace

class TstCurrency : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromDouble_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("asSingle");
        QTest::addColumn<qint64>("raw");
        const auto row = [](const char* name, double v, qint64 raw) { addRows(name, v, false, raw); };
        // Odd multiples of 1/32 are the only doubles that fall exactly halfway.
        row("tie 1/32 down to even", 0.03125, 312);
        row("tie 3/32 up to even", 0.09375, 938);
        row("tie 33/32 down to even", 1.03125, 10312);
        row("negative tie -1/32", -0.03125, -312);
        row("negative tie -3/32", -0.09375, -938);
        // A decimal half is not a binary half: the exact value decides.
        row("0.00005 lies above the half", 0.00005, 1);
        row("0.00015 lies below the half", 0.00015, 1);
        row("2.00005 lies below the half", 2.00005, 20000);
        row("-1.00005 lies beyond the half", -1.00005, -10001);
        row("123.45675 lies below the half", 123.45675, 1234567);
        row("large", 123456789012.3456, 1234567890123456);
        row("tiny", 1e-300, 0);
        row("saturates high", 1e15, RawMax);
        row("saturates low", -1e300, RawMin);
        row("infinity", std::numeric_limits<double>::infinity(), RawMax);
        row("NaN", std::numeric_limits<double>::quiet_NaN(), 0);
        // A Single enters at its own binary value.
        addRows("Single 1.00005f is 1.0000499...", 1.00005, true, qint64(10000));
        addRows("Single 0.00015f is 0.000150000007...", 0.00015, true, qint64(2));
        addRows("Single 1234.5678f is 1234.56774...", 1234.5678, true, qint64(12345677));
    }
    void fromDouble()
    {
        LOCALE_SCOPE;
        QFETCH(double, value);
        QFETCH(bool, asSingle);
        QFETCH(qint64, raw);
        if (asSingle)
            value = toSingle(value);
        QCOMPARE(Currency::fromDouble(value).raw(), raw);
        QCOMPARE(Currency::fromLongDouble(value).raw(), raw);
    }

    void fromLongDoubleKeepsExtraWidth()
    {
        if constexpr (std::numeric_limits<long double>::digits < 64) {
            QSKIP("long double is no wider than double here");
        } else {
            // 33/32 plus a bit beyond double precision: no longer a tie.
            const long double above = 1.03125L + std::ldexp(1.0L, -60);
            QCOMPARE(Currency::fromLongDouble(above).raw(), qint64(10313));
            QCOMPARE(Currency::fromLongDouble(-above).raw(), qint64(-10313));
            QCOMPARE(Currency::fromDouble(static_cast<double>(above)).raw(), qint64(10312));
        }
    }

    void fromDoubleMatchesExtendedRounding()
    {
        // With a 64-bit mantissa value * 10000 is exact, and rint rounds it to
        // nearest, ties to even: an independent reference.
        if constexpr (std::numeric_limits<long double>::digits < 64) {
            QSKIP("no extended precision for the reference");
        } else {
            QRandomGenerator rng(20240611);
            for (int i = 0; i < 200000; ++i) {
                double v;
                if (i % 4 == 0) {  // on and around the exact ties k/32
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

    void cyMul_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<qint64>("a");
        QTest::addColumn<qint64>("b");
        QTest::addColumn<qint64>("product");
        const auto row = [](const char* name, qint64 a, qint64 b, qint64 p) { addRows(name, a, b, p); };
        row("exact", 15000, 15000, 22500);
        row("half down to even", 1, 5000, 0);
        row("half up to even", 3, 5000, 2);
        row("negative half to even", -3, 5000, -2);
        row("negative times negative", -3, -5000, 2);
        row("above half", 1, 6000, 1);
        row("negative below half", -7, 4999, -3);
        // The raw product needs more than 64 bits before the division.
        row("wide intermediate", 922337203685, 100000000, 9223372036850000);
        row("wide tie", 1234567891235, 75000, 9259259184262);
        row("saturates", RawMax, 20000, RawMax);
        row("saturates low", RawMax, -20000, RawMin);
    }
    void cyMul()
    {
        LOCALE_SCOPE;
        QFETCH(qint64, a);
        QFETCH(qint64, b);
        QFETCH(qint64, product);
        QCOMPARE(CyMul(Currency::fromRaw(a), Currency::fromRaw(b)).raw(), product);
        QCOMPARE(CyMul(Currency::fromRaw(b), Currency::fromRaw(a)).raw(), product);
    }

    void toPlainString_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<qint64>("raw");
        QTest::addColumn<QString>("text");
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
            const qint64 raw = qint64(rng.generate64() >> 12) * (i % 2 ? -1 : 1);  // below 2^52
            const Currency c = Currency::fromRaw(raw);
            if (Currency::fromDouble(c.toDouble()) != c || Currency::fromLongDouble(c.toLongDouble()) != c)
                QFAIL(qPrintable(QStringLiteral("raw %1").arg(raw)));
        }
        QCOMPARE(Currency::fromRaw(12345).toDouble(), 1.2345);
    }
};

QTEST_GUILESS_MAIN(TstCurrency)
#include "tst_currency.moc"
