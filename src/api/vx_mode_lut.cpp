// SPDX-License-Identifier: MIT
#include "api/vx_mode_lut.h"

#include "api/context_dump.h"
#include "api/context_values.h"
#include "api/gained_lut.h"
#include "api/pipeline_steps.h"
#include "color/slider.h"
#include "core/lut16.h"
#include "diag/debug.h"
#include "lut/compose.h"

namespace quarnel {

void GetVxModeLut(CctContext& ctx, const ComposePlaces& tone) {
    DebugPrint("; VOK: GetVxModeLut()\n");
    const GainedLut gained(LevelValues().data(), SliderGains(ctx.interval, GainsOf(ctx)), BaseLut(ctx));
    // outLut still holds the previous result here, and that is what this dump shows.
    DumpLut(&ctx, "VX Mode (before improve lut)");
    Lut16 working;
    ImproveLut(ctx, gained, working.data());
    ComposeAt(tone, working.data(), &ctx.outLut[0][0]);
}

}  // namespace quarnel
