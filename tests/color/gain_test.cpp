// SPDX-License-Identifier: MIT
#include "color/calc_gain.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "color/apply_gains.h"
#include "lut/sample_luts.h"
#include "panels.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::Row;

Lut16 Applied(const double (&gain)[3], Lut16 lut = test::PanelLikeLut()) {
    ApplyGainsToLut(lut.data(), gain, lut.data());  // in place
    return lut;
}

std::string Rows(const Lut16& lut) {
    std::string text;
    for (int i = 0; i < kLutLevels; ++i) text += Row(i, lut[LutIndex(0, i)], lut[LutIndex(1, i)], lut[LutIndex(2, i)]);
    return text;
}

TEST(ApplyGainsToLut, ReadsTheBaseAtTheHalfUpScaledLevel) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    test::ExpectGolden("apply_gains.txt", Rows(Applied({1.0, 0.5, 0.0})) + Rows(Applied({1.05, -0.5, nan})));
    const Lut16 src = test::PanelLikeLut();
    Lut16 dst{};
    const double gain[3] = {0.9, 0.7, 0.4};
    ApplyGainsToLut(src.data(), gain, dst.data());
    EXPECT_EQ(dst, Applied({0.9, 0.7, 0.4}));
}

TEST(BlendedGains, MixesClampsAndReportsTheLargestGain) {
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
        ApplyGainsToLut(src.data(), BlendedGains(s, tc.t, a, b).data(), dst.data());
        EXPECT_EQ(std::tuple(s.flags, s.gamma, s.maxGain, dst),
                  std::tuple(tc.flags, 2.2, std::max({tc.gain[0], tc.gain[1], tc.gain[2]}), Applied(tc.gain)))
            << tc.t;
    }
}

GainRequest Daylight(GainRequest r, int32_t kelvin) {
    r.targetMode = kTargetAbsoluteCct, r.targetCct = kelvin, r.locus = kLocusDaylight;
    return r;
}

// Each request starts as sRGB primaries with a 6500 K daylight target.
TEST(CalcGain, FailuresFallbacksLociWalksAndFloors) {
    const struct {
        const char* name;
        void (*change)(GainRequest&);
    } cases[] = {
        {"plain", [](GainRequest&) {}},
        {"zero white Y", [](GainRequest& r) { r.primaryXyz[kWhite][1] = 0.0; }},
        {"zero primaries Y",
         [](GainRequest& r) { r.primaryXyz[kRed][1] = r.primaryXyz[kGreen][1] = r.primaryXyz[kBlue][1] = 0.0; }},
        {"native outside", [](GainRequest& r) { r.primaryXyz[kWhite][0] = 5.0; }},
        {"unknown mode", [](GainRequest& r) { r.targetMode = 3; }},
        {"floor at native", [](GainRequest& r) { r.targetCct = 9300, r.lumMode = 2; }},
        {"floor above native", [](GainRequest& r) { r.targetCct = 9300, r.lumMode = 3, r.lumDrop = -5.0; }},
        {"negative floor", [](GainRequest& r) { r.targetCct = 9300, r.lumMode = 3, r.lumDrop = 1000.0; }},
        {"perceptual floor", [](GainRequest& r) { r.targetCct = 6600, r.lumMode = 1; }},
        {"floor just below native", [](GainRequest& r) { r.targetCct = 11000, r.lumMode = 2, r.lumPercent = 0.001; }},
        {"free of a floor", [](GainRequest& r) { r.targetCct = 11000; }},
        {"floor moves the target", [](GainRequest& r) { r.targetCct = 11000, r.lumMode = 2, r.lumPercent = 10.0; }},
        {"walk meets native",  // the only locus point at the native temperature lies outside the small triangle
         [](GainRequest& r) {
             r = test::GreenishPanel(), r.targetMode = kTargetNativeOffset, r.locus = kLocusOffsetDaylight;
         }},
        {"walk out of steps", [](GainRequest& r) { r = Daylight(test::GreenishPanel(), 13000); }},
        {"walk fails, native kept",
         [](GainRequest& r) { r = test::GreenishPanel(), r.targetMode = kTargetNativeOffset; }},
        {"offset 0 planckian", [](GainRequest& r) { r.targetMode = kTargetNativeOffset, r.locus = kLocusPlanckian; }},
        {"offset 0 daylight", [](GainRequest& r) { r.targetMode = kTargetNativeOffset; }},
        {"offset 0 offset daylight",
         [](GainRequest& r) { r.targetMode = kTargetNativeOffset, r.locus = kLocusOffsetDaylight; }},
        {"offset 0 unknown locus", [](GainRequest& r) { r.targetMode = kTargetNativeOffset, r.locus = 9; }},
        {"green corner walks in",
         [](GainRequest& r) { r.targetMode = kTargetChromaticity, r.targetX = 0.30, r.targetY = 0.60, r.locus = 2; }},
        {"9300 K", [](GainRequest& r) { r.targetCct = 9300; }},
        {"limiting gain set to 1, not computed",
         [](GainRequest& r) {
             r = Daylight(test::Panel({0.66, 0.32, 55}, {0.31, 0.61, 210}, {0.15, 0.06, 20}), 6500);
         }},
        {"fallback mode 5", [](GainRequest& r) { r.targetCct = 9300, r.targetMode = 5; }},
        {"native white beyond 13000 K",
         [](GainRequest& r) {
             test::SetRow(r, kWhite, {0.26, 0.27, 300.0});
         }},
        {"red summing to 0",
         [](GainRequest& r) { r.primaryXyz[kRed][2] = -r.primaryXyz[kRed][0] - r.primaryXyz[kRed][1]; }},
    };
    std::string text;
    const Lut16 src = test::PanelLikeLut();
    for (const auto& tc : cases) {
        GainRequest r = Daylight(test::SrgbPanel(), 6500);
        tc.change(r);
        r.warnFlags = 0xFFFFu, r.errorFlags = 7;
        Lut16 dst{};
        r.srcLut = src.data(), r.dstLut = dst.data();
        GainSolverState s = test::FreshState();
        CalcGain(s, &r);
        text += Row("==", tc.name, "flags", r.warnFlags, s.flags, r.errorFlags, "applied", dst == Applied(r.gain)) +
                Row("gain", r.gain[0], r.gain[1], r.gain[2], "max", s.maxGain, "at 1",
                    std::count(r.gain, r.gain + 3, 1.0)) +
                Row("target", s.targetX, s.targetY, "native", s.point[kWhite].x, s.point[kWhite].y) +
                Row("cct", s.cct, s.nativeCct, "Y", s.nativeY, s.resultY, s.lumFloor, s.lumChangePct);
    }
    GainSolverState s = test::FreshState();
    s.flags = 0xFFFF;
    CalcGain(s, nullptr);
    test::ExpectGolden("calc_gain.txt", text + Row("null request", s.flags));
}

}  // namespace
}  // namespace quarnel
