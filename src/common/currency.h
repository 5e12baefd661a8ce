#pragma once
// Money amounts: a signed 64-bit count of ten-thousandths (four fixed decimals).
// Sums and differences are exact; conversions from floating point round to the
// nearest ten-thousandth, ties to even.

#include <QtGlobal>
#include <compare>
#include <cstdint>

class QString;

class Currency
{
public:
    static constexpr std::int64_t Scale = 10000;

    constexpr Currency() = default;

    // Exact construction from a count of ten-thousandths.
    static constexpr Currency fromRaw(std::int64_t tenThousandths)
    {
        Currency c;
        c.m_raw = tenThousandths;
        return c;
    }
    // Whole units, exact.
    static constexpr Currency fromUnits(std::int64_t units) { return fromRaw(units * Scale); }
    // Nearest ten-thousandth, ties to even. The argument is taken at its exact
    // binary value (a float operand enters without widening error). NaN gives 0;
    // infinities and values beyond the range saturate at the limits.
    static Currency fromDouble(double value);
    static Currency fromLongDouble(long double value);

    constexpr std::int64_t raw() const { return m_raw; }
    double toDouble() const;
    long double toLongDouble() const;

    // Plain text with a dot and no thousands separators, trailing zeros removed:
    // "1234.5", "-0.0001", "0". For SQL and debugging; screens use formattaImporto.
    QString toPlainString() const;

    constexpr Currency operator-() const { return fromRaw(-m_raw); }
    constexpr Currency operator+(Currency o) const { return fromRaw(m_raw + o.m_raw); }
    constexpr Currency operator-(Currency o) const { return fromRaw(m_raw - o.m_raw); }
    constexpr Currency& operator+=(Currency o) { m_raw += o.m_raw; return *this; }
    constexpr Currency& operator-=(Currency o) { m_raw -= o.m_raw; return *this; }
    constexpr auto operator<=>(const Currency&) const = default;

private:
    std::int64_t m_raw = 0;
};

// Exact product of two amounts, rounded to four decimals, ties to even
// (saturating at the limits).
Currency CyMul(Currency a, Currency b);
