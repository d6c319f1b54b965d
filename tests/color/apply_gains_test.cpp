#include "color/apply_gains.h"

#include <gtest/gtest.h>

#include <limits>

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

TEST(ApplyGainsToLut, ReadsTheBaseAtTheHalfUpScaledLevel) {
    const Lut16 src = test::PanelLikeLut();
    const Lut16 out = Applied({1.0, 0.5, 0.0});
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(At(out, 0, i), At(src, 0, i));
        EXPECT_EQ(At(out, 1, i), At(src, 1, (i + 1) / 2));  // half-up of i / 2
        EXPECT_EQ(At(out, 2, i), At(src, 2, 0));
    }
}

TEST(ApplyGainsToLut, KeepsOutOfRangeIndicesInsideThePlane) {
    const Lut16 src = test::PanelLikeLut();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Lut16 out = Applied({1.05, -0.5, nan});
    EXPECT_EQ(At(out, 0, 242), At(src, 0, 254));
    for (int i = 243; i < 256; ++i) EXPECT_EQ(At(out, 0, i), At(src, 0, 255)) << i;
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(At(out, 1, i), At(src, 1, 0));
        EXPECT_EQ(At(out, 2, i), At(src, 2, 0));
    }
}

TEST(ApplyGainsToLut, WorksInPlace) {
    Lut16 lut = test::PanelLikeLut();
    const double gain[3] = {0.9, 0.7, 0.4};
    ApplyGainsToLut(lut.data(), gain, lut.data());
    EXPECT_EQ(lut, Applied({0.9, 0.7, 0.4}));
}

TEST(BlendGains, MixesClampsAndReportsTheLargestGain) {
    const double a[3] = {1.0, 0.75, 0.5};
    const double b[3] = {0.5, 0.25, 1.0};
    struct Case {
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

}  // namespace
}  // namespace quarnel
