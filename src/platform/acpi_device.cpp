#include "platform/acpi_device.h"

namespace quarnel::platform {

AcpiDevice& SystemAcpiDevice();  // per-system backend

namespace {
AcpiDevice*& Slot() {
    static AcpiDevice* active = nullptr;
    return active;
}
}  // namespace

AcpiDevice& ActiveAcpiDevice() {
    AcpiDevice* active = Slot();
    return active != nullptr ? *active : SystemAcpiDevice();
}

ScopedAcpiDevice::ScopedAcpiDevice(AcpiDevice& device) : previous_(Slot()) { Slot() = &device; }

ScopedAcpiDevice::~ScopedAcpiDevice() { Slot() = previous_; }

}  // namespace quarnel::platform
