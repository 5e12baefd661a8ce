#pragma once
// Money amounts: a signed 64-bit count of ten-thousandths (four fixed decimals).
// Sums and differences are exact; conversions from floating point round to the
// nearest ten-thousandth, ties to even.
//
// The range runs from -922.337.203.685.477,5808 to 922.337.203.685.477,5807.
// The plain operations saturate at its limits, which keeps a screen's running
// figures well defined; whatever is about to be stored uses the checked forms
// (fromDoubleChecked, checkedAdd, checkedSub, checkedNeg, CyMulChecked), which
// give no value instead, so that the caller can refuse it.

#include <QtGlobal>

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>

class QString;

class Currency
{
public:
    static constexpr std::int64_t Scale = 10000;
    static constexpr std::int64_t RawMax = std::numeric_limits<std::int64_t>::max();
    static constexpr std::int64_t RawMin = std::numeric_limits<std::int64_t>::min();

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
    // The same rounding, but no value for NaN, infinities and values whose
    // nearest ten-thousandth lies outside the range.
    static std::optional<Currency> fromDoubleChecked(double value);
    static std::optional<Currency> fromLongDoubleChecked(long double value);

    static constexpr Currency max() { return fromRaw(RawMax); }
    static constexpr Currency min() { return fromRaw(RawMin); }

    constexpr std::int64_t raw() const { return m_raw; }
    double toDouble() const;
    long double toLongDouble() const;

    // Plain text with a dot and no thousands separators, trailing zeros removed:
    // "1234.5", "-0.0001", "0". For SQL and debugging; screens use formattaImporto.
    QString toPlainString() const;

    // Saturating at the limits (the minimum has no positive twin: its
    // negation gives the maximum).
    constexpr Currency operator-() const { return Currency() - *this; }
    constexpr Currency operator+(Currency o) const
    {
        std::int64_t r;
        if (__builtin_add_overflow(m_raw, o.m_raw, &r))
            return fromRaw(o.m_raw < 0 ? RawMin : RawMax);
        return fromRaw(r);
    }
    constexpr Currency operator-(Currency o) const
    {
        std::int64_t r;
        if (__builtin_sub_overflow(m_raw, o.m_raw, &r))
            return fromRaw(o.m_raw < 0 ? RawMax : RawMin);
        return fromRaw(r);
    }
    constexpr Currency& operator+=(Currency o) { return *this = *this + o; }
    constexpr Currency& operator-=(Currency o) { return *this = *this - o; }
    constexpr auto operator<=>(const Currency&) const = default;

private:
    std::int64_t m_raw = 0;
};

// Exact sum, difference and negation, or no value when the result leaves the
// range.
constexpr std::optional<Currency> checkedAdd(Currency a, Currency b)
{
    std::int64_t r;
    if (__builtin_add_overflow(a.raw(), b.raw(), &r))
        return std::nullopt;
    return Currency::fromRaw(r);
}
constexpr std::optional<Currency> checkedSub(Currency a, Currency b)
{
    std::int64_t r;
    if (__builtin_sub_overflow(a.raw(), b.raw(), &r))
        return std::nullopt;
    return Currency::fromRaw(r);
}
constexpr std::optional<Currency> checkedNeg(Currency a) { return checkedSub(Currency(), a); }
// Adds `addend` to `total` and gives true; gives false and leaves `total`
// as it was when the sum leaves the range. For running totals.
constexpr bool addChecked(Currency& total, Currency addend)
{
    const std::optional<Currency> sum = checkedAdd(total, addend);
    if (!sum)
        return false;
    total = *sum;
    return true;
}

// Exact product of two amounts, rounded to four decimals, ties to even
// (saturating at the limits).
Currency CyMul(Currency a, Currency b);
// The same product, or no value when it leaves the range.
std::optional<Currency> CyMulChecked(Currency a, Currency b);
