// SPDX-License-Identifier: MIT
#pragma once
// Writes 512-byte calibration blocks field by field, with correct or deliberately broken CRCs.

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "facts/block_layout.h"

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

// Every field lands where the block layout puts it; the CRCs come from the
// bit-by-bit reference above.
inline std::vector<uint8_t> WriteBlock(const BlockFields& f) {
    std::vector<uint8_t> b(facts::kBlockSize, 0);
    const auto bigEndian = [&](const facts::BlockField& field, uint32_t v) {
        for (std::size_t i = 0; i < field.size; ++i)
            b[field.offset + i] = static_cast<uint8_t>(v >> (8 * (field.size - 1 - i)));
    };
    const auto singles = [&](const facts::BlockField& field, const auto& values) {
        std::size_t at = field.offset;
        for (float v : values)
            for (int i = 0; i < 4; ++i) b[at++] = static_cast<uint8_t>(std::bit_cast<uint32_t>(v) >> (8 * i));
    };
    const auto crc = [&](const facts::CoveredCrc& c, bool broken) {
        const auto value =
            static_cast<uint16_t>(ReferenceCrc16(b.data() + c.covered.offset, c.covered.size) ^ (broken ? 0x0100 : 0));
        b[c.stored.offset] = static_cast<uint8_t>(value & 0xFF);
        b[c.stored.offset + 1] = static_cast<uint8_t>(value >> 8);
    };
    std::copy(f.magic.begin(), f.magic.end(), b.begin());
    b[facts::kVersion.offset] = f.version;
    b[facts::kSubVersion.offset] = 3;
    bigEndian(facts::kDataWord, 0x01020304);
    singles(facts::kPrimaries, f.primaries);
    crc(facts::kHeaderCrc, f.breakHeaderCrc);
    const auto carried = [&](const facts::BlockField& field) { return facts::Carries(field, f.version); };
    if (carried(facts::kWord60)) bigEndian(facts::kWord60, 0xA1B2);
    if (carried(facts::kBytes66)) bigEndian(facts::kBytes66, 0x09080706);
    if (carried(facts::kFirstWhite)) {
        singles(facts::kFirstWhite, std::array{f.whites[0], f.whites[1]});
        singles(facts::kTargetLuminance, std::array{f.whites[2]});
        singles(facts::kDefaultWhite, std::array{f.whites[3], f.whites[4]});
    }
    if (carried(facts::kToneLevels)) {
        std::array<float, 45> tone{};
        for (std::size_t i = 0; i < tone.size(); ++i) tone[i] = f.tone.empty() ? ToneLevel(i) : f.tone[i];
        singles(facts::kToneLevels, tone);
        crc(facts::kToneCrc, f.breakToneCrc);
        singles(facts::kBlackXyz, kBlack);
    }
    const facts::Trailer& trailer = facts::TrailerOf(f.version);
    if (carried(trailer.useMethod)) {
        if (carried(facts::kStepByte)) b[facts::kStepByte.offset] = f.byte297;
        b[trailer.useMethod.offset] = f.useMethod;
        for (std::size_t i = 0; i < f.lutString.size(); ++i)
            if (trailer.lutStringSize.offset + i < b.size()) b[trailer.lutStringSize.offset + i] = f.lutString[i];
    }
    return b;
}

inline std::string AsString(const std::vector<uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace quarnel::test
