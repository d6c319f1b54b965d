// SPDX-License-Identifier: MIT
#include "lut/convert_kernels.h"

#include <cstddef>
#include <cstring>

#include <emmintrin.h>

#include "core/constants.h"
#include "core/full_scale.h"
#include "core/kernel.h"
#include "core/lut16.h"
#include "lut/convert_taps.h"
#include "lut/level_kernels.h"
#include "lut/level_vectors.h"

namespace quarnel::convert {
namespace {

constexpr std::size_t kLevels = kLutLevels;
constexpr std::size_t kPlanes = kLutPlanes;
constexpr std::size_t kPoints = kNvPoints;

// Four entries of a plane as 32-bit lanes.
using Quad32 = int32_t __attribute__((vector_size(kLanes * sizeof(int32_t))));

// The sRGB-folded table's levels lie kWholeOffset above their entries (see
// ToOffsetLevels), where the doubles are the whole numbers: a re-sampled
// value A + (B - A) x f takes the rise r = (b - a) x f just as the entries
// would (B - A is b - a, exactly), and its sum with A rounds once to the
// offset plus the integer nearest a + r. The rise stays more than 2^-30
// from every half-integer for every level's f and every difference b - a
// (the LUT property tests check them all), so that integer is also what
// a + r rounded to a double (within 2^-38 below 2^16) and then rounded
// half-up gives. So the entry is the low 16 bits of the value's bits, the
// rest of the low half being zero.

// The low halves of the bits of four doubles, from each 16-byte half.
QUARNEL_KERNEL Quad32 LowHalves(const Level& v) {
    const auto front = reinterpret_cast<Quad32>(__builtin_shufflevector(v, v, 0, 1));
    const auto back = reinterpret_cast<Quad32>(__builtin_shufflevector(v, v, 2, 3));
    return __builtin_shufflevector(front, back, 0, 2, 4, 6);
}

// Eight entries of a plane from two vectors of four re-sampled values,
// stored from `entry` on. Less 32768 an entry is a signed 16-bit value,
// which a saturating pack (the only pack of 32-bit lanes that SSE2
// has) keeps as it is, and flipping the top bit turns back into the entry.
QUARNEL_KERNEL void StorePlane(const Level& low, const Level& high, uint16_t* entry) {
    constexpr int32_t kMiddle = 32768;
    const Quad32 front = LowHalves(low) - kMiddle;
    const Quad32 back = LowHalves(high) - kMiddle;
    const auto packed = reinterpret_cast<PlaneEntries>(
        _mm_packs_epi32(reinterpret_cast<__m128i>(front), reinterpret_cast<__m128i>(back)));
    constexpr uint16_t kTopBit = 0x8000;
    const PlaneEntries entries = packed ^ kTopBit;
    std::memcpy(entry, &entries, sizeof entries);
}

// The sRGB-folded table, eight levels at a time: pairs of levels as three
// pairs of doubles, where four-lane levels would work on every level's
// spare lane. Levels i to i + 7 are re-sampled two at a time and stored as
// planes.
QUARNEL_KERNEL void ResamplePairs(const SrgbTaps& taps, const Level* source, std::size_t i, uint16_t* out) {
    Level planes[3][2];
    const auto* doubles = reinterpret_cast<const double*>(source);
    for (std::size_t half = 0; half < 2; ++half) {
        const std::size_t k = i + kLanes * half;
        Half rg0, br0, gb0, rg1, br1, gb1;
        ResamplePair(taps, doubles, k, rg0, br0, gb0);
        ResamplePair(taps, doubles, k + 2, rg1, br1, gb1);
        planes[0][half] = __builtin_shufflevector(__builtin_shufflevector(rg0, br0, 0, 3),
                                                  __builtin_shufflevector(rg1, br1, 0, 3), 0, 1, 2, 3);
        planes[1][half] = __builtin_shufflevector(__builtin_shufflevector(rg0, gb0, 1, 2),
                                                  __builtin_shufflevector(rg1, gb1, 1, 2), 0, 1, 2, 3);
        planes[2][half] = __builtin_shufflevector(__builtin_shufflevector(br0, gb0, 0, 3),
                                                  __builtin_shufflevector(br1, gb1, 0, 3), 0, 1, 2, 3);
    }
    for (std::size_t p = 0; p < kPlanes; ++p) StorePlane(planes[p][0], planes[p][1], out + p * kLevels + i);
}

// The normalised levels as the post-gamma points read them: each level
// twice over (red, green, blue, red, green, blue), so that a run of its
// channels starting at any of the three is a plain load.
inline constexpr std::size_t kRepeatedLevel = 2 * kPlanes;
// Levels 0 to 255 and the repeat of the top above them.
inline constexpr std::size_t kRepeatedDoubles = (kLevels + 1) * kRepeatedLevel;

QUARNEL_KERNEL void LoadLevel(const double* at, Level& v) { std::memcpy(&v, at, sizeof v); }

// A single point of level k (a fifth point, or the top level's only one).
QUARNEL_KERNEL void RepeatedPoint(const double* repeated, std::size_t k, std::size_t j, float* post) {
    Level a, b;
    LoadLevel(repeated + k * kRepeatedLevel, a);
    LoadLevel(repeated + (k + 1) * kRepeatedLevel, b);
    PostGammaPoint(a, b, j, post);
}

// The NVIDIA conversion works in pairs of doubles, the width of an SSE2
// vector, which would otherwise move every four-lane value it loads or
// stores at an odd place through memory.
inline constexpr std::size_t kPair = 2;

QUARNEL_KERNEL void LoadPair(const double* at, Half& v) { std::memcpy(&v, at, sizeof v); }
QUARNEL_KERNEL void StorePair(const Half& v, double* at) { std::memcpy(at, &v, sizeof v); }

// Levels i and i + 1 re-sampled in pairs of doubles and over the full
// scale, each stored twice over as (r g), (b r), (g b).
QUARNEL_KERNEL void NormalisePair(const SrgbTaps& taps, const double* source, std::size_t i, double* repeated) {
    Half rg, br, gb;
    ResamplePair(taps, source, i, rg, br, gb);
    DivideByFullScale(rg);
    DivideByFullScale(br);
    DivideByFullScale(gb);
    double* level = repeated + i * kRepeatedLevel;
    StorePair(rg, level);
    StorePair(__builtin_shufflevector(br, rg, 0, 2), level + kPair);
    StorePair(__builtin_shufflevector(rg, br, 1, 2), level + 2 * kPair);
    level += kRepeatedLevel;
    StorePair(__builtin_shufflevector(br, gb, 1, 2), level);
    StorePair(__builtin_shufflevector(gb, br, 1, 3), level + kPair);
    StorePair(gb, level + 2 * kPair);
}

// The re-sampled levels over the full scale, the top level repeated above
// the top, straight from the source's doubles.
QUARNEL_KERNEL void Normalise(const Level* levels, double* repeated) {
    const SrgbTaps& taps = Srgb();
    const auto* source = reinterpret_cast<const double*>(levels);
    for (std::size_t i = 0; i < kLevels; i += 2) NormalisePair(taps, source, i, repeated);
    std::memcpy(repeated + kLevels * kRepeatedLevel, repeated + kTopLevel * kRepeatedLevel,
                sizeof(double) * kRepeatedLevel);
}

// One pair of a level's points from float n on, a + (b - a) x f with b the
// level above. A pair starting at float n starts at channel n mod 3, where
// the repeated level holds it in the pair's lane order; its fractions are
// in the same order (see NvTaps).
QUARNEL_KERNEL void Piece(const double* a, const double* b, const double* f, std::size_t n, Half& p) {
    Half pa, pb, pf;
    LoadPair(a + n % kPlanes, pa);
    LoadPair(b + n % kPlanes, pb);
    LoadPair(f + n, pf);
    p = pa + (pb - pa) * pf;
}

// Level k's first four points as twelve floats from `out` on, four at a
// time.
QUARNEL_KERNEL void LevelPoints(const double* repeated, const NvTaps& t, std::size_t k, float* out) {
    const double* a = repeated + k * kRepeatedLevel;
    const double* b = a + kRepeatedLevel;
    const double* f = &t.spread[kSpreadPerLevel * k];
    for (std::size_t n = 0; n < kSpreadPerLevel; n += kLanes) {
        Half low, high;
        Piece(a, b, f, n, low);
        Piece(a, b, f, n + kPair, high);
        const Level p = __builtin_shufflevector(low, high, 0, 1, 2, 3);
        const LevelFloats floats = __builtin_convertvector(p, LevelFloats);
        std::memcpy(out + n, &floats, sizeof floats);
    }
}

// The levels below the top, in runs that end at a level with a fifth
// point: within a run each level's points follow the last one's.
QUARNEL_KERNEL void PostGamma(const double* repeated, float* post) {
    const NvTaps& t = Nv();
    std::size_t k = 0;
    for (std::size_t run = 0; run <= t.fifthCount; ++run) {
        const std::size_t end = run < t.fifthCount ? t.fifth[run] + std::size_t{1} : kTopLevel;
        float* out = post + t.first[k] * kPlanes;
#pragma GCC unroll 5
        for (; k < end; ++k, out += kSpreadPerLevel) LevelPoints(repeated, t, k, out);
    }
}

}  // namespace

void ConvertSrgbLut16(const uint16_t* inLut, uint16_t* outLut) {
    Level source[kLevels + 1];
    ToOffsetLevels(inLut, source);
    const SrgbTaps& taps = Srgb();
    for (std::size_t i = 0; i < kLevels; i += 2 * kLanes) ResamplePairs(taps, source, i, outLut);
}

// Re-samples through the sRGB encoding, normalises and interpolates the 1024
// post-gamma points; the pre-gamma array is the fixed decoding ramp. Above
// the top the level repeats, so the last point adds a zero rise.
void ConvertNvidia(const uint16_t* inLut, float* outNv) {
    Level source[kLevels + 1];
    ToLevels(inLut, source);
    alignas(sizeof(Half)) double repeated[kRepeatedDoubles];
    Normalise(source, repeated);

    std::memcpy(outNv, NvPreGamma().data(), sizeof(float) * kNvFloatsPerArray);
    float* post = outNv + kNvFloatsPerArray;
    PostGamma(repeated, post);
    const NvTaps& t = Nv();
    for (std::size_t n = 0; n < t.fifthCount; ++n)
        RepeatedPoint(repeated, t.fifth[n], t.first[t.fifth[n]] + kLanes, post);
    RepeatedPoint(repeated, kTopLevel, kPoints - 1, post);
}

void ConvertIgcl(const uint16_t* inLut, double* outIgcl) {
    for (std::size_t k = 0; k < kLevels * kPlanes; ++k) {
        double v = inLut[k];
        DivideEntryByFullScale(v);
        outIgcl[k] = v;
    }
}

}  // namespace quarnel::convert
