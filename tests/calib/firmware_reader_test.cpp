#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "calib/fake_acpi_device.h"
#include "calib/firmware_reader.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

using test::FakeAcpiDevice;

struct Outcome {
    int32_t result = 0;
    int32_t count = 12345;
    std::vector<uint8_t> buffer = std::vector<uint8_t>(512, 0xCC);
    std::wstring lastMessage;
    std::string printed;
};

Outcome Read(int32_t method) {
    Outcome o;
    test::DebugCapture debug;
    o.printed = test::CaptureStdout([&] { o.result = OLKReadDataBlock(&o.count, o.buffer.data(), method); });
    if (!debug.messages().empty()) o.lastMessage = debug.messages().back();
    return o;
}

uint32_t Word(const std::vector<uint8_t>& bytes, std::size_t at) {
    return uint32_t{bytes[at]} | uint32_t{bytes[at + 1]} << 8 | uint32_t{bytes[at + 2]} << 16 |
           uint32_t{bytes[at + 3]} << 24;
}

std::vector<uint8_t> SampleBlock() {
    std::vector<uint8_t> block(512);
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<uint8_t>(i * 7 + 1);
    return block;
}

TEST(OLKReadDataBlock, SendsTheMethodCallOfEveryMethod) {
    struct Case {
        int32_t method;
        uint32_t identifier, word0, word1;
    } cases[] = {
        {0, 0x47444353, 1, 0},          {1, 0x47444353, 2, 0},          {2, 0x53545344, 0x000600B1, 0},
        {3, 0x53545344, 0x000600B2, 0}, {4, 0x53545344, 0x000600B1, 1}, {5, 0x53545344, 0x000600B2, 1},
        {6, 0x53545344, 0, 0},          {-1, 0x53545344, 0, 0},
    };
    for (const auto& tc : cases) {
        FakeAcpiDevice device;
        device.replies.push_back(FakeAcpiDevice::Block(1, SampleBlock()));
        Read(tc.method);
        ASSERT_EQ(device.requests.size(), 1u);
        const std::vector<uint8_t>& request = device.requests[0];
        ASSERT_EQ(request.size(), 524u);
        EXPECT_EQ(Word(request, 0), tc.identifier) << tc.method;
        EXPECT_EQ(Word(request, 4), 516u);
        EXPECT_EQ(Word(request, 8), tc.word0) << tc.method;
        EXPECT_EQ(Word(request, 12), tc.word1) << tc.method;
        EXPECT_EQ(std::vector<uint8_t>(request.begin() + 16, request.end()), std::vector<uint8_t>(508, 0));
        EXPECT_EQ(device.codes, std::vector<uint32_t>{0x0022240C});
        EXPECT_EQ(device.replyCapacities, std::vector<uint32_t>{1024});
        EXPECT_EQ(device.openedPaths, std::vector<std::wstring>{L"\\\\.\\ZEVACPI"});
    }
    // The identifiers spell the method names in memory.
    FakeAcpiDevice device;
    Read(0);
    Read(2);
    EXPECT_EQ(std::string(device.requests[0].begin(), device.requests[0].begin() + 4), "SCDG");
    EXPECT_EQ(std::string(device.requests[1].begin(), device.requests[1].begin() + 4), "DSTS");
}

TEST(OLKReadDataBlock, HandlesEveryReplyOutcome) {
    const std::vector<uint8_t> block = SampleBlock();
    struct Case {
        const char* name;
        FakeAcpiDevice::Reply reply;
        int32_t result;
        int32_t count;
        const wchar_t* lastMessage;
        bool closed;
    } cases[] = {
        {"full reply", FakeAcpiDevice::Block(3, block), 0, 3, L"VOK: Exit UninitializeZEVACPIDevice()\n", true},
        {"long reply", FakeAcpiDevice::Block(1, block, 1024), 0, 1, L"VOK: Exit UninitializeZEVACPIDevice()\n", true},
        {"all bits set", FakeAcpiDevice::Block(0xFFFFFFFF, block), 0, -1, L"VOK: Exit UninitializeZEVACPIDevice()\n",
         true},
        {"no result", FakeAcpiDevice::Block(0, block), -3, 12345, L"VOK: ulOutBuffer[0] <= 0\n", false},
        {"failed request", {false, {}}, -2, 12345, L"VOK: General_WMIMethod_INT(...) return FALSE\n", false},
    };
    for (const auto& tc : cases) {
        FakeAcpiDevice device;
        device.replies.push_back(tc.reply);
        const Outcome o = Read(4);
        EXPECT_EQ(o.result, tc.result) << tc.name;
        EXPECT_EQ(o.count, tc.count) << tc.name;
        EXPECT_EQ(o.lastMessage, tc.lastMessage) << tc.name;
        EXPECT_EQ(o.buffer, tc.result == 0 ? block : std::vector<uint8_t>(512, 0xCC)) << tc.name;
        EXPECT_EQ(device.closed.size(), tc.closed ? 1u : 0u) << tc.name;
    }
}

// The bytes a short reply leaves alone keep what was sent: the arguments,
// then zeros; they are handed out as block data.
TEST(OLKReadDataBlock, AShortReplyKeepsTheSentArgumentsInTheBlock) {
    FakeAcpiDevice device;
    device.replies.push_back(FakeAcpiDevice::Block(7, SampleBlock(), 4));  // word 0 only
    const Outcome o = Read(5);
    EXPECT_EQ(o.result, 0);
    EXPECT_EQ(o.count, 7);
    std::vector<uint8_t> expected(512, 0);
    expected[0] = 1;  // word 1 as sent
    EXPECT_EQ(o.buffer, expected);

    device.replies.push_back(FakeAcpiDevice::Block(7, SampleBlock(), 6));
    expected[0] = SampleBlock()[0];
    expected[1] = SampleBlock()[1];
    EXPECT_EQ(Read(5).buffer, expected);
}

TEST(OLKReadDataBlock, UnopenedOrUnusableDevice) {
    {
        FakeAcpiDevice device;
        device.openResult = -1;
        const Outcome o = Read(0);
        EXPECT_EQ(o.result, -1);
        EXPECT_EQ(o.lastMessage, L"VOK: Exit InitializeZEVACPIDevice()\n");
        EXPECT_TRUE(device.requests.empty());
        EXPECT_EQ(o.printed, "ReadDataBlocklib version = 1.0.99.4\n");
    }
    {
        FakeAcpiDevice device;
        device.openResult = 0;  // a null handle opens but cannot be used
        const Outcome o = Read(0);
        EXPECT_EQ(o.result, -2);
        EXPECT_TRUE(device.requests.empty());
    }
    EXPECT_EQ(AcpiInitialized(), 1);
}

TEST(OLKReadDataBlock, SaysWhatItGot) {
    FakeAcpiDevice device;
    device.replies.push_back(FakeAcpiDevice::Block(0xFFFFFFFF, SampleBlock()));
    test::DebugCapture debug;
    std::string printed = test::CaptureStdout([] {
        int32_t count = 0;
        std::array<uint8_t, 512> buffer{};
        OLKReadDataBlock(&count, buffer.data(), 1);
    });
    EXPECT_EQ(printed,
              "ReadDataBlocklib version = 1.0.99.4\nulInOutBuffer[0]: -1\nVOK: ulOutBuffer[0] = -1 > 0\n");
    EXPECT_EQ(debug.joined(),
              L"VOK: Enter OLKReadDataBlock()\nVOK: Enter InitializeZEVACPIDevice()\n"
              L"VOK: Exit InitializeZEVACPIDevice()\nVOK: Enter General_WMIMethod_INT()\n"
              L"VOK: Enter ControlWMIMethod()\nVOK: Exit ControlWMIMethod()\n"
              L"VOK: General_WMIMethod_INT(...) return TRUE\nVOK: ulOutBuffer[0] > 0\n"
              L"VOK: 111111111111111111111111\nVOK: Enter UninitializeZEVACPIDevice()\n"
              L"VOK: Exit UninitializeZEVACPIDevice()\n");
}

TEST(OLKReadDataBlock, WithoutTheFirmwareDeviceOpeningFails) {
    int32_t count = 5;
    std::array<uint8_t, 512> buffer{};
    int32_t result = 0;
    test::CaptureStdout([&] { result = OLKReadDataBlock(&count, buffer.data(), 0); });
    EXPECT_EQ(result, -1);  // no test machine carries the panel firmware's device
    EXPECT_EQ(count, 5);
}

}  // namespace
}  // namespace quarnel
