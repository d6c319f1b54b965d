// SPDX-License-Identifier: MIT
#pragma once
// Real-looking test LUTs: a bowed red, a slightly short green, a blue that
// runs to the 16-bit ceiling with a ripple.

#include <algorithm>

#include "core/lut16.h"

namespace quarnel::test {

inline Lut16 PanelLikeLut() {
    Lut16 lut{};
    for (int i = 0; i < kLutLevels; ++i) {
        lut[LutIndex(0, i)] = static_cast<uint16_t>(i * 256 - (i * (255 - i)) / 4);
        lut[LutIndex(1, i)] = static_cast<uint16_t>(i * 250);
        lut[LutIndex(2, i)] = static_cast<uint16_t>(std::min(65535, i * 257 + (i % 7) * 3));
    }
    return lut;
}

inline Lut16 IdentityLut() {
    Lut16 lut{};
    FillIdentity(lut.data());
    return lut;
}

}  // namespace quarnel::test
