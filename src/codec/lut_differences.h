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

// Adds the differences up into 16-bit entries, or nothing when a plane does
// not start at 0 or does not end at 8-bit full scale.
std::optional<Lut16> SumDifferences(const Differences& d);

}  // namespace quarnel::codec
