// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "core/constants.h"

namespace quarnel {

// The identity ramp of the driver float arrays: point j is j / 1023 as a
// float, the same in red, green and blue (interleaved). Built on first use.
const std::array<float, kNvFloatsPerArray>& IdentityFloatRamp();

// Writes the neutral LUT in the form of driver type `lutApiType` (0..5):
// outLut (planar 3 x 256), outIgcl (planar 3 x 256 doubles) or the two
// 1024 x 3 float arrays starting at outNv. Returns 0, or -6 for an unknown type.
int32_t GetDefaultLut(int32_t lutApiType, uint16_t* outLut, double* outIgcl, float* outNv);

}  // namespace quarnel
