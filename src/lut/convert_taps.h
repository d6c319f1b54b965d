// SPDX-License-Identifier: MIT
#pragma once
// Where the driver conversion reads: fixed for every table, so worked out
// once per process.

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/constants.h"
#include "core/lut16.h"
#include "lut/level_vectors.h"

namespace quarnel::convert {

// Level i of the sRGB re-sampling reads the level at or below the encoded
// level and the one above it, f of the way between them. The encoded level
// lies within 0..255; where it is whole or clamped at the top, f is 0 and the
// level above (or the zero padding above the top) adds nothing.
//
// `twice` holds each f in both lanes of a pair, as the pairs
// of doubles multiply by it.
struct SrgbTaps {
    std::array<uint8_t, kLutLevels> lo;
    std::array<double, kLutLevels> f;
    std::array<Half, kLutLevels> twice;
};

// Point j of the post-gamma array reads the normalised level at or below
// q = j x 255 / 1023 (in single precision) and f[j] of the way to the next.
// The points of level k are first[k] up to first[k + 1]: four of them, five
// for levels 0, 85 and 170, and one (the last point) for the top level.
//
// A level's first four points are twelve floats, red, green and blue in
// turn. `spread` holds their fractions in the same order, twelve per level
// below the top, level after level: where a level has four points, its
// fractions and the next level's are the 24 in the points' order. `fifth`
// lists the levels with a fifth point.
inline constexpr std::size_t kSpreadPerLevel = kLanes * kLutPlanes;

struct NvTaps {
    std::array<uint16_t, kLutLevels + 1> first;
    std::array<double, kNvPoints> f;
    alignas(sizeof(Level)) std::array<double, kSpreadPerLevel * kTopLevel> spread;
    std::array<uint8_t, kLutLevels> fifth;
    std::size_t fifthCount;
};

const SrgbTaps& Srgb();
const NvTaps& Nv();

// The sRGB decoding of the identity float ramp, decoded in double and stored
// as float: the pre-gamma array of every NVIDIA table.
const std::array<float, kNvFloatsPerArray>& NvPreGamma();

}  // namespace quarnel::convert
