#include "color/calc_gain.h"

#include <gtest/gtest.h>

#include <cmath>

#include "color/apply_gains.h"
#include "color/chromaticity.h"
#include "color/locus.h"
#include "lut/sample_luts.h"
#include "panels.h"

namespace quarnel {
namespace {

using test::FreshState;

struct Solved {
    GainSolverState state;
    GainRequest request;
};

Solved Solve(GainRequest r) {
    Solved out{FreshState(), r};
    CalcGain(out.state, &out.request);
    return out;
}

void ExpectNativeFallback(const Solved& s) {
    EXPECT_EQ(s.request.gain[0], 1.0);
    EXPECT_EQ(s.request.gain[1], 1.0);
    EXPECT_EQ(s.request.gain[2], 1.0);
    EXPECT_EQ(s.state.targetX, s.state.point[kWhite].x);
    EXPECT_EQ(s.state.targetY, s.state.point[kWhite].y);
    EXPECT_EQ(s.state.lumChangePct, 0.0);
    EXPECT_EQ(s.state.lumFloor, 0.0);
    EXPECT_EQ(s.state.resultY, s.request.primaryXyz[kWhite][1]);
    EXPECT_EQ(s.request.errorFlags, 0u);
}

TEST(CalcGain, NullRequestSetsExactlyOne) {
    GainSolverState s = FreshState();
    s.flags = 0xFFFF;
    CalcGain(s, nullptr);
    EXPECT_EQ(s.flags, kGainNullRequest);
}

GainRequest Daylight(GainRequest r, int32_t kelvin) {
    r.targetMode = kTargetAbsoluteCct;
    r.targetCct = kelvin;
    r.locus = kLocusDaylight;
    return r;
}

TEST(CalcGain, EachFailureFallsBackToNativeWithItsStatus) {
    struct Case {
        const char* name;
        GainRequest request;
        uint32_t flags;
    } cases[] = {
        {"zero white Y",
         [] {
             auto r = Daylight(test::SrgbPanel(), 6500);
             r.primaryXyz[kWhite][1] = 0.0;
             return r;
         }(),
         kGainZeroSum | kGainFellBack},
        {"zero primaries Y",
         [] {
             auto r = Daylight(test::SrgbPanel(), 6500);
             for (int row = kRed; row <= kBlue; ++row) r.primaryXyz[row][1] = 0.0;
             return r;
         }(),
         kGainZeroSum | kGainFellBack},
        // the reddened white also lies beyond the reported temperatures
        {"native outside",
         [] {
             auto r = Daylight(test::SrgbPanel(), 6500);
             r.primaryXyz[kWhite][0] = 5.0;
             return r;
         }(),
         kGainNativeOutside | kGainCctAbove | kGainFellBack},
        {"unknown mode",
         [] {
             auto r = Daylight(test::SrgbPanel(), 6500);
             r.targetMode = 3;
             return r;
         }(),
         kGainUnknownTargetMode | kGainFellBack},
        {"floor at native",
         [] {
             auto r = Daylight(test::SrgbPanel(), 9300);
             r.lumMode = 2;
             return r;
         }(),
         kGainFloorClamped | kGainFellBack},
        {"floor above native",
         [] {
             auto r = Daylight(test::SrgbPanel(), 9300);
             r.lumMode = 3;
             r.lumDrop = -5.0;
             return r;
         }(),
         kGainFloorClamped | kGainFellBack},
        // the only locus point at the native temperature lies outside the small triangle
        {"walk meets native",
         [] {
             auto r = test::GreenishPanel();
             r.targetMode = kTargetNativeOffset;
             r.locus = kLocusOffsetDaylight;
             return r;
         }(),
         kGainWalkStep | kGainFellBack},
        {"walk out of steps", Daylight(test::GreenishPanel(), 13000),
         kGainWalkStep | kGainWalkExhausted | kGainFellBack},
    };
    for (auto& tc : cases) {
        tc.request.warnFlags = 0xFFFFu;
        tc.request.errorFlags = 7;
        const Solved s = Solve(tc.request);
        EXPECT_EQ(s.request.warnFlags, tc.flags) << tc.name;
        EXPECT_EQ(s.state.flags, tc.flags) << tc.name;
        ExpectNativeFallback(s);
    }
}

TEST(CalcGain, WalkFailureLeavesTheNativeTemperature) {
    auto r = test::GreenishPanel();
    r.targetMode = kTargetNativeOffset;
    const Solved s = Solve(r);
    EXPECT_EQ(s.state.cct, s.state.nativeCct);
}

TEST(CalcGain, NativeOffsetZeroTargetsTheLocusNotTheNativeWhite) {
    for (uint32_t locus : {kLocusPlanckian, kLocusDaylight, kLocusOffsetDaylight}) {
        GainRequest r = test::SrgbPanel();
        r.targetMode = kTargetNativeOffset;
        r.locus = locus;
        const Solved s = Solve(r);
        ASSERT_EQ(s.request.warnFlags, 0u) << locus;
        GainSolverState scratch;
        Xy expected{};
        LocusXy(scratch, locus, s.state.nativeCct, expected);
        EXPECT_EQ(s.state.targetX, expected.x);
        EXPECT_EQ(s.state.targetY, expected.y);
        EXPECT_NE(s.state.targetX, s.state.point[kWhite].x);
    }
}

TEST(CalcGain, UnknownLocusPlacesOnOffsetDaylight) {
    GainRequest r = Daylight(test::SrgbPanel(), 8000);
    r.locus = 9;
    const Solved unknown = Solve(r);
    r.locus = kLocusOffsetDaylight;
    const Solved offset = Solve(r);
    EXPECT_EQ(unknown.request.warnFlags, kGainUnknownLocus);
    EXPECT_EQ(unknown.state.targetX, offset.state.targetX);
    EXPECT_EQ(unknown.state.targetY, offset.state.targetY);
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

TEST(CalcGain, NegativeFloorCountsAsNone) {
    GainRequest r = Daylight(test::SrgbPanel(), 9300);
    r.lumMode = 3;
    r.lumDrop = 1000.0;
    const Solved s = Solve(r);
    EXPECT_EQ(s.request.warnFlags, kGainFloorClamped);
    EXPECT_EQ(s.state.lumFloor, 0.0);
}

TEST(CalcGain, PerceptualFloorUsesTheFixedDifference) {
    GainRequest r = Daylight(test::SrgbPanel(300.0), 6600);
    r.lumMode = 1;
    const Solved s = Solve(r);
    EXPECT_DOUBLE_EQ(s.state.lumFloor, std::pow(std::pow(300.0, 0.4) - 0.4926083119608702, 2.5));
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

TEST(CalcGain, FloorJustBelowNativeEndsAtNative) {
    GainRequest r = Daylight(test::SrgbPanel(300.0), 11000);
    r.lumMode = 2;
    r.lumPercent = 0.001;
    const Solved s = Solve(r);
    EXPECT_EQ(s.request.warnFlags & (kGainFellBack | kGainFloorClamped), kGainFellBack);
    ExpectNativeFallback(s);
}

TEST(CalcGain, AppliesTheGainsToTheRequestedLut) {
    const Lut16 src = test::PanelLikeLut();
    for (int32_t kelvin : {9300, 6500}) {
        Lut16 dst{};
        GainRequest r = Daylight(test::SrgbPanel(), kelvin);
        if (kelvin == 6500) r.targetMode = 5;  // falls back: unit gains
        r.srcLut = src.data();
        r.dstLut = dst.data();
        const Solved s = Solve(r);
        Lut16 expected{};
        ApplyGainsToLut(src.data(), s.request.gain, expected.data());
        EXPECT_EQ(dst, expected) << kelvin;
    }
}

}  // namespace
}  // namespace quarnel
