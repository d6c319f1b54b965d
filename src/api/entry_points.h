// SPDX-License-Identifier: MIT
#pragma once
// The two colour entry points behind CCTAPI and CCTAPI_VX.

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

int32_t Cctapi(uint32_t code, CctContext* ctx);
int32_t CctapiVx(int32_t mode, CctContext* ctx, const uint16_t* vxInput);

}  // namespace quarnel
