// SPDX-License-Identifier: MIT
#pragma once
// The three families of system calls that find the monitors' EDID blocks:
// display devices (adapters and their monitors), device setup (the list of
// present monitor-class devices and their registry keys) and the registry
// (the values under such a key).

#include <cstdint>
#include <string>

#include "platform/seam.h"

namespace quarnel::platform {

using DeviceList = std::intptr_t;   // 0: no list
using RegistryKey = std::intptr_t;  // 0 and -1: not a key
inline constexpr std::intptr_t kInvalidHandle = -1;

inline constexpr uint32_t kErrorSuccess = 0;
inline constexpr uint32_t kErrorMoreData = 234;
inline constexpr uint32_t kErrorNoMoreItems = 259;

// Monitor state flags: attached to the desktop, and a mirroring driver.
inline constexpr uint32_t kDisplayActive = 0x1;
inline constexpr uint32_t kDisplayMirroring = 0x8;

struct DisplayDevice {
    std::wstring name;  // what the monitor query of an adapter takes
    std::wstring id;    // e.g. MONITOR\ABC1234\{class}\0001
    uint32_t stateFlags = 0;
};

class DisplaySystem {
public:
    virtual ~DisplaySystem() = default;

    // Adapter `index` when `adapter` is null, else monitor `index` of that
    // adapter; false when there is no such device.
    virtual bool EnumDisplayDevice(const wchar_t* adapter, uint32_t index, DisplayDevice& device) = 0;

    // The present devices of the monitor class; 0 (or kInvalidHandle) when
    // the list cannot be made.
    virtual DeviceList OpenMonitorList() = 0;
    // Makes device `index` of the list the current one; false when there is none.
    virtual bool EnumDevice(DeviceList list, uint32_t index) = 0;
    // Opens the device registry key of the list's current device for reading.
    virtual RegistryKey OpenDeviceKey(DeviceList list) = 0;
    virtual void DestroyList(DeviceList list) = 0;

    // Value `index` of `key`: its name into `name` (capacity `nameLength`
    // characters; on success the name's length) and its data into `data`
    // (capacity `dataLength` bytes; on success the data's size). Returns
    // kErrorSuccess, kErrorMoreData when either does not fit, or
    // kErrorNoMoreItems past the last value.
    virtual uint32_t EnumValue(RegistryKey key, uint32_t index, wchar_t* name, uint32_t& nameLength, uint8_t* data,
                               uint32_t& dataLength) = 0;
    virtual void CloseKey(RegistryKey key) = 0;

    // The error code the last failing call left behind.
    virtual uint32_t LastError() = 0;
};

// The system's display enumeration, unless a test has put its own in place.
DisplaySystem& ActiveDisplaySystem();

// Test seam: routes display enumeration to a fake for the object's lifetime.
using ScopedDisplaySystem = ScopedOverride<DisplaySystem>;

}  // namespace quarnel::platform
