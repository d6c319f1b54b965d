// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calib/firmware_reader.h"
#include "platform/fake_acpi_device.h"
#include "platform/utf8.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::FakeAcpiDevice;
using test::Row;

std::vector<uint8_t> SampleBlock() {
    std::vector<uint8_t> block(512);
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<uint8_t>(i * 7 + 1);
    return block;
}

// One read through `device`: what was sent, returned, said and handed out.
std::string Read(FakeAcpiDevice& device, int32_t method) {
    int32_t count = 12345;
    std::vector<uint8_t> buffer(512, 0xCC);
    test::DebugCapture debug;
    int32_t result = 0;
    const std::string printed = test::CaptureStdout([&] { result = OLKReadDataBlock(&count, buffer.data(), method); });
    std::string text = Row("== method", method, "result", result, "count", count) + printed +
                       platform::ToUtf8(debug.joined()) + Row("closed", device.closed.size());
    for (std::size_t k = 0; k < device.requests.size(); ++k) {
        const auto& r = device.requests[k];
        text +=
            Row("sent", platform::ToUtf8(device.openedPaths[k]), device.codes[k], device.replyCapacities[k], r.size(),
                "nonzero bytes from 16:", std::count_if(r.begin() + 16, r.end(), [](auto b) { return b; }));
        for (std::size_t at = 0; at < 16; at += 4)
            text += Row("word", r[at] | r[at + 1] << 8 | r[at + 2] << 16 | r[at + 3] << 24);
    }
    const std::vector<uint8_t> sample = SampleBlock();
    if (buffer == sample) return text + "buffer holds the block\n";
    if (buffer == std::vector<uint8_t>(512, 0xCC)) return text + "buffer untouched\n";
    for (std::size_t at = 0; at < 512; at += 32) text += Row(+buffer[at], +buffer[at + 1], +buffer[at + 31]);
    return text;
}

TEST(OLKReadDataBlock, EveryMethodAndEveryOpenAndReplyOutcome) {
    const std::vector<uint8_t> block = SampleBlock();
    const struct {
        int32_t method;
        platform::DeviceHandle open;
        std::vector<FakeAcpiDevice::Reply> replies;
    } cases[] = {
        {0, 0x44, {FakeAcpiDevice::Block(1, block)}},
        {1, 0x44, {FakeAcpiDevice::Block(0xFFFFFFFF, block)}},
        {2, 0x44, {FakeAcpiDevice::Block(3, block)}},
        {3, 0x44, {FakeAcpiDevice::Block(1, block, 1024)}},  // a long reply
        {4, 0x44, {{false, {}}}},                            // the request fails
        {5, 0x44, {FakeAcpiDevice::Block(7, block, 4)}},     // word 0 only: the sent arguments stay
        {6, 0x44, {FakeAcpiDevice::Block(0, block)}},        // no result
        {-1, 0x44, {FakeAcpiDevice::Block(7, block, 6)}},
        {4, -1, {}},  // not opened
        {4, 0, {}},   // opens, unusable
    };
    std::string text;
    for (const auto& tc : cases) {
        FakeAcpiDevice device;
        device.openResult = tc.open;
        device.replies.assign(tc.replies.begin(), tc.replies.end());
        text += Read(device, tc.method);
    }
    EXPECT_EQ(AcpiInitialized(), 1);
    test::ExpectGolden("firmware_reader.txt", text);
}

TEST(OLKReadDataBlock, WithoutTheFirmwareDeviceOpeningFails) {
    int32_t count = 12345;
    std::vector<uint8_t> buffer(512);
    test::CaptureStdout([&] { EXPECT_EQ(OLKReadDataBlock(&count, buffer.data(), 0), -1); });
    EXPECT_EQ(count, 12345);  // no test machine carries the panel firmware's device
}

}  // namespace
}  // namespace quarnel
