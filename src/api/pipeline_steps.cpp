// SPDX-License-Identifier: MIT
#include "api/pipeline_steps.h"

#include "api/context_values.h"
#include "core/constants.h"
#include "core/lut16.h"
#include "lut/bright_ctrl.h"
#include "lut/convert.h"
#include "lut/improve.h"

namespace quarnel {

void ImproveLut(const CctContext& ctx, uint16_t* lut) { LutImprove(ctx.biosVer, SourceOf(ctx), lut, FetchStepByte); }

void ImproveLut(const CctContext& ctx, const PendingLut& pending, uint16_t* lut) {
    LutImprove(ctx.biosVer, SourceOf(ctx), pending, lut, FetchStepByte);
}

void BrightenOutLut(CctContext& ctx) {
    LutBrightCtrl(&ctx.outLut[0][0], static_cast<uint32_t>(ctx.lutApiType), ctx.lutDcModeScale);
}

int32_t ConvertOutLut(CctContext& ctx) {
    return LutConvert(ctx.lutApiType, &ctx.outLut[0][0], &ctx.outLut[0][0], kLutLevels, &ctx.outIgcl[0][0], kLutLevels,
                      &ctx.outNvPreGamma[0][0], kNvPoints);
}

}  // namespace quarnel
