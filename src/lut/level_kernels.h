// SPDX-License-Identifier: MIT
#pragma once
// The steps the driver conversions share: the table as levels of doubles,
// the sRGB re-sampling of two levels, and a single post-gamma point.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/constants.h"
#include "core/kernel.h"
#include "core/lut16.h"
#include "lut/convert_taps.h"
#include "lut/level_vectors.h"

namespace quarnel::convert {

// Sixteen bytes of one plane: eight entries.
using PlaneEntries = uint16_t __attribute__((vector_size(8 * sizeof(uint16_t))));

inline constexpr std::size_t kLevelEntries = (kLutLevels + 1) * kLanes;

// The planes' entries interleaved as they stand, eight levels at a time in
// 16-byte shuffles (which SSE2 has), into (r g b 0) per level, with a
// zero level above the top for the re-sampling to read at the top.
QUARNEL_KERNEL void InterleaveLevels(const uint16_t* in, uint16_t* entries) {
    const PlaneEntries zero{};
    for (std::size_t i = 0; i < kLutLevels; i += 8) {
        PlaneEntries r, g, b;
        std::memcpy(&r, in + i, sizeof r);
        std::memcpy(&g, in + kLutLevels + i, sizeof g);
        std::memcpy(&b, in + 2 * kLutLevels + i, sizeof b);
        const PlaneEntries rgLow = __builtin_shufflevector(r, g, 0, 8, 1, 9, 2, 10, 3, 11);
        const PlaneEntries rgHigh = __builtin_shufflevector(r, g, 4, 12, 5, 13, 6, 14, 7, 15);
        const PlaneEntries bLow = __builtin_shufflevector(b, zero, 0, 8, 1, 9, 2, 10, 3, 11);
        const PlaneEntries bHigh = __builtin_shufflevector(b, zero, 4, 12, 5, 13, 6, 14, 7, 15);
        const PlaneEntries quads[4] = {__builtin_shufflevector(rgLow, bLow, 0, 1, 8, 9, 2, 3, 10, 11),
                                       __builtin_shufflevector(rgLow, bLow, 4, 5, 12, 13, 6, 7, 14, 15),
                                       __builtin_shufflevector(rgHigh, bHigh, 0, 1, 8, 9, 2, 3, 10, 11),
                                       __builtin_shufflevector(rgHigh, bHigh, 4, 5, 12, 13, 6, 7, 14, 15)};
        std::memcpy(entries + i * kLanes, quads, sizeof quads);
    }
    std::memset(entries + kLutLevels * kLanes, 0, kLanes * sizeof(uint16_t));
}

// The planes as levels of unscaled doubles: the interleaved entries
// converted in one loop, which vectorises.
QUARNEL_KERNEL void ToLevels(const uint16_t* in, Level* levels) {
    alignas(sizeof(PlaneEntries)) uint16_t entries[kLevelEntries];
    InterleaveLevels(in, entries);
    auto* out = reinterpret_cast<unsigned char*>(levels);
    for (std::size_t k = 0; k < kLevelEntries; ++k) {
        const double v = entries[k];
        std::memcpy(out + k * sizeof v, &v, sizeof v);
    }
}

// The planes as levels of doubles kWholeOffset above their entries, and the
// zero level above the top as the offset itself. From
// 2^52 to 2^53 the doubles are the whole numbers, and this offset has no
// bits in the low half, so each double is its entry under the offset's
// high half: two shuffles, where a conversion from integers takes more.
inline constexpr double kWholeOffset = 0x1.8p52;

QUARNEL_KERNEL void ToOffsetLevels(const uint16_t* in, Level* levels) {
    using Halves = uint32_t __attribute__((vector_size(kLanes * sizeof(uint32_t))));
    constexpr auto kOffsetBits = std::bit_cast<uint64_t>(kWholeOffset);
    static_assert(static_cast<uint32_t>(kOffsetBits) == 0);
    constexpr auto kHigh = static_cast<uint32_t>(kOffsetBits >> 32);
    const Halves high{kHigh, kHigh, kHigh, kHigh};
    alignas(sizeof(PlaneEntries)) uint16_t entries[kLevelEntries];
    InterleaveLevels(in, entries);
    const PlaneEntries zero{};
    auto* out = reinterpret_cast<unsigned char*>(levels);
    for (std::size_t k = 0; k < kLutLevels * kLanes; k += 8) {
        PlaneEntries e;
        std::memcpy(&e, entries + k, sizeof e);
        const auto front = reinterpret_cast<Halves>(__builtin_shufflevector(e, zero, 0, 8, 1, 9, 2, 10, 3, 11));
        const auto back = reinterpret_cast<Halves>(__builtin_shufflevector(e, zero, 4, 12, 5, 13, 6, 14, 7, 15));
        const Halves doubles[4] = {
            __builtin_shufflevector(front, high, 0, 4, 1, 5), __builtin_shufflevector(front, high, 2, 6, 3, 7),
            __builtin_shufflevector(back, high, 0, 4, 1, 5), __builtin_shufflevector(back, high, 2, 6, 3, 7)};
        std::memcpy(out + k * sizeof(double), doubles, sizeof doubles);
    }
    levels[kLutLevels] = Level{} + kWholeOffset;
}

// Levels i and i + 1 re-sampled in pairs of doubles, (r g), (b r), (g b):
// their six channels fill three pairs, where one level alone would leave
// half of its second pair spare. The middle pair is level i's blue and
// level i + 1's red, each re-sampled with its own level's fraction.
// `source` is the levels' doubles.
QUARNEL_KERNEL void ResamplePair(const SrgbTaps& taps, const double* source, std::size_t i, Half& rg, Half& br,
                                 Half& gb) {
    const double* a0 = source + taps.lo[i] * kLanes;
    const double* a1 = source + taps.lo[i + 1] * kLanes;
    Half rg0, rg1, gb0, gb1;
    std::memcpy(&rg0, a0, sizeof rg0);
    std::memcpy(&rg1, a0 + kLanes, sizeof rg1);
    std::memcpy(&gb0, a1 + 1, sizeof gb0);
    std::memcpy(&gb1, a1 + kLanes + 1, sizeof gb1);
    const Half br0{a0[2], a1[0]};
    const Half br1{a0[kLanes + 2], a1[kLanes]};
    Half brF;
    std::memcpy(&brF, &taps.f[i], sizeof brF);
    rg = rg0 + (rg1 - rg0) * taps.twice[i];
    br = br0 + (br1 - br0) * brF;
    gb = gb0 + (gb1 - gb0) * taps.twice[i + 1];
}

// Point j between levels a and b (the level above it), f[j] of the way, as
// the point's three floats.
QUARNEL_KERNEL void PostGammaPoint(const Level& a, const Level& b, std::size_t j, float* post) {
    const LevelFloats p = __builtin_convertvector(a + (b - a) * Nv().f[j], LevelFloats);
    std::memcpy(post + j * kLutPlanes, &p, sizeof(float) * kLutPlanes);
}

}  // namespace quarnel::convert
