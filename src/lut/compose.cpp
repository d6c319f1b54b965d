// SPDX-License-Identifier: MIT
#include "lut/compose.h"

#include <algorithm>
#include <array>
#include <functional>

#include "core/lut16.h"

namespace quarnel {
namespace {

constexpr int32_t kUnknownKind = 1;

// Half-up of entry / 65280 x 255 in double, held at 255. The quotient is
// entry / 256 but for rounding in its last place, which never carries it
// across a half: for every one of the 65536 entries the result is the whole
// part of (entry + 128) / 256: the entry's whole halves of a level (entry /
// 128) plus one, halved, three steps in 16-bit lanes. That is 256 at most,
// so taking its ninth bit off it holds it at 255.
uint16_t ScaledIndex(uint16_t entry) {
    const auto halves = static_cast<uint16_t>(entry >> 7);
    const auto rounded = static_cast<uint16_t>((halves + 1) >> 1);
    return static_cast<uint16_t>(rounded - (rounded >> 8));
}

// The places of a map read as 8-bit levels, in a loop of their own, which
// vectorises.
void ScaledPlaces(const uint16_t* map, uint16_t* places) {
    for (int c = 0; c < kLutPlanes; ++c) {
        const auto offset = static_cast<uint16_t>(LutIndex(c, 0));
        for (std::size_t i = LutIndex(c, 0); i < LutIndex(c + 1, 0); ++i)
            places[i] = static_cast<uint16_t>(ScaledIndex(map[i]) + offset);
    }
}

// Whether writing `out` could change entries of `base` still to be read.
bool Overlaps(const uint16_t* base, const uint16_t* out) {
    const std::less<const uint16_t*> before;
    return before(base, out + kLutEntries) && before(out, base + kLutEntries);
}

}  // namespace

void ComposePlacesOf(uint32_t kind, const uint16_t* map, ComposePlaces& places) {
    if (kind != kComposeDirect) return ScaledPlaces(map, places.data());
    for (int c = 0; c < kLutPlanes; ++c) {
        const auto offset = static_cast<uint16_t>(LutIndex(c, 0));
        for (std::size_t i = LutIndex(c, 0); i < LutIndex(c + 1, 0); ++i)
            places[i] = static_cast<uint16_t>(std::min<uint16_t>(map[i], kTopLevel) + offset);
    }
}

// Over the whole table at once, each look-up is one load of its place, one
// of the entry and one store.
void ComposeAt(const ComposePlaces& places, const uint16_t* base, uint16_t* out) {
#pragma GCC unroll 8
    for (std::size_t k = 0; k < places.size(); ++k) out[k] = base[places[k]];
}

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
    // The places are worked out in a pass of their own, which vectorises.
    ComposePlaces places;
    ComposePlacesOf(kind, map, places);
    ComposeAt(places, source, out);
    return 0;
}

}  // namespace quarnel
