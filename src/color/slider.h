// SPDX-License-Identifier: MIT
#pragma once
// The warm-to-cold slider: a position from 0.5 (warm) through 1.0 (normal)
// to 1.5 (cold) turned into gains between the three stored gain triples.

#include <cstdint>

#include "color/gain_types.h"

namespace quarnel {

// What request 2 makes of the base LUT at slider position `interval`: the
// base under the normal gains blended toward the warm or cold gains
// (outside 0.5..1.5 the position acts as 1.0), the base as it stands (the
// normal position without factory data), or nothing at all (a position that
// is not a number).
struct SliderTable {
    enum Kind { kGained, kBase, kNothing };
    Kind kind = kNothing;
    GainTriple gains{};
};
SliderTable SliderRequestTable(double interval, const ModeGains& gains, bool fromBios);

// The gains of the VX modes at slider position `interval`, clamped to
// 0.5..1.5: the warm gains at 0.5, the normal ones at 1.0, the cold ones at
// 1.5, on a straight line in between.
GainTriple SliderGains(double interval, const ModeGains& gains);

}  // namespace quarnel
