// CCTAPI_VX: the VX-mode entry point. The VX modes are not served by this
// build yet; every mode answers -1.

#include "diag/debug.h"
#include "quarnel/cctapi.h"

extern "C" QUARNEL_API int32_t CCTAPI_VX(int32_t /*mode*/, CctContext* ctx, const uint16_t* /*vxInput*/) {
    using namespace quarnel;
    DebugMessage(L"; VOK: Enter CCTAPI_VX()\n");
    if (ctx == nullptr) return CCT_ERR_REQUEST;
    DebugMessage(L"; VOK: Exit  CCTAPI_VX()\n");
    return CCT_ERR_REQUEST;
}
