// SPDX-License-Identifier: MIT
#pragma once
// Applying white-point gains to a planar Lut16 (3 x 256 entries).

#include <cstdint>

#include "color/gain_types.h"
#include "core/half_up.h"
#include "core/lut16.h"

namespace quarnel {

// dst[c][i] = src[c][half-up(i x gain[c])]. Gains are meant to lie in 0..1;
// an index that a larger gain carries past the plane reads the plane's last
// entry (a negative one, or not a number, its first) instead of memory
// outside the table. `src` and `dst` may be the same table.
void ApplyGainsToLut(const uint16_t* src, const double gain[3], uint16_t* dst);

// The same with the gains scaling other input levels than i: dst[c][i] =
// src[c][half-up(level[i] x gain[c])], held inside the plane likewise. The
// levels must rise from level[0] to level[255].
void ApplyGainsAtLevels(const double level[256], const double gain[3], const uint16_t* src, uint16_t* dst);

// One entry of what ApplyGainsAtLevels writes: plane[half-up(level x
// gain)], held inside the plane likewise.
inline uint16_t GainedEntry(const uint16_t* plane, double level, double gain) {
    return plane[HalfUpWithin(level * gain, kTopLevel)];
}

// The gains (1 - t) x a + t x b; leaves the largest of the three in
// state.maxGain. A t outside 0..1 (or not a number) is clamped to the nearer
// bound (0 for not a number) and sets 0x20000. Sets state.gamma to 2.2 and
// clears state.flags first.
GainTriple BlendedGains(GainSolverState& state, double t, const double a[3], const double b[3]);

}  // namespace quarnel
