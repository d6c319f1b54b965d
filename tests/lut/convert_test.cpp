// SPDX-License-Identifier: MIT
#include "lut/convert.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "lut/sample_luts.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

struct Outputs {
    Lut16 lut;
    std::vector<double> igcl = std::vector<double>(768, -7.0);
    std::vector<float> nv = std::vector<float>(6144, -7.0f);

    explicit Outputs(const Lut16& in) : lut(in) {}
    int32_t Run(int32_t type) {
        int32_t status = 0;
        test::CaptureStdout(
            [&] { status = LutConvert(type, lut.data(), lut.data(), 256, igcl.data(), 256, nv.data(), 1024); });
        return status;
    }
    std::array<float, 3> Post(std::size_t j) const {
        return {nv[3072 + j * 3], nv[3072 + j * 3 + 1], nv[3072 + j * 3 + 2]};
    }
};

TEST(LutConvert, PlainTypesCopyTheLut) {
    for (int32_t type : {0, 5}) {
        Outputs out(test::PanelLikeLut());
        ASSERT_EQ(out.Run(type), 0);
        EXPECT_EQ(out.lut, test::PanelLikeLut());
        EXPECT_EQ(out.igcl[0], -7.0);
    }
}

// Entries of the panel LUT resampled through the sRGB encoding, worked out
// independently with the published sRGB curve.
TEST(LutConvert, SrgbTypeResamplesThroughTheEncoding) {
    Outputs out(test::PanelLikeLut());
    ASSERT_EQ(out.Run(1), 0);
    const struct {
        int level;
        std::array<uint16_t, 3> rgb;
    } cases[] = {{0, {0, 0, 0}},
                 {1, {2484, 3177, 3283}},
                 {10, {11496, 13939, 14334}},
                 {128, {44935, 46961, 48294}},
                 {254, {65140, 63640, 65425}},
                 {255, {65280, 63750, 65535}}};
    for (const auto& tc : cases)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(out.lut[LutIndex(c, tc.level)], tc.rgb[static_cast<std::size_t>(c)]) << tc.level << "/" << c;
}

TEST(LutConvert, NvidiaTypeWritesDecodeRampAndEncodedLut) {
    Outputs out(test::PanelLikeLut());
    ASSERT_EQ(out.Run(2), 0);
    EXPECT_EQ(out.lut, test::PanelLikeLut());
    EXPECT_EQ(out.nv[0], 0.0f);
    EXPECT_EQ(out.nv[1 * 3], 7.56592198740691e-05f);
    EXPECT_EQ(out.nv[42 * 3 + 1], 0.00317870220169425f);
    EXPECT_EQ(out.nv[500 * 3 + 2], 0.20378337800502777f);
    EXPECT_EQ(out.nv[1023 * 3], 1.0f);
    EXPECT_EQ(out.Post(0), (std::array<float, 3>{0.0f, 0.0f, 0.0f}));
    EXPECT_EQ(out.Post(1), (std::array<float, 3>{0.009485487826168537f, 0.012132307514548302f, 0.012537412345409393f}));
    EXPECT_EQ(out.Post(41), (std::array<float, 3>{0.1782103180885315f, 0.21590565145015717f, 0.2220296859741211f}));
    EXPECT_EQ(out.Post(500), (std::array<float, 3>{0.6785893440246582f, 0.7108422517776489f, 0.7309119701385498f}));
    EXPECT_EQ(out.Post(1023), (std::array<float, 3>{1.0f, 0.9765625f, 1.00390625f}));
}

TEST(LutConvert, IgclTypeDividesWithoutClamping) {
    Outputs out(test::PanelLikeLut());
    ASSERT_EQ(out.Run(4), 0);
    EXPECT_EQ(out.igcl[LutIndex(0, 255)], 1.0);
    EXPECT_EQ(out.igcl[LutIndex(2, 255)], 65535.0 / 65280.0);
    EXPECT_EQ(out.igcl[LutIndex(1, 100)], 25000.0 / 65280.0);
    EXPECT_EQ(out.lut, test::PanelLikeLut());
}

TEST(LutConvert, QcomReturnsAtOnceEvenWithNullPointers) {
    test::DebugCapture debug;
    EXPECT_EQ(LutConvert(3, nullptr, nullptr, 0, nullptr, 0, nullptr, 0), 0);
    EXPECT_EQ(debug.joined(), L"; VOK: ##Enter LutConvert()##\n; VOK: ##Exit  LutConvert()##\n");
}

TEST(LutConvert, FailuresLeaveOutputsUntouched) {
    Lut16 in = test::PanelLikeLut();
    Lut16 lut{};
    std::vector<double> igcl(768, -7.0);
    std::vector<float> nv(6144, -7.0f);
    const struct {
        int32_t type;
        bool nullIn, nullLut, nullIgcl, nullNv;
        int32_t status;
        const char* message;
    } cases[] = {
        {6, false, false, false, false, -6, "; VOK: Invalid lutApiType(6)!!!\n"},
        {-1, false, false, false, false, -6, "; VOK: Invalid lutApiType(-1)!!!\n"},
        {0, true, false, false, false, -7, "; VOK: Null input pointer \"inLut\"!!!\n"},
        {4, false, true, false, false, -7, "; VOK: Null input pointer \"outLut\"!!!\n"},
        {0, false, false, true, false, -7, "; VOK: Null input pointer \"outLut\"!!!\n"},
        {1, false, false, false, true, -7, "; VOK: Null input pointer \"outLut\"!!!\n"},
        {2, true, true, true, true, -7, "; VOK: Null input pointer \"inLut\"!!!\n"},
    };
    for (const auto& tc : cases) {
        test::DebugCapture debug;
        int32_t status = 0;
        const std::string printed = test::CaptureStdout([&] {
            status = LutConvert(tc.type, tc.nullIn ? nullptr : in.data(), tc.nullLut ? nullptr : lut.data(), 256,
                                tc.nullIgcl ? nullptr : igcl.data(), 256, tc.nullNv ? nullptr : nv.data(), 1024);
        });
        EXPECT_EQ(status, tc.status) << tc.type;
        EXPECT_EQ(printed, tc.message);
        EXPECT_EQ(debug.messages().back(), L"; VOK: ##Exit  LutConvert()##\n");
    }
    EXPECT_EQ(lut, Lut16{});
    EXPECT_EQ(igcl, std::vector<double>(768, -7.0));
    EXPECT_EQ(nv, std::vector<float>(6144, -7.0f));
}

}  // namespace
}  // namespace quarnel
