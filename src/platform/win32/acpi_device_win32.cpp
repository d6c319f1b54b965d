// SPDX-License-Identifier: MIT
#include <windows.h>

#include "platform/acpi_device.h"

namespace quarnel::platform {
namespace {

HANDLE ToHandle(DeviceHandle device) { return reinterpret_cast<HANDLE>(device); }

class Win32AcpiDevice final : public AcpiDevice {
public:
    DeviceHandle Open(const wchar_t* path) override {
        HANDLE handle = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
        return reinterpret_cast<DeviceHandle>(handle);
    }

    bool Control(DeviceHandle device, uint32_t code, const uint8_t* request, uint32_t requestSize, uint8_t* reply,
                 uint32_t replyCapacity, uint32_t& bytesReturned) override {
        DWORD returned = 0;
        // The request is only read; the call's signature is not const-correct.
        const BOOL ok = DeviceIoControl(ToHandle(device), code, const_cast<uint8_t*>(request), requestSize, reply,
                                        replyCapacity, &returned, nullptr);
        bytesReturned = returned;
        return ok != FALSE;
    }

    void Close(DeviceHandle device) override { CloseHandle(ToHandle(device)); }
};

}  // namespace

AcpiDevice& SystemAcpiDevice() {
    static Win32AcpiDevice device;
    return device;
}

}  // namespace quarnel::platform
