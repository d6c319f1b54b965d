// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// The warm-to-cold slider LUT of request 2: blends the normal gains toward
// the warm or cold gains by `interval` and applies them to the base LUT into
// outLut. Always returns 0.
int32_t BuildSliderLut(CctContext& ctx);

}  // namespace quarnel
