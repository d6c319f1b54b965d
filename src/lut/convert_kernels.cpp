// SPDX-License-Identifier: MIT
#include "lut/convert_kernels.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

#include <emmintrin.h>

#include "core/constants.h"
#include "core/full_scale.h"
#include "core/lut16.h"
#include "core/vector_forms.h"
#include "lut/convert_taps.h"
#include "lut/level_kernels.h"
#include "lut/level_vectors.h"
#include "platform/processor.h"

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
// which a saturating pack (the only pack of 32-bit lanes the baseline form
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

// The sRGB-folded table, eight levels at a time, in the form's own vectors:
// four-lane levels in AVX2; pairs of levels as three pairs of doubles in the
// baseline form, which would otherwise work on every level's spare lane.
template <VectorForm Form>
struct SrgbKernel {
    using Bits = int32_t __attribute__((vector_size(2 * kLanes * sizeof(int32_t))));
    using Words = uint16_t __attribute__((vector_size(4 * kLanes * sizeof(uint16_t))));

    // Levels i to i + 7 re-sampled two at a time, stored as planes.
    QUARNEL_KERNEL static void ResamplePairs(const SrgbTaps& taps, const Level* source, std::size_t i, uint16_t* out) {
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

    // Four levels' entries, the low 32-bit lane of each double, as
    // (r g r g | b s b s) and then (r r r r | b b b b) and (g g g g | s s s s):
    // shuffles within 16-byte halves, which take one step where crossing
    // them takes three.
    QUARNEL_KERNEL static void Gather4(const Level* v, Bits& redBlue, Bits& green) {
        const Bits s01 = __builtin_shufflevector(reinterpret_cast<Bits>(v[0]), reinterpret_cast<Bits>(v[1]), 0, 2, 8,
                                                 10, 4, 6, 12, 14);
        const Bits s23 = __builtin_shufflevector(reinterpret_cast<Bits>(v[2]), reinterpret_cast<Bits>(v[3]), 0, 2, 8,
                                                 10, 4, 6, 12, 14);
        redBlue = __builtin_shufflevector(s01, s23, 0, 2, 8, 10, 4, 6, 12, 14);
        green = __builtin_shufflevector(s01, s23, 1, 3, 9, 11, 5, 7, 13, 15);
    }

    // The low 16 bits of two such vectors' lanes, half by half: the red
    // entries of eight levels and then their blue ones, say.
    QUARNEL_KERNEL static void Narrow(const Bits& low, const Bits& high, Words& entries) {
        entries = __builtin_shufflevector(reinterpret_cast<Words>(low), reinterpret_cast<Words>(high), 0, 2, 4, 6, 16,
                                          18, 20, 22, 8, 10, 12, 14, 24, 26, 28, 30);
    }

    // Levels i to i + 7 re-sampled as four-lane levels, their entries
    // gathered into the planes.
    QUARNEL_KERNEL static void ResampleLevels(const SrgbTaps& taps, const Level* source, std::size_t i, uint16_t* out) {
        Level v[2 * kLanes];
        for (std::size_t k = 0; k < 2 * kLanes; ++k) Resample(taps, source, i + k, v[k]);
        Bits redBlue[2], green[2];
        Gather4(v, redBlue[0], green[0]);
        Gather4(v + kLanes, redBlue[1], green[1]);
        Words rb, g;
        Narrow(redBlue[0], redBlue[1], rb);
        Narrow(green[0], green[1], g);
        std::memcpy(out + i, &rb, sizeof rb / 2);
        std::memcpy(out + kLevels + i, &g, sizeof g / 2);
        std::memcpy(out + 2 * kLevels + i, reinterpret_cast<const unsigned char*>(&rb) + sizeof rb / 2, sizeof rb / 2);
    }

    QUARNEL_KERNEL static void Run(const uint16_t* inLut, uint16_t* outLut) {
        Level source[kLevels + 1];
        ToOffsetLevels(inLut, source);
        const SrgbTaps& taps = Srgb();
        for (std::size_t i = 0; i < kLevels; i += 2 * kLanes) {
            if constexpr (kDoubleLanes<Form> == kLanes)
                ResampleLevels(taps, source, i, outLut);
            else
                ResamplePairs(taps, source, i, outLut);
        }
    }
};

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

// The conversion in pieces of the form's own vectors: four doubles in AVX2,
// two in the baseline form, which would otherwise move every four-lane
// value it loads or stores at an odd place through memory.
template <VectorForm Form>
struct NvidiaKernel {
    static constexpr std::size_t kWidth = kDoubleLanes<Form>;
    using Doubles = std::conditional_t<kWidth == kLanes, Level, Half>;

    QUARNEL_KERNEL static void Load(const double* at, Doubles& v) { std::memcpy(&v, at, sizeof v); }
    QUARNEL_KERNEL static void Store(const Doubles& v, double* at) { std::memcpy(at, &v, sizeof v); }

    // Level i re-sampled and over the full scale, stored twice over. In four
    // lanes the second copy's red overwrites the first copy's spare lane.
    QUARNEL_KERNEL static void NormaliseLevel(const SrgbTaps& taps, const double* source, std::size_t i,
                                              double* repeated) {
        const double* a = source + taps.lo[i] * kLanes;
        Level pa, pb;
        LoadLevel(a, pa);
        LoadLevel(a + kLanes, pb);
        Level v = pa + (pb - pa) * taps.f[i];
        DivideByFullScale(v);
        double* level = repeated + i * kRepeatedLevel;
        std::memcpy(level, &v, sizeof v);
        std::memcpy(level + kPlanes, &v, sizeof v);
    }

    // Levels i and i + 1 re-sampled in pairs of doubles and over the full
    // scale, each stored twice over as (r g), (b r), (g b).
    QUARNEL_KERNEL static void NormalisePair(const SrgbTaps& taps, const double* source, std::size_t i,
                                             double* repeated) {
        Doubles rg, br, gb;
        ResamplePair(taps, source, i, rg, br, gb);
        DivideByFullScale(rg);
        DivideByFullScale(br);
        DivideByFullScale(gb);
        double* level = repeated + i * kRepeatedLevel;
        Store(rg, level);
        Store(__builtin_shufflevector(br, rg, 0, 2), level + kWidth);
        Store(__builtin_shufflevector(rg, br, 1, 2), level + 2 * kWidth);
        level += kRepeatedLevel;
        Store(__builtin_shufflevector(br, gb, 1, 2), level);
        Store(__builtin_shufflevector(gb, br, 1, 3), level + kWidth);
        Store(gb, level + 2 * kWidth);
    }

    // The re-sampled levels over the full scale, the top level repeated
    // above the top, straight from the source's doubles.
    QUARNEL_KERNEL static void Normalise(const Level* levels, double* repeated) {
        const SrgbTaps& taps = Srgb();
        const auto* source = reinterpret_cast<const double*>(levels);
        if constexpr (kWidth == kLanes) {
#pragma GCC unroll 4
            for (std::size_t i = 0; i < kLevels; ++i) NormaliseLevel(taps, source, i, repeated);
        } else {
            for (std::size_t i = 0; i < kLevels; i += 2) NormalisePair(taps, source, i, repeated);
        }
        std::memcpy(repeated + kLevels * kRepeatedLevel, repeated + kTopLevel * kRepeatedLevel,
                    sizeof(double) * kRepeatedLevel);
    }

    // One piece of a level's points from float n on, a + (b - a) x f with b
    // the level above. A piece starting at float n starts at channel
    // n mod 3, where the repeated level holds it in the piece's lane order;
    // its fractions are in the same order (see NvTaps).
    QUARNEL_KERNEL static void Piece(const double* a, const double* b, const double* f, std::size_t n, Doubles& p) {
        Doubles pa, pb, pf;
        Load(a + n % kPlanes, pa);
        Load(b + n % kPlanes, pb);
        Load(f + n, pf);
        p = pa + (pb - pa) * pf;
    }

    // Level k's first four points as twelve floats from `out` on, four at
    // a time.
    QUARNEL_KERNEL static void LevelPoints(const double* repeated, const NvTaps& t, std::size_t k, float* out) {
        const double* a = repeated + k * kRepeatedLevel;
        const double* b = a + kRepeatedLevel;
        const double* f = &t.spread[kSpreadPerLevel * k];
        for (std::size_t n = 0; n < kSpreadPerLevel; n += kLanes) {
            Level p;
            if constexpr (kWidth == kLanes) {
                Piece(a, b, f, n, p);
            } else {
                Doubles low, high;
                Piece(a, b, f, n, low);
                Piece(a, b, f, n + kWidth, high);
                p = __builtin_shufflevector(low, high, 0, 1, 2, 3);
            }
            const LevelFloats floats = __builtin_convertvector(p, LevelFloats);
            std::memcpy(out + n, &floats, sizeof floats);
        }
    }

    // The levels below the top, in runs that end at a level with a fifth
    // point: within a run each level's points follow the last one's.
    QUARNEL_KERNEL static void PostGamma(const double* repeated, float* post) {
        const NvTaps& t = Nv();
        std::size_t k = 0;
        for (std::size_t run = 0; run <= t.fifthCount; ++run) {
            const std::size_t end = run < t.fifthCount ? t.fifth[run] + std::size_t{1} : kTopLevel;
            float* out = post + t.first[k] * kPlanes;
#pragma GCC unroll 5
            for (; k < end; ++k, out += kSpreadPerLevel) LevelPoints(repeated, t, k, out);
        }
    }

    // Re-samples through the sRGB encoding, normalises and interpolates the
    // 1024 post-gamma points; the pre-gamma array is the fixed decoding
    // ramp. Above the top the level repeats, so the last point adds a zero
    // rise.
    QUARNEL_KERNEL static void Run(const uint16_t* inLut, float* outNv) {
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
};

QUARNEL_KERNEL void Igcl(const uint16_t* inLut, double* outIgcl) {
    for (std::size_t k = 0; k < kLevels * kPlanes; ++k) {
        double v = inLut[k];
        DivideEntryByFullScale(v);
        outIgcl[k] = v;
    }
}

}  // namespace

void ConvertSrgbLut16(const uint16_t* inLut, uint16_t* outLut) { platform::RunLoop<SrgbKernel>(inLut, outLut); }

void ConvertNvidia(const uint16_t* inLut, float* outNv) { platform::RunLoop<NvidiaKernel>(inLut, outNv); }

void ConvertIgcl(const uint16_t* inLut, double* outIgcl) { platform::RunLoop<Igcl>(inLut, outIgcl); }

}  // namespace quarnel::convert
