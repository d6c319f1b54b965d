// SPDX-License-Identifier: MIT
#include "color/theater.h"

namespace quarnel {

int32_t BuildTheaterLut(CctContext& /*ctx*/) { return 0; }

}  // namespace quarnel
