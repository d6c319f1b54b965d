// SPDX-License-Identifier: MIT
// Requests 1 to 7: the initialisation request, and the gain-driven LUT modes
// with their shared tail of improvement, brightness control and conversion.

#include "api/cct_init.h"
#include "api/context_dump.h"
#include "api/handlers.h"
#include "api/mode_luts.h"
#include "api/pipeline_steps.h"
#include "diag/debug.h"
#include "diag/trace.h"
#include "lut/compose.h"

namespace quarnel {
namespace {

struct ModePipeline {
    const char* preface;  // narrow line before the enter message, or null
    const wchar_t* enter;
    ModeLutBuilder build;
    const char* beforeTitle;
    const char* name;
    const wchar_t* exit;
    bool reportsScale;
};

// Indexed by request number - 2.
const ModePipeline kModes[] = {
    {nullptr, L"; VOK: Enter CCTAPI_GET_LUT\n", BuildGetLut, "CCTAPI_GET_LUT (lut before LutImprove())",
     "CCTAPI_GET_LUT", L"; VOK: Exit  CCTAPI_GET_LUT\n", false},
    {nullptr, L"; VOK: Enter CCTAPI_THEATER_MODE\n", BuildTheaterLut, "CCTAPI_THEATER_MODE (before LutImprove())",
     "CCTAPI_THEATER_MODE", L"; VOK: Exit  CCTAPI_THEATER_MODE\n", false},
    {nullptr, L"; VOK: Enter CCTAPI_VIVID_MODE\n", BuildVividModeLut, "CCTAPI_VIVID_MODE (before LutImprove())",
     "CCTAPI_VIVID_MODE", L"; VOK: Exit  CCTAPI_VIVID_MODE\n", false},
    {"Reading mode strong:\n", L"; VOK: Enter CCTAPI_READING_MODE_STRONG\n", BuildReadingStrongLut,
     "CCTAPI_READING_MODE_STRONG (before LutImprove())", "CCTAPI_READING_MODE_STRONG",
     L"; VOK: Exit  CCTAPI_READING_MODE_STRONG\n", false},
    {nullptr, L"; VOK: Enter CCTAPI_READING_MODE_WEAK\n", BuildReadingWeakLut,
     "CCTAPI_READING_MODE_WEAK (before LutImprove())", "CCTAPI_READING_MODE_WEAK",
     L"; VOK: Exit  CCTAPI_READING_MODE_WEAK\n", false},
    {nullptr, L"; VOK: Enter CCTAPI_READING_MODE_MULTI\n", BuildReadingMultiLut,
     "CCTAPI_READING_MODE_MULTI (before LutImprove())", "CCTAPI_READING_MODE_MULTI",
     L"; VOK: Exit  CCTAPI_READING_MODE_MULTI\n", true},
};

void Regamma(CctContext& ctx, const RequestArgs& args) {
    if (args.request.regammaFlag != 0)
        ComposeLut(kComposeScaled, args.regammaCurve, &ctx.outLut[0][0], &ctx.outLut[0][0]);
}

int32_t RunInitGain(CctContext& ctx, const RequestArgs& args) {
    DebugMessage(L"; VOK: Enter CCTAPI_INIT_GAIN\n");
    const int32_t status = CCT_Init(ctx, args.request.regammaFlag != 0);
    DebugPrint("CCT_Init  result = %d\n", status);
    ctx.iccType = 1;
    Regamma(ctx, args);
    DumpContext(&ctx, "CCTAPI_INIT_GAIN", nullptr);
    DebugMessage(L"; VOK: Exit  CCTAPI_INIT_GAIN\n");
    return status;
}

// The scale is reported as the driver type 3 would adjust it; it is passed
// on unchanged.
void ReportScale(const CctContext& ctx) {
    DebugPrint("cct->lutDcModeScale = %f\n", ctx.lutDcModeScale);
    if (ctx.lutApiType == CCT_LUT_API_QCOM) DebugPrint("QCOM cct->lutDcModeScale modify as : %f\n", ctx.lutDcModeScale);
}

// Every mode's dumps after its own LUT carry the CCTAPI_GET_LUT titles. A
// gained table still pending is written out by the improvement.
int32_t RunTail(CctContext& ctx, const RequestArgs& args, const ModePipeline& mode, const ModeLut& pending) {
    ctx.iccType = 1;
    Regamma(ctx, args);
    if (pending)
        ImproveLut(ctx, *pending, &ctx.outLut[0][0]);
    else
        ImproveLut(ctx, &ctx.outLut[0][0]);
    DumpLut(&ctx, "CCTAPI_GET_LUT (lut after LutImprove())");
    if (mode.reportsScale) ReportScale(ctx);
    BrightenOutLut(ctx);
    DumpLut(&ctx, "CCTAPI_GET_LUT (lut after LutBrightCtrl())");
    const int32_t status = ConvertOutLut(ctx);
    DumpLut(&ctx, "CCTAPI_GET_LUT (lut after LutConvert())");
    DumpContext(&ctx, mode.name, nullptr);
    DebugMessage(mode.exit);
    return status;
}

int32_t RunLutMode(CctContext& ctx, const RequestArgs& args, const ModePipeline& mode) {
    if (mode.preface != nullptr) DebugPrint("%s", mode.preface);
    DebugMessage(mode.enter);
    ModeLut lut = mode.build(ctx, args);
    // The whole table is written out at once where something reads it before
    // the improvement: the trace dump, or the re-gamma curve.
    if (lut && (args.request.regammaFlag != 0 || DumpsWritten())) {
        lut->Fill(&ctx.outLut[0][0]);
        lut.reset();
    }
    DumpLut(&ctx, mode.beforeTitle);
    return RunTail(ctx, args, mode, lut);
}

}  // namespace

int32_t RunModeRequest(CctContext* ctx, const RequestArgs& args) {
    const uint32_t number = args.request.number;
    if (number == CCTAPI_INIT_GAIN) return RunInitGain(*ctx, args);
    if (number < CCTAPI_GET_LUT || number > CCTAPI_READING_MODE_MULTI) return CCT_ERR_REQUEST;
    return RunLutMode(*ctx, args, kModes[number - CCTAPI_GET_LUT]);
}

}  // namespace quarnel
