// SPDX-License-Identifier: MIT
#pragma once
// A 3 x 256 gamma curve as the library delivers it: planes red, green, blue;
// entry i of a plane is the output for input level i, 8-bit full scale is
// 65280.

#include <array>
#include <cstdint>

namespace quarnel::tool {

inline constexpr int kCurveSize = 256;
using CurvePlane = std::array<uint16_t, kCurveSize>;
using Curve = std::array<CurvePlane, 3>;

inline Curve IdentityCurve() {
    Curve curve{};
    for (auto& plane : curve)
        for (int i = 0; i < kCurveSize; ++i) plane[static_cast<size_t>(i)] = static_cast<uint16_t>(i * 256);
    return curve;
}

}  // namespace quarnel::tool
