// SPDX-License-Identifier: MIT
#include "api/mode_luts.h"

#include <algorithm>

#include "api/context_values.h"
#include "color/apply_gains.h"
#include "color/calc_gain.h"
#include "color/slider.h"
#include "color/theater.h"
#include "core/lut16.h"
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

// The base LUT under (1 - t) x a + t x b.
GainedLut BlendReading(const CctContext& ctx, double t, const double* a, const double* b, GainSolverState& state) {
    return GainedLut(LevelValues().data(), BlendedGains(state, t, a, b), BaseLut(ctx));
}

}  // namespace

ModeLut BuildGetLut(CctContext& ctx, const RequestArgs& args) {
    if (args.request.gainFlag != 0) RecomputeNormalGains(ctx);
    const SliderTable table = SliderRequestTable(ctx.interval, GainsOf(ctx), ctx.fromBios != 0);
    if (table.kind == SliderTable::kGained) return GainedLut(LevelValues().data(), table.gains, BaseLut(ctx));
    if (table.kind == SliderTable::kBase) std::copy_n(BaseLut(ctx), kLutEntries, &ctx.outLut[0][0]);
    return std::nullopt;
}

ModeLut BuildTheaterLut(CctContext& ctx, const RequestArgs& /*args*/) {
    const GainTriple gains =
        TheaterGains(TableOf(ctx.fromBios != 0 ? ctx.bios : ctx.icc), BaseLut(ctx), ctx.lutApiType);
    return GainedLut(LevelValues().data(), gains, BaseLut(ctx));
}

ModeLut BuildVividModeLut(CctContext& ctx, const RequestArgs& /*args*/) {
    return GainedLut(VividLevels().data(), TripleOf(ctx.gainNormal), BaseLut(ctx));
}

ModeLut BuildReadingStrongLut(CctContext& ctx, const RequestArgs& /*args*/) {
    GainSolverState state;
    return BlendReading(ctx, 0.0, ctx.gainReadStrong, ctx.gainReadStrong, state);
}

ModeLut BuildReadingWeakLut(CctContext& ctx, const RequestArgs& /*args*/) {
    GainSolverState state;
    return BlendReading(ctx, 0.0, ctx.gainReadWeak, ctx.gainReadWeak, state);
}

// rdIndex itself is the mixing position: levels above 1 reach the strong
// gains through the blend's own clamp. The range test is written out; an
// rdIndex or rdLevels that is not a number passes neither comparison, so
// rdIndex is kept and the blend's clamp takes it to 0.
ModeLut BuildReadingMultiLut(CctContext& ctx, const RequestArgs& /*args*/) {
    double t = ctx.rdIndex;
    if (t < 0.0 || t > ctx.rdLevels - 1.0) {
        ctx.rdIndex = 0.0;
        t = 0.0;
    }
    GainSolverState state;
    const GainedLut lut = BlendReading(ctx, t, ctx.gainReadWeak, ctx.gainReadStrong, state);
    DebugPrint("GetReadingModeMultiLUT  outGain = %f\n", state.maxGain);
    return lut;
}

}  // namespace quarnel
