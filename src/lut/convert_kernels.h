// SPDX-License-Identifier: MIT
#pragma once
// The numeric loops of the driver conversion, in both vector widths (see
// core/wide_vectors.h).

#include <cstdint>

namespace quarnel::convert {

// A form of the three conversions that compute: types 1 (sRGB folded into
// the 16-bit table), 2 (the NVIDIA float arrays) and 4 (IGCL doubles).
struct Kernels {
    void (*srgbLut16)(const uint16_t* inLut, uint16_t* outLut);
    void (*nvidia)(const uint16_t* inLut, float* outNv);
    void (*igcl)(const uint16_t* inLut, double* outIgcl);
};

// The form the processor in use runs.
const Kernels& ActiveKernels();

}  // namespace quarnel::convert
