// SPDX-License-Identifier: MIT
#include "codec/lut_differences.h"

#include <cstring>

namespace quarnel::codec {
namespace {
constexpr int kTopLevel = kLutLevels - 1;
constexpr int kLevelBits = 8;  // levels 0..255 fit in the low eight bits

using Quad = uint32_t __attribute__((vector_size(4 * sizeof(uint32_t))));

Quad LoadQuad(const int* at) {
    Quad q;
    std::memcpy(&q, at, sizeof q);
    return q;
}

// Running sums within a quad: lane k gets lanes 0..k added up.
Quad SumWithinQuad(Quad q) {
    constexpr Quad kNone{};
    q += __builtin_shufflevector(kNone, q, 0, 4, 5, 6);
    return q + __builtin_shufflevector(kNone, q, 0, 1, 4, 5);
}

}  // namespace

std::optional<Differences> MakeDifferences(const uint16_t* lut) {
    Differences d{};
    for (int c = 0; c < kLutPlanes; ++c) {
        if (lut[LutIndex(c, 0)] != 0) return std::nullopt;
        for (int i = 1; i < kLutLevels; ++i)
            d[LutIndex(c, i)] = lut[LutIndex(c, i)] / kLutStep - lut[LutIndex(c, i - 1)] / kLutStep;
    }
    return d;
}

// A plane is summed eight differences at a time, split into the four at even
// and the four at odd places: the running sums of their pairs are the sums at
// the odd places, less each odd difference the sums at the even places, and
// the two halves of a 32-bit lane, even sum low and odd sum high, are the
// eight entries in order. The sums wrap as unsigned 32-bit values. Before its
// first sum outside 0..255 a plane's sums are in 0..255, so that sum lies
// within 2^31 of them and cannot wrap back into 0..255: a plane is valid
// exactly when the OR of all its sums has no bit above the low eight and its
// last sum is 255. Entry 0's difference is ignored: each plane's running
// total starts at minus that difference, so that entry 0 sums to 0.
bool SumDifferences(const Differences& d, uint16_t* lut) {
    constexpr int kEntriesPerStep = 8;
    for (int c = 0; c < kLutPlanes; ++c) {
        const int* plane = d.data() + LutIndex(c, 0);
        uint16_t* out = lut + LutIndex(c, 0);
        Quad below = Quad{} - static_cast<uint32_t>(plane[0]);
        Quad seen{};
        for (int i = 0; i < kLutLevels; i += kEntriesPerStep) {
            const Quad low = LoadQuad(plane + i);
            const Quad high = LoadQuad(plane + i + 4);
            const Quad even = __builtin_shufflevector(low, high, 0, 2, 4, 6);
            const Quad odd = __builtin_shufflevector(low, high, 1, 3, 5, 7);
            const Quad oddSums = SumWithinQuad(even + odd) + below;
            const Quad evenSums = oddSums - odd;
            below = __builtin_shufflevector(oddSums, oddSums, 3, 3, 3, 3);
            seen |= evenSums | oddSums;
            const Quad entries = (evenSums << kLevelBits) | (oddSums << (16 + kLevelBits));
            std::memcpy(out + i, &entries, sizeof entries);
        }
        seen >>= kLevelBits;
        if ((seen[0] | seen[1] | seen[2] | seen[3]) != 0 || below[0] != kTopLevel) return false;
    }
    return true;
}

}  // namespace quarnel::codec
