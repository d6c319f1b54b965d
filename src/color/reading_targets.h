// SPDX-License-Identifier: MIT
#pragma once
// The whites of the reading modes: two points on the reading line, placed
// from the panel's current white.

#include "color/chromaticity.h"

namespace quarnel {

// The reading line runs from a neutral white toward a warm paper white.
inline constexpr Xy kReadingLineStart{0.316103222, 0.343348174};
inline constexpr Xy kReadingLineEnd{0.3779, 0.3923};

struct ReadingTargets {
    Xy weak;
    Xy strong;
};

// On the line from `a` toward `b`: the weak white 0.005 beyond the current
// white's projection, the strong one a full line length beyond the weak one.
// A white 0.005 bluer in x than `a`, or behind `a` by 0.005 or more, gets
// `a` and `b` themselves. Leaves `targets` as it is when `a` equals `b`.
void CalcReadingTargets(Xy current, Xy a, Xy b, ReadingTargets& targets);

}  // namespace quarnel
