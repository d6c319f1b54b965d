// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "color/calc_gain.h"
#include "color/chromaticity.h"
#include "color/locus.h"
#include "panels.h"

namespace quarnel {
namespace {

constexpr int kPanels = 3000;
constexpr uint32_t kFailureBits = kGainNullRequest | kGainZeroSum | kGainUnknownTargetMode | kGainWalkExhausted |
                                  kGainSearchExhausted | kGainBlendClamped | kGainNativeOutside;

struct Draw {
    std::mt19937 rng{20240611u};
    double Uniform(double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); }
    double Near(double v, double spread) { return v + Uniform(-spread, spread); }
    int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
};

// A realistic panel and target; the white is a positive mix of the primaries, so inside their triangle.
GainRequest RandomRequest(Draw& d) {
    GainRequest r;
    const double peak = d.Uniform(150.0, 500.0);
    test::SetRow(r, kRed, {d.Near(0.64, 0.03), d.Near(0.33, 0.02), peak * d.Uniform(0.18, 0.26)});
    test::SetRow(r, kGreen, {d.Near(0.30, 0.03), d.Near(0.60, 0.04), peak * d.Uniform(0.6, 0.75)});
    test::SetRow(r, kBlue, {d.Near(0.15, 0.01), d.Near(0.06, 0.02), peak * d.Uniform(0.05, 0.1)});
    for (int row = kRed; row <= kBlue; ++row) {
        const double share = d.Uniform(0.85, 1.0);
        for (int c = 0; c < 3; ++c) r.primaryXyz[kWhite][c] += share * r.primaryXyz[row][c];
    }
    r.locus = static_cast<uint32_t>(d.Int(0, 2));
    const int mode = d.Int(0, 5);
    if (mode == 0) {  // a corner of the gamut: outside, so the target walks in
        const int row = d.Int(kRed, kBlue);
        const double sum = r.primaryXyz[row][0] + r.primaryXyz[row][1] + r.primaryXyz[row][2];
        r.targetX = r.primaryXyz[row][0] / sum;
        r.targetY = r.primaryXyz[row][1] / sum;
    } else if (mode < 3) {
        r.targetMode = kTargetAbsoluteCct;
        r.targetCct = d.Int(4500, 12000);
    } else {
        r.targetMode = kTargetNativeOffset;
        r.cctOffset = d.Int(-2000, 2000);
    }
    if (d.Int(0, 2) == 0) {
        r.lumMode = 2;
        r.lumPercent = d.Uniform(1.0, 30.0);
    }
    return r;
}

// The white that full drive shows through the gains.
Xy ResultWhite(const GainRequest& r, double gamma) {
    double xyz[3] = {};
    for (int row = kRed; row <= kBlue; ++row)
        for (int c = 0; c < 3; ++c) xyz[c] += std::pow(r.gain[row], gamma) * r.primaryXyz[row][c];
    const double sum = xyz[0] + xyz[1] + xyz[2];
    return {xyz[0] / sum, xyz[1] / sum};
}

bool TargetStartsInside(const GainRequest& r, GainSolverState s) {
    Xy p{r.targetX, r.targetY};
    if (r.targetMode != kTargetChromaticity)
        LocusXy(s, r.locus, r.targetMode == kTargetAbsoluteCct ? r.targetCct : s.nativeCct + r.cctOffset, p);
    return IsInsideGamut(s, p);
}

TEST(CalcGainProperty, RandomPanelsReachTheirTargets) {
    Draw draw;
    int solved = 0, walked = 0, floored = 0;
    for (int n = 0; n < kPanels; ++n) {
        GainRequest r = RandomRequest(draw);
        GainSolverState s = test::FreshState();
        CalcGain(s, &r);
        SCOPED_TRACE(n);
        ASSERT_EQ(r.warnFlags, s.flags);
        ASSERT_EQ(r.warnFlags & kFailureBits, 0u);
        EXPECT_EQ((r.warnFlags & kGainWalkStep) != 0, !TargetStartsInside(r, s));
        EXPECT_GE(s.cct, 2222);
        EXPECT_LE(s.cct, 13000);
        if (r.warnFlags & kGainFellBack) {
            EXPECT_TRUE((r.warnFlags & kGainWalkStep) != 0 || r.lumMode != 0);
            for (double g : r.gain) EXPECT_EQ(g, 1.0);
            EXPECT_EQ(s.targetX, s.point[kWhite].x);
            continue;
        }
        ++solved;
        walked += (r.warnFlags & kGainWalkStep) != 0;
        int atOne = 0;
        for (double g : r.gain) {
            EXPECT_GE(g, 0.0);
            EXPECT_LE(g, 1.0);
            atOne += g == 1.0;
        }
        EXPECT_EQ(atOne, 1);
        EXPECT_GE(s.resultY, s.lumFloor - 1e-9);
        const Xy white = ResultWhite(r, s.gamma);  // also where the floor moved the target
        EXPECT_NEAR(white.x, s.targetX, 1e-9);
        EXPECT_NEAR(white.y, s.targetY, 1e-9);
        floored += s.lumFloor > 0.0;
        GainSolverState check;
        EXPECT_EQ(s.cct, CctFromXy(check, {s.targetX, s.targetY}));
    }
    // the draw exercises every path
    EXPECT_GT(solved, kPanels / 2);
    EXPECT_GT(walked, 10);
    EXPECT_GT(floored, 100);
}

}  // namespace
}  // namespace quarnel
