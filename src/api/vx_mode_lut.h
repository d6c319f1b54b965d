// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// Builds the VX LUT into outLut: the gains at the slider position applied to
// the base LUT, improved, then re-indexed through the tone curve `curve`
// (planar 3 x 256).
void GetVxModeLut(CctContext& ctx, const uint16_t* curve);

}  // namespace quarnel
