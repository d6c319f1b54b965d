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

// Set on every read before the device is opened; nothing reads it.
int32_t& AcpiInitialized();

}  // namespace quarnel
