// SPDX-License-Identifier: MIT
#include "color/apply_gains.h"

#include <algorithm>

#include "core/half_up.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

// half-up of the scaled level, kept inside the plane: an index past either
// end reads the nearer end instead of memory outside the table.
int PlaneIndex(double scaled) { return HalfUpWithin(scaled, kLutLevels - 1); }

void ApplyAndRecord(GainSolverState& state, const double gain[3], const uint16_t* src, uint16_t* dst) {
    ApplyGainsToLut(src, gain, dst);
    state.maxGain = std::max({gain[0], gain[1], gain[2]});
}

}  // namespace

void ApplyGainsToLut(const uint16_t* src, const double gain[3], uint16_t* dst) {
    Lut16 base;  // a copy, so that src and dst may be the same table
    std::copy(src, src + kLutEntries, base.begin());
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i) dst[LutIndex(c, i)] = base[LutIndex(c, PlaneIndex(i * gain[c]))];
}

void BlendGains(GainSolverState& state, double t, const double a[3], const double b[3], const uint16_t* src,
                uint16_t* dst) {
    state.gamma = kSolverGamma;
    state.flags = 0;
    if (t == 1.0) return ApplyAndRecord(state, b, src, dst);
    if (t == 0.0) return ApplyAndRecord(state, a, src, dst);
    if (!(t >= 0.0 && t <= 1.0)) {
        t = t > 1.0 ? 1.0 : 0.0;
        state.flags |= kGainBlendClamped;
    }
    double blend[3];
    for (int c = 0; c < 3; ++c) blend[c] = (1.0 - t) * a[c] + t * b[c];
    ApplyAndRecord(state, blend, src, dst);
}

}  // namespace quarnel
