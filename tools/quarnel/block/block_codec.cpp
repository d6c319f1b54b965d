// SPDX-License-Identifier: MIT
#include "block/block_codec.h"

#include <bit>
#include <cstring>

#include "lut_string.h"
#include "tool_error.h"

namespace quarnel::tool {
namespace {

// Field offsets of the block.
constexpr size_t kVersionAt = 4, kSubVersionAt = 5, kCrcAt = 6, kDataWordAt = 8, kPrimariesAt = 12;
constexpr size_t kPrimariesSize = 48, kWord60At = 60, kBytes66At = 66, kWhitesAt = 71;
constexpr size_t kToneAt = 103, kToneSize = 180, kToneCrcAt = 283, kBlackAt = 285, kTrailerAt = 297;

class Writer {
public:
    explicit Writer(Block& block) : block_(block) {}
    void Byte(size_t at, uint32_t v) { block_[at] = static_cast<uint8_t>(v); }
    void BigEndian(size_t at, uint32_t v, size_t size) {
        for (size_t i = 0; i < size; ++i) Byte(at + i, v >> (8 * (size - 1 - i)));
    }
    void Single(size_t at, double v) {
        const auto bits = std::bit_cast<uint32_t>(static_cast<float>(v));
        for (size_t i = 0; i < 4; ++i) Byte(at + i, bits >> (8 * i));
    }
    void Crc(size_t from, size_t size, size_t at) {
        const uint16_t crc = Crc16(block_.data() + from, size);
        Byte(at, crc & 0xFFu);
        Byte(at + 1, crc >> 8);
    }

private:
    Block& block_;
};

class Reader {
public:
    explicit Reader(const Block& block) : block_(block) {}
    uint8_t Byte(size_t at) const { return block_[at]; }
    uint32_t BigEndian(size_t at, size_t size) const {
        uint32_t v = 0;
        for (size_t i = 0; i < size; ++i) v = (v << 8) | block_[at + i];
        return v;
    }
    double Single(size_t at) const {
        uint32_t bits = 0;
        for (size_t i = 0; i < 4; ++i) bits |= static_cast<uint32_t>(block_[at + i]) << (8 * i);
        return static_cast<double>(std::bit_cast<float>(bits));
    }
    uint16_t Crc(size_t at) const { return static_cast<uint16_t>(block_[at] | (block_[at + 1] << 8)); }

private:
    const Block& block_;
};

size_t MethodAt(int version) { return version >= 7 ? kTrailerAt + 1 : kTrailerAt; }

void WriteGammaString(const BlockDescription& d, Writer& out, bool verbose) {
    const auto string = EncodeLutString(d.gammaLut.value_or(IdentityCurve()), verbose);
    if (!string) throw ToolError(kExitData, "gamma LUT cannot be stored as a LUT string");
    const size_t at = MethodAt(d.version);
    if (at + 1 + string->bytes.size() > kBlockSize)
        throw ToolError(
            kExitData, "gamma LUT string of " + std::to_string(string->bytes.size()) + " bytes does not fit the block");
    if (d.version >= 7) out.Byte(kTrailerAt, static_cast<uint32_t>(d.stepByte));
    out.Byte(at, static_cast<uint32_t>(string->method));
    for (size_t i = 0; i < string->bytes.size(); ++i) out.Byte(at + 1 + i, string->bytes[i]);
}

void ReadGammaString(const Block& block, DecodedBlock& result, bool verbose) {
    const Reader in(block);
    auto& d = result.description;
    const size_t at = MethodAt(d.version);
    if (d.version >= 7) d.stepByte = in.Byte(kTrailerAt);
    result.useMethod = in.Byte(at);
    const size_t size = in.Byte(at + 1);
    result.stringFits = at + 1 + size <= kBlockSize;
    const size_t kept = result.stringFits ? size : kBlockSize - at - 1;
    result.lutString.assign(block.begin() + static_cast<std::ptrdiff_t>(at + 1),
                            block.begin() + static_cast<std::ptrdiff_t>(at + 1 + kept));
    Curve gamma{};
    result.gammaStatus = DecodeLutString(result.lutString, result.useMethod, gamma, verbose);
    if (*result.gammaStatus == 0) d.gammaLut = gamma;
}

}  // namespace

uint16_t Crc16(const uint8_t* bytes, size_t count) {
    uint16_t crc = 0xFFFF;
    for (size_t i = 0; i < count; ++i) {
        crc = static_cast<uint16_t>(crc ^ (bytes[i] << 8));
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<uint16_t>((crc & 0x8000) != 0 ? (crc << 1) ^ 0x1021 : crc << 1);
    }
    return crc;
}

Block EncodeBlock(const BlockDescription& d, bool verbose) {
    if (d.version < 1 || d.version > 255) throw ToolError(kExitData, "version must lie in 1..255");
    if (d.magic != "HDOC" && d.magic != "R2R") throw ToolError(kExitData, "magic must be \"HDOC\" or \"R2R\"");
    Block block{};
    Writer out(block);
    std::memcpy(block.data(), d.magic.data(), d.magic.size());
    out.Byte(kVersionAt, static_cast<uint32_t>(d.version));
    out.Byte(kSubVersionAt, static_cast<uint32_t>(d.subVersion));
    out.BigEndian(kDataWordAt, d.dataWord, 4);
    for (size_t i = 0; i < 12; ++i) out.Single(kPrimariesAt + 4 * i, d.primaries[i / 3][i % 3]);
    out.Crc(kPrimariesAt, kPrimariesSize, kCrcAt);
    if (d.version >= 2) out.BigEndian(kWord60At, d.word60, 2);
    if (d.version >= 3)
        for (size_t i = 0; i < 4; ++i) out.Byte(kBytes66At + i, d.bytes66[i]);
    if (d.version >= 4) {
        const double whites[5] = {d.firstWhite[0], d.firstWhite[1], d.targetLuminance, d.defaultWhite[0],
                                  d.defaultWhite[1]};
        for (size_t i = 0; i < 5; ++i) out.Single(kWhitesAt + 4 * i, whites[i]);
    }
    if (d.version >= 5) {
        for (size_t i = 0; i < 45; ++i) out.Single(kToneAt + 4 * i, d.toneLevels[i / 15][i % 15 / 3][i % 3]);
        out.Crc(kToneAt, kToneSize, kToneCrcAt);
        for (size_t i = 0; i < 3; ++i) out.Single(kBlackAt + 4 * i, d.black[i]);
    }
    if (d.version >= 6) WriteGammaString(d, out, verbose);
    return block;
}

DecodedBlock DecodeBlock(const Block& block, bool verbose) {
    DecodedBlock result;
    auto& d = result.description;
    const Reader in(block);
    const bool r2r = std::memcmp(block.data(), "R2R", 4) == 0;
    result.magicOk = r2r || std::memcmp(block.data(), "HDOC", 4) == 0;
    d.magic = r2r ? "R2R" : std::string(reinterpret_cast<const char*>(block.data()), 4);
    d.version = in.Byte(kVersionAt);
    d.subVersion = in.Byte(kSubVersionAt);
    d.dataWord = in.BigEndian(kDataWordAt, 4);
    for (size_t i = 0; i < 12; ++i) d.primaries[i / 3][i % 3] = in.Single(kPrimariesAt + 4 * i);
    result.headerCrc = {in.Crc(kCrcAt), Crc16(block.data() + kPrimariesAt, kPrimariesSize)};
    if (d.version >= 2) d.word60 = in.BigEndian(kWord60At, 2);
    if (d.version >= 3)
        for (size_t i = 0; i < 4; ++i) d.bytes66[i] = in.Byte(kBytes66At + i);
    if (d.version >= 4) {
        d.firstWhite = {in.Single(kWhitesAt), in.Single(kWhitesAt + 4)};
        d.targetLuminance = in.Single(kWhitesAt + 8);
        d.defaultWhite = {in.Single(kWhitesAt + 12), in.Single(kWhitesAt + 16)};
    }
    if (d.version >= 5) {
        for (size_t i = 0; i < 45; ++i) d.toneLevels[i / 15][i % 15 / 3][i % 3] = in.Single(kToneAt + 4 * i);
        result.toneCrc = CrcCheck{in.Crc(kToneCrcAt), Crc16(block.data() + kToneAt, kToneSize)};
        for (size_t i = 0; i < 3; ++i) d.black[i] = in.Single(kBlackAt + 4 * i);
    }
    if (d.version >= 6) ReadGammaString(block, result, verbose);
    return result;
}

std::optional<std::string> FindBlockProblem(std::string_view bytes) {
    if (bytes.size() < kBlockSize)
        return "not a calibration block: " + std::to_string(bytes.size()) + " bytes, expected " +
               std::to_string(kBlockSize);
    Block block{};
    std::memcpy(block.data(), bytes.data(), kBlockSize);
    const DecodedBlock decoded = DecodeBlock(block, false);
    if (!decoded.magicOk) return "not a calibration block: bad magic";
    if (decoded.toneCrc && !decoded.toneCrc->ok()) return "tone CRC mismatch";
    if (!decoded.headerCrc.ok()) return "header CRC mismatch";
    if (!decoded.stringFits) return "gamma LUT string runs past the end of the block";
    return std::nullopt;
}

}  // namespace quarnel::tool
