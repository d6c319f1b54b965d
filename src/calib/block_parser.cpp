// SPDX-License-Identifier: MIT
#include "calib/block_parser.h"

#include <algorithm>
#include <bit>

#include "diag/debug.h"
#include "facts/block_layout.h"
#include "facts/crc16.h"

namespace quarnel {
namespace {

constexpr int kToneValuesPerChannel = static_cast<int>(facts::kToneLevels.size / facts::kSingleSize / 3);
constexpr int kBlackColumns = static_cast<int>(facts::kBlackXyz.size / facts::kSingleSize);
static_assert(kBlackColumns + kToneValuesPerChannel == kToneRowSize);

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

    // Steps over the bytes between two fields without reading them.
    void Skip(const facts::BlockField& before, const facts::BlockField& after) {
        data_.cursor += static_cast<int32_t>(facts::Gap(before, after));
    }

    uint8_t Byte() { return Fits(1) ? data_.raw[static_cast<std::size_t>(data_.cursor++)] : 0; }

    uint32_t BigEndian(int size) {
        if (!Fits(size)) return 0;
        uint32_t value = 0;
        for (int i = 0; i < size; ++i) value = (value << 8) | data_.raw[static_cast<std::size_t>(data_.cursor++)];
        return value;
    }

    // Low byte first, whatever the host's order; written as one expression
    // of the four bytes, which the compiler reads as one 32-bit load.
    double Single() {
        if (!Fits(4)) return 0.0;
        const uint8_t* at = data_.raw.data() + data_.cursor;
        data_.cursor += 4;
        const uint32_t bits = uint32_t{at[0]} | uint32_t{at[1]} << 8 | uint32_t{at[2]} << 16 | uint32_t{at[3]} << 24;
        return static_cast<double>(std::bit_cast<float>(bits));
    }

private:
    BiosData& data_;
    int32_t end_;
    bool overrun_ = false;
};

void ReadWhites(BlockReader& in, BiosData& data) {
    if (!facts::Carries(facts::kFirstWhite, data.version)) {
        data.firstWhite[0] = facts::kEarlyFirstWhiteX;
        data.firstWhite[1] = facts::kEarlyFirstWhiteY;
        data.targetLuminance = 0.0;
        data.defaultWhite[0] = data.defaultWhite[1] = 0.0;
        return;
    }
    in.Skip(facts::kBytes66, facts::kFirstWhite);
    data.firstWhite[0] = in.Single();
    data.firstWhite[1] = in.Single();
    data.targetLuminance = in.Single();
    data.defaultWhite[0] = in.Single();
    data.defaultWhite[1] = in.Single();
}

void ReadTone(BlockReader& in, BiosData& data) {
    in.Skip(facts::kDefaultWhite, facts::kToneLevels);
    for (auto& row : data.tone)
        for (int k = 0; k < kToneValuesPerChannel; ++k) row[kBlackColumns + k] = in.Single();
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
    in.Skip(facts::kBlackXyz, facts::TrailerOf(data.version).useMethod);
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

// Compares the CRC of the bytes it covers with the stored bytes as parsed.
bool CrcMatches(const BiosData& data, const facts::CoveredCrc& crc, uint8_t low, uint8_t high) {
    const uint16_t computed = facts::Crc16(data.raw.data() + crc.covered.offset, crc.covered.size);
    return high == (computed >> 8) && low == (computed & 0xFFu);
}

}  // namespace

bool ParseHeader(BiosData& data) {
    BlockReader in(data);
    for (auto& byte : data.magic) {
        byte = in.Byte();
        DebugPrint("[%c]", byte);
    }
    DebugPrint("\n");
    if (!facts::MagicAccepted(data.magic.data())) {
        data.BiosDataStatus = kBiosBadBlock;
        DebugPrint("BIOS header incorrect...\n");
        return !in.overrun();
    }

    data.version = in.Byte();
    DebugPrint("Parsing version = %d\n", data.version);
    data.subVersion = in.Byte();
    data.crcLow = in.Byte();
    data.crcHigh = in.Byte();
    data.dataWord = in.BigEndian(facts::kDataWord.size);
    for (auto& row : data.primaries)
        for (double& value : row) value = in.Single();

    data.word60 = facts::Carries(facts::kWord60, data.version) ? in.BigEndian(facts::kWord60.size) : 0;
    if (facts::Carries(facts::kBytes66, data.version)) {
        in.Skip(facts::kWord60, facts::kBytes66);
        for (auto& byte : data.bytes66) byte = in.Byte();
    }
    ReadWhites(in, data);
    if (facts::Carries(facts::kToneLevels, data.version)) ReadTone(in, data);
    if (in.overrun()) return false;
    if (!facts::Carries(facts::TrailerOf(data.version).useMethod, data.version)) return true;
    return ReadLutString(in, data);
}

bool CheckHeaderCrc(const BiosData& data) { return CrcMatches(data, facts::kHeaderCrc, data.crcLow, data.crcHigh); }

bool CheckToneCrc(const BiosData& data) { return CrcMatches(data, facts::kToneCrc, data.crc2Low, data.crc2High); }

}  // namespace quarnel
