// SPDX-License-Identifier: MIT
#pragma once
// The steps every form of the driver conversion shares: the table as levels
// of doubles, the sRGB re-sampling of one level, and a single post-gamma
// point. Inlined into each form (see core/vector_forms.h).

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/constants.h"
#include "core/lut16.h"
#include "core/vector_forms.h"
#include "lut/convert_taps.h"
#include "lut/level_vectors.h"

namespace quarnel::convert {

// A level written as its two 16-byte halves.
QUARNEL_KERNEL void StoreLevel(const Half& low, const Half& high, Level& level) {
    std::memcpy(&level, &low, sizeof low);
    std::memcpy(reinterpret_cast<unsigned char*>(&level) + sizeof low, &high, sizeof high);
}

// The planes as levels of unscaled doubles, with a zero level above the top
// for the re-sampling to read at the top. The entries are converted plane by
// plane, where the loop vectorises, and then transposed two levels at a
// time in 16-byte halves: the red, green and blue entries of levels i and
// i + 1 become (r g) and (b 0) of each. Halves, because every form has
// 16-byte shuffles, while a 32-byte shuffle in the baseline form goes
// through memory, one double at a time.
QUARNEL_KERNEL void ToLevels(const uint16_t* in, Level* levels) {
    double entries[kLutEntries];
    for (std::size_t k = 0; k < kLutEntries; ++k) entries[k] = in[k];
    const Half zero{};
    for (std::size_t i = 0; i < kLutLevels; i += 2) {
        Half r, g, b;
        std::memcpy(&r, entries + i, sizeof r);
        std::memcpy(&g, entries + kLutLevels + i, sizeof g);
        std::memcpy(&b, entries + 2 * kLutLevels + i, sizeof b);
        StoreLevel(__builtin_shufflevector(r, g, 0, 2), __builtin_shufflevector(b, zero, 0, 2), levels[i]);
        StoreLevel(__builtin_shufflevector(r, g, 1, 3), __builtin_shufflevector(b, zero, 1, 3), levels[i + 1]);
    }
    levels[kLutLevels] = Level{};
}

// Level i re-sampled through the sRGB encoding: a + (b - a) x f, b the level
// above a.
QUARNEL_KERNEL void Resample(const SrgbTaps& t, const Level* source, std::size_t i, Level& out) {
    const Level a = source[t.lo[i]];
    const Level b = source[t.lo[i] + 1];
    out = a + (b - a) * t.f[i];
}

// Point j between levels a and b (the level above it), f[j] of the way, as
// the point's three floats.
QUARNEL_KERNEL void PostGammaPoint(const Level& a, const Level& b, std::size_t j, float* post) {
    const LevelFloats p = __builtin_convertvector(a + (b - a) * Nv().f[j], LevelFloats);
    std::memcpy(post + j * kLutPlanes, &p, sizeof(float) * kLutPlanes);
}

}  // namespace quarnel::convert
