// SPDX-License-Identifier: MIT
#include "color/slider.h"

#include <algorithm>

#include "color/apply_gains.h"
#include "color/base_lut.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

constexpr double kWarmEnd = 0.5;
constexpr double kNormal = 1.0;
constexpr double kColdEnd = 1.5;

}  // namespace

int32_t BuildSliderLut(CctContext& ctx) {
    double v = ctx.interval;
    if (v > kColdEnd || v < kWarmEnd) v = kNormal;
    const double s = 2.0 * (v - kNormal);  // -1 at the warm end, 1 at the cold end

    GainSolverState state;
    const uint16_t* base = BaseLut(ctx);
    uint16_t* out = &ctx.outLut[0][0];
    // The three tests are made as written: an interval that is not a number
    // passes none of them and leaves outLut as it is.
    if (s > 0.0) {
        BlendGains(state, s, ctx.gainNormal, ctx.gainCold, base, out);
    } else if (s < 0.0) {
        BlendGains(state, -s, ctx.gainNormal, ctx.gainWarm, base, out);
    } else if (s == 0.0) {
        if (ctx.fromBios != 0)
            BlendGains(state, 0.0, ctx.gainNormal, ctx.gainNormal, base, out);
        else
            std::copy_n(&ctx.oriLut[0][0], kLutEntries, out);
    }
    return 0;
}

}  // namespace quarnel
