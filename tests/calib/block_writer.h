// SPDX-License-Identifier: MIT
#pragma once
// Writes 512-byte calibration blocks field by field, with correct or deliberately broken CRCs.

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace quarnel::test {

// The field values every written block carries.
inline constexpr std::array<float, 12> kPrimaries{0.64f, 0.33f, 0.03f, 0.30f,  0.60f,  0.10f,
                                                  0.15f, 0.06f, 0.79f, 95.05f, 100.0f, 108.9f};
inline constexpr std::array<float, 5> kWhites{0.3127f, 0.329f, 250.5f, 0.3101f, 0.3162f};  // first, luminance, default
inline constexpr std::array<float, 3> kBlack{0.21f, 0.22f, 0.23f};
inline float ToneLevel(std::size_t i) { return 0.5f + 1.25f * static_cast<float>(i); }  // 45 of them

struct BlockFields {
    std::array<uint8_t, 4> magic{'H', 'D', 'O', 'C'};
    uint8_t version = 7;
    uint8_t byte297 = 0x5A;  // the byte a version-7 block skips
    uint8_t useMethod = 1;
    std::vector<uint8_t> lutString{4, 0, 0, 0};  // length byte first
    bool breakHeaderCrc = false, breakToneCrc = false;
    std::array<float, 12> primaries = kPrimaries;
    std::array<float, 5> whites = kWhites;
    std::vector<float> tone{};  // the 45 tone levels; empty: ToneLevel(i)
};

// Bit-by-bit CRC-16 (polynomial 0x1021, initial 0xFFFF), apart from the library's table-driven one.
inline uint16_t ReferenceCrc16(const uint8_t* bytes, std::size_t size) {
    uint16_t crc = 0xFFFF;
    for (std::size_t i = 0; i < size; ++i)
        for (int bit = 7; bit >= 0; --bit) {
            const bool flip = (((bytes[i] >> bit) & 1) != 0) != ((crc & 0x8000) != 0);
            crc = static_cast<uint16_t>(flip ? (crc << 1) ^ 0x1021 : crc << 1);
        }
    return crc;
}

// Offset of the LUT string's length byte for a version-6 or later block.
inline int LutStringOffset(uint8_t version) { return version >= 7 ? 299 : 298; }

inline std::vector<uint8_t> WriteBlock(const BlockFields& f) {
    std::vector<uint8_t> b(512, 0);
    std::size_t at = 0;
    auto put = [&](uint32_t v, int size, bool bigEndian = true) {
        for (int i = 0; i < size; ++i, ++at)
            if (at < b.size()) b[at] = static_cast<uint8_t>(v >> (8 * (bigEndian ? size - 1 - i : i)));
    };
    auto singles = [&](const auto& values) {
        for (float v : values) put(std::bit_cast<uint32_t>(v), 4, false);
    };
    auto crc = [&](std::size_t from, std::size_t size, std::size_t lowAt, bool broken) {
        const auto c = static_cast<uint16_t>(ReferenceCrc16(b.data() + from, size) ^ (broken ? 0x0100 : 0));
        b[lowAt] = static_cast<uint8_t>(c & 0xFF);
        b[lowAt + 1] = static_cast<uint8_t>(c >> 8);
    };
    for (uint8_t v : f.magic) put(v, 1);
    put(f.version, 1);
    put(3, 1);  // sub-version
    at = 8;
    put(0x01020304, 4);
    singles(f.primaries);
    crc(12, 48, 6, f.breakHeaderCrc);
    if (f.version >= 2) put(0xA1B2, 2);
    at = 66;
    if (f.version >= 3) put(0x09080706, 4);
    at = 71;
    if (f.version >= 4) singles(f.whites);
    if (f.version >= 5) {
        at = 103;
        for (std::size_t i = 0; i < 45; ++i) singles(std::array{f.tone.empty() ? ToneLevel(i) : f.tone[i]});
        crc(103, 180, 283, f.breakToneCrc);
        at = 285;
        singles(kBlack);
    }
    if (f.version >= 6) {
        at = 297;
        if (f.version >= 7) put(f.byte297, 1);
        put(f.useMethod, 1);
        for (uint8_t v : f.lutString) put(v, 1);
    }
    return b;
}

inline std::string AsString(const std::vector<uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace quarnel::test
