// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// The theater LUT of request 3: a warm white solved on the spot, boosted by
// 5 % and applied to the base LUT with a clamp into outLut. Always returns 0.
int32_t BuildTheaterLut(CctContext& ctx);

}  // namespace quarnel
