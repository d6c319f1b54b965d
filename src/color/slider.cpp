// SPDX-License-Identifier: MIT
#include "color/slider.h"

namespace quarnel {

int32_t BuildSliderLut(CctContext& /*ctx*/) { return 0; }

}  // namespace quarnel
