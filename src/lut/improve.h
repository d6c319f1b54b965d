// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// Fetches the interpolation step (byte 297 of the calibration block) for the
// context's calibration source. Returns -1 or -2 on failure, anything else on
// success. The calibration layer provides it; the LUT layer only calls it.
using StepByteFetch = int32_t (*)(const CctContext& ctx, uint8_t& step);

// Reduces `lut` to 8 bits and either interpolates it at the fetched step
// (biosVer 7) or smooths its dark end; writes it back x 256 on success and
// leaves it untouched on any failure. Always returns 0.
int32_t LutImprove(const CctContext& ctx, uint16_t* lut, StepByteFetch fetch);

}  // namespace quarnel
