// SPDX-License-Identifier: MIT
#include "platform/acpi_device.h"

namespace quarnel::platform {
namespace {

// This system has no ACPI control device of the firmware: opening always fails.
class AbsentAcpiDevice final : public AcpiDevice {
public:
    DeviceHandle Open(const wchar_t*) override { return kInvalidDevice; }
    bool Control(DeviceHandle, uint32_t, const uint8_t*, uint32_t, uint8_t*, uint32_t,
                 uint32_t& bytesReturned) override {
        bytesReturned = 0;
        return false;
    }
    void Close(DeviceHandle) override {}
};

}  // namespace

AcpiDevice& SystemAcpiDevice() {
    static AbsentAcpiDevice device;
    return device;
}

}  // namespace quarnel::platform
