// SPDX-License-Identifier: MIT
#include <cmath>

#include "lut/regamma.h"

namespace quarnel {
namespace {

Lut16 BuildRegammaCurve() {
    // 2.6 / 2.2 in single precision, evaluated in single precision.
    constexpr float kExponent = 1.1818181f;
    constexpr float kScale = 65280.0f;
    Lut16 curve{};
    for (int i = 0; i < kLutLevels; ++i) {
        const auto x = static_cast<float>(i / kTopLevelScale);
        const float v = std::pow(x, kExponent) * kScale;
        for (int c = 0; c < kLutPlanes; ++c) curve[LutIndex(c, i)] = static_cast<uint16_t>(v);
    }
    return curve;
}

}  // namespace

const Lut16& RegammaCurve() {
    static const Lut16 curve = BuildRegammaCurve();
    return curve;
}

}  // namespace quarnel
