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
constexpr double kOldDefaultWhite = 0.304670011;
constexpr Xy kFixedTarget{kFixedTargetX, kFixedTargetY};
constexpr int32_t kSliderSpanKelvin = 1000;

GainRequest RequestFor(const XyzTable& rows) {
    GainRequest r;
    std::copy_n(&rows.row[0][0], 4 * 3, &r.primaryXyz[0][0]);
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
void Solve(GainSolverState& s, GainRequest& r, const SolverRows& prepared, const char* name, GainTriple& out) {
    CalcGain(s, &r, prepared);
    if (name != nullptr)
        DebugPrint("; VOK: %s Gain E(%d) W(%d)\n", name, static_cast<int>(r.errorFlags), static_cast<int>(r.warnFlags));
    std::copy_n(r.gain, 3, out.begin());
}

void SolveNormal(const GainInitInput& in, const SolverRows& prepared, bool useFixedTarget, GainSolverState& s,
                 ModeGains& gains) {
    GainRequest r = RequestFor(in.rows);
    if (in.biosVer < kTargetsVersion) {
        SetTarget(r, {kOldDefaultWhite, kOldDefaultWhite});
        r.lumMode = kFloorPerceptual;
    } else {
        SetTarget(r, {in.targets.defaultWhite[0], in.targets.defaultWhite[1]});
        r.lumMode = kFloorDrop;
        r.lumDrop = in.rows.row[kWhite][kColumnY] - in.targets.targetLuminance;
    }
    if (useFixedTarget) {
        SetTarget(r, kFixedTarget);
        if (in.biosVer >= kTargetsVersion) r.lumMode = kFloorNone;
    }
    Solve(s, r, prepared, "DEF", gains.normal);
}

// Warm and cold lie 1000 K either side of the normal white's temperature,
// which the solver always reports inside 2222..13000 K.
void SolveSliderEnds(const XyzTable& rows, const SolverRows& prepared, int32_t normalCct, GainSolverState& s,
                     ModeGains& gains) {
    GainRequest r = RequestFor(rows);
    r.targetMode = kTargetAbsoluteCct;
    r.targetCct = normalCct - kSliderSpanKelvin;
    Solve(s, r, prepared, "Warm", gains.warm);
    r.warnFlags = r.errorFlags = 0;
    r.targetCct = normalCct + kSliderSpanKelvin;
    Solve(s, r, prepared, "Cold", gains.cold);
}

void SolveReading(const XyzTable& rows, const SolverRows& prepared, const ReadingTargets& t, GainSolverState& s,
                  bool print, ModeGains& gains) {
    GainRequest r = RequestFor(rows);
    SetTarget(r, t.weak);
    Solve(s, r, prepared, print ? "RdW" : nullptr, gains.readWeak);
    r.warnFlags = r.errorFlags = 0;
    SetTarget(r, t.strong);
    Solve(s, r, prepared, print ? "RdS" : nullptr, gains.readStrong);
}

ModeGains SolveFromFactory(const GainInitInput& in, bool useFixedTarget) {
    DebugMessage(L"VOK: Has Factory Calibration Data\n");
    ModeGains gains;
    GainSolverState normal = NewState();
    GainSolverState other = NewState();
    const SolverRows prepared = PrepareRows(in.rows.row);
    SolveNormal(in, prepared, useFixedTarget, normal, gains);
    SolveSliderEnds(in.rows, prepared, normal.cct, other, gains);

    other.flags = 0;
    ReadingTargets reading;
    CalcReadingTargets({normal.targetX, normal.targetY}, kReadingLineStart, kReadingLineEnd, reading);
    SolveReading(in.rows, prepared, reading, other, true, gains);
    return gains;
}

ModeGains SolveFromTable(const XyzTable& rows) {
    DebugMessage(L"VOK: No Factory Calibration Data\n");
    ModeGains gains;
    GainSolverState s = NewState();
    const SolverRows prepared = PrepareRows(rows.row);
    GainRequest r = RequestFor(rows);
    r.targetMode = kTargetNativeOffset;
    DebugMessage(L"VOK: Calculate Warm gain\n");
    r.cctOffset = -kSliderSpanKelvin;
    Solve(s, r, prepared, nullptr, gains.warm);
    DebugMessage(L"VOK: Calculate Cold gain\n");
    r.cctOffset = kSliderSpanKelvin;
    Solve(s, r, prepared, nullptr, gains.cold);
    gains.normal.fill(1.0);

    DebugMessage(L"VOK: Calculate Read mode target\n");
    const double* white = rows.row[kWhite];
    const double sum = white[0] + white[1] + white[2];
    ReadingTargets reading;
    CalcReadingTargets({white[0] / sum, white[1] / sum}, kReadingLineStart, kReadingLineEnd, reading);
    DebugMessage(L"VOK: Calculate Read mode gain\n");
    SolveReading(rows, prepared, reading, s, false, gains);
    return gains;
}

}  // namespace

ModeGains SolveModeGains(const GainInitInput& in, bool useFixedTarget) {
    return in.fromBios ? SolveFromFactory(in, useFixedTarget) : SolveFromTable(in.rows);
}

std::optional<Lut16> FactoryGammaLut(ToneModel& tone) {
    if (BuildFactoryGammaTable(tone) != 0) return std::nullopt;
    Lut16 lut;
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i)
            lut[LutIndex(c, i)] = static_cast<uint16_t>(
                tone.gammaTable[static_cast<std::size_t>(i)][static_cast<std::size_t>(c)] * kLutStep);
    return lut;
}

void CheckModeGains(ModeGains& gains, const uint16_t* base, int32_t lutApiType) {
    for (GainTriple* g : {&gains.warm, &gains.cold, &gains.normal, &gains.readWeak, &gains.readStrong})
        CheckGain(g->data(), base, lutApiType);
}

}  // namespace quarnel
