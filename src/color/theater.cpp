// SPDX-License-Identifier: MIT
#include "color/theater.h"

#include <algorithm>

#include "color/base_lut.h"
#include "color/calc_gain.h"
#include "color/check_gain.h"
#include "core/half_up.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

constexpr double kTheaterWhiteX = 0.3418;
constexpr double kTheaterWhiteY = 0.3757;
constexpr double kBoost = 1.05;

// The scaled level is clamped at 255 before half-up, so the boosted limiting
// channel saturates from input 243 upwards. HalfUp gives 0 for a level that
// is not a number (the clamp test, made as written, lets it through); a
// negative level reads the plane's first entry.
int ClampedIndex(double scaled) {
    if (scaled > kTopLevel) scaled = kTopLevel;
    return std::max(HalfUp(scaled), 0);
}

}  // namespace

int32_t BuildTheaterLut(CctContext& ctx) {
    GainRequest r = ChromaticityRequest(ctx.fromBios != 0 ? ctx.bios : ctx.icc, kTheaterWhiteX, kTheaterWhiteY);
    GainSolverState state;
    state.gamma = kSolverGamma;
    CalcGain(state, &r);

    double g[3];
    for (int c = 0; c < 3; ++c) g[c] = r.gain[c] * kBoost;
    const uint16_t* base = BaseLut(ctx);
    CheckGain(g, base, ctx.lutApiType);
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i) ctx.outLut[c][i] = base[LutIndex(c, ClampedIndex(i * g[c]))];
    return 0;
}

}  // namespace quarnel
