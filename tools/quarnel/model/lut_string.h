// SPDX-License-Identifier: MIT
#pragma once
// The library's LUT string codec, called with its chatter quieted. A string
// begins with its own length byte, exactly as it sits in a calibration block.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/curve.h"

namespace quarnel::tool {

struct LutString {
    int method = 0;
    std::vector<uint8_t> bytes;
    bool operator==(const LutString&) const = default;
};

// The string LUT2BIOS writes for the curve, provided BIOS2LUT decodes it
// back to the very same curve. Throws ToolError (65) saying why not: the
// first plane and entry that break the string's rules, or that come back
// different.
LutString EncodeLutStringChecked(const Curve& curve, bool verbose);
// A string typed in hex, length byte first: 1 to 255 bytes, no fewer than
// its length byte says. Throws ToolError (65) saying what is wrong.
std::vector<uint8_t> ParseLutStringHex(const std::string& hex);
// The library's status and, on success, the curve.
int32_t DecodeLutString(const std::vector<uint8_t>& bytes, int method, Curve& curve, bool verbose);

}  // namespace quarnel::tool
