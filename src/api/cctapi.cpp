// SPDX-License-Identifier: MIT
// CCTAPI: decodes the request code, runs the per-call prologue, hands the
// request to its handler and closes the call with the epilogue.

#include <cstring>

#include "api/entry_points.h"
#include "api/handlers.h"
#include "api/request.h"
#include "api/warning.h"
#include "core/constants.h"
#include "diag/debug.h"
#include "diag/trace.h"
#include "diag/version.h"
#include "lut/default_lut.h"
#include "lut/regamma.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

constexpr int32_t kLastLowRequest = 999;

void FillIdentityFloatRamps(CctContext* ctx) {
    const auto& ramp = IdentityFloatRamp();
    static_assert(sizeof(ctx->outNvPreGamma) == sizeof(ramp) && sizeof(ctx->outNvPostGamma) == sizeof(ramp));
    std::memcpy(ctx->outNvPreGamma, ramp.data(), sizeof(ramp));
    std::memcpy(ctx->outNvPostGamma, ramp.data(), sizeof(ramp));
}

// Requests 2 to 8 for the NVIDIA driver write both float arrays in full
// before anything reads them (conversion, or request 8's neutral ramps), so
// the identity ramps would only be overwritten: each array is written once.
bool HandlerWritesFloatArrays(const CctContext& ctx, uint32_t request) {
    return ctx.lutApiType == CCT_LUT_API_NVIDIA && request >= CCTAPI_GET_LUT && request <= CCTAPI_NATIVE_MODE;
}

int32_t RunHighRequest(CctContext* ctx, int32_t request) {
    if (request != CCTAPI_SELF_TEST) return CCT_ERR_REQUEST;
    ctx->icc[0][0] = ctx->icc[0][2] + ctx->icc[0][1];
    return CCT_OK;
}

int32_t Dispatch(CctContext* ctx, const RequestArgs& args) {
    const uint32_t request = args.request.number;
    if (static_cast<int32_t>(request) > kLastLowRequest) return RunHighRequest(ctx, static_cast<int32_t>(request));
    if (request >= CCTAPI_INIT_GAIN && request <= CCTAPI_READING_MODE_MULTI) return RunModeRequest(ctx, args);
    if (request == CCTAPI_NATIVE_MODE) return RunNativeMode(ctx);
    return CCT_ERR_REQUEST;
}

}  // namespace
}  // namespace quarnel

namespace quarnel {

int32_t Cctapi(uint32_t code, CctContext* ctx) {
    DebugMessage(L"; VOK: Enter CCTAPI()\n");
    if (ctx == nullptr) return CCT_ERR_REQUEST;  // nothing to answer into

    const Request request = DecodeRequest(code);
    const uint16_t* regammaCurve = request.regammaFlag != 0 ? RegammaCurve().data() : nullptr;
    if (!HandlerWritesFloatArrays(*ctx, request.number)) FillIdentityFloatRamps(ctx);
    WarningWord() = 0;
    TraceReset();

    if (request.number == CCTAPI_GET_VERSION) {
        // Answered before the epilogue: cctWarning is not copied, no exit message.
        ctx->version = kInterfaceVersion;
        return CCT_OK;
    }

    const RequestArgs args{request, regammaCurve};
    const int32_t status = Dispatch(ctx, args);

    ctx->cctWarning = WarningWord();
    TraceClose();
    DebugMessage(L"; VOK: Exit  CCTAPI()\n");
    return status;
}

}  // namespace quarnel
