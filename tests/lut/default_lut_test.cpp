// SPDX-License-Identifier: MIT
#include "lut/default_lut.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/lut16.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

struct Outputs {
    std::vector<uint16_t> lut = std::vector<uint16_t>(768, 0xABCD);
    std::vector<double> igcl = std::vector<double>(768, -7.0);
    std::vector<float> nv = std::vector<float>(6144, -7.0f);

    int32_t Run(int32_t type) { return GetDefaultLut(type, lut.data(), igcl.data(), nv.data()); }
};

TEST(GetDefaultLut, IdentityTypesWriteOnlyTheIntegerRamp) {
    for (int32_t type : {0, 3, 5}) {
        Outputs out;
        ASSERT_EQ(out.Run(type), 0) << type;
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(out.lut[LutIndex(c, 0)], 0);
            EXPECT_EQ(out.lut[LutIndex(c, 128)], 32768);
            EXPECT_EQ(out.lut[LutIndex(c, 255)], 65280);
        }
        EXPECT_EQ(out.igcl[0], -7.0);
        EXPECT_EQ(out.nv[0], -7.0f);
    }
}

TEST(GetDefaultLut, SrgbTypeUsesTheFullSixteenBitRange) {
    Outputs out;
    ASSERT_EQ(out.Run(1), 0);
    const struct {
        int level;
        uint16_t value;
    } cases[] = {{0, 0}, {1, 3266}, {128, 48276}, {255, 65535}};
    for (const auto& tc : cases)
        for (int c = 0; c < 3; ++c) EXPECT_EQ(out.lut[LutIndex(c, tc.level)], tc.value) << tc.level;
}

TEST(GetDefaultLut, NvidiaTypeWritesBothFloatRampsOnly) {
    Outputs out;
    ASSERT_EQ(out.Run(2), 0);
    EXPECT_EQ(out.lut[0], 0xABCD);
    for (int array = 0; array < 2; ++array) {
        const float* base = out.nv.data() + array * 3072;
        EXPECT_EQ(base[0], 0.0f);
        EXPECT_EQ(base[1023 * 3 + 2], 1.0f);
        EXPECT_EQ(base[512 * 3 + 1], 512.0f / 1023.0f);
    }
}

TEST(GetDefaultLut, IgclTypeWritesRampAndDoubles) {
    Outputs out;
    ASSERT_EQ(out.Run(4), 0);
    EXPECT_EQ(out.lut[LutIndex(2, 255)], 65280);
    EXPECT_EQ(out.igcl[LutIndex(0, 255)], 1.0);
    EXPECT_EQ(out.igcl[LutIndex(1, 51)], 0.2);
    EXPECT_EQ(out.nv[0], -7.0f);
}

TEST(GetDefaultLut, UnknownTypeWritesNothing) {
    for (int32_t type : {6, -1, 1000}) {
        Outputs out;
        test::DebugCapture debug;
        const std::string printed = test::CaptureStdout([&] { EXPECT_EQ(out.Run(type), CCT_ERR_LUT_API_TYPE); });
        EXPECT_EQ(printed, "; VOK: Invalid lutApiType(" + std::to_string(type) + ")!!!\n");
        EXPECT_EQ(debug.joined(), L"; VOK: ##Enter GetDefaultLut()##\n; VOK: ##Exit  GetDefaultLut()##\n");
        EXPECT_EQ(out.lut, std::vector<uint16_t>(768, 0xABCD));
        EXPECT_EQ(out.igcl, std::vector<double>(768, -7.0));
        EXPECT_EQ(out.nv, std::vector<float>(6144, -7.0f));
    }
}

}  // namespace
}  // namespace quarnel
