// SPDX-License-Identifier: MIT
#pragma once
// The machine as the fuzz targets see it: no monitors, and a firmware device
// that answers every method call with the bytes it is given.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/acpi_device.h"
#include "platform/display_system.h"

namespace quarnel::fuzz {

// No displays: the targets exercise the block, not the machine's monitors.
class NoDisplays final : public platform::DisplaySystem {
public:
    bool EnumDisplayDevice(const wchar_t*, uint32_t, platform::DisplayDevice&) override { return false; }
    platform::DeviceList OpenMonitorList() override { return 0; }
    bool EnumDevice(platform::DeviceList, uint32_t) override { return false; }
    platform::RegistryKey OpenDeviceKey(platform::DeviceList) override { return 0; }
    void DestroyList(platform::DeviceList) override {}
    uint32_t EnumValue(platform::RegistryKey, uint32_t, wchar_t*, uint32_t&, uint8_t*, uint32_t&) override {
        return platform::kErrorNoMoreItems;
    }
    void CloseKey(platform::RegistryKey) override {}
    uint32_t LastError() override { return platform::kErrorNoMoreItems; }
};

// Answers every method call with a result count of 1 and `data` as the block;
// a short block leaves the rest of the argument buffer as it was sent.
class BlockDevice final : public platform::AcpiDevice {
public:
    const uint8_t* data = nullptr;
    std::size_t size = 0;

    platform::DeviceHandle Open(const wchar_t*) override { return 1; }
    bool Control(platform::DeviceHandle, uint32_t, const uint8_t*, uint32_t, uint8_t* reply, uint32_t capacity,
                 uint32_t& returned) override {
        const uint8_t count[4] = {1, 0, 0, 0};
        const std::size_t body = std::min<std::size_t>(size, capacity - sizeof count);
        std::copy_n(count, sizeof count, reply);
        std::copy_n(data, body, reply + sizeof count);
        returned = static_cast<uint32_t>(sizeof count + body);
        return true;
    }
    void Close(platform::DeviceHandle) override {}
};

}  // namespace quarnel::fuzz
