// SPDX-License-Identifier: MIT
#pragma once
// The 512-byte panel calibration block, written and read by the tool on its
// own so that a block can be authored and checked field by field. A block
// decodes into a description that encodes back to the very same bytes.

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "facts/block_layout.h"
#include "model/curve.h"
#include "model/lut_string.h"

namespace quarnel::tool {

inline constexpr size_t kBlockSize = facts::kBlockSize;
using Block = std::array<uint8_t, kBlockSize>;
using SingleXyz = std::array<float, 3>;  // the block holds single-precision values

// Every field an author chooses. Fields a version does not carry are ignored
// when writing and left at their defaults when reading.
struct BlockDescription {
    std::array<uint8_t, 4> magic = facts::kMagicHdoc;  // or "R2R" and a zero byte
    uint8_t version = 7;
    uint8_t subVersion = 0;
    uint32_t dataWord = 0;
    std::array<SingleXyz, 4> primaries{};  // red, green, blue, white
    uint16_t word60 = 0;                   // version 2 on
    std::array<uint8_t, 4> bytes66{};      // version 3 on
    // Version 4 on; older blocks stand for the white the library assumes for them.
    std::array<float, 2> firstWhite{static_cast<float>(facts::kEarlyFirstWhiteX),
                                    static_cast<float>(facts::kEarlyFirstWhiteY)};
    float targetLuminance = 0.0f;
    std::array<float, 2> defaultWhite{};
    std::array<std::array<SingleXyz, 5>, 3> toneLevels{};  // version 5 on: channel, grey level
    SingleXyz black{};
    uint8_t stepByte = 0;  // version 7 on: byte 297
    // Version 6 on, exactly one of: the gamma LUT, encoded on writing; or the
    // string as it stands (method byte, then the bytes from the length byte
    // on, as far as the block holds them).
    std::optional<Curve> gammaLut;
    std::optional<LutString> gammaString;
    // CRCs are computed on writing unless these carry other values.
    std::optional<uint16_t> storedHeaderCrc;
    std::optional<uint16_t> storedToneCrc;  // version 5 on
    // Bytes that no field of this version holds, by offset: runs that are
    // not all zero.
    std::map<size_t, std::vector<uint8_t>> otherBytes;
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
    std::optional<CrcCheck> toneCrc;  // version 5 on
    std::optional<LutString> string;  // version 6 on, as stored: length byte first
    bool stringFits = true;           // the string and the byte after it lie inside the block
    int32_t gammaStatus = 0;          // BIOS2LUT's answer on the string
};

// Throws ToolError (65) when the description cannot be laid out: a gamma LUT
// that no string carries, a string or other bytes that do not fit.
Block EncodeBlock(const BlockDescription& description, bool verbose);
DecodedBlock DecodeBlock(const Block& block, bool verbose);

// Why the tool refuses a block: a bad magic, a CRC, a string past the
// block's end, or one that does not decode; nothing when all is well.
std::optional<std::string> FindBlockProblem(const DecodedBlock& block);

}  // namespace quarnel::tool
