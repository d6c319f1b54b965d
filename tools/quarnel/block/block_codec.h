// SPDX-License-Identifier: MIT
#pragma once
// The 512-byte panel calibration block, written and read by the tool on its
// own so that a block can be authored and checked field by field.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "curve.h"

namespace quarnel::tool {

inline constexpr size_t kBlockSize = 512;
using Block = std::array<uint8_t, kBlockSize>;
using Xyz = std::array<double, 3>;

// Every field an author chooses. Fields a version does not carry are ignored
// when writing and left at their defaults when reading.
struct BlockDescription {
    std::string magic = "HDOC";  // or "R2R"
    int version = 7;             // 1..255
    int subVersion = 0;
    uint32_t dataWord = 0;
    std::array<Xyz, 4> primaries{};                // red, green, blue, white
    uint32_t word60 = 0;                           // version 2 on
    std::array<uint8_t, 4> bytes66{};              // version 3 on
    std::array<double, 2> firstWhite{0.3, 0.315};  // version 4 on
    double targetLuminance = 0.0;
    std::array<double, 2> defaultWhite{};
    std::array<std::array<Xyz, 5>, 3> toneLevels{};  // version 5 on: channel, grey level
    Xyz black{};
    int stepByte = 0;               // version 7 on: byte 297
    std::optional<Curve> gammaLut;  // version 6 on; identity when absent
};

struct CrcCheck {
    uint16_t stored = 0;
    uint16_t computed = 0;
    bool ok() const { return stored == computed; }
};

struct DecodedBlock {
    BlockDescription description;
    bool magicOk = false;
    CrcCheck headerCrc;
    std::optional<CrcCheck> toneCrc;     // version 5 on
    int useMethod = 0;                   // version 6 on
    std::vector<uint8_t> lutString;      // without its size byte
    std::optional<int32_t> gammaStatus;  // BIOS2LUT's answer on the string
    bool stringFits = true;              // the string ends inside the block
};

// CRC-16 with polynomial 0x1021, start 0xFFFF, no reflection.
uint16_t Crc16(const uint8_t* bytes, size_t count);

// Throws ToolError (65) when the gamma LUT cannot be stored as a string.
Block EncodeBlock(const BlockDescription& description, bool verbose);
DecodedBlock DecodeBlock(const Block& block, bool verbose);

// Why the library's reader rejects a block (too short, bad magic, a CRC, a
// string past the end), or nothing when it accepts it.
std::optional<std::string> FindBlockProblem(std::string_view bytes);

}  // namespace quarnel::tool
