// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "color/gain_types.h"

namespace quarnel {

// The theater LUT of request 3 is `base` under these gains: a warm white
// solved on the spot on `rows`, boosted by 5 % and raised to the minimum
// output of driver type `lutApiType` on `base`. The boosted limiting channel
// reaches past the plane; the applicator holds its index at the last entry.
GainTriple TheaterGains(const XyzTable& rows, const uint16_t* base, int32_t lutApiType);

}  // namespace quarnel
