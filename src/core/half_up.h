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
    if (v > kLow && v < kHigh) return static_cast<int>(v);  // the usual case; not a number fails both tests
    if (std::isnan(v)) return 0;
    return v > 0.0 ? std::numeric_limits<int>::max() : std::numeric_limits<int>::min();
}

inline int HalfUp(double v) { return TruncToInt(v + 0.5); }

}  // namespace quarnel
