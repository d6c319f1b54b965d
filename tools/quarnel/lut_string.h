// SPDX-License-Identifier: MIT
#pragma once
// The library's LUT string codec, called with its chatter quieted. A string
// begins with its own length byte, exactly as it sits in a calibration block.

#include <cstdint>
#include <optional>
#include <vector>

#include "curve.h"

namespace quarnel::tool {

struct LutString {
    int method = 0;
    std::vector<uint8_t> bytes;
};

// Empty when the curve cannot be stored (entry 0 not 0, steps above 7...).
std::optional<LutString> EncodeLutString(const Curve& curve, bool verbose);
// The library's status and, on success, the curve.
int32_t DecodeLutString(const std::vector<uint8_t>& bytes, int method, Curve& curve, bool verbose);

}  // namespace quarnel::tool
