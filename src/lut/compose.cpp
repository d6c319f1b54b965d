// SPDX-License-Identifier: MIT
#include "lut/compose.h"

#include <algorithm>
#include <array>
#include <functional>

#include "core/lut16.h"
#include "core/wide_vectors.h"
#include "platform/processor.h"

#ifdef QUARNEL_WIDER_VECTORS
#include <immintrin.h>
#endif

namespace quarnel {
namespace {

constexpr int32_t kUnknownKind = 1;

// Half-up of entry / 65280 x 255 in double, held at 255. The quotient is
// entry / 256 but for rounding in its last place, which never carries it
// across a half: for every one of the 65536 entries the result is the whole
// part of (entry + 128) / 256: the high byte, plus one where the low byte
// is 128 or more, which the loops compute in 16-bit lanes.
uint16_t ScaledIndex(uint16_t entry) {
    const auto rounded = static_cast<uint16_t>((entry >> 8) + ((entry >> 7) & 1));
    return std::min<uint16_t>(rounded, kTopLevel);
}

uint16_t MapIndex(uint32_t kind, uint16_t entry) {
    return kind != kComposeDirect ? ScaledIndex(entry) : std::min<uint16_t>(entry, kTopLevel);
}

// One plane: out[i] = plane[index of map[i]]. The indices are worked out in
// a pass of their own, which vectorises.
void ComposePlaneBaseline(uint32_t kind, const uint16_t* map, const uint16_t* plane, uint16_t* out) {
    std::array<uint16_t, kLutLevels> index;
    for (std::size_t i = 0; i < index.size(); ++i) index[i] = MapIndex(kind, map[i]);
#pragma GCC unroll 8
    for (std::size_t i = 0; i < index.size(); ++i) out[i] = plane[index[i]];
}

#ifdef QUARNEL_WIDER_VECTORS
// A 64-byte vector holds 32 entries, so the plane's 256 fill eight. One
// two-table permute looks up an index's low six bits in a pair of them
// (quarter q of the plane, entries 64q to 64q + 63); bits 6 and 7 then
// choose among the four quarters' results. The whole plane is read before
// the first entry is written.
constexpr int kWords = 32;
constexpr int kQuarters = kLutLevels / (2 * kWords);
constexpr uint16_t kOddQuarterBit = 1u << 6;
constexpr uint16_t kUpperHalfBit = 1u << 7;

QUARNEL_WIDER __m512i MapIndices(uint32_t kind, const uint16_t* map) {
    const __m512i entry = _mm512_loadu_si512(map);
    const __m512i top = _mm512_set1_epi16(kTopLevel);
    if (kind == kComposeDirect) return _mm512_min_epu16(entry, top);
    const __m512i roundUp = _mm512_and_si512(_mm512_srli_epi16(entry, 7), _mm512_set1_epi16(1));
    return _mm512_min_epu16(_mm512_add_epi16(_mm512_srli_epi16(entry, 8), roundUp), top);
}

QUARNEL_WIDER void ComposePlaneWider(uint32_t kind, const uint16_t* map, const uint16_t* plane, uint16_t* out) {
    __m512i low[kQuarters];
    __m512i high[kQuarters];
    for (int q = 0; q < kQuarters; ++q) {
        low[q] = _mm512_loadu_si512(plane + 2 * q * kWords);
        high[q] = _mm512_loadu_si512(plane + (2 * q + 1) * kWords);
    }
    const __m512i oddQuarterBit = _mm512_set1_epi16(kOddQuarterBit);
    const __m512i upperHalfBit = _mm512_set1_epi16(kUpperHalfBit);
    for (int i = 0; i < kLutLevels; i += kWords) {
        const __m512i index = MapIndices(kind, map + i);
        __m512i found[kQuarters];
        for (int q = 0; q < kQuarters; ++q) found[q] = _mm512_permutex2var_epi16(low[q], index, high[q]);
        const __mmask32 oddQuarter = _mm512_test_epi16_mask(index, oddQuarterBit);
        const __mmask32 upperHalf = _mm512_test_epi16_mask(index, upperHalfBit);
        const __m512i fromLowerHalf = _mm512_mask_blend_epi16(oddQuarter, found[0], found[1]);
        const __m512i fromUpperHalf = _mm512_mask_blend_epi16(oddQuarter, found[2], found[3]);
        _mm512_storeu_si512(out + i, _mm512_mask_blend_epi16(upperHalf, fromLowerHalf, fromUpperHalf));
    }
}
#else
constexpr auto ComposePlaneWider = ComposePlaneBaseline;
#endif

// Whether writing `out` could change entries of `base` still to be read.
bool Overlaps(const uint16_t* base, const uint16_t* out) {
    const std::less<const uint16_t*> before;
    return before(base, out + kLutEntries) && before(out, base + kLutEntries);
}

}  // namespace

int32_t ComposeLut(uint32_t kind, const uint16_t* map, const uint16_t* base, uint16_t* out) {
    Lut16 copy;  // only when out shares memory with base
    const uint16_t* source = base;
    if (Overlaps(base, out)) {
        std::copy(base, base + kLutEntries, copy.begin());
        source = copy.data();
    }
    if (kind > kComposeDirect) {
        std::copy(source, source + kLutEntries, out);
        return kUnknownKind;
    }
    const auto composePlane = platform::ActiveForm(ComposePlaneBaseline, ComposePlaneBaseline, ComposePlaneWider);
    for (int c = 0; c < kLutPlanes; ++c)
        composePlane(kind, map + LutIndex(c, 0), source + LutIndex(c, 0), out + LutIndex(c, 0));
    return 0;
}

}  // namespace quarnel
