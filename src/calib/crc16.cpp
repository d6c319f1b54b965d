// SPDX-License-Identifier: MIT
#include "calib/crc16.h"

namespace quarnel {

CrcTable MakeCrcTable(uint16_t& initial) {
    CrcTable table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned value = i << 8;
        for (int bit = 0; bit < 8; ++bit) value = (value & 0x8000u) != 0 ? (value << 1) ^ kCrcPolynomial : value << 1;
        table[i] = static_cast<uint16_t>(value);
    }
    initial = kCrcInitial;
    return table;
}

uint16_t Crc16(const uint8_t* bytes, std::size_t size) {
    uint16_t initial = 0;
    static const CrcTable table = MakeCrcTable(initial);  // a constant table: built once per process
    uint16_t crc = kCrcInitial;
    for (std::size_t i = 0; i < size; ++i)
        crc = static_cast<uint16_t>((crc << 8) ^ table[((crc >> 8) ^ bytes[i]) & 0xFFu]);
    return crc;
}

}  // namespace quarnel
