// SPDX-License-Identifier: MIT
#pragma once
// The sRGB transfer curves as the driver conversions use them.

#include <cmath>

namespace quarnel {

inline constexpr double kSrgbEncodeKnee = 0.0031308;
inline constexpr double kSrgbDecodeKnee = 0.04045;
inline constexpr double kSrgbLinearSlope = 12.92;
inline constexpr double kSrgbExponent = 2.4;

// Linear light to sRGB-encoded signal, 0..1.
inline double SrgbEncode(double x) {
    if (x <= kSrgbEncodeKnee) return x * kSrgbLinearSlope;
    return 1.055 * std::pow(x, 1.0 / kSrgbExponent) - 0.055;
}

// sRGB-encoded signal to linear light, 0..1.
inline double SrgbDecode(double x) {
    if (x <= kSrgbDecodeKnee) return x / kSrgbLinearSlope;
    return std::pow((x + 0.055) / 1.055, kSrgbExponent);
}

}  // namespace quarnel
