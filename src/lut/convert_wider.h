// SPDX-License-Identifier: MIT
#pragma once
// The NVIDIA conversion in the widest form (see core/wide_vectors.h): the
// same arithmetic as the other forms, two levels to a 64-byte vector.

#include <cstdint>

#include "core/wide_vectors.h"

namespace quarnel::convert {

#ifdef QUARNEL_WIDER_VECTORS
void NvidiaWider(const uint16_t* inLut, float* outNv);
#endif

}  // namespace quarnel::convert
