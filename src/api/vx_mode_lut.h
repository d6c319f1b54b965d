// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "lut/compose.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// Builds the VX LUT into outLut: the gains at the slider position applied to
// the base LUT, improved, then re-indexed through a tone curve, given by the
// places ComposeLut reads for it.
void GetVxModeLut(CctContext& ctx, const ComposePlaces& tone);

}  // namespace quarnel
