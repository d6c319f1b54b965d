// SPDX-License-Identifier: MIT
#include "lut/convert_kernels.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

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

// Four entries of one plane.
using PlaneQuad = uint16_t __attribute__((vector_size(kLanes * sizeof(uint16_t))));

// Half-up of four entries of a plane, stored from `entry` on. The
// re-sampled values lie between two 16-bit entries, so half-up needs no
// clamp here.
QUARNEL_KERNEL void StoreRounded(const Level& v, uint16_t* entry) {
    const PlaneQuad quad = __builtin_convertvector(__builtin_convertvector(v + 0.5, LevelInts), PlaneQuad);
    std::memcpy(entry, &quad, sizeof quad);
}

// Four levels at a time, transposed back into the planes: levels i to i + 3
// become a vector of red, one of green and one of blue entries.
QUARNEL_KERNEL void SrgbLut16(const uint16_t* inLut, uint16_t* outLut) {
    Level source[kLevels + 1];
    ToLevels(inLut, source);
    const SrgbTaps& taps = Srgb();
    for (std::size_t i = 0; i < kLevels; i += kLanes) {
        Level v0, v1, v2, v3;
        Resample(taps, source, i, v0);
        Resample(taps, source, i + 1, v1);
        Resample(taps, source, i + 2, v2);
        Resample(taps, source, i + 3, v3);
        const Level redBlue01 = __builtin_shufflevector(v0, v1, 0, 4, 2, 6);  // r0 r1 b0 b1
        const Level green01 = __builtin_shufflevector(v0, v1, 1, 5, 3, 7);    // g0 g1 and the spare lanes
        const Level redBlue23 = __builtin_shufflevector(v2, v3, 0, 4, 2, 6);
        const Level green23 = __builtin_shufflevector(v2, v3, 1, 5, 3, 7);
        StoreRounded(__builtin_shufflevector(redBlue01, redBlue23, 0, 1, 4, 5), outLut + i);
        StoreRounded(__builtin_shufflevector(green01, green23, 0, 1, 4, 5), outLut + kLevels + i);
        StoreRounded(__builtin_shufflevector(redBlue01, redBlue23, 2, 3, 6, 7), outLut + 2 * kLevels + i);
    }
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

    // Levels i and i + 1 in pairs of doubles, each stored twice over as
    // (r g), (b r), (g b). Their six channels fill three pairs, where one
    // level alone would leave half of its second pair spare: the middle pair
    // is level i's blue and level i + 1's red, each re-sampled with its own
    // level's fraction.
    QUARNEL_KERNEL static void NormalisePair(const SrgbTaps& taps, const double* source, std::size_t i,
                                             double* repeated) {
        const double* a0 = source + taps.lo[i] * kLanes;
        const double* a1 = source + taps.lo[i + 1] * kLanes;
        const double f0 = taps.f[i];
        const double f1 = taps.f[i + 1];
        Doubles rg0, rg1, gb0, gb1;
        Load(a0, rg0);
        Load(a0 + kLanes, rg1);
        Load(a1 + 1, gb0);
        Load(a1 + kLanes + 1, gb1);
        const Doubles br0{a0[2], a1[0]};
        const Doubles br1{a0[kLanes + 2], a1[kLanes]};
        const Doubles brF{f0, f1};
        Doubles rg = rg0 + (rg1 - rg0) * f0;
        Doubles br = br0 + (br1 - br0) * brF;
        Doubles gb = gb0 + (gb1 - gb0) * f1;
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

void ConvertSrgbLut16(const uint16_t* inLut, uint16_t* outLut) { platform::RunLoop<SrgbLut16>(inLut, outLut); }

void ConvertNvidia(const uint16_t* inLut, float* outNv) { platform::RunLoop<NvidiaKernel>(inLut, outNv); }

void ConvertIgcl(const uint16_t* inLut, double* outIgcl) { platform::RunLoop<Igcl>(inLut, outIgcl); }

}  // namespace quarnel::convert
