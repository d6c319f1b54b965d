// SPDX-License-Identifier: MIT
#include "model/block_codec.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

// Field offsets of the block.
constexpr size_t kMagicAt = 0, kMagicSize = 4, kVersionAt = 4, kSubVersionAt = 5, kCrcAt = 6, kDataWordAt = 8;
constexpr size_t kPrimariesAt = 12, kPrimariesSize = 48, kWord60At = 60, kBytes66At = 66, kWhitesAt = 71;
constexpr size_t kToneAt = 103, kToneSize = 180, kToneCrcAt = 283, kBlackAt = 285, kTrailerAt = 297;
constexpr size_t kSingleSize = 4, kToneValues = 45, kPrimaryValues = 12, kWhiteValues = 5;
constexpr uint8_t kR2rMagic[kMagicSize] = {'R', '2', 'R', 0};
constexpr uint8_t kHdocMagic[kMagicSize] = {'H', 'D', 'O', 'C'};
constexpr int kByteBits = 8;

// The first version that carries each field, where it sits and its name.
struct Field {
    size_t at, size;
    int since;
    const char* name;
};
constexpr Field kFields[] = {
    {kMagicAt, kMagicSize, 0, "magic"},
    {kVersionAt, 1, 0, "version"},
    {kSubVersionAt, 1, 0, "sub_version"},
    {kCrcAt, 2, 0, "the header CRC"},
    {kDataWordAt, 4, 0, "data_word"},
    {kPrimariesAt, kPrimariesSize, 0, "primaries"},
    {kWord60At, 2, 2, "word60"},
    {kBytes66At, 4, 3, "bytes66"},
    {kWhitesAt, 8, 4, "first_white"},
    {kWhitesAt + 8, 4, 4, "target_luminance"},
    {kWhitesAt + 12, 8, 4, "default_white"},
    {kToneAt, kToneSize, 5, "tone_levels"},
    {kToneCrcAt, 2, 5, "the tone CRC"},
    {kBlackAt, 3 * kSingleSize, 5, "black"},
};
constexpr int kStringVersion = 6, kStepByteVersion = 7;

size_t MethodAt(int version) { return version >= kStepByteVersion ? kTrailerAt + 1 : kTrailerAt; }

// Which field holds each byte of a block of this version whose gamma string
// takes `stringBytes` bytes from its length byte on; null for the others.
using Owners = std::array<const char*, kBlockSize>;
Owners Layout(int version, size_t stringBytes) {
    Owners owners{};
    const auto own = [&](size_t at, size_t size, const char* name) { std::fill_n(owners.begin() + at, size, name); };
    for (const Field& f : kFields)
        if (version >= f.since) own(f.at, f.size, f.name);
    if (version >= kStepByteVersion) own(kTrailerAt, 1, "step_byte");
    if (version >= kStringVersion) {
        own(MethodAt(version), 1, "the gamma string's method");
        own(MethodAt(version) + 1, stringBytes, "the gamma string");
    }
    return owners;
}

class Writer {
public:
    explicit Writer(Block& block) : block_(block) {}
    void Byte(size_t at, uint32_t v) { block_[at] = static_cast<uint8_t>(v); }
    void BigEndian(size_t at, uint32_t v, size_t size) {
        for (size_t i = 0; i < size; ++i) Byte(at + i, v >> (kByteBits * (size - 1 - i)));
    }
    void Single(size_t at, float v) {
        const auto bits = std::bit_cast<uint32_t>(v);
        for (size_t i = 0; i < kSingleSize; ++i) Byte(at + i, bits >> (kByteBits * i));
    }
    void Crc(size_t from, size_t size, size_t at, std::optional<uint16_t> stored) {
        const uint16_t crc = stored.value_or(Crc16(block_.data() + from, size));
        Byte(at, crc & 0xFFu);
        Byte(at + 1, crc >> kByteBits);
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
        for (size_t i = 0; i < size; ++i) v = (v << kByteBits) | block_[at + i];
        return v;
    }
    float Single(size_t at) const {
        uint32_t bits = 0;
        for (size_t i = 0; i < kSingleSize; ++i) bits |= static_cast<uint32_t>(block_[at + i]) << (kByteBits * i);
        return std::bit_cast<float>(bits);
    }
    uint16_t Crc(size_t at) const { return static_cast<uint16_t>(block_[at] | (block_[at + 1] << kByteBits)); }

private:
    const Block& block_;
};

[[noreturn]] void Unfit(const std::string& why) { throw ToolError(kExitData, why); }

// The string's length byte counts the whole string, itself included; the
// library reads one byte more, so that byte too must lie inside the block.
size_t StringRoom(int version) { return kBlockSize - (MethodAt(version) + 1); }
size_t StoredStringBytes(uint8_t lengthByte, size_t room) { return std::clamp<size_t>(lengthByte, 1, room); }

// Writes the string; returns how many bytes it takes.
size_t WriteGammaString(const BlockDescription& d, Writer& out, bool verbose) {
    if (!d.gammaLut && !d.gammaString) Unfit("a version-6 or later block needs gamma_lut or gamma_string");
    const LutString string = d.gammaString ? *d.gammaString : EncodeLutStringChecked(*d.gammaLut, verbose);
    const size_t sizeAt = MethodAt(d.version) + 1, room = StringRoom(d.version);
    if (string.bytes.empty()) Unfit("the gamma string needs at least its length byte");
    if (d.gammaLut && string.bytes.size() + 1 > room)
        Unfit("the gamma LUT string of " + std::to_string(string.bytes.size()) + " bytes does not fit: a version-" +
              std::to_string(d.version) + " block has room for " + std::to_string(room - 1));
    if (d.gammaString && string.bytes.size() != StoredStringBytes(string.bytes[0], room))
        Unfit("the gamma string holds " + std::to_string(string.bytes.size()) + " bytes where its length byte says " +
              std::to_string(string.bytes[0]) + " (the block has room for " + std::to_string(room) + ")");
    if (d.version >= kStepByteVersion) out.Byte(kTrailerAt, d.stepByte);
    out.Byte(MethodAt(d.version), static_cast<uint32_t>(string.method));
    for (size_t i = 0; i < string.bytes.size(); ++i) out.Byte(sizeAt + i, string.bytes[i]);
    return string.bytes.size();
}

void WriteOtherBytes(const BlockDescription& d, size_t stringBytes, Writer& out) {
    const Owners owners = Layout(d.version, stringBytes);
    for (const auto& [at, bytes] : d.otherBytes)
        for (size_t i = 0; i < bytes.size(); ++i) {
            const std::string where = "other byte " + std::to_string(at + i);
            if (at + i >= kBlockSize) Unfit(where + " lies past the end of the block");
            if (owners[at + i] != nullptr) Unfit(where + " belongs to " + owners[at + i]);
            out.Byte(at + i, bytes[i]);
        }
}

void ReadGammaString(const Block& block, DecodedBlock& result, bool verbose) {
    auto& d = result.description;
    const size_t methodAt = MethodAt(d.version), sizeAt = methodAt + 1, room = StringRoom(d.version);
    const size_t kept = StoredStringBytes(block[sizeAt], room);
    result.stringFits = block[sizeAt] + 1u <= room;
    const auto start = block.begin() + static_cast<std::ptrdiff_t>(sizeAt);
    result.string = LutString{block[methodAt], std::vector<uint8_t>(start, start + static_cast<std::ptrdiff_t>(kept))};
    if (d.version >= kStepByteVersion) d.stepByte = block[kTrailerAt];
    Curve gamma{};
    result.gammaStatus = DecodeLutString(result.string->bytes, result.string->method, gamma, verbose);
    // The curve stands for the string only when it encodes back to the same bytes.
    if (result.gammaStatus == 0 && result.stringFits) try {
            if (EncodeLutStringChecked(gamma, verbose) == *result.string) {
                d.gammaLut = gamma;
                return;
            }
        } catch (const ToolError&) {
        }
    d.gammaString = result.string;
}

void ReadOtherBytes(const Block& block, DecodedBlock& result) {
    auto& d = result.description;
    const Owners owners = Layout(d.version, result.string ? result.string->bytes.size() : 0);
    for (size_t at = 0; at < kBlockSize;) {
        if (owners[at] != nullptr || block[at] == 0) {
            ++at;
            continue;
        }
        // A run from a non-zero byte to the last non-zero byte before the next field.
        size_t end = at, last = at;
        for (; end < kBlockSize && owners[end] == nullptr; ++end)
            if (block[end] != 0) last = end;
        d.otherBytes[at].assign(block.begin() + static_cast<std::ptrdiff_t>(at),
                                block.begin() + static_cast<std::ptrdiff_t>(last + 1));
        at = end;
    }
}

}  // namespace

uint16_t Crc16(const uint8_t* bytes, size_t count) {
    uint16_t crc = 0xFFFF;
    for (size_t i = 0; i < count; ++i) {
        crc = static_cast<uint16_t>(crc ^ (bytes[i] << kByteBits));
        for (int bit = 0; bit < kByteBits; ++bit)
            crc = static_cast<uint16_t>((crc & 0x8000) != 0 ? (crc << 1) ^ 0x1021 : crc << 1);
    }
    return crc;
}

Block EncodeBlock(const BlockDescription& d, bool verbose) {
    Block block{};
    Writer out(block);
    std::copy(d.magic.begin(), d.magic.end(), block.begin() + kMagicAt);
    out.Byte(kVersionAt, d.version);
    out.Byte(kSubVersionAt, d.subVersion);
    out.BigEndian(kDataWordAt, d.dataWord, 4);
    for (size_t i = 0; i < kPrimaryValues; ++i) out.Single(kPrimariesAt + kSingleSize * i, d.primaries[i / 3][i % 3]);
    out.Crc(kPrimariesAt, kPrimariesSize, kCrcAt, d.storedHeaderCrc);
    if (d.version >= 2) out.BigEndian(kWord60At, d.word60, 2);
    if (d.version >= 3)
        for (size_t i = 0; i < d.bytes66.size(); ++i) out.Byte(kBytes66At + i, d.bytes66[i]);
    if (d.version >= 4) {
        const float whites[kWhiteValues] = {d.firstWhite[0], d.firstWhite[1], d.targetLuminance, d.defaultWhite[0],
                                            d.defaultWhite[1]};
        for (size_t i = 0; i < kWhiteValues; ++i) out.Single(kWhitesAt + kSingleSize * i, whites[i]);
    }
    if (d.version >= 5) {
        for (size_t i = 0; i < kToneValues; ++i)
            out.Single(kToneAt + kSingleSize * i, d.toneLevels[i / 15][i % 15 / 3][i % 3]);
        out.Crc(kToneAt, kToneSize, kToneCrcAt, d.storedToneCrc);
        for (size_t i = 0; i < 3; ++i) out.Single(kBlackAt + kSingleSize * i, d.black[i]);
    }
    const size_t stringBytes = d.version >= kStringVersion ? WriteGammaString(d, out, verbose) : 0;
    WriteOtherBytes(d, stringBytes, out);
    return block;
}

DecodedBlock DecodeBlock(const Block& block, bool verbose) {
    DecodedBlock result;
    auto& d = result.description;
    const Reader in(block);
    std::copy_n(block.begin() + kMagicAt, kMagicSize, d.magic.begin());
    result.magicOk =
        std::equal(d.magic.begin(), d.magic.end(), kHdocMagic) || std::equal(d.magic.begin(), d.magic.end(), kR2rMagic);
    d.version = in.Byte(kVersionAt);
    d.subVersion = in.Byte(kSubVersionAt);
    d.dataWord = in.BigEndian(kDataWordAt, 4);
    for (size_t i = 0; i < kPrimaryValues; ++i) d.primaries[i / 3][i % 3] = in.Single(kPrimariesAt + kSingleSize * i);
    result.headerCrc = {in.Crc(kCrcAt), Crc16(block.data() + kPrimariesAt, kPrimariesSize)};
    if (!result.headerCrc.ok()) d.storedHeaderCrc = result.headerCrc.stored;
    if (d.version >= 2) d.word60 = static_cast<uint16_t>(in.BigEndian(kWord60At, 2));
    if (d.version >= 3)
        for (size_t i = 0; i < d.bytes66.size(); ++i) d.bytes66[i] = in.Byte(kBytes66At + i);
    if (d.version >= 4) {
        d.firstWhite = {in.Single(kWhitesAt), in.Single(kWhitesAt + 4)};
        d.targetLuminance = in.Single(kWhitesAt + 8);
        d.defaultWhite = {in.Single(kWhitesAt + 12), in.Single(kWhitesAt + 16)};
    }
    if (d.version >= 5) {
        for (size_t i = 0; i < kToneValues; ++i)
            d.toneLevels[i / 15][i % 15 / 3][i % 3] = in.Single(kToneAt + kSingleSize * i);
        result.toneCrc = CrcCheck{in.Crc(kToneCrcAt), Crc16(block.data() + kToneAt, kToneSize)};
        if (!result.toneCrc->ok()) d.storedToneCrc = result.toneCrc->stored;
        for (size_t i = 0; i < 3; ++i) d.black[i] = in.Single(kBlackAt + kSingleSize * i);
    }
    if (d.version >= kStringVersion) ReadGammaString(block, result, verbose);
    ReadOtherBytes(block, result);
    return result;
}

std::optional<std::string> FindBlockProblem(const DecodedBlock& block) {
    if (!block.magicOk) return "not a calibration block: bad magic";
    if (!block.stringFits) return "gamma LUT string runs past the end of the block";
    if (block.toneCrc && !block.toneCrc->ok()) return "tone CRC mismatch";
    if (!block.headerCrc.ok()) return "header CRC mismatch";
    if (block.gammaStatus != 0)
        return "gamma LUT string does not decode with method " + std::to_string(block.string->method) +
               "; the library then reads the block as version 5, without its factory gamma LUT";
    return std::nullopt;
}

}  // namespace quarnel::tool
