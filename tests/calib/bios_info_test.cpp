#include "calib/bios_info.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calib/block_writer.h"
#include "calib/error_code.h"
#include "calib/fake_display_system.h"
#include "lut/lut16.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

using test::BlockFields;

constexpr uint16_t kUntouchedEntry = 0x1234;

// A panel-like curve whose 8-bit reduction rises from 0 to 255 in steps of
// 0, 1 and 2; `busy` makes the steps change often enough for the Huffman
// string to win over the position lists.
Lut16 PanelGamma(bool busy) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        int v = 0;
        for (int i = 1; i < kLutLevels; ++i) {
            int step = 1;
            if (busy && i < 121) step = (i + c) % 2 == 0 ? 0 : 2;
            if (!busy && i == 10 + c) step = 0;
            if (!busy && i == 20 + c) step = 2;
            v += step;
            lut[LutIndex(c, i)] = static_cast<uint16_t>(v * kLutStep);
        }
    }
    return lut;
}

struct Encoded {
    std::vector<uint8_t> string;
    uint32_t method;
};

Encoded Encode(const Lut16& lut) {
    std::vector<uint8_t> out(256, 0);
    uint32_t method = 99;
    int32_t status = -9;
    test::CaptureStdout([&] { status = LUT2BIOS(lut.data(), 212, out.data(), static_cast<int32_t>(out.size()), &method); });
    EXPECT_EQ(status, 0);
    out.resize(out[0]);
    return {out, method};
}

class GetBiosInfo : public ::testing::Test {
protected:
    GetBiosInfo() {
        CctapiErrorCode() = 0;
        ctx_.enableUserK = 1;
        ctx_.kalzenPath = folder_.c_str();
        ctx_.kalzenFilename = "panel.bin";
        ctx_.biosVer = 77;
        ctx_.fromBios = 77;
        for (auto& plane : ctx_.gammaLut)
            for (auto& entry : plane) entry = kUntouchedEntry;
    }

    void Run(const BlockFields& fields) {
        test::WriteFile(dir_ / "panel.bin", test::AsString(test::WriteBlock(fields)));
        test::CaptureStdout([&] { GetBIOSInfo(ctx_, tone_, targets_); });
    }

    Lut16 GammaLut() const {
        Lut16 lut{};
        std::copy_n(&ctx_.gammaLut[0][0], kLutEntries, lut.begin());
        return lut;
    }

    test::TempDir dir_;
    std::string folder_ = dir_.path().string() + "/";
    test::FakeDisplaySystem display_;
    platform::ScopedDisplaySystem scope_{display_};
    CctContext ctx_{};
    ToneModel tone_{};
    FactoryTargets targets_{};
};

TEST_F(GetBiosInfo, DecodesTheFactoryGammaLutOfARealLutString) {
    for (bool busy : {false, true}) {
        const Lut16 gamma = PanelGamma(busy);
        const Encoded encoded = Encode(gamma);
        EXPECT_EQ(encoded.method, busy ? 0u : 1u);
        for (uint8_t version : {uint8_t{6}, uint8_t{7}, uint8_t{8}}) {
            BlockFields fields;
            fields.version = version;
            fields.useMethod = static_cast<uint8_t>(encoded.method);
            fields.lutString = encoded.string;
            ctx_.gammaK = 0;
            Run(fields);
            EXPECT_EQ(ctx_.biosVer, version) << busy;
            EXPECT_EQ(ctx_.gammaK, 1);
            EXPECT_EQ(GammaLut(), gamma) << busy << int{version};
        }
    }
}

TEST_F(GetBiosInfo, FillsTheContextTargetsAndToneModel) {
    test::DebugCapture debug;
    Run(BlockFields{});
    EXPECT_EQ(ctx_.fromBios, 1);
    EXPECT_EQ(ctx_.biosVer, 7);
    EXPECT_EQ(ctx_.gammaK, 1);
    const BlockFields fields;
    for (int i = 0; i < 12; ++i) EXPECT_EQ(ctx_.bios[i / 3][i % 3], static_cast<double>(fields.primaries[static_cast<std::size_t>(i)]));
    EXPECT_EQ(targets_.valid, 1);
    EXPECT_EQ(targets_.firstWhite[0], static_cast<double>(0.3127f));
    EXPECT_EQ(targets_.firstWhite[1], static_cast<double>(0.329f));
    EXPECT_EQ(targets_.targetLuminance, 250.5);
    EXPECT_EQ(targets_.defaultWhite[0], static_cast<double>(0.3101f));
    EXPECT_EQ(targets_.defaultWhite[1], static_cast<double>(0.3162f));

    EXPECT_EQ(tone_.levelCount, 7);
    EXPECT_EQ(tone_.levels, (std::array<int32_t, 7>{0, 42, 86, 128, 168, 210, 255}));
    EXPECT_EQ(tone_.toneModelReady, 1);
    const ToneChannel* channels[3] = {&tone_.toneR, &tone_.toneG, &tone_.toneB};
    for (int c = 0; c < 3; ++c) {
        const ToneChannel& ch = *channels[c];
        for (int k = 0; k < 3; ++k) EXPECT_EQ(ch[static_cast<std::size_t>(k)], static_cast<double>(fields.black[static_cast<std::size_t>(k)]));
        for (int k = 0; k < 15; ++k)
            EXPECT_EQ(ch[static_cast<std::size_t>(3 + k)], static_cast<double>(fields.toneLevels[static_cast<std::size_t>(15 * c + k)]));
        for (int k = 0; k < 3; ++k) EXPECT_EQ(ch[static_cast<std::size_t>(18 + k)], ctx_.bios[c][k]);
    }
    EXPECT_EQ(debug.messages().front(), L"VOK: Enter GetBIOSInfo()\n");
    EXPECT_EQ(debug.messages().back(), L"VOK: Exit  GetBIOSInfo()\n");
    EXPECT_EQ(CctapiErrorCode(), 0);
}

TEST_F(GetBiosInfo, OlderVersionsFillLess) {
    struct Case {
        uint8_t version;
        bool targets;
        bool tone;
    } cases[] = {{1, false, false}, {3, false, false}, {4, true, false}, {5, true, true}};
    for (const auto& tc : cases) {
        SCOPED_TRACE(int{tc.version});
        tone_ = ToneModel{};
        targets_ = FactoryTargets{};
        ctx_.gammaK = 0;
        BlockFields fields;
        fields.version = tc.version;
        Run(fields);
        EXPECT_EQ(ctx_.fromBios, 1);
        EXPECT_EQ(ctx_.biosVer, tc.version);
        EXPECT_EQ(ctx_.bios[3][1], 100.0);
        EXPECT_EQ(targets_.targetLuminance, tc.targets ? 250.5 : 0.0);
        EXPECT_EQ(targets_.firstWhite[0], tc.targets ? static_cast<double>(0.3127f) : kPresetFirstWhiteX);
        EXPECT_EQ(targets_.valid, tc.tone ? 1 : 0);
        EXPECT_EQ(tone_.toneModelReady, tc.tone ? 1 : 0);
        EXPECT_EQ(ctx_.gammaK, tc.tone ? 1 : 0);  // version 5 has no LUT string, yet sets it
        EXPECT_EQ(GammaLut()[0], kUntouchedEntry);
    }
}

TEST_F(GetBiosInfo, AnUndecodableLutStringFallsBackToVersion5) {
    struct Case {
        uint8_t method;
        std::vector<uint8_t> string;
    } cases[] = {
        {0, {4, 0x20, 0x4B, 0x40}},  // not a "v1" Huffman table
        {1, {5, 0, 0, 0, 1}},        // counts that overrun the string
        {2, {4, 0, 0, 0}},           // no such method
    };
    for (const auto& tc : cases) {
        BlockFields fields;
        fields.useMethod = tc.method;
        fields.lutString = tc.string;
        Run(fields);
        EXPECT_EQ(ctx_.fromBios, 1);
        EXPECT_EQ(ctx_.biosVer, 5);
        EXPECT_EQ(ctx_.gammaK, 1);
        EXPECT_EQ(targets_.valid, 1);
        EXPECT_EQ(GammaLut()[300], kUntouchedEntry);
    }
}

TEST_F(GetBiosInfo, NoUsableBlockLeavesNoCalibration) {
    struct Case {
        const char* name;
        int32_t userK;
        const char* file;
        BlockFields fields;
        int32_t error;
    } cases[] = {
        {"missing file", 1, "absent.bin", BlockFields{}, -3},
        {"broken crc", 1, "panel.bin", [] { BlockFields s; s.breakHeaderCrc = true; return s; }(), -4},
        {"no firmware device", 0, "panel.bin", BlockFields{}, 0},
    };
    for (const auto& tc : cases) {
        CctapiErrorCode() = 0;
        ctx_.enableUserK = tc.userK;
        ctx_.kalzenFilename = tc.file;
        ctx_.fromBios = 1;
        test::DebugCapture debug;
        Run(tc.fields);
        EXPECT_EQ(ctx_.fromBios, 0) << tc.name;
        EXPECT_EQ(ctx_.biosVer, -1) << tc.name;
        EXPECT_EQ(CctapiErrorCode(), tc.error) << tc.name;
        EXPECT_EQ(debug.messages().back(), L"VOK: handler is null\n") << tc.name;
        EXPECT_EQ(targets_.valid, 0);
    }
}

}  // namespace
}  // namespace quarnel
