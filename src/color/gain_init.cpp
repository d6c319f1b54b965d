// SPDX-License-Identifier: MIT
#include "color/gain_init.h"

#include <algorithm>

#include "color/calc_gain.h"
#include "color/check_gain.h"
#include "color/factory_gamma.h"
#include "color/reading_targets.h"
#include "core/lut16.h"
#include "diag/debug.h"

namespace quarnel {
namespace {

// Data before version 4 carries no white target of its own. Its normal
// white takes this x for both coordinates: the panels of those versions have
// always been tuned toward that point, so it stays.
constexpr int32_t kTargetsVersion = 4;
constexpr double kOldDefaultWhite = 0.304670011;
constexpr int32_t kToneVersion = 5;
constexpr Xy kFixedTarget{kFixedTargetX, kFixedTargetY};
constexpr int32_t kSliderSpanKelvin = 1000;
constexpr int kColumnY = 1;

using Rows = double[4][3];

GainRequest RequestFor(const Rows& rows) {
    GainRequest r;
    std::copy_n(&rows[0][0], 4 * 3, &r.primaryXyz[0][0]);
    r.locus = kLocusOffsetDaylight;
    r.lumMode = kFloorNone;
    return r;
}

GainSolverState NewState() {
    GainSolverState s;
    s.gamma = kSolverGamma;
    return s;
}

void SetTarget(GainRequest& r, Xy p) {
    r.targetMode = kTargetChromaticity;
    r.targetX = p.x;
    r.targetY = p.y;
}

// Solves, prints the status words under `name` when one is given, and keeps the gains.
void Solve(GainSolverState& s, GainRequest& r, const char* name, double out[3]) {
    CalcGain(s, &r);
    if (name != nullptr)
        DebugPrint("; VOK: %s Gain E(%d) W(%d)\n", name, static_cast<int>(r.errorFlags), static_cast<int>(r.warnFlags));
    std::copy_n(r.gain, 3, out);
}

void SolveNormal(CctContext& ctx, const FactoryTargets& targets, bool useFixedTarget, GainSolverState& s) {
    GainRequest r = RequestFor(ctx.bios);
    if (ctx.biosVer < kTargetsVersion) {
        SetTarget(r, {kOldDefaultWhite, kOldDefaultWhite});
        r.lumMode = kFloorPerceptual;
    } else {
        SetTarget(r, {targets.defaultWhite[0], targets.defaultWhite[1]});
        r.lumMode = kFloorDrop;
        r.lumDrop = ctx.bios[kWhite][kColumnY] - targets.targetLuminance;
    }
    if (useFixedTarget) {
        SetTarget(r, kFixedTarget);
        if (ctx.biosVer >= kTargetsVersion) r.lumMode = kFloorNone;
    }
    Solve(s, r, "DEF", ctx.gainNormal);
}

// Warm and cold lie 1000 K either side of the normal white's temperature,
// which the solver always reports inside 2222..13000 K.
void SolveSliderEnds(CctContext& ctx, int32_t normalCct, GainSolverState& s) {
    GainRequest r = RequestFor(ctx.bios);
    r.targetMode = kTargetAbsoluteCct;
    r.targetCct = normalCct - kSliderSpanKelvin;
    Solve(s, r, "Warm", ctx.gainWarm);
    r.warnFlags = r.errorFlags = 0;
    r.targetCct = normalCct + kSliderSpanKelvin;
    Solve(s, r, "Cold", ctx.gainCold);
}

void SolveReading(CctContext& ctx, const Rows& rows, const ReadingTargets& t, GainSolverState& s, bool print) {
    GainRequest r = RequestFor(rows);
    SetTarget(r, t.weak);
    Solve(s, r, print ? "RdW" : nullptr, ctx.gainReadWeak);
    r.warnFlags = r.errorFlags = 0;
    SetTarget(r, t.strong);
    Solve(s, r, print ? "RdS" : nullptr, ctx.gainReadStrong);
}

void BuildGammaLut(CctContext& ctx, ToneModel& tone) {
    if (BuildFactoryGammaTable(tone) != 0) {
        ctx.gammaK = 0;
        return;
    }
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i)
            ctx.gammaLut[c][i] = static_cast<uint16_t>(
                tone.gammaTable[static_cast<std::size_t>(i)][static_cast<std::size_t>(c)] * kLutStep);
}

void InitFromFactory(CctContext& ctx, const FactoryTargets& targets, ToneModel& tone, bool useFixedTarget) {
    DebugMessage(L"VOK: Has Factory Calibration Data\n");
    GainSolverState normal = NewState();
    GainSolverState other = NewState();
    SolveNormal(ctx, targets, useFixedTarget, normal);
    SolveSliderEnds(ctx, normal.cct, other);

    other.flags = 0;
    ReadingTargets reading;
    CalcReadingTargets({normal.targetX, normal.targetY}, kReadingLineStart, kReadingLineEnd, reading);
    SolveReading(ctx, ctx.bios, reading, other, true);

    if (ctx.biosVer == kToneVersion && ctx.gammaK != 0) BuildGammaLut(ctx, tone);
}

void InitFromIcc(CctContext& ctx) {
    DebugMessage(L"VOK: No Factory Calibration Data\n");
    GainSolverState s = NewState();
    GainRequest r = RequestFor(ctx.icc);
    r.targetMode = kTargetNativeOffset;
    DebugMessage(L"VOK: Calculate Warm gain\n");
    r.cctOffset = -kSliderSpanKelvin;
    Solve(s, r, nullptr, ctx.gainWarm);
    DebugMessage(L"VOK: Calculate Cold gain\n");
    r.cctOffset = kSliderSpanKelvin;
    Solve(s, r, nullptr, ctx.gainCold);
    std::fill_n(ctx.gainNormal, 3, 1.0);

    DebugMessage(L"VOK: Calculate Read mode target\n");
    const double* white = ctx.icc[kWhite];
    const double sum = white[0] + white[1] + white[2];
    ReadingTargets reading;
    CalcReadingTargets({white[0] / sum, white[1] / sum}, kReadingLineStart, kReadingLineEnd, reading);
    DebugMessage(L"VOK: Calculate Read mode gain\n");
    SolveReading(ctx, ctx.icc, reading, s, false);
}

}  // namespace

void InitGains(CctContext& ctx, const FactoryTargets& targets, ToneModel& tone, bool useFixedTarget) {
    if (ctx.fromBios != 0)
        InitFromFactory(ctx, targets, tone, useFixedTarget);
    else
        InitFromIcc(ctx);

    DebugMessage(L"VOK: Check gain\n");
    const uint16_t* base = ctx.gammaK != 0 ? &ctx.gammaLut[0][0] : &ctx.oriLut[0][0];
    for (double* gain : {ctx.gainWarm, ctx.gainCold, ctx.gainNormal, ctx.gainReadWeak, ctx.gainReadStrong})
        CheckGain(gain, base, ctx.lutApiType);
}

}  // namespace quarnel
