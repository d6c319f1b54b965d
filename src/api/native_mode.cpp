// SPDX-License-Identifier: MIT
// Request 8: the neutral (identity) LUT written straight in the driver's
// form; no gains, improvement, brightness control, conversion or re-gamma.

#include "api/context_dump.h"
#include "api/handlers.h"
#include "diag/debug.h"
#include "lut/default_lut.h"

namespace quarnel {

int32_t RunNativeMode(CctContext* ctx) {
    DebugMessage(L"; VOK: Enter CCTAPI_NATIVE_MODE\n");
    const int32_t status =
        GetDefaultLut(ctx->lutApiType, &ctx->outLut[0][0], &ctx->outIgcl[0][0], &ctx->outNvPreGamma[0][0]);
    DebugPrint("GetDefaultLut  result = %d\n", status);
    DumpContext(ctx, "CCTAPI_NATIVE_MODE", nullptr);
    DebugMessage(L"; VOK: Exit  CCTAPI_NATIVE_MODE\n");
    return status;
}

}  // namespace quarnel
