// SPDX-License-Identifier: MIT
#pragma once
// The driver conversion's view of a table: level by level rather than plane
// by plane. The sRGB re-sampling and the post-gamma interpolation read whole
// levels (red, green, blue together) at places that follow a curve. Kept
// with a fourth lane, each level is one 32-byte vector that a single load
// fetches (two 16-byte halves in SSE2).

#include <cstddef>
#include <cstdint>

namespace quarnel::convert {

inline constexpr std::size_t kLanes = 4;
using Level = double __attribute__((vector_size(kLanes * sizeof(double))));
using LevelFloats = float __attribute__((vector_size(kLanes * sizeof(float))));
using Half = double __attribute__((vector_size(kLanes / 2 * sizeof(double))));

}  // namespace quarnel::convert
