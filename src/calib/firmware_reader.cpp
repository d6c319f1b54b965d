// SPDX-License-Identifier: MIT
#include "calib/firmware_reader.h"

#include <algorithm>
#include <array>
#include <vector>

#include "diag/debug.h"
#include "facts/block_layout.h"
#include "platform/acpi_device.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

constexpr const char* kReaderVersion = "1.0.99.4";
constexpr int kWordSize = 4;

constexpr int32_t kReadOk = 0;
constexpr int32_t kDeviceNotOpened = -1;
constexpr int32_t kRequestFailed = -2;
constexpr int32_t kNoResult = -3;

// The display-control methods: word 0 selects the panel record, word 1 the copy.
constexpr uint32_t kDstsPanel0 = 0x000600B1;
constexpr uint32_t kDstsPanel1 = 0x000600B2;

struct MethodCall {
    uint32_t identifier;
    uint32_t word0;
    uint32_t word1;
};

MethodCall SelectMethod(int32_t method) {
    switch (method) {
        case 0:
            return {kMethodScdg, 1, 0};
        case 1:
            return {kMethodScdg, 2, 0};
        case 2:
            return {kMethodDsts, kDstsPanel0, 0};
        case 3:
            return {kMethodDsts, kDstsPanel1, 0};
        case 4:
            return {kMethodDsts, kDstsPanel0, 1};
        case 5:
            return {kMethodDsts, kDstsPanel1, 1};
        default:
            return {kMethodDsts, 0, 0};
    }
}

using ArgumentBuffer = std::array<uint8_t, kArgumentBufferSize>;

void PutWord(uint8_t* at, uint32_t value) {
    for (int i = 0; i < kWordSize; ++i) at[i] = static_cast<uint8_t>(value >> (8 * i));
}

uint32_t GetWord(const uint8_t* at) {
    uint32_t value = 0;
    for (int i = 0; i < kWordSize; ++i) value |= uint32_t{at[i]} << (8 * i);
    return value;
}

platform::DeviceHandle& AcpiDevice() {
    static platform::DeviceHandle device = platform::kClosedDevice;
    return device;
}

bool Usable(platform::DeviceHandle device) {
    return device != platform::kClosedDevice && device != platform::kInvalidDevice;
}

void InitializeZEVACPIDevice() {
    DebugMessage(L"VOK: Enter InitializeZEVACPIDevice()\n");
    AcpiInitialized() = 1;
    AcpiDevice() = platform::ActiveAcpiDevice().Open(kAcpiDevicePath);
    DebugMessage(L"VOK: Exit InitializeZEVACPIDevice()\n");
}

void UninitializeZEVACPIDevice() {
    DebugMessage(L"VOK: Enter UninitializeZEVACPIDevice()\n");
    if (Usable(AcpiDevice())) {
        platform::ActiveAcpiDevice().Close(AcpiDevice());
        AcpiDevice() = platform::kClosedDevice;
    }
    DebugMessage(L"VOK: Exit UninitializeZEVACPIDevice()\n");
}

// Sends the method call; on success the reply replaces the argument buffer
// as far as it goes.
bool ControlWMIMethod(uint32_t identifier, ArgumentBuffer& buffer) {
    DebugMessage(L"VOK: Enter ControlWMIMethod()\n");
    std::vector<uint8_t> request(kRequestSize);
    PutWord(request.data(), identifier);
    PutWord(request.data() + kWordSize, kArgumentBufferSize);
    std::copy(buffer.begin(), buffer.end(), request.begin() + 2 * kWordSize);
    std::array<uint8_t, kReplyCapacity> reply{};
    uint32_t returned = 0;
    const bool ok = platform::ActiveAcpiDevice().Control(AcpiDevice(), kWmiMethodControlCode, request.data(),
                                                         kRequestSize, reply.data(), kReplyCapacity, returned);
    if (ok) {
        const auto size = std::min<uint32_t>(returned, kArgumentBufferSize);
        std::copy_n(reply.begin(), size, buffer.begin());
    }
    DebugMessage(L"VOK: Exit ControlWMIMethod()\n");
    return ok;
}

bool General_WMIMethod_INT(uint32_t identifier, ArgumentBuffer& buffer) {
    DebugMessage(L"VOK: Enter General_WMIMethod_INT()\n");
    return Usable(AcpiDevice()) && ControlWMIMethod(identifier, buffer);
}

}  // namespace

int32_t& AcpiInitialized() {
    static int32_t initialized = 0;
    return initialized;
}

// The -2 and -3 paths leave the device open on purpose: the next read opens
// it again over the old handle.
int32_t ReadDataBlock(int32_t* count, uint8_t* buffer, int32_t method) {
    DebugPrint("ReadDataBlocklib version = %s\n", kReaderVersion);
    DebugMessage(L"VOK: Enter OLKReadDataBlock()\n");
    InitializeZEVACPIDevice();
    if (AcpiDevice() == platform::kInvalidDevice) return kDeviceNotOpened;

    ArgumentBuffer arguments{};
    const MethodCall call = SelectMethod(method);
    PutWord(arguments.data(), call.word0);
    PutWord(arguments.data() + kWordSize, call.word1);
    if (!General_WMIMethod_INT(call.identifier, arguments)) {
        DebugMessage(L"VOK: General_WMIMethod_INT(...) return FALSE\n");
        return kRequestFailed;
    }

    DebugMessage(L"VOK: General_WMIMethod_INT(...) return TRUE\n");
    const uint32_t results = GetWord(arguments.data());
    DebugPrint("ulInOutBuffer[0]: %d\n", static_cast<int32_t>(results));
    if (results == 0) {
        DebugMessage(L"VOK: ulOutBuffer[0] <= 0\n");
        return kNoResult;
    }
    DebugMessage(L"VOK: ulOutBuffer[0] > 0\n");
    if (count != nullptr) *count = static_cast<int32_t>(results);
    DebugPrint("VOK: ulOutBuffer[0] = %d > 0\n", static_cast<int32_t>(results));
    DebugMessage(L"VOK: 111111111111111111111111\n");
    if (buffer != nullptr) std::copy_n(arguments.begin() + kWordSize, facts::kBlockSize, buffer);
    UninitializeZEVACPIDevice();
    return kReadOk;
}

}  // namespace quarnel
