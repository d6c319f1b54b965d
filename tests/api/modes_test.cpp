// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "lut/sample_luts.h"
#include "platform/fake_acpi_device.h"
#include "platform/fake_display_system.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

std::unique_ptr<CctContext> Ready() {
    auto ctx = std::make_unique<CctContext>();
    std::memcpy(ctx->oriLut, test::PanelLikeLut().data(), sizeof ctx->oriLut);
    ctx->rdLevels = 3.0;
    for (int c = 0; c < 3; ++c)
        ctx->gainNormal[c] = 1.0 - 0.05 * c, ctx->gainReadWeak[c] = 0.9 - 0.1 * c,
        ctx->gainReadStrong[c] = 0.6 - 0.2 * c;
    return ctx;
}

bool Same(const void* a, const void* b, std::size_t n) { return std::memcmp(a, b, n) == 0; }

TEST(VxModes, UnknownModesAndMissingCurvesTouchNothing) {
    const Lut16 identity = test::IdentityLut();
    const std::wstring enter = L"; VOK: Enter CCTAPI_VX()\n";
    for (int32_t mode : {-1, 0, 1, 2, 4, 12, 20, 21, 23, 25, 27, 9999}) {
        const bool curveMode = mode >= 21 && mode <= 25;
        auto ctx = Ready();
        test::DebugCapture debug;
        EXPECT_EQ(CCTAPI_VX(mode, ctx.get(), curveMode ? nullptr : identity.data()), curveMode ? -7 : -1);
        EXPECT_TRUE(Same(ctx.get(), Ready().get(), sizeof *ctx)) << mode;
        EXPECT_EQ(debug.joined(), curveMode ? enter : enter + L"; VOK: Invalid Mode!!!\n; VOK: Exit  CCTAPI_VX()\n");
    }
}

TEST(ReadingMulti, RdIndexIsTheMixingPositionAndResetsWhenOutside) {
    auto weak = Ready(), strong = Ready();
    test::CaptureStdout([&] { ASSERT_EQ(CCTAPI(6, weak.get()) + CCTAPI(5, strong.get()), 0); });
    const struct {
        double index, stored;
        const CctContext* like;
    } cases[] = {{-1.0, 0.0, weak.get()},  {0.0, 0.0, weak.get()}, {1.0, 1.0, strong.get()},
                 {2.0, 2.0, strong.get()}, {2.5, 0.0, weak.get()}, {NAN, NAN, weak.get()}};
    for (const auto& tc : cases) {
        auto ctx = Ready();
        ctx->rdIndex = tc.index;
        const std::string printed = test::CaptureStdout([&] { EXPECT_EQ(CCTAPI(7, ctx.get()), 0); });
        EXPECT_TRUE(ctx->rdIndex == tc.stored || (std::isnan(ctx->rdIndex) && std::isnan(tc.stored))) << tc.index;
        EXPECT_TRUE(Same(ctx->outLut, tc.like->outLut, sizeof ctx->outLut)) << tc.index;
        EXPECT_NE(printed.find("GetReadingModeMultiLUT  outGain = "), std::string::npos);
    }
}

// An unusable icc table gives way to the default even when the panel index is refused.
TEST(InitGain, UnusableIccIsReplacedEvenWhenThePanelIndexIsRejected) {
    static constexpr double kDefaultIcc[12] = {0.43607, 0.22249, 0.01392, 0.38515, 0.71687, 0.09708,
                                               0.14307, 0.06061, 0.7141,  0.95045, 1.0,     1.08905};
    test::FakeDisplaySystem displays;
    platform::ScopedDisplaySystem scope{displays};
    test::FakeAcpiDevice firmware;  // never answers: no factory data
    for (int32_t panel : {2, -1, 0}) {
        auto ctx = std::make_unique<CctContext>();
        ctx->panelIndex = panel;
        ctx->icc[1][2] = -0.1;
        test::CaptureStdout([&] { EXPECT_EQ(CCTAPI(1, ctx.get()), panel == 0 ? -2 : -5); });
        EXPECT_TRUE(std::equal(kDefaultIcc, kDefaultIcc + 12, &ctx->icc[0][0])) << panel;
        EXPECT_EQ(ctx->gainNormal[0] + ctx->gainNormal[1] + ctx->gainNormal[2], panel == 0 ? 3.0 : 0.0) << panel;
    }
}

}  // namespace
}  // namespace quarnel
