// SPDX-License-Identifier: MIT
#pragma once
// A Lut16 as a firmware byte string (LUT2BIOS and BIOS2LUT in the C
// interface). Two string forms exist; LUT2BIOS writes the shorter one.

#include <cstdint>

namespace quarnel::codec {

inline constexpr uint32_t kMethodHuffman = 0;
inline constexpr uint32_t kMethodPositionLists = 1;

inline constexpr int32_t kStringFailed = -1;

// LUT2BIOS on valid pointers: writes the shorter string to `out` and its
// method to `method`. Returns 0, kStringFailed, or the chosen string's
// length when it exceeds `maxSize` (nothing written to `out` then).
int32_t StoreLut(const uint16_t* lut, uint32_t maxSize, uint8_t* out, int32_t outCapacity, uint32_t* method);

// BIOS2LUT on valid pointers: all 768 entries of `lut`, or kStringFailed
// with `lut` untouched. Reads no byte beyond what string[0] declares.
int32_t LoadLut(uint16_t* lut, const uint8_t* string, int32_t count, int32_t method);

}  // namespace quarnel::codec
