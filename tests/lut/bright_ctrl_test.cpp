// SPDX-License-Identifier: MIT
#include "lut/bright_ctrl.h"

#include <gtest/gtest.h>

#include <array>

#include "lut/sample_luts.h"
#include "support/capture.h"

namespace quarnel {
namespace {

using Entry = std::array<uint16_t, 3>;

Entry At(const Lut16& lut, int i) { return {lut[LutIndex(0, i)], lut[LutIndex(1, i)], lut[LutIndex(2, i)]}; }

Lut16 Brighten(Lut16 lut, uint32_t type, double scale) {
    test::CaptureStdout([&] { EXPECT_EQ(LutBrightCtrl(lut.data(), type, scale), 0); });
    return lut;
}

TEST(LutBrightCtrl, FullScaleLeavesTheLutAsItIs) {
    for (uint32_t type : {0u, 3u, 4u})
        for (double scale : {1.0, 1.5}) EXPECT_EQ(Brighten(test::PanelLikeLut(), type, scale), test::PanelLikeLut());
}

// Expected entries worked out by hand from the green threshold search and the
// resampling factor (independent of the implementation).
TEST(LutBrightCtrl, ResamplesAPanelLut) {
    struct Case {
        uint32_t type;
        double scale;
        Entry e1, e100, e200, e255;
    } cases[] = {
        // green passes 0.2 of full scale first at 53: threshold 53/255, k = 0.60392...
        {0, 0.7, {193, 250, 260}, {12435, 15000, 15432}, {26923, 30250, 31103}, {35536, 38500, 39578}},
        // type 3 starts its search at 204: threshold 0.8, k = 0.9
        {3, 0.7, {193, 250, 260}, {19328, 22500, 23148}, {42705, 45000, 46275}, {57443, 57500, 59128}},
    };
    for (const auto& tc : cases) {
        const Lut16 out = Brighten(test::PanelLikeLut(), tc.type, tc.scale);
        EXPECT_EQ(At(out, 0), (Entry{0, 0, 0}));
        EXPECT_EQ(At(out, 1), tc.e1) << tc.type;
        EXPECT_EQ(At(out, 100), tc.e100) << tc.type;
        EXPECT_EQ(At(out, 200), tc.e200) << tc.type;
        EXPECT_EQ(At(out, 255), tc.e255) << tc.type;
    }
}

TEST(LutBrightCtrl, QcomThresholdFoundAt210) {
    Lut16 lut = test::IdentityLut();
    for (int i = 0; i < 256; ++i) lut[LutIndex(1, i)] = static_cast<uint16_t>(i < 210 ? 13000 : 40000);
    const Lut16 out = Brighten(lut, 3, 0.7);
    // threshold 210/255 gives k = 0.9118, and 255 x k + 0.5 = 233.0 exactly
    EXPECT_EQ(out[LutIndex(0, 255)], 233 * 256);
}

TEST(LutBrightCtrl, QcomLiftsADimPeak) {
    Lut16 lut{};
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 256; ++i) lut[LutIndex(c, i)] = static_cast<uint16_t>(i * 256 * 4 / 10);
    // smallest top entry 26112 = 0.4 of full scale: every value x 1.375, capped
    const Lut16 out = Brighten(lut, 3, 1.0);
    EXPECT_EQ(out[LutIndex(0, 100)], static_cast<uint16_t>(10240 * 1.375));
    EXPECT_EQ(out[LutIndex(2, 255)], 35904);

    const Lut16 dim = [] {
        Lut16 d = test::PanelLikeLut();
        for (auto& v : d) v = static_cast<uint16_t>(v * 3 / 10);
        return d;
    }();
    const Lut16 lifted = Brighten(dim, 3, 0.5);
    EXPECT_EQ(At(lifted, 1), (Entry{130, 171, 178}));
    EXPECT_EQ(At(lifted, 200), (Entry{26831, 28666, 29481}));
    EXPECT_EQ(At(lifted, 255), (Entry{35904, 36563, 37593}));
}

TEST(LutBrightCtrl, ZeroPeakSaturatesNonZeroAndKeepsZero) {
    Lut16 lut = test::IdentityLut();
    for (int i = 0; i < 256; ++i) lut[LutIndex(1, i)] = 0;
    const Lut16 out = Brighten(lut, 3, 1.0);
    for (int i = 1; i < 256; ++i) {
        ASSERT_EQ(At(out, i), (Entry{65280, 0, 65280})) << i;
    }
    EXPECT_EQ(At(out, 0), (Entry{0, 0, 0}));
}

TEST(LutBrightCtrl, NegativeIndexReadsTheFirstEntry) {
    Lut16 lut{};
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 256; ++i) lut[LutIndex(c, i)] = static_cast<uint16_t>(100 + c + i);
    // dark LUT keeps the 0.1 threshold; scale 0 gives k = -0.5
    const Lut16 out = Brighten(lut, 0, 0.0);
    for (int i = 0; i < 256; ++i) ASSERT_EQ(At(out, i), (Entry{100, 101, 102})) << i;
}

TEST(LutBrightCtrl, ReportsOnBothChannels) {
    Lut16 lut = test::IdentityLut();
    test::DebugCapture debug;
    const std::string printed = test::CaptureStdout([&] { LutBrightCtrl(lut.data(), 3, 0.25); });
    EXPECT_EQ(printed, "scale: 0.250000, Scale TH: 0.800000, nIndex: 204\n");
    EXPECT_EQ(debug.joined(), L"; VOK: ##Enter LutBrightCtrl()##\n; VOK: ##Exit  LutBrightCtrl()##\n");
}

}  // namespace
}  // namespace quarnel
