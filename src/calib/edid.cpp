// SPDX-License-Identifier: MIT
#include "calib/edid.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace quarnel {
namespace {

using platform::DisplaySystem;

constexpr uint32_t kValueNameCapacity = 128;
constexpr uint32_t kEdidDataCapacity = kEdidBlockSize;
constexpr wchar_t kEdidValueName[] = L"EDID";
constexpr std::size_t kEdidNameCompare = 5;  // the four characters and the terminator

constexpr std::size_t kHardwareIdStart = 8;
constexpr std::size_t kHardwareIdSearchFrom = 9;

// A system that never reports the end of a list must not hold the caller forever.
constexpr uint32_t kIndexLimit = 0x10000;

bool IsActiveMonitor(uint32_t stateFlags) {
    return (stateFlags & platform::kDisplayActive) != 0 && (stateFlags & platform::kDisplayMirroring) == 0;
}

bool IsOpenKey(platform::RegistryKey key) { return key != 0 && key != platform::kInvalidHandle; }

// One walk over the present monitor-class devices: counts their keys, or
// fills their blocks. Returns whether the last key probed held an EDID.
bool WalkMonitorClass(DisplaySystem& system, EdidBlock* edidBlocks, int32_t& edidCount) {
    bool found = false;
    const platform::DeviceList list = system.OpenMonitorList();
    // A failed list comes back as the invalid handle, which no walk can use.
    if (list == 0 || list == platform::kInvalidHandle) return found;
    if (system.LastError() != platform::kErrorNoMoreItems) {
        for (uint32_t i = 0; i < kIndexLimit; ++i) {
            if (system.EnumDevice(list, i)) {
                const platform::RegistryKey key = system.OpenDeviceKey(list);
                if (IsOpenKey(key)) {
                    if (edidBlocks == nullptr) {
                        found = FindEdidValue(key, nullptr);
                        ++edidCount;  // a device without an EDID keeps its place
                    } else if (static_cast<int64_t>(i) < edidCount) {
                        found = FindEdidValue(key, edidBlocks[i].data());
                    }
                    system.CloseKey(key);
                }
            }
            if (system.LastError() == platform::kErrorNoMoreItems) break;
        }
    }
    system.DestroyList(list);
    return found;
}

}  // namespace

std::wstring MonitorHardwareId(std::wstring_view deviceId) {
    if (deviceId.size() < kHardwareIdSearchFrom) return {};
    const std::size_t end = deviceId.find(L'\\', kHardwareIdSearchFrom);
    if (end == std::wstring_view::npos) return {};
    return std::wstring(deviceId.substr(kHardwareIdStart, end - kHardwareIdStart));
}

// Every active monitor walks the whole monitor class again; the walk stops
// early only when the last device probed held an EDID.
int32_t GetEdidData(EdidBlock* edidBlocks, int32_t& edidCount) {
    DisplaySystem& system = platform::ActiveDisplaySystem();
    platform::DisplayDevice adapter;
    if (!system.EnumDisplayDevice(nullptr, 0, adapter)) return 0;
    for (uint32_t a = 0; a == 0 || system.EnumDisplayDevice(nullptr, a, adapter); ++a) {
        bool found = false;
        platform::DisplayDevice monitor;
        for (uint32_t m = 0; system.EnumDisplayDevice(adapter.name.c_str(), m, monitor); ++m) {
            if (!IsActiveMonitor(monitor.stateFlags)) continue;
            [[maybe_unused]] const std::wstring hardwareId = MonitorHardwareId(monitor.id);
            found = WalkMonitorClass(system, edidBlocks, edidCount);
            if (edidCount == 0 || found) break;
        }
        if (found) return 0;
        if (a + 1 == kIndexLimit) break;
    }
    return 0;
}

bool FindEdidValue(platform::RegistryKey key, uint8_t* out) {
    DisplaySystem& system = platform::ActiveDisplaySystem();
    std::array<wchar_t, kValueNameCapacity> name{};
    std::array<uint8_t, kEdidDataCapacity> data{};
    // Set once: each value enumerated shrinks them to its own name and data
    // size, so a later value with a longer name or more data is passed over.
    uint32_t nameLength = kValueNameCapacity;
    uint32_t dataLength = kEdidDataCapacity;
    for (uint32_t index = 0; index < kIndexLimit; ++index) {
        const uint32_t result = system.EnumValue(key, index, name.data(), nameLength, data.data(), dataLength);
        if (result == platform::kErrorNoMoreItems) return false;
        if (result != platform::kErrorSuccess) continue;
        if (std::wmemcmp(name.data(), kEdidValueName, kEdidNameCompare) != 0) continue;
        if (out != nullptr) std::copy(data.begin(), data.end(), out);
        return true;
    }
    return false;
}

}  // namespace quarnel
