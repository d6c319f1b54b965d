// SPDX-License-Identifier: MIT
#pragma once
// CRC-16 of the calibration block: polynomial 0x1021, initial value 0xFFFF,
// most significant bit first, no reflection, no final XOR.

#include <array>
#include <cstddef>
#include <cstdint>

namespace quarnel::facts {

inline constexpr uint16_t kCrcPolynomial = 0x1021;
inline constexpr uint16_t kCrcInitial = 0xFFFF;

using CrcTable = std::array<uint16_t, 256>;

// The byte-wise lookup table; `initial` receives the value to start from.
CrcTable MakeCrcTable(uint16_t& initial);

uint16_t Crc16(const uint8_t* bytes, std::size_t size);

}  // namespace quarnel::facts
