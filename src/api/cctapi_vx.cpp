// SPDX-License-Identifier: MIT
// CCTAPI_VX: the VX modes, a tone curve composed with the improved gain LUT
// at the slider position. Unlike CCTAPI it keeps the trace log, the float
// ramps, the warning word and iccType as they are.

#include <iterator>

#include "api/context_dump.h"
#include "api/entry_points.h"
#include "api/pipeline_steps.h"
#include "api/vx_mode_lut.h"
#include "diag/debug.h"
#include "diag/trace.h"
#include "lut/compose.h"
#include "lut/vivid.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

// The curve modes' names: the tag and "CCTAPI_VX_MODE_" followed by the
// mode in decimal, as the dumps title them and the debugger hears them.
struct CurveModeName {
    const char* narrow;
    const wchar_t* wide;
};
constexpr CurveModeName kCurveModeNames[] = {
    {"; VOK: CCTAPI_VX_MODE_21", L"; VOK: CCTAPI_VX_MODE_21"},
    {"; VOK: CCTAPI_VX_MODE_22", L"; VOK: CCTAPI_VX_MODE_22"},
    {"; VOK: CCTAPI_VX_MODE_23", L"; VOK: CCTAPI_VX_MODE_23"},
    {"; VOK: CCTAPI_VX_MODE_24", L"; VOK: CCTAPI_VX_MODE_24"},
    {"; VOK: CCTAPI_VX_MODE_25", L"; VOK: CCTAPI_VX_MODE_25"},
};
static_assert(std::size(kCurveModeNames) == CCTAPI_VX_MODE_LAST - CCTAPI_VX_MODE_FIRST + 1);

int32_t RunCurveMode(CctContext& ctx, int32_t mode, const uint16_t* vxInput) {
    const CurveModeName& name = kCurveModeNames[mode - CCTAPI_VX_MODE_FIRST];
    DebugMessage(name.wide);
    ComposePlaces tone;
    ComposePlacesOf(kComposeScaled, vxInput, tone);
    GetVxModeLut(ctx, tone);
    DumpLut(&ctx, "CCTAPI_VX (lut before LutConvert())");
    BrightenOutLut(ctx);
    DumpLut(&ctx, "CCTAPI_GET_LUT (lut after LutBrightCtrl())");
    const int32_t status = ConvertOutLut(ctx);
    DumpLut(&ctx, "CCTAPI_VX (lut after LutConvert())");
    DebugPrint("CCTAPI_VX (lut after LutConvert())\n");
    DumpContext(&ctx, name.narrow, vxInput);
    return status;
}

int32_t RunVividMode(CctContext& ctx, const uint16_t* vxInput) {
    DebugMessage(L"; VOK: CCTAPI_VX_VIVID_MODE\n");
    GetVxModeLut(ctx, VividPlaces());
    DumpLut(&ctx, "CCTAPI_VX_VIVID_MODE (lut before LutConvert())");
    BrightenOutLut(ctx);
    DumpLut(&ctx, "CCTAPI_GET_LUT (lut after LutBrightCtrl())");
    const int32_t status = ConvertOutLut(ctx);
    DumpLut(&ctx, "CCTAPI_VX_VIVID_MODE (lut after LutConvert())");
    DumpContext(&ctx, "CCTAPI_VX_VIVID_MODE", vxInput);
    return status;
}

bool IsCurveMode(int32_t mode) { return mode >= CCTAPI_VX_MODE_FIRST && mode <= CCTAPI_VX_MODE_LAST; }

}  // namespace

int32_t CctapiVx(int32_t mode, CctContext* ctx, const uint16_t* vxInput) {
    DebugMessage(L"; VOK: Enter CCTAPI_VX()\n");
    if (ctx == nullptr) return CCT_ERR_REQUEST;
    const VxTraceScope trace;
    // A curve mode without its curve stops here, before anything is written.
    if (IsCurveMode(mode) && vxInput == nullptr) return CCT_ERR_NULL_LUT;

    int32_t status = CCT_ERR_REQUEST;
    if (IsCurveMode(mode)) {
        status = RunCurveMode(*ctx, mode, vxInput);
    } else if (mode == CCTAPI_VX_VIVID_MODE || mode == CCTAPI_VX_VIVID_MODE_ALT) {
        status = RunVividMode(*ctx, vxInput);
    } else {
        DebugMessage(L"; VOK: Invalid Mode!!!\n");
    }
    DebugMessage(L"; VOK: Exit  CCTAPI_VX()\n");
    return status;
}

}  // namespace quarnel
