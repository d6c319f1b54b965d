// SPDX-License-Identifier: MIT
#include "facts/crc16.h"

namespace quarnel::facts {
namespace {

constexpr std::size_t kSlice = 8;

// table[k][x]: what byte x does to the register when k more zero bytes follow
// it, from the single-byte table table[0]. The register update is linear in
// the register and the bytes, so eight bytes fold in as eight independent
// lookups: the two that the register's bytes meet, and the six that meet
// nothing but zeros after them.
using SlicedTables = std::array<CrcTable, kSlice>;

SlicedTables MakeSlicedTables() {
    uint16_t initial = 0;
    SlicedTables tables{};
    tables[0] = MakeCrcTable(initial);
    for (std::size_t k = 1; k < kSlice; ++k)
        for (unsigned x = 0; x < 256; ++x) {
            const uint16_t before = tables[k - 1][x];
            tables[k][x] = static_cast<uint16_t>((before << 8) ^ tables[0][before >> 8]);
        }
    return tables;
}

}  // namespace

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
    static const SlicedTables tables = MakeSlicedTables();  // constant tables: built once per process
    const CrcTable& one = tables[0];
    uint16_t crc = kCrcInitial;
    std::size_t i = 0;
    for (; i + kSlice <= size; i += kSlice) {
        unsigned next =
            tables[kSlice - 1][((crc >> 8) ^ bytes[i]) & 0xFFu] ^ tables[kSlice - 2][(crc ^ bytes[i + 1]) & 0xFFu];
        for (std::size_t k = 2; k < kSlice; ++k) next ^= tables[kSlice - 1 - k][bytes[i + k]];
        crc = static_cast<uint16_t>(next);
    }
    for (; i < size; ++i) crc = static_cast<uint16_t>((crc << 8) ^ one[((crc >> 8) ^ bytes[i]) & 0xFFu]);
    return crc;
}

}  // namespace quarnel::facts
