// SPDX-License-Identifier: MIT
#pragma once
// A scripted display system: adapters with their monitors, and the monitor class's devices with their registry values.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/display_system.h"

namespace quarnel::test {

class FakeDisplaySystem final : public platform::DisplaySystem {
public:
    struct Monitor {
        std::wstring id = L"MONITOR\\ABC1234\\{4d36e96e}\\0001";
        uint32_t stateFlags = platform::kDisplayActive;
    };
    struct Adapter {
        std::wstring name;
        std::vector<Monitor> monitors;
    };
    struct Value {
        std::wstring name;
        std::vector<uint8_t> data;
    };
    struct Device {
        bool keyOpens = true;
        std::vector<Value> values;
    };

    std::vector<Adapter> adapters;
    std::vector<Device> devices;
    platform::DeviceList listResult = 0x10;
    int adapterQueries = 0, listsOpened = 0, listsDestroyed = 0, keysOpened = 0, keysClosed = 0;

    // One adapter with `activeMonitors` monitors.
    static FakeDisplaySystem WithMonitors(int activeMonitors) {
        FakeDisplaySystem system;
        system.adapters.push_back({L"\\\\.\\DISPLAY1", std::vector<Monitor>(static_cast<std::size_t>(activeMonitors))});
        return system;
    }

    static Device WithEdid(std::vector<uint8_t> edid) { return {true, {{L"EDID", std::move(edid)}}}; }

    bool EnumDisplayDevice(const wchar_t* adapter, uint32_t index, platform::DisplayDevice& device) override {
        if (adapter == nullptr) {
            ++adapterQueries;
            if (index < adapters.size()) device = {adapters[index].name, L"PCI\\VEN_0000", 0};
            return index < adapters.size();
        }
        const auto a =
            std::find_if(adapters.begin(), adapters.end(), [&](const Adapter& x) { return x.name == adapter; });
        if (a == adapters.end() || index >= a->monitors.size()) return false;
        device = {a->name + L"\\Monitor" + std::to_wstring(index), a->monitors[index].id,
                  a->monitors[index].stateFlags};
        return true;
    }

    platform::DeviceList OpenMonitorList() override {
        ++listsOpened;
        lastError_ = platform::kErrorSuccess;
        return listResult;
    }

    bool EnumDevice(platform::DeviceList, uint32_t index) override {
        lastError_ = index < devices.size() ? platform::kErrorSuccess : platform::kErrorNoMoreItems;
        if (index < devices.size()) current_ = index;
        return index < devices.size();
    }

    platform::RegistryKey OpenDeviceKey(platform::DeviceList) override {
        if (!devices[current_].keyOpens) {
            lastError_ = 2;  // the key is missing
            return platform::kInvalidHandle;
        }
        ++keysOpened;
        return static_cast<platform::RegistryKey>(kKeyBase + current_);
    }

    void DestroyList(platform::DeviceList) override { ++listsDestroyed; }

    uint32_t EnumValue(platform::RegistryKey key, uint32_t index, wchar_t* name, uint32_t& nameLength, uint8_t* data,
                       uint32_t& dataLength) override {
        const Device& device = devices[static_cast<std::size_t>(key - kKeyBase)];
        if (index >= device.values.size()) return platform::kErrorNoMoreItems;
        const Value& v = device.values[index];
        if (nameLength <= v.name.size() || dataLength < v.data.size()) return platform::kErrorMoreData;
        std::copy(v.name.c_str(), v.name.c_str() + v.name.size() + 1, name);
        std::copy(v.data.begin(), v.data.end(), data);
        nameLength = static_cast<uint32_t>(v.name.size());
        dataLength = static_cast<uint32_t>(v.data.size());
        return platform::kErrorSuccess;
    }

    void CloseKey(platform::RegistryKey) override { ++keysClosed; }
    uint32_t LastError() override { return lastError_; }

private:
    static constexpr std::intptr_t kKeyBase = 0x100;
    std::size_t current_ = 0;
    uint32_t lastError_ = platform::kErrorSuccess;
};

}  // namespace quarnel::test
