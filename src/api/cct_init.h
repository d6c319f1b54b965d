// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// The initialisation request: validates icc, reads the factory calibration
// and solves the five gain triples. Returns 0, -5 for a bad panelIndex, or
// the library's error code (-2, -3, -4).
int32_t CCT_Init(CctContext& ctx, bool useFixedTarget);

}  // namespace quarnel
