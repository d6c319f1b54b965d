// SPDX-License-Identifier: MIT
#pragma once
// An ACPI control device that records what it is sent and plays back replies.

#include <algorithm>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "platform/acpi_device.h"

namespace quarnel::test {

class FakeAcpiDevice final : public platform::AcpiDevice {
public:
    struct Reply {
        bool ok = true;
        std::vector<uint8_t> bytes;
    };

    platform::DeviceHandle openResult = 0x44;
    std::deque<Reply> replies;  // one per request; none left fails the request
    std::vector<std::wstring> openedPaths;
    std::vector<std::vector<uint8_t>> requests;
    std::vector<uint32_t> codes, replyCapacities;
    std::vector<platform::DeviceHandle> closed;

    // A successful reply: word 0, then the block, `size` bytes in all.
    static Reply Block(uint32_t word0, std::vector<uint8_t> block, std::size_t size = 516) {
        block.resize(512);
        for (int i = 3; i >= 0; --i) block.insert(block.begin(), static_cast<uint8_t>(word0 >> (8 * i)));
        block.resize(size);
        return {true, block};
    }

    platform::DeviceHandle Open(const wchar_t* path) override {
        openedPaths.emplace_back(path);
        return openResult;
    }

    bool Control(platform::DeviceHandle, uint32_t code, const uint8_t* request, uint32_t requestSize, uint8_t* reply,
                 uint32_t replyCapacity, uint32_t& bytesReturned) override {
        codes.push_back(code);
        requests.emplace_back(request, request + requestSize);
        replyCapacities.push_back(replyCapacity);
        bytesReturned = 0;
        const Reply next = replies.empty() ? Reply{false, {}} : replies.front();
        if (!replies.empty()) replies.pop_front();
        if (!next.ok) return false;
        bytesReturned = static_cast<uint32_t>(std::min<std::size_t>(next.bytes.size(), replyCapacity));
        std::copy_n(next.bytes.begin(), bytesReturned, reply);
        return true;
    }

    void Close(platform::DeviceHandle device) override { closed.push_back(device); }

private:
    platform::ScopedAcpiDevice scope_{*this};
};

}  // namespace quarnel::test
