// SPDX-License-Identifier: MIT
#include "api/vx_mode_lut.h"

#include "api/pipeline_steps.h"
#include "color/base_lut.h"
#include "core/lut16.h"
#include "diag/debug.h"
#include "diag/trace.h"
#include "lut/compose.h"

namespace quarnel {
namespace {

constexpr double kWarmEnd = 0.5;
constexpr double kNormal = 1.0;
constexpr double kColdEnd = 1.5;

// The gains at slider position t: warm at 0.5, normal at 1.0, cold at 1.5,
// linear in between. The clamp is written out: a t that is not a number
// passes none of the tests, gives gains that are not numbers, and those read
// the base LUT's first entry in ApplyGainClamped.
void SliderGains(const CctContext& ctx, double g[3]) {
    double t = ctx.interval;
    if (t < kWarmEnd) t = kWarmEnd;
    if (t > kColdEnd) t = kColdEnd;
    const bool warm = t < kNormal;
    const double* ref = warm ? ctx.gainWarm : ctx.gainCold;
    const double anchor = warm ? kWarmEnd : kColdEnd;
    for (int c = 0; c < 3; ++c) {
        g[c] = t == kNormal ? ctx.gainNormal[c]
                            : ref[c] + (ctx.gainNormal[c] - ref[c]) / (kNormal - anchor) * (t - anchor);
    }
}

}  // namespace

void GetVxModeLut(CctContext& ctx, const uint16_t* curve) {
    DebugPrint("; VOK: GetVxModeLut()\n");
    double gains[3];
    SliderGains(ctx, gains);
    Lut16 working{};
    ApplyGainClamped(gains, BaseLut(ctx), working.data());
    // outLut still holds the previous result here, and that is what this dump shows.
    DumpLut(&ctx, "VX Mode (before improve lut)");
    ImproveLut(ctx, working.data());
    ComposeLut(kComposeScaled, curve, working.data(), &ctx.outLut[0][0]);
}

}  // namespace quarnel
