// SPDX-License-Identifier: MIT
#include "lut/improve.h"

namespace quarnel {

int32_t LutImprove(const CctContext& /*ctx*/, uint16_t* /*lut*/, StepByteFetch /*fetch*/) { return 0; }

}  // namespace quarnel
