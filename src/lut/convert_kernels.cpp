// SPDX-License-Identifier: MIT
#include "lut/convert_kernels.h"

#include <cstddef>
#include <cstring>

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
// twice over (red, green, blue, red, green, blue), so that its three
// rotations, (r g b r), (g b r g) and (b r g b), are plain loads at its
// first, second and third double and take no shuffle.
inline constexpr std::size_t kRepeatedLevel = 2 * kPlanes;
// Levels 0 to 255 and the repeat of the top above them; the last store's
// spare lane lands one double past the last level.
inline constexpr std::size_t kRepeatedDoubles = (kLevels + 1) * kRepeatedLevel + 1;

QUARNEL_KERNEL void StoreRepeated(const Level& v, double* level) {
    std::memcpy(level, &v, sizeof v);
    std::memcpy(level + kPlanes, &v, sizeof v);  // its red overwrites the first store's spare lane
}

QUARNEL_KERNEL void LoadLevel(const double* at, Level& v) { std::memcpy(&v, at, sizeof v); }

// The re-sampled levels over the full scale, the top level repeated above
// the top. The top level reads the level below it (its encoded level comes
// out a hair under 255), so the source stays as it is until every level is
// done.
QUARNEL_KERNEL void Normalise(const Level* source, double* repeated) {
    const SrgbTaps& taps = Srgb();
    Level v;
    for (std::size_t i = 0; i < kLevels; ++i) {
        Resample(taps, source, i, v);
        DivideByFullScale(v);
        StoreRepeated(v, repeated + i * kRepeatedLevel);
    }
    StoreRepeated(v, repeated + kLevels * kRepeatedLevel);
}

// Point j of level k: a + (b - a) x f[j], b the level above, as floats. The
// lanes of a, b and f are placed for the points' twelve floats (see
// NvTaps).
QUARNEL_KERNEL void PostGamma(const double* repeated, float* post) {
    const NvTaps& t = Nv();
#pragma GCC unroll 5
    for (std::size_t k = 0; k < kTopLevel; ++k) {
        const double* a = repeated + k * kRepeatedLevel;
        const double* b = a + kRepeatedLevel;
        Level a0, a1, a2, b0, b1, b2;
        LoadLevel(a, a0);
        LoadLevel(a + 1, a1);
        LoadLevel(a + 2, a2);
        LoadLevel(b, b0);
        LoadLevel(b + 1, b1);
        LoadLevel(b + 2, b2);
        const Level* f = &t.spread[kRotations * k];
        const LevelFloats p0 = __builtin_convertvector(a0 + (b0 - a0) * f[0], LevelFloats);
        const LevelFloats p1 = __builtin_convertvector(a1 + (b1 - a1) * f[1], LevelFloats);
        const LevelFloats p2 = __builtin_convertvector(a2 + (b2 - a2) * f[2], LevelFloats);
        float* out = post + t.first[k] * kPlanes;
        std::memcpy(out, &p0, sizeof p0);
        std::memcpy(out + kLanes, &p1, sizeof p1);
        std::memcpy(out + 2 * kLanes, &p2, sizeof p2);
    }
}

// A single point of level k (a fifth point, or the top level's only one).
QUARNEL_KERNEL void RepeatedPoint(const double* repeated, std::size_t k, std::size_t j, float* post) {
    Level a, b;
    LoadLevel(repeated + k * kRepeatedLevel, a);
    LoadLevel(repeated + (k + 1) * kRepeatedLevel, b);
    PostGammaPoint(a, b, j, post);
}

// Re-samples through the sRGB encoding, normalises and interpolates the
// 1024 post-gamma points; the pre-gamma array is the fixed decoding ramp.
// Above the top the level repeats, so the last point adds a zero rise.
QUARNEL_KERNEL void Nvidia(const uint16_t* inLut, float* outNv) {
    Level source[kLevels + 1];
    ToLevels(inLut, source);
    double repeated[kRepeatedDoubles];
    Normalise(source, repeated);

    std::memcpy(outNv, NvPreGamma().data(), sizeof(float) * kNvFloatsPerArray);
    float* post = outNv + kNvFloatsPerArray;
    PostGamma(repeated, post);
    const NvTaps& t = Nv();
    for (std::size_t n = 0; n < t.fifthCount; ++n)
        RepeatedPoint(repeated, t.fifth[n], t.first[t.fifth[n]] + kLanes, post);
    RepeatedPoint(repeated, kTopLevel, kPoints - 1, post);
}

QUARNEL_KERNEL void Igcl(const uint16_t* inLut, double* outIgcl) {
    for (std::size_t k = 0; k < kLevels * kPlanes; ++k) {
        double v = inLut[k];
        DivideByFullScale(v);
        outIgcl[k] = v;
    }
}

}  // namespace

void ConvertSrgbLut16(const uint16_t* inLut, uint16_t* outLut) { platform::RunLoop<SrgbLut16>(inLut, outLut); }

void ConvertNvidia(const uint16_t* inLut, float* outNv) { platform::RunLoop<Nvidia>(inLut, outNv); }

void ConvertIgcl(const uint16_t* inLut, double* outIgcl) { platform::RunLoop<Igcl>(inLut, outIgcl); }

}  // namespace quarnel::convert
