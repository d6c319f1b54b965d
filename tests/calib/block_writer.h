#pragma once
// Writes 512-byte calibration blocks for the tests, field by field, with
// correct or deliberately broken CRCs.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace quarnel::test {

struct BlockFields {
    std::array<uint8_t, 4> magic{'H', 'D', 'O', 'C'};
    uint8_t version = 7;
    uint8_t subVersion = 3;
    uint32_t dataWord = 0x01020304;
    std::array<float, 12> primaries{0.64f, 0.33f, 0.03f, 0.30f, 0.60f, 0.10f,
                                    0.15f, 0.06f, 0.79f, 95.05f, 100.0f, 108.9f};
    uint16_t word60 = 0xA1B2;
    std::array<uint8_t, 4> bytes66{9, 8, 7, 6};
    std::array<float, 5> whites{0.3127f, 0.329f, 250.5f, 0.3101f, 0.3162f};  // first x, y, luminance, default x, y
    std::array<float, 45> toneLevels = DefaultToneLevels();
    std::array<float, 3> black{0.21f, 0.22f, 0.23f};
    uint8_t byte297 = 0x5A;  // the byte a version-7 block skips
    uint8_t useMethod = 1;
    std::vector<uint8_t> lutString{4, 0, 0, 0};  // as the encoder writes it, length byte first
    bool breakHeaderCrc = false;
    bool breakToneCrc = false;

    static std::array<float, 45> DefaultToneLevels();
};

// Bit-by-bit CRC-16 (polynomial 0x1021, initial 0xFFFF), kept apart from the
// library's table-driven one.
uint16_t ReferenceCrc16(const uint8_t* bytes, std::size_t size);

std::vector<uint8_t> WriteBlock(const BlockFields& fields);
std::string AsString(const std::vector<uint8_t>& bytes);

// Offset of the LUT string's length byte for a version-6 or later block.
int LutStringOffset(uint8_t version);

}  // namespace quarnel::test
