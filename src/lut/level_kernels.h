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

// The planes as levels of unscaled doubles, with a zero level above the top
// for the re-sampling to read at the top. The entries are converted plane by
// plane, where the loop vectorises, and then transposed four levels at a
// time: the red, green and blue entries of levels i to i + 3, a vector each,
// become the four levels.
QUARNEL_KERNEL void ToLevels(const uint16_t* in, Level* levels) {
    double entries[kLutEntries];
    for (std::size_t k = 0; k < kLutEntries; ++k) entries[k] = in[k];
    const Level zero{};
    for (std::size_t i = 0; i < kLutLevels; i += kLanes) {
        Level r, g, b;
        std::memcpy(&r, entries + i, sizeof r);
        std::memcpy(&g, entries + kLutLevels + i, sizeof g);
        std::memcpy(&b, entries + 2 * kLutLevels + i, sizeof b);
        const Level evenRg = __builtin_shufflevector(r, g, 0, 4, 2, 6);  // r0 g0 r2 g2
        const Level oddRg = __builtin_shufflevector(r, g, 1, 5, 3, 7);   // r1 g1 r3 g3
        const Level evenB = __builtin_shufflevector(b, zero, 0, 4, 2, 6);
        const Level oddB = __builtin_shufflevector(b, zero, 1, 5, 3, 7);
        levels[i] = __builtin_shufflevector(evenRg, evenB, 0, 1, 4, 5);
        levels[i + 1] = __builtin_shufflevector(oddRg, oddB, 0, 1, 4, 5);
        levels[i + 2] = __builtin_shufflevector(evenRg, evenB, 2, 3, 6, 7);
        levels[i + 3] = __builtin_shufflevector(oddRg, oddB, 2, 3, 6, 7);
    }
    levels[kLutLevels] = zero;
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
