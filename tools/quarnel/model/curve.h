// SPDX-License-Identifier: MIT
#pragma once
// A 3 x 256 gamma curve as the library delivers it: planes red, green, blue;
// entry i of a plane is the output for input level i, 8-bit full scale is
// 65280.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace quarnel::tool {

inline constexpr int kCurveSize = 256;
using CurvePlane = std::array<uint16_t, kCurveSize>;
using Curve = std::array<CurvePlane, 3>;

// Curves leave the tool normalised as the library defines them: entry /
// 65280, so the identity is exactly i / 255 and full drive is 1. Entries
// above 65280 are full drive too.
inline constexpr double kFullDriveEntry = 65280.0;
inline double NormalisedEntry(uint16_t entry) { return std::min(entry / kFullDriveEntry, 1.0); }

// A 16-bit hardware ramp spans 0..65535: the same normalisation there, and
// its exact inverse (a ramp entry e + round(e / 256) maps back to e).
inline constexpr double kRampFullScale = 65535.0;
inline uint16_t EntryToRamp(uint16_t entry) {
    return static_cast<uint16_t>(std::lround(NormalisedEntry(entry) * kRampFullScale));
}
inline uint16_t RampToEntry(uint16_t ramp) {
    return static_cast<uint16_t>(std::lround(ramp * kFullDriveEntry / kRampFullScale));
}

inline Curve IdentityCurve() {
    Curve curve{};
    for (auto& plane : curve)
        for (int i = 0; i < kCurveSize; ++i) plane[static_cast<size_t>(i)] = static_cast<uint16_t>(i * 256);
    return curve;
}

}  // namespace quarnel::tool
