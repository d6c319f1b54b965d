// SPDX-License-Identifier: MIT
// CCTAPI_VX: the VX-mode entry point. The VX modes are not served by this
// build yet; every mode answers -1.

#include "api/entry_points.h"
#include "diag/debug.h"
#include "quarnel/cctapi.h"

namespace quarnel {

int32_t CctapiVx(int32_t /*mode*/, CctContext* ctx, const uint16_t* /*vxInput*/) {
    DebugMessage(L"; VOK: Enter CCTAPI_VX()\n");
    if (ctx == nullptr) return CCT_ERR_REQUEST;
    DebugMessage(L"; VOK: Exit  CCTAPI_VX()\n");
    return CCT_ERR_REQUEST;
}

}  // namespace quarnel
