// SPDX-License-Identifier: MIT
#include "platform/posix/sysfs_display_system.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/utf8.h"

namespace quarnel::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view kEdidValueName = L"EDID";

bool IsCardName(const std::string& name) {
    if (name.rfind("card", 0) != 0 || name.size() == 4) return false;
    return std::all_of(name.begin() + 4, name.end(),
                       [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
}

std::string ReadAll(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool IsConnected(const fs::path& connector) { return ReadAll(connector / "status").rfind("connected", 0) == 0; }

class SysfsDisplaySystem final : public DisplaySystem {
public:
    explicit SysfsDisplaySystem(fs::path drmClass) : root_(std::move(drmClass)) {}

    bool EnumDisplayDevice(const wchar_t* adapter, uint32_t index, DisplayDevice& device) override {
        const std::vector<std::string> names =
            adapter == nullptr ? Cards() : ConnectedConnectors(ToUtf8(adapter) + "-");
        if (index >= names.size()) return Fail(kErrorNoMoreItems);
        const std::wstring name = FromUtf8(names[index]);
        if (adapter == nullptr) {
            device = {name, name, 0};
        } else {
            device = {name, L"MONITOR\\" + name + L"\\0", kDisplayActive};
        }
        return true;
    }

    DeviceList OpenMonitorList() override {
        std::vector<fs::path> monitors;
        for (const std::string& card : Cards())
            for (const std::string& connector : ConnectedConnectors(card + "-")) monitors.push_back(root_ / connector);
        const DeviceList list = nextHandle_++;
        lists_[list] = {std::move(monitors), 0};
        lastError_ = kErrorSuccess;
        return list;
    }

    bool EnumDevice(DeviceList list, uint32_t index) override {
        auto found = lists_.find(list);
        if (found == lists_.end()) return Fail(kErrorNoMoreItems);
        if (index >= found->second.devices.size()) return Fail(kErrorNoMoreItems);
        found->second.current = index;
        lastError_ = kErrorSuccess;
        return true;
    }

    RegistryKey OpenDeviceKey(DeviceList list) override {
        auto found = lists_.find(list);
        if (found == lists_.end() || found->second.current >= found->second.devices.size()) return kInvalidHandle;
        const RegistryKey key = nextHandle_++;
        keys_[key] = found->second.devices[found->second.current] / "edid";
        return key;
    }

    void DestroyList(DeviceList list) override { lists_.erase(list); }

    uint32_t EnumValue(RegistryKey key, uint32_t index, wchar_t* name, uint32_t& nameLength, uint8_t* data,
                       uint32_t& dataLength) override {
        auto found = keys_.find(key);
        if (found == keys_.end() || index > 0) return kErrorNoMoreItems;
        const std::string edid = ReadAll(found->second);
        if (edid.empty()) return kErrorNoMoreItems;
        if (nameLength <= kEdidValueName.size() || dataLength < edid.size()) return kErrorMoreData;
        std::copy(kEdidValueName.begin(), kEdidValueName.end(), name);
        name[kEdidValueName.size()] = L'\0';
        std::memcpy(data, edid.data(), edid.size());
        nameLength = static_cast<uint32_t>(kEdidValueName.size());
        dataLength = static_cast<uint32_t>(edid.size());
        return kErrorSuccess;
    }

    void CloseKey(RegistryKey key) override { keys_.erase(key); }

    uint32_t LastError() override { return lastError_; }

private:
    struct OpenList {
        std::vector<fs::path> devices;
        std::size_t current;
    };

    bool Fail(uint32_t error) {
        lastError_ = error;
        return false;
    }

    std::vector<std::string> Entries(bool (*keep)(const fs::path&, const std::string&),
                                     const std::string& prefix) const {
        std::vector<std::string> names;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(root_, error)) {
            const std::string name = entry.path().filename().string();
            if (name.rfind(prefix, 0) == 0 && keep(entry.path(), name)) names.push_back(name);
        }
        return names;
    }

    // Cards in the order of their numbers.
    std::vector<std::string> Cards() const {
        std::vector<std::string> cards =
            Entries([](const fs::path&, const std::string& n) { return IsCardName(n); }, "card");
        std::sort(cards.begin(), cards.end(), [](const std::string& a, const std::string& b) {
            return a.size() != b.size() ? a.size() < b.size() : a < b;
        });
        return cards;
    }

    std::vector<std::string> ConnectedConnectors(const std::string& cardPrefix) const {
        std::vector<std::string> connectors =
            Entries([](const fs::path& p, const std::string&) { return IsConnected(p); }, cardPrefix);
        std::sort(connectors.begin(), connectors.end());
        return connectors;
    }

    fs::path root_;
    std::intptr_t nextHandle_ = 1;
    std::map<DeviceList, OpenList> lists_;
    std::map<RegistryKey, fs::path> keys_;
    uint32_t lastError_ = kErrorSuccess;
};

}  // namespace

std::unique_ptr<DisplaySystem> MakeSysfsDisplaySystem(std::filesystem::path drmClass) {
    return std::make_unique<SysfsDisplaySystem>(std::move(drmClass));
}

DisplaySystem& SystemDisplaySystem() {
    static const std::unique_ptr<DisplaySystem> system = MakeSysfsDisplaySystem(kDrmClassFolder);
    return *system;
}

}  // namespace quarnel::platform
