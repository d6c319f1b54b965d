// SPDX-License-Identifier: MIT
#pragma once
// A Lut16 as 768 neighbour differences of its 8-bit reduction, plane by
// plane: d[c][0] = 0, d[c][i] = value[c][i] - value[c][i - 1].

#include <array>
#include <cstdint>
#include <optional>

#include "core/lut16.h"

namespace quarnel::codec {

using Differences = std::array<int, kLutEntries>;

// The differences of `lut`, or nothing when entry 0 of a plane is not 0.
std::optional<Differences> MakeDifferences(const uint16_t* lut);

// Adds the differences up into the 16-bit entries of `lut` (768 of them);
// false, with `lut` partly written, when a plane's sums leave 0..255 or do
// not end at 255. Entry 0 of each plane is 0 whatever its difference.
bool SumDifferences(const Differences& d, uint16_t* lut);

}  // namespace quarnel::codec
