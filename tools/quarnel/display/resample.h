// SPDX-License-Identifier: MIT
#pragma once
// Linear resampling of one ramp plane to another number of entries, for
// CRTCs whose gamma size is not 256.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quarnel::tool::display {

// Entry j of the result is `in` read at position j x (in.size() - 1) /
// (size - 1), interpolated linearly between its neighbours and rounded to
// the nearest integer. The same size gives `in` back unchanged.
std::vector<std::uint16_t> Resample(std::span<const std::uint16_t> in, std::size_t size);

}  // namespace quarnel::tool::display
