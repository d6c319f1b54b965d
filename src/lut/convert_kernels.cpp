// SPDX-License-Identifier: MIT
#include "lut/convert_kernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "core/constants.h"
#include "core/lut16.h"
#include "core/srgb.h"
#include "core/wide_vectors.h"
#include "lut/default_lut.h"
#include "platform/processor.h"

namespace quarnel::convert {
namespace {

constexpr std::size_t kLevels = kLutLevels;
constexpr std::size_t kPlanes = kLutPlanes;
constexpr std::size_t kPoints = kNvPoints;

// The sRGB re-sampling and the post-gamma interpolation read whole levels
// (red, green, blue together) at places that follow a curve. Kept level by
// level with a fourth, zero lane, each level is one 32-byte vector that a
// single load fetches (two in the baseline form); the spare lane computes
// zeros that no output keeps.
constexpr std::size_t kLanes = 4;
using Level = double __attribute__((vector_size(kLanes * sizeof(double))));
using LevelFloats = float __attribute__((vector_size(kLanes * sizeof(float))));
using LevelInts = int32_t __attribute__((vector_size(kLanes * sizeof(int32_t))));

// Where level i of the sRGB re-sampling reads: the level at or below the
// encoded level, the one above it and the fraction between them. The
// encoded level lies within 0..255, so its two neighbours are at most one
// apart: where they meet (no fraction, or the top clamped) both are the same
// level and the fraction multiplies a zero difference. Fixed for every
// table, so worked out once per process.
struct SrgbTaps {
    std::array<uint8_t, kLevels> lo;
    std::array<uint8_t, kLevels> hi;
    std::array<double, kLevels> f;
};

SrgbTaps BuildSrgbTaps() {
    SrgbTaps taps{};
    for (std::size_t i = 0; i < kLevels; ++i) {
        const double p = SrgbEncode(static_cast<double>(i) / kTopLevelScale) * kTopLevelScale;
        const double lo = std::clamp(std::floor(p), 0.0, kTopLevelScale);
        const double hi = std::min(kTopLevelScale, std::ceil(p));
        taps.lo[i] = static_cast<uint8_t>(lo);
        taps.hi[i] = static_cast<uint8_t>(hi);
        taps.f[i] = hi != lo ? p - lo : 0.0;
    }
    return taps;
}

const SrgbTaps& Srgb() {
    static const SrgbTaps taps = BuildSrgbTaps();
    return taps;
}

// Where the points of the post-gamma array read the normalised levels, in
// single precision: point j reads the level at or below q = j x 255 / 1023
// and the fraction above it. The level above is at most one further; where
// q is whole the fraction is 0 and only the level below counts. The points
// of level k are first[k] up to first[k + 1]: four of them, five for levels
// 0, 85 and 170, and one (the last point) for the top level.
struct NvTaps {
    std::array<uint16_t, kLevels + 1> first;
    std::array<double, kPoints> f;
};

NvTaps BuildNvTaps() {
    NvTaps taps{};
    taps.first.fill(static_cast<uint16_t>(kPoints));
    for (std::size_t j = kPoints; j-- > 0;) {
        const auto q = static_cast<float>(static_cast<double>(j) * kTopLevelScale / kNvTopScale);
        const float lo = std::floor(q);
        const float hi = std::ceil(q);
        float d = hi - lo;
        if (d == 0.0f) d = 1.0f;
        taps.first[static_cast<std::size_t>(lo)] = static_cast<uint16_t>(j);
        taps.f[j] = static_cast<double>((q - lo) / d);
    }
    return taps;
}

const NvTaps& Nv() {
    static const NvTaps taps = BuildNvTaps();
    return taps;
}

// The sRGB decoding of the identity float ramp, decoded in double and stored
// as float, the same for all three channels.
const std::array<float, kNvFloatsPerArray>& NvPreGamma() {
    static const std::array<float, kNvFloatsPerArray> ramp = [] {
        std::array<float, kNvFloatsPerArray> r = IdentityFloatRamp();
        for (float& v : r) v = static_cast<float>(SrgbDecode(static_cast<double>(v)));
        return r;
    }();
    return ramp;
}

// The planes as levels of unscaled doubles.
QUARNEL_KERNEL void ToLevels(const uint16_t* in, Level* levels) {
    for (std::size_t i = 0; i < kLevels; ++i)
        levels[i] = Level{static_cast<double>(in[i]), static_cast<double>(in[kLevels + i]),
                          static_cast<double>(in[2 * kLevels + i]), 0.0};
}

// Level i re-sampled through the sRGB encoding: a + (b - a) / d x f with
// d = 1 wherever the two neighbours differ, every lookup reading the
// unscaled source.
QUARNEL_KERNEL void Resample(const SrgbTaps& t, const Level* source, std::size_t i, Level& out) {
    const Level a = source[t.lo[i]];
    const Level b = source[t.hi[i]];
    out = a + (b - a) * t.f[i];
}

// The re-sampled values lie between two 16-bit entries, so half-up needs no
// clamp here.
QUARNEL_KERNEL void SrgbLut16(const uint16_t* inLut, uint16_t* outLut) {
    Level source[kLevels];
    ToLevels(inLut, source);
    const SrgbTaps& taps = Srgb();
    for (std::size_t i = 0; i < kLevels; ++i) {
        Level v;
        Resample(taps, source, i, v);
        const auto rounded = __builtin_convertvector(v + 0.5, LevelInts);
        for (std::size_t c = 0; c < kPlanes; ++c) outLut[c * kLevels + i] = static_cast<uint16_t>(rounded[c]);
    }
}

// Re-samples through the sRGB encoding, normalises and interpolates the
// 1024 post-gamma points; the pre-gamma array is the fixed decoding ramp.
// Each point is P[lo] + (P[hi] - P[lo]) x f: the rises between neighbouring
// levels are taken once per level (0 above the top), and where the fraction
// is 0 the rise adds a zero.
QUARNEL_KERNEL void Nvidia(const uint16_t* inLut, float* outNv) {
    Level source[kLevels];
    ToLevels(inLut, source);
    const SrgbTaps& taps = Srgb();
    Level normalised[kLevels + 1];
    for (std::size_t i = 0; i < kLevels; ++i) {
        Resample(taps, source, i, normalised[i]);
        normalised[i] /= kLutFullScale;
    }
    normalised[kLevels] = normalised[kLevels - 1];
    Level rise[kLevels];
    for (std::size_t i = 0; i < kLevels; ++i) rise[i] = normalised[i + 1] - normalised[i];

    std::memcpy(outNv, NvPreGamma().data(), sizeof(float) * kNvFloatsPerArray);
    float* post = outNv + kNvFloatsPerArray;
    const NvTaps& t = Nv();
    // Level by level, each level's points in turn. Each point's four lanes
    // are stored whole, the spare one onto the next point's red, which that
    // point then writes; the last point, the top level's only one, stores
    // three.
    for (std::size_t k = 0; k < kTopLevel; ++k) {
        const Level a = normalised[k];
        const Level d = rise[k];
        for (std::size_t j = t.first[k]; j < t.first[k + 1]; ++j) {
            const LevelFloats point = __builtin_convertvector(a + d * t.f[j], LevelFloats);
            std::memcpy(post + j * kPlanes, &point, sizeof point);
        }
    }
    const LevelFloats last =
        __builtin_convertvector(normalised[kTopLevel] + rise[kTopLevel] * t.f[kPoints - 1], LevelFloats);
    std::memcpy(post + (kPoints - 1) * kPlanes, &last, sizeof(float) * kPlanes);
}

QUARNEL_KERNEL void Igcl(const uint16_t* inLut, double* outIgcl) {
    for (std::size_t k = 0; k < kLevels * kPlanes; ++k) outIgcl[k] = inLut[k] / kLutFullScale;
}

void SrgbLut16Baseline(const uint16_t* in, uint16_t* out) { SrgbLut16(in, out); }
void NvidiaBaseline(const uint16_t* in, float* out) { Nvidia(in, out); }
void IgclBaseline(const uint16_t* in, double* out) { Igcl(in, out); }

#ifdef QUARNEL_WIDE_VECTORS
QUARNEL_WIDE void SrgbLut16Wide(const uint16_t* in, uint16_t* out) { SrgbLut16(in, out); }
QUARNEL_WIDE void NvidiaWide(const uint16_t* in, float* out) { Nvidia(in, out); }
QUARNEL_WIDE void IgclWide(const uint16_t* in, double* out) { Igcl(in, out); }
#endif

constexpr Kernels kBaseline{SrgbLut16Baseline, NvidiaBaseline, IgclBaseline};
#ifdef QUARNEL_WIDE_VECTORS
constexpr Kernels kWide{SrgbLut16Wide, NvidiaWide, IgclWide};
#else
constexpr Kernels kWide = kBaseline;
#endif

}  // namespace

const Kernels& ActiveKernels() { return platform::ActiveProcessor().HasWideVectors() ? kWide : kBaseline; }

}  // namespace quarnel::convert
