// SPDX-License-Identifier: MIT
#pragma once
// The base LUT every gain-driven mode starts from.

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// The factory gamma LUT when factory data was found and carries one, else
// the panel's own base LUT.
inline const uint16_t* BaseLut(const CctContext& ctx) {
    return ctx.fromBios != 0 && ctx.gammaK != 0 ? &ctx.gammaLut[0][0] : &ctx.oriLut[0][0];
}

}  // namespace quarnel
