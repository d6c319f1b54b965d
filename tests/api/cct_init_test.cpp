// SPDX-License-Identifier: MIT
#include "api/cct_init.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "calib/block_writer.h"
#include "calib/fake_acpi_device.h"
#include "calib/fake_display_system.h"
#include "color/calc_gain.h"
#include "core/lut16.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

using Gains = std::array<double, 3>;

constexpr double kDefaultIcc[4][3] = {
    {0.43607, 0.22249, 0.01392}, {0.38515, 0.71687, 0.09708}, {0.14307, 0.06061, 0.7141}, {0.95045, 1.0, 1.08905}};

// One solve on `rows`: toward the chromaticity (x, y), or toward x kelvin when y is 0.
Gains Solved(const double rows[4][3], double x, double y = 0, uint32_t lumMode = kFloorNone, int32_t* cct = nullptr) {
    GainRequest r{.targetMode = y == 0 ? kTargetAbsoluteCct : kTargetChromaticity,
                  .targetX = x,
                  .targetY = y,
                  .targetCct = static_cast<int32_t>(x),
                  .locus = kLocusOffsetDaylight,
                  .lumMode = lumMode};
    std::copy_n(&rows[0][0], 12, &r.primaryXyz[0][0]);
    GainSolverState s;
    s.gamma = kSolverGamma;
    CalcGain(s, &r);
    if (cct != nullptr) *cct = s.cct;
    return {r.gain[0], r.gain[1], r.gain[2]};
}

class CctInit : public ::testing::Test {
protected:
    int32_t Run() {
        FillIdentity(&ctx_.oriLut[0][0]);
        int32_t status = 0;
        printed_ = test::CaptureStdout([&] { status = CCT_Init(ctx_, false); });
        return status;
    }

    test::TempDir dir_;
    std::string folder_ = dir_.path().string() + "/";
    test::FakeDisplaySystem display_;
    platform::ScopedDisplaySystem displayScope_{display_};
    test::FakeAcpiDevice device_;  // never answers: the firmware block reads as unusable
    test::DebugCapture debug_;
    CctContext ctx_{};
    std::string printed_;
};

TEST_F(CctInit, UnusableIccIsReplacedEvenWhenThePanelIndexIsRejected) {
    for (int32_t panel : {2, -1, 0}) {
        ctx_.panelIndex = panel;
        ctx_.icc[1][2] = -0.1;
        EXPECT_EQ(Run(), panel == 0 ? -2 : -5);
        EXPECT_TRUE(std::equal(&kDefaultIcc[0][0], &kDefaultIcc[0][0] + 12, &ctx_.icc[0][0])) << panel;
        EXPECT_EQ(std::to_array(ctx_.gainNormal), (panel == 0 ? Gains{1, 1, 1} : Gains{0, 0, 0}));
    }
    EXPECT_EQ(debug_.messages()[1], L"VOK: Enter CCT_Init()\n");  // -5 returns at once
    EXPECT_NE(debug_.joined().find(L"VOK: No Factory Calibration Data\nVOK: Calculate Warm gain\n"),
              std::wstring::npos);
    EXPECT_NE(debug_.joined().find(L"Read mode gain\nVOK: Check gain\nVOK: Exit  CCT_Init()\n"), std::wstring::npos);
    EXPECT_EQ(printed_.find("; VOK:"), std::string::npos);
    EXPECT_NE(printed_.find("CCTAPI_ERRORCODE = -2\n"), std::string::npos);
    EXPECT_EQ(std::to_array(ctx_.gainWarm), Solved(kDefaultIcc, 6504 - 1000));  // either side of the native white
    EXPECT_EQ(std::to_array(ctx_.gainCold), Solved(kDefaultIcc, 6504 + 1000));
}

TEST_F(CctInit, VersionThreeBlockSolvesTowardTheOldDefaultWhite) {
    test::WriteFile(dir_ / "panel.bin", test::AsString(test::WriteBlock({.version = 3})));
    ctx_.enableUserK = 1;
    ctx_.kalzenPath = folder_.c_str();
    ctx_.kalzenFilename = "panel.bin";
    EXPECT_EQ(Run(), -2);  // the zero icc table is replaced, but the factory table is what is solved
    int32_t cct = 0;
    EXPECT_EQ(std::to_array(ctx_.gainNormal), Solved(ctx_.bios, 0.304670011, 0.304670011, kFloorPerceptual, &cct));
    EXPECT_EQ(std::to_array(ctx_.gainWarm), Solved(ctx_.bios, cct - 1000));
    EXPECT_EQ(std::to_array(ctx_.gainCold), Solved(ctx_.bios, cct + 1000));
    EXPECT_NE(printed_.find("CCTAPI_ERRORCODE = -2\n; VOK: DEF Gain E(0) W(0)\n; VOK: Warm Gain E(0) W("),
              std::string::npos);
}

}  // namespace
}  // namespace quarnel
