// SPDX-License-Identifier: MIT
#pragma once
// BiosData: one 512-byte factory calibration block, where it came from, and
// its parse; plus the monitors' EDID blocks collected with it.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
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

// The LUT string as the block stores it: its size byte N (0..255), then the
// N string bytes; kept in the record itself.
class LutStringBytes {
public:
    void assign(const uint8_t* first, std::size_t count) {
        count_ = std::min(count, bytes_.size());
        std::copy_n(first, count_, bytes_.begin());
    }
    const uint8_t* data() const { return bytes_.data(); }
    std::size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }

private:
    std::array<uint8_t, 256> bytes_{};
    std::size_t count_ = 0;
};

// A calibration file's path, the folder and the name joined as they are:
// kept in the record itself, and on the heap only when it outgrows that.
class FilePath {
public:
    FilePath(const char* folder, const char* name) {
        const std::size_t folderLength = std::strlen(folder);
        const std::size_t nameLength = std::strlen(name);
        if (folderLength + nameLength < short_.size()) {
            // Both parts go through the library's copy: inlined as a string
            // move, the name's few bytes cost more to start than to copy.
            std::memcpy(short_.data(), folder, folderLength);
            std::copy_n(name, nameLength + 1, short_.data() + folderLength);
        } else {
            long_ = std::string(folder) + name;
        }
    }
    const char* c_str() const { return long_.empty() ? short_.data() : long_.c_str(); }

private:
    std::array<char, 4096> short_;  // only the joined text and its terminator are ever read
    std::string long_;
};

struct BiosData {
    // Every field has an initialiser of its own; provided, so that making a
    // record does not first clear all of its bytes (the path's buffer alone
    // is 4 KB).
    BiosData() {}

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
    LutStringBytes lutString;
    std::optional<FilePath> path;
    int32_t cursor = 0;
    int32_t length = 0;
    std::array<uint8_t, kBlockSize> raw{};  // the block
    // The block that Open's probe of the file read: the next GetData takes it
    // instead of reading the file again.
    std::optional<std::array<uint8_t, kBlockSize>> probedBlock;
};

}  // namespace quarnel
