// SPDX-License-Identifier: MIT
#include "calib/block_parser.h"

#include <algorithm>
#include <bit>

#include "calib/crc16.h"
#include "diag/debug.h"

namespace quarnel {
namespace {

constexpr uint8_t kMagicHdoc[4] = {'H', 'D', 'O', 'C'};
constexpr uint8_t kMagicR2r[4] = {'R', '2', 'R', '\0'};

// Fields and gaps of the block, in bytes.
constexpr int kPrimariesOffset = 12;
constexpr int kPrimariesSize = 48;
constexpr int kToneLevelsOffset = 103;
constexpr int kToneLevelsSize = 180;
constexpr int kVersion3Gap = 4;
constexpr int kVersion4Gap = 1;
constexpr int kVersion5Gap = 12;
constexpr int kVersion7Gap = 1;
constexpr int kBlockToneValuesPerChannel = 15;
constexpr int kBlackColumns = 3;

// Whites that a block older than version 4 implies.
constexpr double kOldFirstWhiteX = 0.3;
constexpr double kOldFirstWhiteY = 0.315;

// Reads the block at the record's cursor. A read that would pass `length`
// yields 0, leaves the cursor alone and marks the parse as overrun.
class BlockReader {
public:
    explicit BlockReader(BiosData& data)
        : data_(data), end_(std::min<int32_t>(data.length, static_cast<int32_t>(data.raw.size()))) {}

    bool overrun() const { return overrun_; }

    bool Fits(int32_t size) {
        if (data_.cursor >= 0 && data_.cursor <= end_ - size) return true;
        overrun_ = true;
        return false;
    }

    void Skip(int32_t size) { data_.cursor += size; }

    uint8_t Byte() { return Fits(1) ? data_.raw[static_cast<std::size_t>(data_.cursor++)] : 0; }

    uint32_t BigEndian(int size) {
        if (!Fits(size)) return 0;
        uint32_t value = 0;
        for (int i = 0; i < size; ++i) value = (value << 8) | data_.raw[static_cast<std::size_t>(data_.cursor++)];
        return value;
    }

    double Single() {
        if (!Fits(4)) return 0.0;
        uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) bits |= uint32_t{data_.raw[static_cast<std::size_t>(data_.cursor++)]} << (8 * i);
        return static_cast<double>(std::bit_cast<float>(bits));
    }

private:
    BiosData& data_;
    int32_t end_;
    bool overrun_ = false;
};

bool MagicAccepted(const std::array<uint8_t, 4>& magic) {
    return std::equal(magic.begin(), magic.end(), kMagicHdoc) || std::equal(magic.begin(), magic.end(), kMagicR2r);
}

void ReadWhites(BlockReader& in, BiosData& data) {
    if (data.version < 4) {
        data.firstWhite[0] = kOldFirstWhiteX;
        data.firstWhite[1] = kOldFirstWhiteY;
        data.targetLuminance = 0.0;
        data.defaultWhite[0] = data.defaultWhite[1] = 0.0;
        return;
    }
    in.Skip(kVersion4Gap);
    data.firstWhite[0] = in.Single();
    data.firstWhite[1] = in.Single();
    data.targetLuminance = in.Single();
    data.defaultWhite[0] = in.Single();
    data.defaultWhite[1] = in.Single();
}

void ReadTone(BlockReader& in, BiosData& data) {
    in.Skip(kVersion5Gap);
    for (auto& row : data.tone)
        for (int k = 0; k < kBlockToneValuesPerChannel; ++k) row[kBlackColumns + k] = in.Single();
    data.crc2Low = in.Byte();
    data.crc2High = in.Byte();
    for (int k = 0; k < kBlackColumns; ++k) {
        const double black = in.Single();
        for (auto& row : data.tone) row[k] = black;
    }
}

// The LUT string is stored length byte first, so the copy starts one back,
// at the size byte, and takes N + 1 bytes; it must lie inside the block.
bool ReadLutString(BlockReader& in, BiosData& data) {
    if (data.version >= 7) in.Skip(kVersion7Gap);
    data.useMethod = in.Byte();
    data.lutStringSize = in.Byte();
    if (in.overrun()) return false;
    DebugPrint("Use Method = %d   bios size = %d\n", data.useMethod, data.lutStringSize);
    data.cursor -= 1;
    const int32_t size = int32_t{data.lutStringSize} + 1;
    if (!in.Fits(size)) return false;
    data.lutString.assign(data.raw.data() + data.cursor, static_cast<std::size_t>(size));
    data.cursor += size;
    return true;
}

}  // namespace

bool ParseHeader(BiosData& data) {
    BlockReader in(data);
    for (auto& byte : data.magic) {
        byte = in.Byte();
        DebugPrint("[%c]", byte);
    }
    DebugPrint("\n");
    if (!MagicAccepted(data.magic)) {
        data.BiosDataStatus = kBiosBadBlock;
        DebugPrint("BIOS header incorrect...\n");
        return !in.overrun();
    }

    data.version = in.Byte();
    DebugPrint("Parsing version = %d\n", data.version);
    data.subVersion = in.Byte();
    data.crcLow = in.Byte();
    data.crcHigh = in.Byte();
    data.dataWord = in.BigEndian(4);
    for (auto& row : data.primaries)
        for (double& value : row) value = in.Single();

    data.word60 = data.version >= 2 ? in.BigEndian(2) : 0;
    if (data.version >= 3) {
        in.Skip(kVersion3Gap);
        for (auto& byte : data.bytes66) byte = in.Byte();
    }
    ReadWhites(in, data);
    if (data.version >= 5) ReadTone(in, data);
    if (in.overrun()) return false;
    if (data.version < 6) return true;
    return ReadLutString(in, data);
}

bool CheckHeaderCrc(const BiosData& data) {
    if (data.raw.size() < static_cast<std::size_t>(kPrimariesOffset + kPrimariesSize)) return false;
    const uint16_t crc = Crc16(data.raw.data() + kPrimariesOffset, kPrimariesSize);
    return data.crcHigh == (crc >> 8) && data.crcLow == (crc & 0xFFu);
}

bool CheckToneCrc(const BiosData& data) {
    if (data.raw.size() < static_cast<std::size_t>(kToneLevelsOffset + kToneLevelsSize)) return false;
    const uint16_t crc = Crc16(data.raw.data() + kToneLevelsOffset, kToneLevelsSize);
    return data.crc2High == (crc >> 8) && data.crc2Low == (crc & 0xFFu);
}

}  // namespace quarnel
