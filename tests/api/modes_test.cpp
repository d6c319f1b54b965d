// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "lut/sample_luts.h"
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

TEST(VxModes, Mode26IsTheVividMode) {
    auto a = Ready(), b = Ready();
    test::CaptureStdout([&] { EXPECT_EQ(CCTAPI_VX(3, a.get(), nullptr) + CCTAPI_VX(26, b.get(), nullptr), 0); });
    EXPECT_TRUE(Same(a.get(), b.get(), sizeof *a));
}

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

TEST(GetLut, GainFlagSolvesTheNormalGainsFromTheBiosTable) {
    const double srgb[4][3] = {
        {41.24, 21.26, 1.93}, {35.76, 71.52, 11.92}, {18.05, 7.22, 95.05}, {95.05, 100.0, 108.9}};
    for (uint32_t code : {2u, 0x42u, 0xC2u}) {
        auto ctx = Ready();
        std::memcpy(ctx->bios, srgb, sizeof srgb);
        const std::string printed = test::CaptureStdout([&] { EXPECT_EQ(CCTAPI(code, ctx.get()), 0); });
        const bool solved = (code & 0x40) != 0;
        EXPECT_EQ(printed.find("; VOK: DEF Gain E(0) W(") != std::string::npos, solved);
        EXPECT_EQ(Same(ctx->gainNormal, Ready()->gainNormal, sizeof ctx->gainNormal), !solved);
    }
}

}  // namespace
}  // namespace quarnel
