// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quarnel {

// Turns a finished Lut16 into the form of driver type `lutApiType`:
// outLut (types 0, 1, 5), outIgcl (type 4), or the NVIDIA pre-gamma and
// post-gamma arrays, 1024 x 3 floats each, the second directly behind the
// first at outNv (type 2); type 3 leaves everything as it is. The counts are
// not consulted. Returns 0, -6 (unknown type) or -7 (null pointer); outputs
// are untouched on failure. inLut may equal outLut.
int32_t LutConvert(int32_t lutApiType, const uint16_t* inLut, uint16_t* outLut, uint32_t lutCount, double* outIgcl,
                   uint32_t igclCount, float* outNv, uint32_t nvCount);

}  // namespace quarnel
