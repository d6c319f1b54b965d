// SPDX-License-Identifier: MIT
#include "api/cct_init.h"

namespace quarnel {

int32_t CCT_Init(CctContext& /*ctx*/, bool /*useFixedTarget*/) { return 0; }

}  // namespace quarnel
