// SPDX-License-Identifier: MIT
#pragma once
// The firmware's ACPI control device: open it, send one I/O control request,
// close it. The reader of the calibration block talks to nothing else.

#include <cstdint>

#include "platform/seam.h"

namespace quarnel::platform {

// A device handle as the system hands it out; 0 means closed.
using DeviceHandle = std::intptr_t;
inline constexpr DeviceHandle kClosedDevice = 0;
inline constexpr DeviceHandle kInvalidDevice = -1;  // what a failed open returns

class AcpiDevice {
public:
    virtual ~AcpiDevice() = default;
    // Opens `path` for reading and writing, shared, existing only;
    // kInvalidDevice when it cannot be opened.
    virtual DeviceHandle Open(const wchar_t* path) = 0;
    // Sends `request` with control code `code` and takes up to `replyCapacity`
    // bytes of reply; false when the request fails.
    virtual bool Control(DeviceHandle device, uint32_t code, const uint8_t* request, uint32_t requestSize,
                         uint8_t* reply, uint32_t replyCapacity, uint32_t& bytesReturned) = 0;
    virtual void Close(DeviceHandle device) = 0;
};

// The device in use: the system's, unless a test has put its own in place.
AcpiDevice& ActiveAcpiDevice();

// Test seam: routes device access to a fake for the object's lifetime.
using ScopedAcpiDevice = ScopedOverride<AcpiDevice>;

}  // namespace quarnel::platform
