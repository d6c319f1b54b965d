// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "color/gain_types.h"

namespace quarnel {

// The theater LUT of request 3: a warm white solved on the spot on `rows`,
// boosted by 5 %, raised to the minimum output of driver type `lutApiType`
// and applied to `base` into `out`.
void BuildTheaterLut(const XyzTable& rows, const uint16_t* base, int32_t lutApiType, uint16_t* out);

}  // namespace quarnel
