// SPDX-License-Identifier: MIT
#include "api/mode_luts.h"

#include "api/context_values.h"
#include "color/apply_gains.h"
#include "color/calc_gain.h"
#include "color/slider.h"
#include "color/theater.h"
#include "diag/debug.h"
#include "lut/vivid.h"

namespace quarnel {
namespace {

void RecomputeNormalGains(CctContext& ctx) {
    GainRequest request = ChromaticityRequest(TableOf(ctx.bios), kFixedTargetX, kFixedTargetY);
    GainSolverState state;
    state.gamma = kSolverGamma;
    CalcGain(state, &request);
    DebugPrint("; VOK: DEF Gain E(%d) W(%d)\n", static_cast<int>(request.errorFlags),
               static_cast<int>(request.warnFlags));
    for (int c = 0; c < 3; ++c) ctx.gainNormal[c] = request.gain[c];
}

void BlendReading(CctContext& ctx, double t, const double* a, const double* b, GainSolverState& state) {
    BlendGains(state, t, a, b, BaseLut(ctx), &ctx.outLut[0][0]);
}

}  // namespace

void BuildGetLut(CctContext& ctx, const RequestArgs& args) {
    if (args.request.gainFlag != 0) RecomputeNormalGains(ctx);
    BuildSliderLut(ctx.interval, GainsOf(ctx), ctx.fromBios != 0, BaseLut(ctx), &ctx.outLut[0][0]);
}

void BuildTheaterModeLut(CctContext& ctx, const RequestArgs& /*args*/) {
    BuildTheaterLut(TableOf(ctx.fromBios != 0 ? ctx.bios : ctx.icc), BaseLut(ctx), ctx.lutApiType, &ctx.outLut[0][0]);
}

void BuildVividModeLut(CctContext& ctx, const RequestArgs& /*args*/) {
    ApplyGainsAtLevels(VividLevels().data(), ctx.gainNormal, BaseLut(ctx), &ctx.outLut[0][0]);
}

void BuildReadingStrongLut(CctContext& ctx, const RequestArgs& /*args*/) {
    GainSolverState state;
    BlendReading(ctx, 0.0, ctx.gainReadStrong, ctx.gainReadStrong, state);
}

void BuildReadingWeakLut(CctContext& ctx, const RequestArgs& /*args*/) {
    GainSolverState state;
    BlendReading(ctx, 0.0, ctx.gainReadWeak, ctx.gainReadWeak, state);
}

// rdIndex itself is the mixing position: levels above 1 reach the strong
// gains through the blend's own clamp. The range test is written out; an
// rdIndex or rdLevels that is not a number passes neither comparison, so
// rdIndex is kept and the blend's clamp takes it to 0.
void BuildReadingMultiLut(CctContext& ctx, const RequestArgs& /*args*/) {
    double t = ctx.rdIndex;
    if (t < 0.0 || t > ctx.rdLevels - 1.0) {
        ctx.rdIndex = 0.0;
        t = 0.0;
    }
    GainSolverState state;
    BlendReading(ctx, t, ctx.gainReadWeak, ctx.gainReadStrong, state);
    DebugPrint("GetReadingModeMultiLUT  outGain = %f\n", state.maxGain);
}

}  // namespace quarnel
