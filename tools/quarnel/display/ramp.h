// SPDX-License-Identifier: MIT
#pragma once
// A curve as a display's 16-bit ramp: each entry as entry x 65535 / 65280,
// rounded, then resampled to the ramp's size by linear interpolation.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/curve.h"

namespace quarnel::tool::display {

// The red, green and blue ramps of `size` entries each, one after another.
std::vector<std::uint16_t> RampPlanes(const Curve& curve, std::size_t size);

}  // namespace quarnel::tool::display
