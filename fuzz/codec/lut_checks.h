// SPDX-License-Identifier: MIT
#pragma once
// Checks shared by the LUT string fuzzers.

#include <cstdlib>

#include "core/lut16.h"

namespace quarnel::fuzz {

inline void Require(bool condition) {
    if (!condition) std::abort();
}

// What a successful read must give: every plane rises from 0 to 65280 in
// whole 8-bit steps.
inline bool IsDecodedLut(const Lut16& lut) {
    for (int c = 0; c < kLutPlanes; ++c) {
        if (lut[LutIndex(c, 0)] != 0 || lut[LutIndex(c, kLutLevels - 1)] != kLutFullScale) return false;
        for (int i = 0; i < kLutLevels; ++i) {
            if (lut[LutIndex(c, i)] % kLutStep != 0) return false;
            if (i > 0 && lut[LutIndex(c, i)] < lut[LutIndex(c, i - 1)]) return false;
        }
    }
    return true;
}

}  // namespace quarnel::fuzz
