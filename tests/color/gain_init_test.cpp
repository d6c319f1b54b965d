// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "color/apply_gains.h"
#include "color/check_gain.h"
#include "color/panels.h"
#include "color/reading_targets.h"
#include "color/slider.h"
#include "color/theater.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

TEST(CalcReadingTargets, WeakAndStrongLieOnTheReadingLine) {
    const Xy a = kReadingLineStart, b = kReadingLineEnd;
    const double len = std::hypot(b.x - a.x, b.y - a.y);
    const Xy u{(b.x - a.x) / len, (b.y - a.y) / len};
    const auto at = [&](double along, double across) {
        return Xy{a.x + along * u.x - across * u.y, a.y + along * u.y + across * u.x};
    };
    const struct {
        const char* name;
        Xy current;
        double weak;  // distance of the weak white from A along the line
    } cases[] = {
        {"bluer than A by more than 0.005", {a.x - 0.0051, 0.5}, 0.0},
        {"at A", a, 0.005},
        {"half way, off the line", at(len / 2, 0.01), len / 2 + 0.005},
        {"just behind A", at(-0.004, 0), 0.005},
        {"0.006 behind A", at(-0.006, 0), 0.0},
        {"beyond B", at(2 * len, 0), 2 * len + 0.005},
    };
    for (const auto& tc : cases) {
        ReadingTargets t;
        CalcReadingTargets(tc.current, a, b, t);
        EXPECT_NEAR(t.weak.x, a.x + tc.weak * u.x, 1e-12) << tc.name;
        EXPECT_NEAR(t.weak.y, a.y + tc.weak * u.y, 1e-12) << tc.name;
        EXPECT_NEAR(t.strong.x, a.x + (tc.weak + len) * u.x, 1e-12) << tc.name;
        EXPECT_NEAR(t.strong.y, a.y + (tc.weak + len) * u.y, 1e-12) << tc.name;
    }
    ReadingTargets kept{{1.0, 2.0}, {3.0, 4.0}};
    CalcReadingTargets({0.4, 0.4}, a, a, kept);
    EXPECT_EQ(kept.weak.y + kept.strong.x, 5.0);
}

TEST(CheckGain, RaisesLowGainsToTheMinimumOutput) {
    Lut16 identity, dark;
    FillIdentity(identity.data());
    dark.fill(127 * kLutStep);
    const struct {
        const Lut16* base;
        int32_t lutApiType;
        double gain, expected;
    } cases[] = {
        {&identity, 0, 0.3, 102 / 255.0},
        {&identity, 1, 101 / 255.0, 102 / 255.0},
        {&identity, 4, 0.4, 0.4},
        {&identity, 2, 0.3, 128 / 255.0},
        {&identity, 3, 127 / 255.0, 128 / 255.0},
        {&identity, 5, 0.5, 0.5},
        {&identity, 0, -0.5, 102 / 255.0},
        {&identity, 0, 1.0, 1.0},
        {&dark, 0, 0.3, 0.3},
        {&dark, 2, 0.3, 1.0},
        {&dark, 7, 1.0, 1.0},
    };
    for (const auto& tc : cases) {
        double g[3] = {tc.gain, 1.0, tc.gain};
        CheckGain(g, tc.base->data(), tc.lutApiType);
        EXPECT_EQ(g[0], tc.expected) << tc.gain << " type " << tc.lutApiType;
        EXPECT_EQ(g[2], tc.expected) << tc.gain << " type " << tc.lutApiType;
        EXPECT_EQ(g[1], 1.0);
    }
}

// Ramps that tell the three base LUTs apart.
CctContext GainContext(int32_t fromBios, int32_t gammaK) {
    CctContext ctx{};
    FillIdentity(&ctx.oriLut[0][0]);
    for (int i = 0; i < kLutEntries; ++i) (&ctx.gammaLut[0][0])[i] = static_cast<uint16_t>((&ctx.oriLut[0][0])[i] / 2);
    ctx.fromBios = fromBios;
    ctx.gammaK = gammaK;
    return ctx;
}

Lut16 Applied(const uint16_t* base, const double gain[3]) {
    Lut16 out;
    ApplyGainsToLut(base, gain, out.data());
    return out;
}

TEST(BuildSliderLut, BlendsTheNormalGainsTowardTheWarmOrColdEnd) {
    const double normal[3] = {0.9, 0.8, 1.0}, warm[3] = {1.0, 0.7, 0.45}, cold[3] = {0.6, 0.9, 1.0};
    const double unit[3] = {1.0, 1.0, 1.0}, halfWarm[3] = {0.95, 0.75, 0.725};
    const struct {
        double interval;
        int32_t fromBios, gammaK;
        const double* gain;
        bool fromGammaLut;
    } cases[] =
        {
            {0.4, 1, 0, normal, false}, {1.6, 1, 0, normal, false}, {1.0, 1, 1, normal, true},
            {0.5, 1, 0, warm, false},   {1.5, 1, 1, cold, true},    {0.75, 0, 1, halfWarm, false},
            {0.4, 0, 1, unit, false},  // no factory data: oriLut as it stands
        };
    for (const auto& tc : cases) {
        CctContext ctx = GainContext(tc.fromBios, tc.gammaK);
        std::copy_n(normal, 3, ctx.gainNormal);
        std::copy_n(warm, 3, ctx.gainWarm);
        std::copy_n(cold, 3, ctx.gainCold);
        ctx.interval = tc.interval;
        EXPECT_EQ(BuildSliderLut(ctx), 0);
        const Lut16 expected = Applied(tc.fromGammaLut ? &ctx.gammaLut[0][0] : &ctx.oriLut[0][0], tc.gain);
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), &ctx.outLut[0][0])) << tc.interval;
    }
}

TEST(BuildTheaterLut, BoostsByFivePercentAndSaturatesFrom243) {
    CctContext ctx = GainContext(1, 1);  // a zero bios table: the solve falls back to unit gains
    EXPECT_EQ(BuildTheaterLut(ctx), 0);
    for (int c = 0; c < kLutPlanes; ++c) {
        EXPECT_EQ(ctx.outLut[c][100], ctx.gammaLut[c][105]);
        EXPECT_EQ(ctx.outLut[c][242], ctx.gammaLut[c][254]);
        for (int i = 243; i < kLutLevels; ++i) EXPECT_EQ(ctx.outLut[c][i], ctx.gammaLut[c][255]) << i;
    }
    const GainRequest panel = test::SrgbPanel();  // without factory data the icc rows are solved
    ctx = GainContext(0, 1);
    std::copy_n(&panel.primaryXyz[0][0], 12, &ctx.icc[0][0]);
    BuildTheaterLut(ctx);
    EXPECT_EQ(ctx.outLut[0][243], ctx.oriLut[0][255]);  // red limits this warm white
    EXPECT_LT(ctx.outLut[2][255], ctx.oriLut[2][230]);
}

}  // namespace
}  // namespace quarnel
