// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes, of any length, as a creator's calibration file
// through the whole calibration read.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "calib/bios_info.h"
#include "platform/display_system.h"

namespace {

// No displays: the fuzzer exercises the block, not the machine's monitors.
class NoDisplays final : public quarnel::platform::DisplaySystem {
public:
    bool EnumDisplayDevice(const wchar_t*, uint32_t, quarnel::platform::DisplayDevice&) override { return false; }
    quarnel::platform::DeviceList OpenMonitorList() override { return 0; }
    bool EnumDevice(quarnel::platform::DeviceList, uint32_t) override { return false; }
    quarnel::platform::RegistryKey OpenDeviceKey(quarnel::platform::DeviceList) override { return 0; }
    void DestroyList(quarnel::platform::DeviceList) override {}
    uint32_t EnumValue(quarnel::platform::RegistryKey, uint32_t, wchar_t*, uint32_t&, uint8_t*, uint32_t&) override {
        return quarnel::platform::kErrorNoMoreItems;
    }
    void CloseKey(quarnel::platform::RegistryKey) override {}
    uint32_t LastError() override { return quarnel::platform::kErrorNoMoreItems; }
};

const std::string& Folder() {
    static const std::string folder = [] {
        const char* tmp = std::getenv("TMPDIR");
        return std::string(tmp != nullptr ? tmp : "/tmp") + "/quarnel-fuzz-" + std::to_string(getpid()) + "-";
    }();
    return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static NoDisplays displays;
    static quarnel::platform::ScopedDisplaySystem scope(displays);
    static bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr;
    static_cast<void>(quiet);

    const std::string file = Folder() + "panel.bin";
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);

    auto ctx = std::make_unique<CctContext>();
    ctx->enableUserK = 1;
    ctx->kalzenPath = Folder().c_str();
    ctx->kalzenFilename = "panel.bin";
    quarnel::ToneModel tone;
    quarnel::FactoryTargets targets;
    quarnel::GetBIOSInfo(*ctx, tone, targets);
    std::remove(file.c_str());
    return 0;
}
