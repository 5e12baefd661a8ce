#pragma once
// The system computes discounts, VAT percentages, quantities and a few unit
// values in IEEE 32-bit floats. Whether a step runs in Single changes results,
// so the places that do say so by using this type and these helpers.

#include "common/currency.h"

#include <cmath>
#include <optional>

using Single = float;

// Narrows a double to Single (round to nearest float).
inline Single toSingle(double v) { return static_cast<Single>(v); }

// A quantity that can be stored: a finite number (not NaN, not infinite).
inline bool isSingleValida(Single v) { return std::isfinite(v); }

// The narrowing, or no value for NaN, infinities and values beyond the range
// of a Single (which the narrowing would turn into an infinity).
inline std::optional<Single> toSingleChecked(double v)
{
    const Single s = static_cast<Single>(v);
    if (!std::isfinite(s))
        return std::nullopt;
    return s;
}

// Product of two Single operands evaluated in double and narrowed to Single.
inline Single mulSingle(Single a, Single b)
{
    return static_cast<Single>(static_cast<double>(a) * static_cast<double>(b));
}

// Currency as a Single (the amount's value narrowed to float).
inline Single currencyToSingle(Currency c) { return static_cast<Single>(c.toDouble()); }
