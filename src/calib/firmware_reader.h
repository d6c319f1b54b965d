// SPDX-License-Identifier: MIT
#pragma once
// The firmware's method call that hands out the panel's calibration block.

#include <cstdint>

namespace quarnel {

// The ACPI control device and the I/O control request it answers.
inline constexpr const wchar_t* kAcpiDevicePath = L"\\\\.\\ZEVACPI";
inline constexpr uint32_t kWmiMethodControlCode = 0x0022240C;

inline constexpr uint32_t kMethodScdg = 0x47444353;  // "SCDG" in memory
inline constexpr uint32_t kMethodDsts = 0x53545344;  // "DSTS" in memory

inline constexpr int kArgumentBufferSize = 516;  // result count word, then the block
inline constexpr int kRequestSize = 8 + kArgumentBufferSize;
inline constexpr int kReplyCapacity = 1024;

// OLKReadDataBlock: fetches the 512-byte calibration block with firmware
// method `method`. 0, -1 (device not opened), -2 (request failed) or -3 (no
// result); `count` and `buffer` are written only on success.
int32_t ReadDataBlock(int32_t* count, uint8_t* buffer, int32_t method);

// Set on every read before the device is opened; nothing reads it.
int32_t& AcpiInitialized();

}  // namespace quarnel
