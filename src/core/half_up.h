// SPDX-License-Identifier: MIT
#pragma once
// half-up(v): add 0.5 and truncate toward zero. The numeric core's one rule
// for turning a computed value into an integer level or LUT index.

#include <cmath>
#include <cstdint>
#include <limits>

namespace quarnel {

// Truncation toward zero that is defined for every double: NaN gives 0 and
// values beyond the int range saturate, where a plain cast would be undefined.
inline int TruncToInt(double v) {
    constexpr auto kHigh = static_cast<double>(std::numeric_limits<int>::max());
    constexpr auto kLow = static_cast<double>(std::numeric_limits<int>::min());
    const double limited = v < kLow ? kLow : (v > kHigh ? kHigh : v);
    return v == v ? static_cast<int>(limited) : 0;  // written without branches, so that loops of it vectorise
}

inline int HalfUp(double v) { return TruncToInt(v + 0.5); }

// std::clamp(HalfUp(v), 0, top) for an index into a table of top + 1
// entries: not a number reads entry 0.
inline int HalfUpWithin(double v, int top) {
    const double r = v + 0.5;
    return r >= 0.0 ? static_cast<int>(r < top ? r : top) : 0;
}

}  // namespace quarnel
