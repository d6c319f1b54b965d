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
    if (std::isnan(v)) return 0;
    if (v >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    if (v <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    return static_cast<int>(v);
}

inline int HalfUp(double v) { return TruncToInt(v + 0.5); }

}  // namespace quarnel
