// SPDX-License-Identifier: MIT
#include <windows.h>

#include <setupapi.h>

#include <cstring>

#include "platform/display_system.h"

namespace quarnel::platform {
namespace {

// The monitor device class.
const GUID kMonitorClass = {0x4D36E96E, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

HDEVINFO ToDeviceInfo(DeviceList list) { return reinterpret_cast<HDEVINFO>(list); }
HKEY ToKey(RegistryKey key) { return reinterpret_cast<HKEY>(key); }

class Win32DisplaySystem final : public DisplaySystem {
public:
    bool EnumDisplayDevice(const wchar_t* adapter, uint32_t index, DisplayDevice& device) override {
        DISPLAY_DEVICEW info;
        std::memset(&info, 0, sizeof info);
        info.cb = sizeof info;
        if (!EnumDisplayDevicesW(adapter, index, &info, 0)) return false;
        device.name = info.DeviceName;
        device.id = info.DeviceID;
        device.stateFlags = info.StateFlags;
        return true;
    }

    DeviceList OpenMonitorList() override {
        HDEVINFO set =
            SetupDiGetClassDevsExW(&kMonitorClass, nullptr, nullptr, DIGCF_PRESENT, nullptr, nullptr, nullptr);
        return reinterpret_cast<DeviceList>(set);
    }

    bool EnumDevice(DeviceList list, uint32_t index) override {
        std::memset(&current_, 0, sizeof current_);
        current_.cbSize = sizeof current_;
        return SetupDiEnumDeviceInfo(ToDeviceInfo(list), index, &current_) != FALSE;
    }

    RegistryKey OpenDeviceKey(DeviceList list) override {
        HKEY key = SetupDiOpenDevRegKey(ToDeviceInfo(list), &current_, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
        return reinterpret_cast<RegistryKey>(key);
    }

    void DestroyList(DeviceList list) override { SetupDiDestroyDeviceInfoList(ToDeviceInfo(list)); }

    uint32_t EnumValue(RegistryKey key, uint32_t index, wchar_t* name, uint32_t& nameLength, uint8_t* data,
                       uint32_t& dataLength) override {
        DWORD nameChars = nameLength;
        DWORD dataBytes = dataLength;
        DWORD type = 0;
        const LONG result = RegEnumValueW(ToKey(key), index, name, &nameChars, nullptr, &type, data, &dataBytes);
        nameLength = nameChars;
        dataLength = dataBytes;
        return static_cast<uint32_t>(result);
    }

    void CloseKey(RegistryKey key) override { RegCloseKey(ToKey(key)); }

    uint32_t LastError() override { return GetLastError(); }

private:
    SP_DEVINFO_DATA current_{};
};

}  // namespace

DisplaySystem& SystemDisplaySystem() {
    static Win32DisplaySystem system;
    return system;
}

}  // namespace quarnel::platform
