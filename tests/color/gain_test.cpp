// SPDX-License-Identifier: MIT
#include "color/calc_gain.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "color/apply_gains.h"
#include "color/chromaticity.h"
#include "color/locus.h"
#include "lut/sample_luts.h"
#include "panels.h"

namespace quarnel {
namespace {

uint16_t At(const Lut16& lut, int plane, int i) { return lut[LutIndex(plane, i)]; }

Lut16 Applied(const double (&gain)[3]) {
    const Lut16 src = test::PanelLikeLut();
    Lut16 dst{};
    ApplyGainsToLut(src.data(), gain, dst.data());
    return dst;
}

TEST(ApplyGainsToLut, ReadsTheBaseAtTheHalfUpScaledLevelInsideThePlane) {
    const Lut16 src = test::PanelLikeLut();
    const Lut16 out = Applied({1.0, 0.5, 0.0});
    const Lut16 wild = Applied({1.05, -0.5, std::numeric_limits<double>::quiet_NaN()});
    EXPECT_EQ(At(wild, 0, 242), At(src, 0, 254));
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(At(out, 0, i), At(src, 0, i));
        EXPECT_EQ(At(out, 1, i), At(src, 1, (i + 1) / 2));
        EXPECT_EQ(At(out, 2, i), At(src, 2, 0));
        EXPECT_EQ(At(wild, 1, i), At(src, 1, 0));
        EXPECT_EQ(At(wild, 2, i), At(src, 2, 0));
        if (i < 243) continue;
        EXPECT_EQ(At(wild, 0, i), At(src, 0, 255)) << i;
    }
}

TEST(ApplyGainsToLut, WorksInPlace) {
    Lut16 lut = test::PanelLikeLut();
    const double gain[3] = {0.9, 0.7, 0.4};
    ApplyGainsToLut(lut.data(), gain, lut.data());
    EXPECT_EQ(lut, Applied({0.9, 0.7, 0.4}));
}

TEST(BlendGains, MixesClampsAndReportsTheLargestGain) {
    const double a[3] = {1.0, 0.75, 0.5}, b[3] = {0.5, 0.25, 1.0};
    const struct {
        double t;
        double gain[3];
        uint32_t flags;
    } cases[] = {
        {0.0, {1.0, 0.75, 0.5}, 0},
        {1.0, {0.5, 0.25, 1.0}, 0},
        {0.5, {0.75, 0.5, 0.75}, 0},
        {-0.5, {1.0, 0.75, 0.5}, kGainBlendClamped},
        {2.0, {0.5, 0.25, 1.0}, kGainBlendClamped},
        {std::numeric_limits<double>::quiet_NaN(), {1.0, 0.75, 0.5}, kGainBlendClamped},
    };
    const Lut16 src = test::PanelLikeLut();
    for (const auto& tc : cases) {
        GainSolverState s;
        s.flags = 0xFF;
        Lut16 dst{};
        BlendGains(s, tc.t, a, b, src.data(), dst.data());
        EXPECT_EQ(s.flags, tc.flags) << tc.t;
        EXPECT_EQ(s.gamma, 2.2);
        EXPECT_DOUBLE_EQ(s.maxGain, std::max({tc.gain[0], tc.gain[1], tc.gain[2]})) << tc.t;
        EXPECT_EQ(dst, Applied(tc.gain)) << tc.t;
    }
}

struct Solved {
    GainSolverState state;
    GainRequest request;
};

Solved Solve(GainRequest r) {
    Solved out{test::FreshState(), r};
    CalcGain(out.state, &out.request);
    return out;
}

GainRequest Daylight(GainRequest r, int32_t kelvin) {
    r.targetMode = kTargetAbsoluteCct;
    r.targetCct = kelvin;
    r.locus = kLocusDaylight;
    return r;
}

void ExpectNativeFallback(const Solved& s) {
    for (double g : s.request.gain) EXPECT_EQ(g, 1.0);
    EXPECT_EQ(s.state.targetX, s.state.point[kWhite].x);
    EXPECT_EQ(s.state.targetY, s.state.point[kWhite].y);
    EXPECT_EQ(s.state.lumChangePct, 0.0);
    EXPECT_EQ(s.state.lumFloor, 0.0);
    EXPECT_EQ(s.state.resultY, s.request.primaryXyz[kWhite][1]);
    EXPECT_EQ(s.request.errorFlags, 0u);
}

TEST(CalcGain, NullRequestSetsExactlyOne) {
    GainSolverState s = test::FreshState();
    s.flags = 0xFFFF;
    CalcGain(s, nullptr);
    EXPECT_EQ(s.flags, kGainNullRequest);
}

TEST(CalcGain, EachFailureFallsBackToNativeWithItsStatus) {
    struct {
        const char* name;
        void (*change)(GainRequest&);  // applied to sRGB with a 6500 K daylight target
        uint32_t flags;
    } cases[] = {
        {"zero white Y", [](GainRequest& r) { r.primaryXyz[kWhite][1] = 0.0; }, kGainZeroSum},
        {"zero primaries Y",
         [](GainRequest& r) { r.primaryXyz[kRed][1] = r.primaryXyz[kGreen][1] = r.primaryXyz[kBlue][1] = 0.0; },
         kGainZeroSum},
        // the reddened white also lies beyond the reported temperatures
        {"native outside", [](GainRequest& r) { r.primaryXyz[kWhite][0] = 5.0; }, kGainNativeOutside | kGainCctAbove},
        {"unknown mode", [](GainRequest& r) { r.targetMode = 3; }, kGainUnknownTargetMode},
        {"floor at native", [](GainRequest& r) { r.targetCct = 9300, r.lumMode = 2; }, kGainFloorClamped},
        {"floor above native", [](GainRequest& r) { r.targetCct = 9300, r.lumMode = 3, r.lumDrop = -5.0; },
         kGainFloorClamped},
        // the only locus point at the native temperature lies outside the small triangle
        {"walk meets native",
         [](GainRequest& r) {
             r = test::GreenishPanel(), r.targetMode = kTargetNativeOffset, r.locus = kLocusOffsetDaylight;
         },
         kGainWalkStep},
        {"walk out of steps", [](GainRequest& r) { r = Daylight(test::GreenishPanel(), 13000); },
         kGainWalkStep | kGainWalkExhausted},
    };
    for (const auto& tc : cases) {
        GainRequest r = Daylight(test::SrgbPanel(), 6500);
        tc.change(r);
        r.warnFlags = 0xFFFFu;
        r.errorFlags = 7;
        const Solved s = Solve(r);
        EXPECT_EQ(s.request.warnFlags, tc.flags | kGainFellBack) << tc.name;
        EXPECT_EQ(s.state.flags, tc.flags | kGainFellBack) << tc.name;
        ExpectNativeFallback(s);
    }
    auto r = test::GreenishPanel();  // a walk failure leaves the native temperature
    r.targetMode = kTargetNativeOffset;
    const Solved s = Solve(r);
    EXPECT_EQ(s.state.cct, s.state.nativeCct);
}

TEST(CalcGain, NativeOffsetZeroTargetsTheLocusNotTheNativeWhite) {
    for (uint32_t locus : {kLocusPlanckian, kLocusDaylight, kLocusOffsetDaylight, 9u}) {
        GainRequest r = test::SrgbPanel();
        r.targetMode = kTargetNativeOffset;
        r.locus = locus;
        const Solved s = Solve(r);
        ASSERT_EQ(s.request.warnFlags, locus == 9 ? kGainUnknownLocus : 0u) << locus;
        GainSolverState scratch;
        Xy expected{};  // an unknown locus places on offset daylight
        LocusXy(scratch, locus == 9 ? kLocusOffsetDaylight : locus, s.state.nativeCct, expected);
        EXPECT_EQ(s.state.targetX, expected.x);
        EXPECT_EQ(s.state.targetY, expected.y);
        EXPECT_NE(s.state.targetX, s.state.point[kWhite].x);
    }
}

TEST(CalcGain, TargetOnAnEdgeWalksIntoTheGamut) {
    GainRequest r = test::SrgbPanel();
    r.targetX = 0.30;  // the green corner
    r.targetY = 0.60;
    r.locus = kLocusOffsetDaylight;
    const Solved s = Solve(r);
    EXPECT_EQ(s.request.warnFlags & (kGainWalkStep | kGainFellBack), kGainWalkStep);
    EXPECT_TRUE(IsInsideGamut(s.state, {s.state.targetX, s.state.targetY}));
}

TEST(CalcGain, FloorModes) {
    GainRequest r = Daylight(test::SrgbPanel(300.0), 9300);
    r.lumMode = 3;
    r.lumDrop = 1000.0;  // a negative floor counts as none
    Solved s = Solve(r);
    EXPECT_EQ(s.request.warnFlags, kGainFloorClamped);
    EXPECT_EQ(s.state.lumFloor, 0.0);
    r = Daylight(test::SrgbPanel(300.0), 6600);
    r.lumMode = 1;  // perceptual
    EXPECT_DOUBLE_EQ(Solve(r).state.lumFloor, std::pow(std::pow(300.0, 0.4) - 0.4926083119608702, 2.5));
    r = Daylight(test::SrgbPanel(300.0), 11000);
    r.lumMode = 2;
    r.lumPercent = 0.001;  // just below native: ends at native
    s = Solve(r);
    EXPECT_EQ(s.request.warnFlags & (kGainFellBack | kGainFloorClamped), kGainFellBack);
    ExpectNativeFallback(s);
}

TEST(CalcGain, FloorMovesTheTargetTowardNative) {
    GainRequest r = Daylight(test::SrgbPanel(300.0), 11000);
    const Solved free = Solve(r);
    r.lumMode = 2;
    r.lumPercent = 10.0;
    const Solved floored = Solve(r);
    ASSERT_LT(free.state.resultY, 270.0);
    EXPECT_EQ(floored.request.warnFlags & kGainFellBack, 0u);
    EXPECT_DOUBLE_EQ(floored.state.lumFloor, 270.0);
    EXPECT_GE(floored.state.resultY, 270.0);
    EXPECT_LE(floored.state.resultY, 271.0);
    EXPECT_NEAR(floored.state.lumChangePct, (floored.state.resultY - 300.0) / 3.0, 1e-12);
    // the new target lies on the way from native white to the first target
    const double nx = floored.state.point[kWhite].x, ny = floored.state.point[kWhite].y;
    const double cross = (free.state.targetX - nx) * (floored.state.targetY - ny) -
                         (free.state.targetY - ny) * (floored.state.targetX - nx);
    EXPECT_NEAR(cross, 0.0, 1e-12);
    EXPECT_LT(std::hypot(floored.state.targetX - nx, floored.state.targetY - ny),
              std::hypot(free.state.targetX - nx, free.state.targetY - ny));
}

TEST(CalcGain, AppliesTheGainsToTheRequestedLut) {
    const Lut16 src = test::PanelLikeLut();
    for (uint32_t mode : {kTargetAbsoluteCct, 5u}) {  // 5 falls back: unit gains
        Lut16 dst{};
        GainRequest r = Daylight(test::SrgbPanel(), 9300);
        r.targetMode = mode;
        r.srcLut = src.data();
        r.dstLut = dst.data();
        EXPECT_EQ(dst, Applied(Solve(r).request.gain)) << mode;
    }
}

}  // namespace
}  // namespace quarnel
