// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "calib/fake_acpi_device.h"
#include "calib/firmware_reader.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

using test::FakeAcpiDevice;

struct Outcome {
    int32_t result = 0, count = 12345;
    std::vector<uint8_t> buffer = std::vector<uint8_t>(512, 0xCC);
    std::wstring lastMessage, said;
    std::string printed;
};

Outcome Read(int32_t method) {
    Outcome o;
    test::DebugCapture debug;
    o.printed = test::CaptureStdout([&] { o.result = OLKReadDataBlock(&o.count, o.buffer.data(), method); });
    if (!debug.messages().empty()) o.lastMessage = debug.messages().back();
    o.said = debug.joined();
    return o;
}

uint32_t Word(const std::vector<uint8_t>& b, std::size_t at) {
    return uint32_t{b[at]} | uint32_t{b[at + 1]} << 8 | uint32_t{b[at + 2]} << 16 | uint32_t{b[at + 3]} << 24;
}

std::vector<uint8_t> SampleBlock() {
    std::vector<uint8_t> block(512);
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<uint8_t>(i * 7 + 1);
    return block;
}

TEST(OLKReadDataBlock, SendsTheMethodCallOfEveryMethod) {
    const std::array<uint32_t, 4> cases[] = {
        {0, 0x47444353, 1, 0},          {1, 0x47444353, 2, 0},          {2, 0x53545344, 0x000600B1, 0},
        {3, 0x53545344, 0x000600B2, 0}, {4, 0x53545344, 0x000600B1, 1}, {5, 0x53545344, 0x000600B2, 1},
        {6, 0x53545344, 0, 0},          {~0u, 0x53545344, 0, 0},
    };
    for (const auto& [method, identifier, word0, word1] : cases) {
        FakeAcpiDevice device;
        device.replies.push_back(FakeAcpiDevice::Block(1, SampleBlock()));
        Read(static_cast<int32_t>(method));
        ASSERT_EQ(device.requests.size(), 1u);
        const std::vector<uint8_t>& r = device.requests[0];
        ASSERT_EQ(r.size(), 524u);
        EXPECT_EQ((std::array{Word(r, 0), Word(r, 4), Word(r, 8), Word(r, 12)}),
                  (std::array{identifier, 516u, word0, word1}))
            << method;
        EXPECT_EQ(std::vector<uint8_t>(r.begin() + 16, r.end()), std::vector<uint8_t>(508, 0));
        EXPECT_EQ(std::tuple(device.codes, device.replyCapacities, device.openedPaths),
                  std::tuple(std::vector<uint32_t>{0x0022240C}, std::vector<uint32_t>{1024},
                             std::vector<std::wstring>{L"\\\\.\\ZEVACPI"}));
    }
}

TEST(OLKReadDataBlock, HandlesEveryOpenAndReplyOutcome) {
    const std::vector<uint8_t> block = SampleBlock();
    const std::wstring done = L"VOK: Exit UninitializeZEVACPIDevice()\n";
    const struct {
        const char* name;
        platform::DeviceHandle open;
        FakeAcpiDevice::Reply reply;
        int32_t result, count;
        std::wstring lastMessage;
        std::size_t requests, closed;
    } cases[] = {
        {"full reply", 0x44, FakeAcpiDevice::Block(3, block), 0, 3, done, 1, 1},
        {"long reply", 0x44, FakeAcpiDevice::Block(1, block, 1024), 0, 1, done, 1, 1},
        {"all bits set", 0x44, FakeAcpiDevice::Block(0xFFFFFFFF, block), 0, -1, done, 1, 1},
        {"no result", 0x44, FakeAcpiDevice::Block(0, block), -3, 12345, L"VOK: ulOutBuffer[0] <= 0\n", 1, 0},
        {"failed request", 0x44, {false, {}}, -2, 12345, L"VOK: General_WMIMethod_INT(...) return FALSE\n", 1, 0},
        {"not opened", -1, {}, -1, 12345, L"VOK: Exit InitializeZEVACPIDevice()\n", 0, 0},
        {"null handle", 0, {}, -2, 12345, L"VOK: General_WMIMethod_INT(...) return FALSE\n", 0, 0},  // opens, unusable
    };
    for (const auto& tc : cases) {
        FakeAcpiDevice device;
        device.openResult = tc.open;
        device.replies.push_back(tc.reply);
        const Outcome o = Read(4);
        EXPECT_EQ(std::tuple(o.result, o.count, o.lastMessage, device.requests.size(), device.closed.size()),
                  std::tuple(tc.result, tc.count, tc.lastMessage, tc.requests, tc.closed))
            << tc.name;
        EXPECT_EQ(o.buffer, tc.result == 0 ? block : std::vector<uint8_t>(512, 0xCC)) << tc.name;
        if (tc.open == -1) {
            EXPECT_EQ(o.printed, "ReadDataBlocklib version = 1.0.99.4\n");
        }
    }
    EXPECT_EQ(AcpiInitialized(), 1);
}

// The bytes a short reply leaves alone keep what was sent (the arguments, then zeros) and are handed out.
TEST(OLKReadDataBlock, AShortReplyKeepsTheSentArgumentsInTheBlock) {
    FakeAcpiDevice device;
    device.replies.push_back(FakeAcpiDevice::Block(7, SampleBlock(), 4));  // word 0 only
    device.replies.push_back(FakeAcpiDevice::Block(7, SampleBlock(), 6));
    const Outcome o = Read(5);
    EXPECT_EQ(std::tuple(o.result, o.count), std::tuple(0, 7));
    std::vector<uint8_t> expected(512, 0);
    expected[0] = 1;  // word 1 as sent
    EXPECT_EQ(o.buffer, expected);
    expected[0] = SampleBlock()[0];
    expected[1] = SampleBlock()[1];
    EXPECT_EQ(Read(5).buffer, expected);
}

TEST(OLKReadDataBlock, SaysWhatItGot) {
    FakeAcpiDevice device;
    device.replies.push_back(FakeAcpiDevice::Block(0xFFFFFFFF, SampleBlock()));
    const Outcome o = Read(1);
    EXPECT_EQ(o.printed, "ReadDataBlocklib version = 1.0.99.4\nulInOutBuffer[0]: -1\nVOK: ulOutBuffer[0] = -1 > 0\n");
    EXPECT_EQ(o.said,
              L"VOK: Enter OLKReadDataBlock()\nVOK: Enter InitializeZEVACPIDevice()\n"
              L"VOK: Exit InitializeZEVACPIDevice()\nVOK: Enter General_WMIMethod_INT()\n"
              L"VOK: Enter ControlWMIMethod()\nVOK: Exit ControlWMIMethod()\n"
              L"VOK: General_WMIMethod_INT(...) return TRUE\nVOK: ulOutBuffer[0] > 0\n"
              L"VOK: 111111111111111111111111\nVOK: Enter UninitializeZEVACPIDevice()\n"
              L"VOK: Exit UninitializeZEVACPIDevice()\n");
}

TEST(OLKReadDataBlock, WithoutTheFirmwareDeviceOpeningFails) {
    const Outcome o = Read(0);  // no test machine carries the panel firmware's device
    EXPECT_EQ(std::tuple(o.result, o.count), std::tuple(-1, 12345));
}

}  // namespace
}  // namespace quarnel
