#include "calib/source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calib/block_writer.h"
#include "calib/error_code.h"
#include "calib/fake_acpi_device.h"
#include "calib/fake_display_system.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

using test::BlockFields;

constexpr int32_t kUntouched = 99;

class CalibrationSource : public ::testing::Test {
protected:
    CalibrationSource() { CctapiErrorCode() = kUntouched; }

    void WriteBlock(const std::vector<uint8_t>& block, std::size_t size = 512) {
        test::WriteFile(dir_ / "panel.bin", test::AsString(block).substr(0, size));
    }

    // GetData on a fresh record; returns its result.
    int32_t Read(BiosData& data, int32_t enableUserK, const char* path, const char* name) {
        int32_t result = 0;
        test::CaptureStdout([&] { result = GetData(data, enableUserK, path, name, 0); });
        return result;
    }

    std::unique_ptr<BiosData> OpenFile(int32_t enableUserK, const char* path, const char* name) {
        std::unique_ptr<BiosData> data;
        test::CaptureStdout([&] { data = Open(enableUserK, path, name, 0); });
        return data;
    }

    test::TempDir dir_;
    std::string folder_ = dir_.path().string() + "/";
    test::FakeDisplaySystem display_;
    platform::ScopedDisplaySystem scope_{display_};
    test::DebugCapture debug_;
};

TEST_F(CalibrationSource, StatusAndErrorCodeOfEveryFileOutcome) {
    auto fields = [](auto change) {
        BlockFields s;
        change(s);
        return s;
    };
    struct Case {
        const char* name;
        BlockFields fields;
        int32_t status;
        int32_t errorForUserK1;
    } cases[] = {
        {"good", BlockFields{}, kBiosOk, kUntouched},
        {"header crc", fields([](BlockFields& s) { s.breakHeaderCrc = true; }), kBiosHeaderCrcError, -4},
        {"tone crc", fields([](BlockFields& s) { s.version = 5, s.breakToneCrc = true; }), kBiosToneCrcError, -4},
        {"both crcs", fields([](BlockFields& s) { s.breakHeaderCrc = s.breakToneCrc = true; }), kBiosToneCrcError, -4},
        {"tone crc below 5", fields([](BlockFields& s) { s.version = 4, s.breakToneCrc = true; }), kBiosOk, kUntouched},
        {"magic", fields([](BlockFields& s) { s.magic = {'R', '2', 'R', '!'}; }), kBiosBadBlock, kUntouched},
        {"over-long string", fields([](BlockFields& s) { s.lutString.assign(1, 255); }), kBiosBadBlock, -4},
    };
    for (const auto& tc : cases) {
        for (int32_t userK : {1, 2}) {
            WriteBlock(test::WriteBlock(tc.fields));
            CctapiErrorCode() = kUntouched;
            BiosData data;
            EXPECT_EQ(Read(data, userK, folder_.c_str(), "panel.bin"), 0) << tc.name;
            EXPECT_EQ(data.BiosDataStatus, tc.status) << tc.name;
            // Only a creator file chosen with exactly 1 reports a failed check.
            EXPECT_EQ(CctapiErrorCode(), userK == 1 ? tc.errorForUserK1 : kUntouched) << tc.name << userK;
            EXPECT_EQ(OpenFile(userK, folder_.c_str(), "panel.bin") != nullptr, tc.status == kBiosOk) << tc.name;
        }
    }
}

TEST_F(CalibrationSource, AMissingFileCostsTwoReads) {
    for (int32_t userK : {1, 2}) {
        CctapiErrorCode() = kUntouched;
        BiosData data;
        EXPECT_EQ(Read(data, userK, folder_.c_str(), "absent.bin"), -1);
        EXPECT_EQ(data.BiosDataStatus, kBiosFileNotOpened);
        EXPECT_EQ(CctapiErrorCode(), -3);

        CctapiErrorCode() = kUntouched;
        display_.adapterQueries = 0;
        const std::size_t before = debug_.messages().size();
        EXPECT_EQ(OpenFile(userK, folder_.c_str(), "absent.bin"), nullptr);
        EXPECT_EQ(CctapiErrorCode(), -3);
        const std::vector<std::wstring> said(debug_.messages().begin() + static_cast<std::ptrdiff_t>(before),
                                             debug_.messages().end());
        EXPECT_EQ(std::count(said.begin(), said.end(), L"VOK: Enter GetData()\n"), 2);
        EXPECT_EQ(display_.adapterQueries, 2);  // the displays are asked again on each read
        EXPECT_EQ(std::count(said.begin(), said.end(), L"VOK: Kalzen Path -3\n"), userK == 1 ? 1 : 0);
    }
}

TEST_F(CalibrationSource, ANullPathOrNameIsAFileThatCannotBeOpened) {
    WriteBlock(test::WriteBlock(BlockFields{}));
    for (auto [path, name] : {std::pair<const char*, const char*>{nullptr, "panel.bin"}, {folder_.c_str(), nullptr}}) {
        CctapiErrorCode() = kUntouched;
        const std::size_t before = debug_.messages().size();
        EXPECT_EQ(OpenFile(1, path, name), nullptr);
        EXPECT_EQ(CctapiErrorCode(), -3);
        EXPECT_EQ(debug_.messages()[before + 1], L"VOK: Kalzen Path catch\n");
    }
}

TEST_F(CalibrationSource, ThePathIsTheFolderAndTheNameJoinedAsTheyAre) {
    WriteBlock(test::WriteBlock(BlockFields{}));
    const std::string stem = dir_.path().string() + "/pan";
    auto data = OpenFile(1, stem.c_str(), "el.bin");
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->path, stem + "el.bin");
    EXPECT_EQ(OpenFile(1, dir_.path().string().c_str(), "panel.bin"), nullptr);  // no separator added
}

TEST_F(CalibrationSource, AShortFileLeavesTheRestOfTheBlockCleared) {
    BlockFields fields;
    fields.version = 4;
    WriteBlock(test::WriteBlock(fields), 79);  // ends before the target luminance
    BiosData data;
    data.raw.assign(512, 0xFF);  // what an earlier read left
    EXPECT_EQ(Read(data, 1, folder_.c_str(), "panel.bin"), 0);
    EXPECT_EQ(data.BiosDataStatus, kBiosOk);
    EXPECT_EQ(data.firstWhite[1], static_cast<double>(0.329f));
    EXPECT_EQ(data.targetLuminance, 0.0);
    EXPECT_EQ(data.defaultWhite[0], 0.0);
    EXPECT_EQ(data.length, 512);
}

TEST_F(CalibrationSource, TheFirmwareReadIsCheckedLikeAFile) {
    BlockFields broken;
    broken.breakHeaderCrc = true;
    struct Case {
        const char* name;
        test::FakeAcpiDevice::Reply reply;
        int32_t status;
    } cases[] = {
        {"good", test::FakeAcpiDevice::Block(1, test::WriteBlock(BlockFields{})), kBiosOk},
        {"bad crc", test::FakeAcpiDevice::Block(1, test::WriteBlock(broken)), kBiosHeaderCrcError},
        {"no result", test::FakeAcpiDevice::Block(0, test::WriteBlock(BlockFields{})), kBiosBadBlock},
        {"failed request", {false, {}}, kBiosBadBlock},
    };
    for (const auto& tc : cases) {
        test::FakeAcpiDevice device;
        device.replies.push_back(tc.reply);
        BiosData data;
        int32_t result = -9;
        test::CaptureStdout([&] { result = GetData(data, 0, nullptr, nullptr, 3); });
        EXPECT_EQ(result, 0) << tc.name;
        EXPECT_EQ(data.BiosDataStatus, tc.status) << tc.name;
        EXPECT_EQ(CctapiErrorCode(), kUntouched) << tc.name;
        ASSERT_EQ(device.requests.size(), 1u);
        EXPECT_EQ(device.requests[0][8], 0xB2);  // panelIndex 3 as the method
    }
}

TEST_F(CalibrationSource, GetBiosDataHandsOutByte297) {
    BlockFields v6;
    v6.version = 6;
    v6.useMethod = 0x21;
    BlockFields v7;
    v7.byte297 = 0x5A;
    CctContext ctx{};
    ctx.kalzenPath = folder_.c_str();
    ctx.kalzenFilename = "panel.bin";
    struct Case {
        const char* name;
        int32_t userK;
        std::vector<uint8_t> block;
        uint8_t flag;
    } cases[] = {
        {"version 6 file", 1, test::WriteBlock(v6), 0x21},
        {"version 7 file", 1, test::WriteBlock(v7), 0x5A},
        {"firmware", 0, test::WriteBlock(v6), 0x42},
        {"2 reads the firmware", 2, test::WriteBlock(v6), 0x42},
    };
    for (const auto& tc : cases) {
        WriteBlock(tc.block);
        test::FakeAcpiDevice device;
        std::vector<uint8_t> firmware = test::WriteBlock(v7);
        firmware[297] = 0x42;
        device.replies.push_back(test::FakeAcpiDevice::Block(1, firmware));
        ctx.enableUserK = tc.userK;
        BiosData data;
        uint8_t flag = 0xEE;
        int32_t result = -9;
        test::CaptureStdout([&] { result = GetBIOS_Data(data, flag, ctx); });
        EXPECT_EQ(result, 0);
        EXPECT_EQ(flag, tc.flag) << tc.name;
    }
    ctx.enableUserK = 1;
    ctx.kalzenFilename = nullptr;
    BiosData data;
    uint8_t flag = 0xEE;
    test::CaptureStdout([&] { GetBIOS_Data(data, flag, ctx); });
    EXPECT_EQ(flag, 0);
}

TEST(CCTLoadBIOSDeathTest, ANullPathEndsTheProcessQuietly) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(CCTLoadBIOS(nullptr), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace quarnel
