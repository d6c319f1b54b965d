// SPDX-License-Identifier: MIT
#include "calib/source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calib/bios_info.h"
#include "calib/block_writer.h"
#include "calib/error_code.h"
#include "core/lut16.h"
#include "platform/fake_acpi_device.h"
#include "platform/fake_display_system.h"
#include "platform/utf8.h"
#include "support/capture.h"
#include "support/golden.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

using test::BlockFields;
using test::FakeAcpiDevice;
using test::Row;
using test::RowOf;

constexpr int32_t kUntouched = 99;
constexpr uint16_t kUntouchedEntry = 0x1234;

class SourceSelection : public ::testing::Test {
protected:
    SourceSelection() { source_ = {1, folder_.c_str(), "panel.bin", 0}; }

    void WriteBlock(const BlockFields& fields, std::size_t size = 512) {
        test::WriteFile(dir_ / "panel.bin", test::AsString(test::WriteBlock(fields)).substr(0, size));
    }

    // Runs `call`, returning the error code and every debug message it left.
    template <typename Fn>
    std::string Said(Fn&& call) {
        CctapiErrorCode() = kUntouched;
        const std::size_t before = debug_.messages().size();
        test::CaptureStdout(call);
        std::string text = Row("error", CctapiErrorCode(), "displays asked", display_.adapterQueries);
        display_.adapterQueries = 0;
        for (std::size_t k = before; k < debug_.messages().size(); ++k) text += platform::ToUtf8(debug_.messages()[k]);
        return text;
    }

    std::string Read(const std::string& title, int32_t userK, const char* path, const char* name) {
        BiosData data;
        data.raw.fill(0xFF);  // what an earlier read left
        int32_t result = 0;
        bool opens = false;
        const std::string said = Said([&] {
            result = GetData(data, userK, path, name, 3);
            opens = Open(userK, path, name, 3).has_value();
        });
        return Row("==", title, "user K", userK, "result", result, "status", data.BiosDataStatus, "opens", opens) +
               said + Row(data.firstWhite[1], data.targetLuminance, data.defaultWhite[0], data.length);
    }

    std::string Info(const std::string& title) {
        data_.biosVer = data_.fromBios = 77, data_.gammaK = 0;
        gammaLut_.fill(kUntouchedEntry);
        tone_ = {}, targets_ = {};
        std::string text = Said([&] { GetBIOSInfo(source_, data_, tone_, targets_); });
        const ToneChannel* channels[3] = {&tone_.toneR, &tone_.toneG, &tone_.toneB};
        text = Row("==", title, data_.fromBios, data_.biosVer, data_.gammaK, targets_.valid, tone_.toneModelReady) +
               text + RowOf(&data_.bios.row[0][0], 12) +
               Row(targets_.firstWhite[0], targets_.firstWhite[1], targets_.targetLuminance, targets_.defaultWhite[0],
                   targets_.defaultWhite[1]) +
               RowOf(tone_.levels.data(), 7);
        for (const ToneChannel* c : channels) text += RowOf(c->data(), c->size());
        const Lut16& g = gammaLut_;
        return text + Row("gamma", g[LutIndex(0, 0)], g[LutIndex(1, 100)], g[LutIndex(2, 255)]);
    }

    test::TempDir dir_;
    std::string folder_ = dir_.path().string() + "/";
    test::FakeDisplaySystem display_;
    platform::ScopedDisplaySystem scope_{display_};
    test::DebugCapture debug_;
    quarnel::CalibrationSource source_{};
    Lut16 gammaLut_{};
    FactoryData data_{0, {}, 0, 0, gammaLut_.data()};
    ToneModel tone_{};
    FactoryTargets targets_{};
};

// Only a creator file chosen with enableUserK exactly 1 reports a failed check.
TEST_F(SourceSelection, EveryFileAndFirmwareOutcome) {
    const std::pair<const char*, BlockFields> blocks[] = {
        {"good", {}},
        {"header crc", {.breakHeaderCrc = true}},
        {"tone crc", {.version = 5, .breakToneCrc = true}},
        {"both crcs", {.breakHeaderCrc = true, .breakToneCrc = true}},
        {"no tone levels below 5", {.version = 4, .breakToneCrc = true}},
        {"magic", {.magic = {'R', '2', 'R', '!'}}},
        {"runs past the block", {.lutString = {255}}},
    };
    std::string text;
    for (const auto& [title, fields] : blocks)
        for (int32_t userK : {1, 2}) {
            WriteBlock(fields);
            text += Read(title, userK, folder_.c_str(), "panel.bin");
        }
    for (int32_t userK : {1, 2}) text += Read("missing", userK, folder_.c_str(), "absent.bin");
    WriteBlock({});
    const std::string stem = dir_.path().string() + "/pan";
    text += Read("joined as they are", 1, stem.c_str(), "el.bin") + Read("null path", 1, nullptr, "panel.bin") +
            Read("null name", 1, folder_.c_str(), nullptr) +
            Read("no separator added", 1, dir_.path().string().c_str(), "panel.bin");
    WriteBlock({.version = 4}, 79);  // ends before the target luminance
    text += Read("short file", 1, folder_.c_str(), "panel.bin");
    const std::pair<const char*, FakeAcpiDevice::Reply> replies[] = {
        {"good", FakeAcpiDevice::Block(1, test::WriteBlock({}))},
        {"header crc", FakeAcpiDevice::Block(1, test::WriteBlock({.breakHeaderCrc = true}))},
        {"no result", FakeAcpiDevice::Block(0, test::WriteBlock({}))},
        {"failed request", {false, {}}},
    };
    for (const auto& [title, reply] : replies) {
        FakeAcpiDevice device;
        device.replies = {reply, reply};
        text += Read(std::string("firmware ") + title, 0, nullptr, nullptr);
        text += Row("requests", device.requests.size(), "method byte", +device.requests[0][8]);  // panel 3
    }
    test::ExpectGolden("calibration_source.txt", text);
}

TEST(CCTLoadBIOSDeathTest, ANullPathEndsTheProcessQuietly) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    BiosData data;
    EXPECT_EXIT(CCTLoadBIOS(nullptr, std::nullopt, data), ::testing::ExitedWithCode(0), "");
}

TEST_F(SourceSelection, GetBiosInfoFillsContextTargetsToneModelAndGammaLut) {
    std::string text;
    for (uint8_t version = 1; version <= 8; ++version) {
        WriteBlock({.version = version});
        text += Info("version " + std::to_string(version));
    }
    // an undecodable string falls back to version 5: not a "v1" table, overrunning counts, no such method
    for (auto [method, string] : {std::pair<uint8_t, std::vector<uint8_t>>{0, {4, 0x20, 0x4B, 0x40}},
                                  {1, {5, 0, 0, 0, 1}},
                                  {2, {4, 0, 0, 0}}}) {
        WriteBlock({.useMethod = method, .lutString = string});
        text += Info("undecodable");
    }
    source_.kalzenFilename = "absent.bin";
    text += Info("no file");
    source_.kalzenFilename = "panel.bin";
    WriteBlock({.breakHeaderCrc = true});
    text += Info("header crc");
    source_.enableUserK = 0;
    text += Info("no firmware device");
    test::ExpectGolden("bios_info.txt", text);
}

}  // namespace
}  // namespace quarnel
