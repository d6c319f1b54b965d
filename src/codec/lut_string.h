#pragma once
// A Lut16 as a firmware byte string (LUT2BIOS and BIOS2LUT in the C
// interface). Two string forms exist; LUT2BIOS writes the shorter one.

#include <cstdint>

namespace quarnel::codec {

inline constexpr uint32_t kMethodHuffman = 0;
inline constexpr uint32_t kMethodPositionLists = 1;

inline constexpr int32_t kStringFailed = -1;

}  // namespace quarnel::codec
