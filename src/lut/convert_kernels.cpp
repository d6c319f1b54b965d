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

    // Level v (its pieces) twice over. In four lanes the second copy's red
    // overwrites the first copy's spare lane; in two, the level's pairs are
    // (r g), (b r) and (g b).
    QUARNEL_KERNEL static void StoreRepeated(const Doubles (&v)[kLanes / kWidth], double* level) {
        if constexpr (kWidth == kLanes) {
            Store(v[0], level);
            Store(v[0], level + kPlanes);
        } else {
            Store(v[0], level);
            Store(__builtin_shufflevector(v[1], v[0], 0, 2), level + kWidth);
            Store(__builtin_shufflevector(v[0], v[1], 1, 2), level + 2 * kWidth);
        }
    }

    // The re-sampled levels over the full scale, the top level repeated
    // above the top. Each level is worked a piece at a time, straight from
    // the source's doubles.
    QUARNEL_KERNEL static void Normalise(const Level* levels, double* repeated) {
        const SrgbTaps& taps = Srgb();
        const auto* source = reinterpret_cast<const double*>(levels);
        for (std::size_t i = 0; i < kLevels; ++i) {
            const double* a = source + taps.lo[i] * kLanes;
            Doubles v[kLanes / kWidth];
            for (std::size_t h = 0; h < kLanes / kWidth; ++h) {
                Doubles pa, pb;
                Load(a + h * kWidth, pa);
                Load(a + kLanes + h * kWidth, pb);
                v[h] = pa + (pb - pa) * taps.f[i];
                DivideByFullScale(v[h]);
            }
            StoreRepeated(v, repeated + i * kRepeatedLevel);
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

    // A level's first four points as twelve floats, four at a time.
    QUARNEL_KERNEL static void PostGamma(const double* repeated, float* post) {
        const NvTaps& t = Nv();
#pragma GCC unroll 5
        for (std::size_t k = 0; k < kTopLevel; ++k) {
            const double* a = repeated + k * kRepeatedLevel;
            const double* b = a + kRepeatedLevel;
            const double* f = &t.spread[kSpreadPerLevel * k];
            float* out = post + t.first[k] * kPlanes;
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
        DivideByFullScale(v);
        outIgcl[k] = v;
    }
}

}  // namespace

void ConvertSrgbLut16(const uint16_t* inLut, uint16_t* outLut) { platform::RunLoop<SrgbLut16>(inLut, outLut); }

void ConvertNvidia(const uint16_t* inLut, float* outNv) { platform::RunLoop<NvidiaKernel>(inLut, outNv); }

void ConvertIgcl(const uint16_t* inLut, double* outIgcl) { platform::RunLoop<Igcl>(inLut, outIgcl); }

}  // namespace quarnel::convert
