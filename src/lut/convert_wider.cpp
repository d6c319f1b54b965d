// SPDX-License-Identifier: MIT
#include "lut/convert_wider.h"

#ifdef QUARNEL_WIDER_VECTORS

#include <cstddef>
#include <cstring>

#include "core/constants.h"
#include "core/full_scale.h"
#include "core/lut16.h"
#include "lut/convert_taps.h"
#include "lut/level_kernels.h"
#include "lut/level_vectors.h"

namespace quarnel::convert {
namespace {

// Two levels side by side, each with its spare lane; and the eight floats
// of a vector of points.
constexpr std::size_t kPair = 2;
constexpr std::size_t kPairLanes = kPair * kLanes;
using Pair = double __attribute__((vector_size(kPairLanes * sizeof(double))));
using PairFloats = float __attribute__((vector_size(kPairLanes * sizeof(float))));

// The levels below the top pair up but for the last one.
static_assert(kTopLevel % kPair == 1);

// (Vectors are handed over through references: a 64-byte vector passed by
// value would change the calling convention of code built without it.)
QUARNEL_KERNEL void Load(const void* at, Pair& pair) { std::memcpy(&pair, at, sizeof pair); }

QUARNEL_KERNEL void Join(const Level& low, const Level& high, Pair& pair) {
    pair = __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
}

// Levels i and i + 1 re-sampled through the sRGB encoding and normalised,
// lane for lane as the other forms do it: a + (b - a) x f, over the full
// scale (with fused multiply-adds, to the same bits).
QUARNEL_WIDER QUARNEL_KERNEL void NormalisedPair(const SrgbTaps& t, const Level* source, std::size_t i, Pair& out) {
    Pair a, b, f;
    Join(source[t.lo[i]], source[t.lo[i + 1]], a);
    Join(source[t.lo[i] + 1], source[t.lo[i + 1] + 1], b);
    Join(Level{t.f[i], t.f[i], t.f[i], t.f[i]}, Level{t.f[i + 1], t.f[i + 1], t.f[i + 1], t.f[i + 1]}, f);
    out = a + (b - a) * f;
    DivideByFullScaleFused(reinterpret_cast<__m512d&>(out));
}

// The normalised levels, the top level repeated above the top. The source
// is an array of its own, so the top level reads the level below it as it
// was.
QUARNEL_WIDER QUARNEL_KERNEL void NormalisePairs(const Level* source, Level* levels) {
    const SrgbTaps& taps = Srgb();
    for (std::size_t i = 0; i < kLutLevels; i += kPair) {
        Pair v;
        NormalisedPair(taps, source, i, v);
        std::memcpy(&levels[i], &v, sizeof v);
    }
    levels[kLutLevels] = levels[kTopLevel];
}

// Levels k and k + 1 hold points first[k] to first[k] + 7 where level k
// has no fifth point: 24 floats in a row, three vectors of eight. Their
// lanes come from the pair (level k, level k + 1) in this order:
// r g b r g b r g | b r g b, then r g b r | g b r g b r g b.
QUARNEL_KERNEL void PlacePoints(const Pair& v, Pair& first, Pair& second, Pair& third) {
    first = __builtin_shufflevector(v, v, 0, 1, 2, 0, 1, 2, 0, 1);
    second = __builtin_shufflevector(v, v, 2, 0, 1, 2, 4, 5, 6, 4);
    third = __builtin_shufflevector(v, v, 5, 6, 4, 5, 6, 4, 5, 6);
}

// The eight points a + (b - a) x f of one vector, written from `out`.
QUARNEL_KERNEL void StorePoints(const Pair& a, const Pair& rise, const Level* spread, float* out) {
    Pair f;
    Load(spread, f);
    const PairFloats p = __builtin_convertvector(a + rise * f, PairFloats);
    std::memcpy(out, &p, sizeof p);
}

// The first four points of level k, b the level above, one at a time.
QUARNEL_KERNEL void LevelPoints(const NvTaps& t, const Level* levels, std::size_t k, float* post) {
    for (std::size_t j = t.first[k]; j < t.first[k] + kLanes; ++j) PostGammaPoint(levels[k], levels[k + 1], j, post);
}

// The first four points of every level below the top, b the level above:
// two levels at a time, their rises b - a taken at once and then placed
// like the levels (a lane's difference is the same wherever it lands). The
// fractions in `spread` are in the points' order, so the pair's 24 lie in
// a row as well. A pair whose lower level has a fifth point is done level
// by level after the others.
QUARNEL_KERNEL void PostGammaPairs(const Level* levels, float* post) {
    const NvTaps& t = Nv();
    Pair a;
    Load(&levels[0], a);
    for (std::size_t k = 0; k + 1 < kTopLevel; k += kPair) {
        Pair next;
        Load(&levels[k + kPair], next);
        if (t.first[k + 1] == t.first[k] + kLanes) {
            const Pair b = __builtin_shufflevector(a, next, 4, 5, 6, 7, 8, 9, 10, 11);
            Pair a0, a1, a2, d0, d1, d2;
            PlacePoints(a, a0, a1, a2);
            PlacePoints(b - a, d0, d1, d2);
            const Level* f = &t.spread[kRotations * k];
            float* out = post + t.first[k] * kLutPlanes;
            StorePoints(a0, d0, f, out);
            StorePoints(a1, d1, f + kPair, out + kPairLanes);
            StorePoints(a2, d2, f + 2 * kPair, out + 2 * kPairLanes);
        }
        a = next;
    }
    for (std::size_t n = 0; n < t.fifthCount; ++n) {
        const std::size_t k = t.fifth[n];
        if (k % kPair != 0) continue;  // an upper level: its pair was done whole
        LevelPoints(t, levels, k, post);
        LevelPoints(t, levels, k + 1, post);
    }
    LevelPoints(t, levels, kTopLevel - 1, post);  // the level without a partner
}

}  // namespace

// As the other forms: the sRGB re-sampling, normalised; the fixed pre-gamma
// ramp; the post-gamma points, the fifth points and the last one.
QUARNEL_WIDER void NvidiaWider(const uint16_t* inLut, float* outNv) {
    Level source[kLutLevels + 1];
    ToLevels(inLut, source);
    Level levels[kLutLevels + 1];
    NormalisePairs(source, levels);

    std::memcpy(outNv, NvPreGamma().data(), sizeof(float) * kNvFloatsPerArray);
    float* post = outNv + kNvFloatsPerArray;
    PostGammaPairs(levels, post);
    const NvTaps& t = Nv();
    for (std::size_t n = 0; n < t.fifthCount; ++n) {
        const std::size_t k = t.fifth[n];
        PostGammaPoint(levels[k], levels[k + 1], t.first[k] + kLanes, post);
    }
    PostGammaPoint(levels[kTopLevel], levels[kLutLevels], kNvPoints - 1, post);
}

}  // namespace quarnel::convert

#endif
