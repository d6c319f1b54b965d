// SPDX-License-Identifier: MIT
#include "color/apply_gains.h"

#include <algorithm>
#include <array>
#include <functional>

#include "core/half_up.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

constexpr std::size_t kLevels = kLutLevels;

// Whether writing dst could change entries of src still to be read.
bool Overlaps(const uint16_t* src, const uint16_t* dst) {
    const std::less<const uint16_t*> before;
    return before(src, dst + kLutEntries) && before(dst, src + kLutEntries);
}

// One plane: half-up of the scaled level, kept inside the plane (an index
// past either end reads the nearer end instead of memory outside the
// table), worked out in a pass of its own, which vectorises. Where the first
// and last levels stay within the plane (every gain of 0..1 on levels of
// 0..255), so does every level, and half-up needs no guards. The lookups
// read a local copy of the plane, which the output cannot share memory with,
// so that no lookup waits on the stores before it.
void ApplyToPlane(const double* levels, double g, const uint16_t* plane, uint16_t* out) {
    std::array<int32_t, kLutLevels> index;
    if (g >= 0.0 && levels[0] >= 0.0 && levels[kTopLevel] * g + 0.5 < kLutLevels) {
        for (std::size_t i = 0; i < kLevels; ++i) index[i] = static_cast<int32_t>(levels[i] * g + 0.5);
    } else {
        for (std::size_t i = 0; i < kLevels; ++i) index[i] = HalfUpWithin(levels[i] * g, kTopLevel);
    }
    std::array<int32_t, kLutLevels> entries;
    for (std::size_t i = 0; i < kLevels; ++i) entries[i] = plane[i];
    for (std::size_t i = 0; i < kLevels; ++i)
        out[i] = static_cast<uint16_t>(entries[static_cast<std::size_t>(index[i])]);
}

// `levels` are the input levels that the gains scale, entry by entry; they
// rise from the first entry to the last.
void Apply(const double* levels, const double gain[3], const uint16_t* src, uint16_t* dst) {
    Lut16 base;  // a copy only when src and dst share memory
    const uint16_t* from = src;
    if (Overlaps(src, dst)) {
        std::copy(src, src + kLutEntries, base.begin());
        from = base.data();
    }
    for (int c = 0; c < kLutPlanes; ++c) ApplyToPlane(levels, gain[c], from + LutIndex(c, 0), dst + LutIndex(c, 0));
}

}  // namespace

void ApplyGainsToLut(const uint16_t* src, const double gain[3], uint16_t* dst) {
    Apply(LevelValues().data(), gain, src, dst);
}

void ApplyGainsAtLevels(const double level[256], const double gain[3], const uint16_t* src, uint16_t* dst) {
    Apply(level, gain, src, dst);
}

GainTriple BlendedGains(GainSolverState& state, double t, const double a[3], const double b[3]) {
    state.gamma = kSolverGamma;
    state.flags = 0;
    GainTriple blend{a[0], a[1], a[2]};
    if (t == 1.0) {
        blend = {b[0], b[1], b[2]};
    } else if (t != 0.0) {
        if (!(t >= 0.0 && t <= 1.0)) {
            t = t > 1.0 ? 1.0 : 0.0;
            state.flags |= kGainBlendClamped;
        }
        for (std::size_t c = 0; c < blend.size(); ++c) blend[c] = (1.0 - t) * a[c] + t * b[c];
    }
    state.maxGain = std::max({blend[0], blend[1], blend[2]});
    return blend;
}

}  // namespace quarnel
