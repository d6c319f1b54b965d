// SPDX-License-Identifier: MIT
#pragma once
// Re-indexing one planar Lut16 (3 x 256) through another.

#include <array>
#include <cstdint>

#include "core/lut16.h"

namespace quarnel {

// Kinds of ComposeLut: read the map as 8-bit levels, or as plain indices.
// Kind 1 is accepted as well and reads the map exactly as kind 0 does.
inline constexpr uint32_t kComposeScaled = 0;
inline constexpr uint32_t kComposeDirect = 2;

// out[c][i] = base[c][index] with, for kind 0 or 1, index = half-up of
// map[c][i] read as an 8-bit level (map / 65280 x 255), and for kind 2 the
// map entry itself, both clamped to 0..255. Any other kind copies base and
// returns 1, else 0. out may be base.
int32_t ComposeLut(uint32_t kind, const uint16_t* map, const uint16_t* base, uint16_t* out);

// Where ComposeLut reads base for each entry of a map of kind 0 to 2: the
// index within the whole table, its plane's offset added. A fixed map's
// places are worked out once and the table re-indexed through them.
using ComposePlaces = std::array<uint16_t, kLutEntries>;
void ComposePlacesOf(uint32_t kind, const uint16_t* map, ComposePlaces& places);

// out[k] = base[places[k]]; out must not share memory with base.
void ComposeAt(const ComposePlaces& places, const uint16_t* base, uint16_t* out);

}  // namespace quarnel
