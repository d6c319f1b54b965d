// SPDX-License-Identifier: MIT
#include "platform/acpi_device.h"

namespace quarnel::platform {

AcpiDevice& SystemAcpiDevice();  // per-system backend

AcpiDevice& ActiveAcpiDevice() { return ActiveOr<AcpiDevice>(SystemAcpiDevice); }

}  // namespace quarnel::platform
