// SPDX-License-Identifier: MIT
#pragma once
// The numeric loops of the driver conversion.

#include <cstdint>

namespace quarnel::convert {

// The three conversions that compute, each in the form the processor runs:
// types 1 (sRGB folded into the 16-bit table), 2 (the NVIDIA float arrays)
// and 4 (IGCL doubles).
void ConvertSrgbLut16(const uint16_t* inLut, uint16_t* outLut);
void ConvertNvidia(const uint16_t* inLut, float* outNv);
void ConvertIgcl(const uint16_t* inLut, double* outIgcl);

}  // namespace quarnel::convert
