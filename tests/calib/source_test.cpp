// SPDX-License-Identifier: MIT
#include "calib/source.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "calib/bios_info.h"
#include "calib/block_writer.h"
#include "calib/error_code.h"
#include "calib/fake_acpi_device.h"
#include "calib/fake_display_system.h"
#include "core/lut16.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

using test::BlockFields;
using test::FakeAcpiDevice;

constexpr int32_t kUntouched = 99;
constexpr uint16_t kUntouchedEntry = 0x1234;

double Wide(float v) { return static_cast<double>(v); }

class CalibrationSource : public ::testing::Test {
protected:
    CalibrationSource() {
        CctapiErrorCode() = kUntouched;
        ctx_.biosVer = ctx_.fromBios = 77;
        ctx_.enableUserK = 1;
        ctx_.kalzenPath = folder_.c_str();
        ctx_.kalzenFilename = "panel.bin";
        std::fill_n(&ctx_.gammaLut[0][0], kLutEntries, kUntouchedEntry);
    }

    void WriteBlock(const BlockFields& fields, std::size_t size = 512) {
        test::WriteFile(dir_ / "panel.bin", test::AsString(test::WriteBlock(fields)).substr(0, size));
    }

    int32_t Read(BiosData& data, int32_t enableUserK, const char* path, const char* name, int32_t panel = 0) {
        int32_t result = 0;
        test::CaptureStdout([&] { result = GetData(data, enableUserK, path, name, panel); });
        return result;
    }

    std::unique_ptr<BiosData> OpenFile(int32_t enableUserK, const char* path, const char* name) {
        std::unique_ptr<BiosData> data;
        test::CaptureStdout([&] { data = Open(enableUserK, path, name, 0); });
        return data;
    }

    void RunBiosInfo(const BlockFields& fields) {
        WriteBlock(fields);
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
    test::DebugCapture debug_;
    CctContext ctx_{};
    ToneModel tone_{};
    FactoryTargets targets_{};
};

TEST_F(CalibrationSource, StatusAndErrorCodeOfEveryFileOutcome) {
    // Block, status, and the error code with enableUserK 1: only a creator file chosen with exactly 1 reports a
    // failed check.
    const std::tuple<BlockFields, int32_t, int32_t> cases[] = {
        {{}, kBiosOk, kUntouched},
        {{.breakHeaderCrc = true}, kBiosHeaderCrcError, -4},
        {{.version = 5, .breakToneCrc = true}, kBiosToneCrcError, -4},
        {{.breakHeaderCrc = true, .breakToneCrc = true}, kBiosToneCrcError, -4},
        {{.version = 4, .breakToneCrc = true}, kBiosOk, kUntouched},  // no tone levels below version 5
        {{.magic = {'R', '2', 'R', '!'}}, kBiosBadBlock, kUntouched},
        {{.lutString = {255}}, kBiosBadBlock, -4},  // runs past the block
    };
    for (std::size_t row = 0; row < std::size(cases); ++row)
        for (int32_t userK : {1, 2}) {
            const auto& [fields, status, error] = cases[row];
            WriteBlock(fields);
            CctapiErrorCode() = kUntouched;
            BiosData data;
            EXPECT_EQ(Read(data, userK, folder_.c_str(), "panel.bin"), 0);
            EXPECT_EQ(std::tuple(data.BiosDataStatus, CctapiErrorCode()),
                      std::tuple(status, userK == 1 ? error : kUntouched))
                << row << " " << userK;
            EXPECT_EQ(OpenFile(userK, folder_.c_str(), "panel.bin") != nullptr, status == kBiosOk);
        }
}

TEST_F(CalibrationSource, AMissingFileCostsTwoReads) {
    for (int32_t userK : {1, 2}) {
        BiosData data;
        EXPECT_EQ(Read(data, userK, folder_.c_str(), "absent.bin"), -1);
        EXPECT_EQ(std::tuple(data.BiosDataStatus, CctapiErrorCode()), std::tuple(kBiosFileNotOpened, -3));
        CctapiErrorCode() = kUntouched;
        display_.adapterQueries = 0;
        const auto before = static_cast<std::ptrdiff_t>(debug_.messages().size());
        EXPECT_EQ(OpenFile(userK, folder_.c_str(), "absent.bin"), nullptr);
        EXPECT_EQ(CctapiErrorCode(), -3);
        const std::vector<std::wstring> said(debug_.messages().begin() + before, debug_.messages().end());
        EXPECT_EQ(std::count(said.begin(), said.end(), L"VOK: Enter GetData()\n"), 2);
        EXPECT_EQ(display_.adapterQueries, 2);  // the displays are asked again on each read
        EXPECT_EQ(std::count(said.begin(), said.end(), L"VOK: Kalzen Path -3\n"), userK == 1 ? 1 : 0);
        CctapiErrorCode() = kUntouched;
    }
}

TEST_F(CalibrationSource, FindsTheFileAtFolderAndNameJoinedAsTheyAre) {
    WriteBlock({});
    for (auto [path, name] : {std::pair<const char*, const char*>{nullptr, "panel.bin"}, {folder_.c_str(), nullptr}}) {
        CctapiErrorCode() = kUntouched;
        const std::size_t before = debug_.messages().size();
        EXPECT_EQ(OpenFile(1, path, name), nullptr);
        EXPECT_EQ(CctapiErrorCode(), -3);
        EXPECT_EQ(debug_.messages()[before + 1], L"VOK: Kalzen Path catch\n");
    }
    const std::string stem = dir_.path().string() + "/pan";
    auto data = OpenFile(1, stem.c_str(), "el.bin");
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->path, stem + "el.bin");
    EXPECT_EQ(OpenFile(1, dir_.path().string().c_str(), "panel.bin"), nullptr);  // no separator added
}

TEST_F(CalibrationSource, AShortFileLeavesTheRestOfTheBlockCleared) {
    WriteBlock({.version = 4}, 79);  // ends before the target luminance
    BiosData data;
    data.raw.assign(512, 0xFF);  // what an earlier read left
    EXPECT_EQ(Read(data, 1, folder_.c_str(), "panel.bin"), 0);
    EXPECT_EQ(
        std::tuple(data.BiosDataStatus, data.firstWhite[1], data.targetLuminance, data.defaultWhite[0], data.length),
        std::tuple(kBiosOk, Wide(test::kWhites[1]), 0.0, 0.0, 512));
}

TEST_F(CalibrationSource, TheFirmwareReadIsCheckedLikeAFile) {
    const auto good = test::WriteBlock({});
    const std::pair<FakeAcpiDevice::Reply, int32_t> cases[] = {
        {FakeAcpiDevice::Block(1, good), kBiosOk},
        {FakeAcpiDevice::Block(1, test::WriteBlock({.breakHeaderCrc = true})), kBiosHeaderCrcError},
        {FakeAcpiDevice::Block(0, good), kBiosBadBlock},  // no result
        {{false, {}}, kBiosBadBlock},                     // failed request
    };
    for (const auto& [reply, status] : cases) {
        FakeAcpiDevice device;
        device.replies.push_back(reply);
        BiosData data;
        EXPECT_EQ(Read(data, 0, nullptr, nullptr, 3), 0);
        EXPECT_EQ(std::tuple(data.BiosDataStatus, CctapiErrorCode()), std::tuple(status, kUntouched));
        ASSERT_EQ(device.requests.size(), 1u);
        EXPECT_EQ(device.requests[0][8], 0xB2);  // panelIndex 3 as the method
    }
}

TEST_F(CalibrationSource, GetBiosDataHandsOutByte297) {
    const BlockFields v6{.version = 6, .useMethod = 0x21};
    const std::tuple<int32_t, BlockFields, const char*, uint8_t> cases[] = {
        // enableUserK, file, its name, byte
        {1, v6, "panel.bin", 0x21}, {1, {.byte297 = 0x5A}, "panel.bin", 0x5A},
        {0, v6, "panel.bin", 0x42}, {2, v6, "panel.bin", 0x42},  // 2 reads the firmware
        {1, v6, nullptr, 0},
    };
    for (const auto& [userK, file, name, byte] : cases) {
        WriteBlock(file);
        FakeAcpiDevice device;
        device.replies.push_back(FakeAcpiDevice::Block(1, test::WriteBlock({.byte297 = 0x42})));
        ctx_.enableUserK = userK;
        ctx_.kalzenFilename = name;
        BiosData data;
        uint8_t flag = 0xEE;
        int32_t result = -9;
        test::CaptureStdout([&] { result = GetBIOS_Data(data, flag, ctx_); });
        EXPECT_EQ(std::tuple(result, flag), std::tuple(0, byte)) << userK << name;
    }
}

TEST(CCTLoadBIOSDeathTest, ANullPathEndsTheProcessQuietly) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(CCTLoadBIOS(nullptr), ::testing::ExitedWithCode(0), "");
}

using GetBiosInfo = CalibrationSource;

// A panel-like curve whose 8-bit reduction rises from 0 to 255 in steps of 0, 1 and 2; `busy` steps change
// often enough for the Huffman string to win over the position lists.
Lut16 PanelGamma(bool busy) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 1, v = 0; i < kLutLevels; ++i) {
            v += busy ? (i < 121 ? (i + c) % 2 * 2 : 1) : (i == 10 + c ? 0 : i == 20 + c ? 2 : 1);
            lut[LutIndex(c, i)] = static_cast<uint16_t>(v * kLutStep);
        }
    return lut;
}

TEST_F(GetBiosInfo, DecodesTheFactoryGammaLutOfARealLutString) {
    for (bool busy : {false, true}) {
        const Lut16 gamma = PanelGamma(busy);
        std::vector<uint8_t> string(256, 0);
        uint32_t method = 99;
        int32_t status = -9;
        test::CaptureStdout([&] { status = LUT2BIOS(gamma.data(), 212, string.data(), 256, &method); });
        ASSERT_EQ(std::tuple(status, method), std::tuple(0, busy ? 0u : 1u));
        string.resize(string[0]);
        for (uint8_t version = 6; version <= 8; ++version) {
            ctx_.gammaK = 0;
            RunBiosInfo({.version = version, .useMethod = static_cast<uint8_t>(method), .lutString = string});
            EXPECT_EQ(std::tuple(ctx_.biosVer, ctx_.gammaK), std::tuple(version, 1));
            EXPECT_EQ(GammaLut(), gamma) << busy << int{version};
        }
    }
}

TEST_F(GetBiosInfo, FillsTheContextTargetsAndToneModel) {
    CctapiErrorCode() = 0;
    const std::size_t before = debug_.messages().size();
    RunBiosInfo({});
    EXPECT_EQ(std::tuple(ctx_.fromBios, ctx_.biosVer, ctx_.gammaK, targets_.valid), std::tuple(1, 7, 1, 1));
    for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(ctx_.bios[i / 3][i % 3], Wide(test::kPrimaries[i]));
    const auto& w = test::kWhites;
    EXPECT_EQ(std::tuple(targets_.firstWhite[0], targets_.firstWhite[1], targets_.targetLuminance,
                         targets_.defaultWhite[0], targets_.defaultWhite[1]),
              std::tuple(Wide(w[0]), Wide(w[1]), 250.5, Wide(w[3]), Wide(w[4])));
    EXPECT_EQ(std::tuple(tone_.levelCount, tone_.levels, tone_.toneModelReady),
              std::tuple(7, std::array<int32_t, 7>{0, 42, 86, 128, 168, 210, 255}, 1));
    const ToneChannel* channels[3] = {&tone_.toneR, &tone_.toneG, &tone_.toneB};
    for (std::size_t c = 0; c < 3; ++c)  // black values, 15 levels, then the channel's primary
        for (std::size_t k = 0; k < 21; ++k)
            EXPECT_EQ((*channels[c])[k], k < 3    ? Wide(test::kBlack[k])
                                         : k < 18 ? Wide(test::ToneLevel(15 * c + k - 3))
                                                  : ctx_.bios[c][k - 18]);
    EXPECT_EQ(debug_.messages()[before], L"VOK: Enter GetBIOSInfo()\n");
    EXPECT_EQ(debug_.messages().back(), L"VOK: Exit  GetBIOSInfo()\n");
    EXPECT_EQ(CctapiErrorCode(), 0);
}

TEST_F(GetBiosInfo, OlderVersionsFillLess) {
    for (uint8_t version : std::initializer_list<uint8_t>{1, 3, 4, 5}) {
        tone_ = ToneModel{};
        targets_ = FactoryTargets{};
        ctx_.gammaK = 0;
        RunBiosInfo({.version = version});
        const bool v4 = version >= 4, v5 = version >= 5;  // version 5 has no LUT string, yet sets gammaK
        EXPECT_EQ(std::tuple(ctx_.fromBios, ctx_.biosVer, ctx_.bios[3][1], targets_.targetLuminance,
                             targets_.firstWhite[0], targets_.valid, tone_.toneModelReady, ctx_.gammaK, GammaLut()[0]),
                  std::tuple(1, version, 100.0, v4 ? 250.5 : 0.0, v4 ? Wide(0.3127f) : kPresetFirstWhiteX, v5 ? 1 : 0,
                             v5 ? 1 : 0, v5 ? 1 : 0, kUntouchedEntry))
            << int{version};
    }
}

TEST_F(GetBiosInfo, AnUndecodableLutStringFallsBackToVersion5) {
    const std::pair<uint8_t, std::vector<uint8_t>> cases[] = {
        {0, {4, 0x20, 0x4B, 0x40}},  // not a "v1" Huffman table
        {1, {5, 0, 0, 0, 1}},        // counts that overrun the string
        {2, {4, 0, 0, 0}},           // no such method
    };
    for (const auto& [method, string] : cases) {
        RunBiosInfo({.useMethod = method, .lutString = string});
        EXPECT_EQ(std::tuple(ctx_.fromBios, ctx_.biosVer, ctx_.gammaK, targets_.valid, GammaLut()[300]),
                  std::tuple(1, 5, 1, 1, kUntouchedEntry))
            << int{method};
    }
}

TEST_F(GetBiosInfo, NoUsableBlockLeavesNoCalibration) {
    const std::tuple<int32_t, const char*, BlockFields, int32_t> cases[] = {
        // enableUserK, file, block, error
        {1, "absent.bin", {}, -3},
        {1, "panel.bin", {.breakHeaderCrc = true}, -4},
        {0, "panel.bin", {}, 0},  // no firmware device
    };
    for (const auto& [userK, file, fields, error] : cases) {
        CctapiErrorCode() = 0;
        ctx_.enableUserK = userK;
        ctx_.kalzenFilename = file;
        ctx_.fromBios = 1;
        RunBiosInfo(fields);
        EXPECT_EQ(std::tuple(ctx_.fromBios, ctx_.biosVer, CctapiErrorCode(), debug_.messages().back(), targets_.valid),
                  std::tuple(0, -1, error, std::wstring(L"VOK: handler is null\n"), 0))
            << userK << file;
    }
}

}  // namespace
}  // namespace quarnel
