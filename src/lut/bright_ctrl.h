// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quarnel {

// Dims a finished Lut16 (planar 3 x 256) in place by resampling it along the
// input axis; for driver type 3 a dim result is lifted back to a minimum
// peak. Always returns 0.
int32_t LutBrightCtrl(uint16_t* lut, uint32_t lutApiType, double scale);

}  // namespace quarnel
