#include "common/currency.h"

#include <QString>

#include <cmath>
#include <limits>

// All conversions work on integers: a floating value is split into its exact
// integer mantissa and binary exponent, multiplied by the scale in 128 bits and
// divided by the power of two with ties to even. Nothing depends on the
// processor's rounding mode or on the width of long double.

namespace {

using U128 = unsigned __int128;

constexpr std::int64_t RawMax = Currency::RawMax;
constexpr std::int64_t RawMin = Currency::RawMin;

// Signed magnitude to raw; no value beyond the limits of the type.
std::optional<std::int64_t> magnitudeToRaw(bool negative, U128 magnitude)
{
    if (negative) {
        const U128 limit = static_cast<U128>(RawMax) + 1;
        if (magnitude > limit)
            return std::nullopt;
        if (magnitude == limit)
            return RawMin;
        return -static_cast<std::int64_t>(magnitude);
    }
    if (magnitude > static_cast<U128>(RawMax))
        return std::nullopt;
    return static_cast<std::int64_t>(magnitude);
}

int bitLength(U128 v)
{
    int n = 0;
    while (v) {
        v >>= 1;
        ++n;
    }
    return n;
}

// Nearest ten-thousandth of a floating value, ties to even; no value for NaN,
// infinities and values beyond the range of the type.
template <typename F> std::optional<std::int64_t> floatingToRaw(F value)
{
    static_assert(std::numeric_limits<F>::radix == 2);
    constexpr int Digits = std::numeric_limits<F>::digits;
    // Mantissa times the scale (below 2^14) must fit an unsigned 128-bit word.
    static_assert(Digits + 14 <= 128, "floating type too wide for the exact conversion");

    if (!std::isfinite(value))
        return std::nullopt;
    if (value == 0)
        return 0;
    const bool negative = std::signbit(value);

    int exponent = 0;
    const F fraction = std::frexp(std::fabs(value), &exponent); // |value| = fraction * 2^exponent
    // Exact integer mantissa: fraction * 2^Digits is a whole number below 2^Digits.
    const U128 mantissa = static_cast<U128>(std::ldexp(fraction, Digits));
    const int shift = exponent - Digits; // |value| = mantissa * 2^shift
    const U128 scaled = mantissa * static_cast<U128>(Currency::Scale);

    if (shift >= 0) {
        if (bitLength(scaled) + shift > 64)
            return std::nullopt;
        return magnitudeToRaw(negative, scaled << shift);
    }

    const int k = -shift;
    if (k >= 128) // scaled < 2^127, so the quotient is below one half
        return 0;
    U128 quotient = scaled >> k;
    const U128 remainder = scaled & ((U128(1) << k) - 1);
    const U128 half = U128(1) << (k - 1);
    if (remainder > half || (remainder == half && (quotient & 1)))
        ++quotient;
    return magnitudeToRaw(negative, quotient);
}

// The saturating form: NaN gives 0, anything else beyond the range the limit
// on its side.
template <typename F> std::int64_t floatingToRawSaturated(F value)
{
    if (std::isnan(value))
        return 0;
    const std::optional<std::int64_t> raw = floatingToRaw(value);
    if (raw)
        return *raw;
    return std::signbit(value) ? RawMin : RawMax;
}

// Exact product of two raw values rounded to ten-thousandths, ties to even.
std::optional<std::int64_t> productToRaw(std::int64_t a, std::int64_t b)
{
    // |a * b| <= 2^126: the product is exact in 128 bits.
    const __int128 product = static_cast<__int128>(a) * static_cast<__int128>(b);
    const bool negative = product < 0;
    const U128 magnitude = negative ? static_cast<U128>(0) - static_cast<U128>(product) : static_cast<U128>(product);
    const U128 scale = static_cast<U128>(Currency::Scale);

    U128 quotient = magnitude / scale;
    const U128 twiceRemainder = (magnitude % scale) * 2;
    if (twiceRemainder > scale || (twiceRemainder == scale && (quotient & 1)))
        ++quotient;
    return magnitudeToRaw(negative, quotient);
}

} // namespace

Currency Currency::fromDouble(double value) { return fromRaw(floatingToRawSaturated(value)); }

Currency Currency::fromLongDouble(long double value) { return fromRaw(floatingToRawSaturated(value)); }

std::optional<Currency> Currency::fromDoubleChecked(double value)
{
    const std::optional<std::int64_t> raw = floatingToRaw(value);
    if (!raw)
        return std::nullopt;
    return fromRaw(*raw);
}

std::optional<Currency> Currency::fromLongDoubleChecked(long double value)
{
    const std::optional<std::int64_t> raw = floatingToRaw(value);
    if (!raw)
        return std::nullopt;
    return fromRaw(*raw);
}

double Currency::toDouble() const
{
    // Exact for |raw| below 2^53; the division by an exact 10000 then rounds once.
    return static_cast<double>(m_raw) / static_cast<double>(Scale);
}

long double Currency::toLongDouble() const { return static_cast<long double>(m_raw) / static_cast<long double>(Scale); }

QString Currency::toPlainString() const
{
    const bool negative = m_raw < 0;
    // Magnitude in unsigned arithmetic: the minimum raw value has no positive twin.
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(m_raw) : static_cast<std::uint64_t>(m_raw);
    const std::uint64_t units = magnitude / Scale;
    std::uint64_t fraction = magnitude % Scale;

    QString text;
    if (negative)
        text += QLatin1Char('-');
    text += QString::number(units);
    if (fraction != 0) {
        int width = 4;
        while (fraction % 10 == 0) {
            fraction /= 10;
            --width;
        }
        text += QLatin1Char('.') + QString::number(fraction).rightJustified(width, QLatin1Char('0'));
    }
    return text;
}

Currency CyMul(Currency a, Currency b)
{
    const std::optional<std::int64_t> raw = productToRaw(a.raw(), b.raw());
    if (raw)
        return Currency::fromRaw(*raw);
    // Out of range: the sign of the product tells the limit.
    return (a.raw() < 0) != (b.raw() < 0) ? Currency::min() : Currency::max();
}

std::optional<Currency> CyMulChecked(Currency a, Currency b)
{
    const std::optional<std::int64_t> raw = productToRaw(a.raw(), b.raw());
    if (!raw)
        return std::nullopt;
    return Currency::fromRaw(*raw);
}
