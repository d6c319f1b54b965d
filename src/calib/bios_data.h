// SPDX-License-Identifier: MIT
#pragma once
// BiosData: one 512-byte factory calibration block, where it came from, and
// its parse; plus the monitors' EDID blocks collected with it.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/constants.h"

namespace quarnel {

inline constexpr std::size_t kEdidBlockSize = 1024;

// Values of BiosDataStatus.
inline constexpr int32_t kBiosOk = 0;
inline constexpr int32_t kBiosHeaderCrcError = 1;
inline constexpr int32_t kBiosToneCrcError = 5;
inline constexpr int32_t kBiosBadBlock = 6;  // bad magic, or a read past the end of the block
inline constexpr int32_t kBiosFileNotOpened = 7;

inline constexpr int kToneRowSize = 18;  // black XYZ, then five grey levels x XYZ

using EdidBlock = std::array<uint8_t, kEdidBlockSize>;

struct BiosData {
    int32_t BiosDataStatus = kBiosOk;
    std::array<uint8_t, 4> magic{};
    uint8_t version = 0;
    uint8_t subVersion = 0;
    uint8_t crcLow = 0;
    uint8_t crcHigh = 0;
    uint32_t dataWord = 0;
    std::vector<EdidBlock> edidBlocks;
    int32_t edidCount = 0;
    double primaries[4][3] = {};
    uint32_t word60 = 0;
    std::array<uint8_t, 4> bytes66{};
    double firstWhite[2] = {};
    double defaultWhite[2] = {};
    double targetLuminance = 0.0;
    double tone[3][kToneRowSize] = {};
    uint8_t crc2Low = 0;
    uint8_t crc2High = 0;
    uint8_t useMethod = 0;
    uint8_t lutStringSize = 0;
    std::vector<uint8_t> lutString;  // the size byte N, then the N string bytes
    std::optional<std::string> path;
    int32_t cursor = 0;
    int32_t length = 0;
    std::vector<uint8_t> raw;  // the block, kBlockSize bytes once read
    // The block that Open's probe of the file read: the next GetData takes it
    // instead of reading the file again.
    std::optional<std::vector<uint8_t>> probedBlock;
};

}  // namespace quarnel
