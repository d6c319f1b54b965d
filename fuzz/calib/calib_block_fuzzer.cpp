// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes, of any length, as the firmware's calibration block
// through the whole calibration read: parse, CRC checks, tone model and
// gamma string. The block arrives from a device held in memory, so no input
// touches the file system.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "calib/bios_info.h"
#include "platform/acpi_device.h"
#include "platform/display_system.h"

namespace {

using namespace quarnel::platform;

// No displays: the fuzzer exercises the block, not the machine's monitors.
class NoDisplays final : public DisplaySystem {
public:
    bool EnumDisplayDevice(const wchar_t*, uint32_t, DisplayDevice&) override { return false; }
    DeviceList OpenMonitorList() override { return 0; }
    bool EnumDevice(DeviceList, uint32_t) override { return false; }
    RegistryKey OpenDeviceKey(DeviceList) override { return 0; }
    void DestroyList(DeviceList) override {}
    uint32_t EnumValue(RegistryKey, uint32_t, wchar_t*, uint32_t&, uint8_t*, uint32_t&) override {
        return kErrorNoMoreItems;
    }
    void CloseKey(RegistryKey) override {}
    uint32_t LastError() override { return kErrorNoMoreItems; }
};

// Answers every method call with a result count of 1 and the input as the
// block; a short input leaves the rest of the argument buffer as it was sent.
class InputDevice final : public AcpiDevice {
public:
    const uint8_t* data = nullptr;
    std::size_t size = 0;

    DeviceHandle Open(const wchar_t*) override { return 1; }
    bool Control(DeviceHandle, uint32_t, const uint8_t*, uint32_t, uint8_t* reply, uint32_t capacity,
                 uint32_t& returned) override {
        const uint8_t count[4] = {1, 0, 0, 0};
        const std::size_t body = std::min<std::size_t>(size, capacity - sizeof count);
        std::copy_n(count, sizeof count, reply);
        std::copy_n(data, body, reply + sizeof count);
        returned = static_cast<uint32_t>(sizeof count + body);
        return true;
    }
    void Close(DeviceHandle) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static NoDisplays displays;
    static ScopedDisplaySystem displayScope(displays);
    static InputDevice device;
    static ScopedAcpiDevice deviceScope(device);
    device.data = data;
    device.size = size;

    auto ctx = std::make_unique<CctContext>();
    quarnel::ToneModel tone;
    quarnel::FactoryTargets targets;
    quarnel::GetBIOSInfo(*ctx, tone, targets);
    return 0;
}
