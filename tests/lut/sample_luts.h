// SPDX-License-Identifier: MIT
#pragma once
// Real-looking test LUTs: a bowed red, a slightly short green, a blue that
// runs to the 16-bit ceiling with a ripple.

#include <algorithm>
#include <random>

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

// Any 16-bit entries: rising, falling, flat and noisy planes alike.
inline Lut16 RandomTable(std::mt19937& rng) {
    std::uniform_int_distribution<int> entry(0, 65535), shape(0, 3);
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        const int kind = shape(rng);
        const int top = entry(rng);
        for (int i = 0; i < kLutLevels; ++i) {
            const int v = kind == 0   ? entry(rng)
                          : kind == 1 ? top * i / kTopLevel
                          : kind == 2 ? top
                                      : top - top * i / 255;
            lut[LutIndex(c, i)] = static_cast<uint16_t>(v);
        }
    }
    return lut;
}

}  // namespace quarnel::test
