// SPDX-License-Identifier: MIT
#include "model/block_codec.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "facts/block_layout.h"
#include "facts/crc16.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

constexpr size_t kSingleSize = facts::kSingleSize;
constexpr size_t kPrimaryValues = facts::kPrimaries.size / kSingleSize;
constexpr size_t kToneValues = facts::kToneLevels.size / kSingleSize;
constexpr size_t kBlackValues = facts::kBlackXyz.size / kSingleSize;
constexpr int kByteBits = 8;

// What a block's description calls each field, in the messages that say
// which field a byte belongs to. Reserved bytes belong to none.
const char* DescriptionName(const facts::BlockField& f) {
    static constexpr std::pair<std::string_view, const char*> kNames[] = {
        {"magic", "magic"},
        {"version", "version"},
        {"subVersion", "sub_version"},
        {"crc", "the header CRC"},
        {"dataWord", "data_word"},
        {"primaries", "primaries"},
        {"word60", "word60"},
        {"bytes66", "bytes66"},
        {"firstWhite", "first_white"},
        {"targetLuminance", "target_luminance"},
        {"defaultWhite", "default_white"},
        {"toneLevels", "tone_levels"},
        {"crc2", "the tone CRC"},
        {"blackXYZ", "black"},
        {"stepByte", "step_byte"},
        {"useMethod", "the gamma string's method"},
        {"lutStringSize", "the gamma string"},
    };
    for (const auto& [field, name] : kNames)
        if (field == f.name) return name;
    return nullptr;
}

using facts::Carries;
using facts::TrailerOf;

// Which field holds each byte of a block of this version whose gamma string
// takes `stringBytes` bytes from its length byte on; null for the others.
using Owners = std::array<const char*, kBlockSize>;
Owners Layout(int version, size_t stringBytes) {
    Owners owners{};
    for (const facts::BlockField& f : facts::kBlockFields) {
        if (!Carries(f, version) || f.type == facts::FieldType::String) continue;
        const size_t size = f.type == facts::FieldType::StringLength ? stringBytes : f.size;
        if (const char* name = DescriptionName(f)) std::fill_n(owners.begin() + f.offset, size, name);
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
    void Crc(const facts::CoveredCrc& c, std::optional<uint16_t> stored) {
        const uint16_t crc = stored.value_or(facts::Crc16(block_.data() + c.covered.offset, c.covered.size));
        Byte(c.stored.offset, crc & 0xFFu);
        Byte(c.stored.offset + 1, crc >> kByteBits);
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
    CrcCheck Crc(const facts::CoveredCrc& c) const {
        const size_t at = c.stored.offset;
        return {static_cast<uint16_t>(block_[at] | (block_[at + 1] << kByteBits)),
                facts::Crc16(block_.data() + c.covered.offset, c.covered.size)};
    }

private:
    const Block& block_;
};

[[noreturn]] void Unfit(const std::string& why) { throw ToolError(kExitData, why); }

// The string's length byte counts the whole string, itself included; the
// library reads one byte more, so that byte too must lie inside the block.
size_t StringRoom(int version) { return kBlockSize - TrailerOf(version).lutStringSize.offset; }
size_t StoredStringBytes(uint8_t lengthByte, size_t room) { return std::clamp<size_t>(lengthByte, 1, room); }

// Writes the string; returns how many bytes it takes.
size_t WriteGammaString(const BlockDescription& d, Writer& out, bool verbose) {
    if (!d.gammaLut && !d.gammaString) Unfit("a version-6 or later block needs gamma_lut or gamma_string");
    const LutString string = d.gammaString ? *d.gammaString : EncodeLutStringChecked(*d.gammaLut, verbose);
    const size_t sizeAt = TrailerOf(d.version).lutStringSize.offset, room = StringRoom(d.version);
    if (string.bytes.empty()) Unfit("the gamma string needs at least its length byte");
    if (d.gammaLut && string.bytes.size() + 1 > room)
        Unfit("the gamma LUT string of " + std::to_string(string.bytes.size()) + " bytes does not fit: a version-" +
              std::to_string(d.version) + " block has room for " + std::to_string(room - 1));
    if (d.gammaString && string.bytes.size() != StoredStringBytes(string.bytes[0], room))
        Unfit("the gamma string holds " + std::to_string(string.bytes.size()) + " bytes where its length byte says " +
              std::to_string(string.bytes[0]) + " (the block has room for " + std::to_string(room) + ")");
    if (Carries(facts::kStepByte, d.version)) out.Byte(facts::kStepByte.offset, d.stepByte);
    out.Byte(TrailerOf(d.version).useMethod.offset, static_cast<uint32_t>(string.method));
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
    const size_t methodAt = TrailerOf(d.version).useMethod.offset;
    const size_t sizeAt = TrailerOf(d.version).lutStringSize.offset, room = StringRoom(d.version);
    const size_t kept = StoredStringBytes(block[sizeAt], room);
    result.stringFits = block[sizeAt] + 1u <= room;
    const auto start = block.begin() + static_cast<std::ptrdiff_t>(sizeAt);
    result.string = LutString{block[methodAt], std::vector<uint8_t>(start, start + static_cast<std::ptrdiff_t>(kept))};
    if (Carries(facts::kStepByte, d.version)) d.stepByte = block[facts::kStepByte.offset];
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

Block EncodeBlock(const BlockDescription& d, bool verbose) {
    Block block{};
    Writer out(block);
    std::copy(d.magic.begin(), d.magic.end(), block.begin() + facts::kMagic.offset);
    out.Byte(facts::kVersion.offset, d.version);
    out.Byte(facts::kSubVersion.offset, d.subVersion);
    out.BigEndian(facts::kDataWord.offset, d.dataWord, facts::kDataWord.size);
    for (size_t i = 0; i < kPrimaryValues; ++i)
        out.Single(facts::kPrimaries.offset + kSingleSize * i, d.primaries[i / 3][i % 3]);
    out.Crc(facts::kHeaderCrc, d.storedHeaderCrc);
    if (Carries(facts::kWord60, d.version)) out.BigEndian(facts::kWord60.offset, d.word60, facts::kWord60.size);
    if (Carries(facts::kBytes66, d.version))
        for (size_t i = 0; i < d.bytes66.size(); ++i) out.Byte(facts::kBytes66.offset + i, d.bytes66[i]);
    if (Carries(facts::kFirstWhite, d.version)) {
        out.Single(facts::kFirstWhite.offset, d.firstWhite[0]);
        out.Single(facts::kFirstWhite.offset + kSingleSize, d.firstWhite[1]);
        out.Single(facts::kTargetLuminance.offset, d.targetLuminance);
        out.Single(facts::kDefaultWhite.offset, d.defaultWhite[0]);
        out.Single(facts::kDefaultWhite.offset + kSingleSize, d.defaultWhite[1]);
    }
    if (Carries(facts::kToneLevels, d.version)) {
        for (size_t i = 0; i < kToneValues; ++i)
            out.Single(facts::kToneLevels.offset + kSingleSize * i, d.toneLevels[i / 15][i % 15 / 3][i % 3]);
        out.Crc(facts::kToneCrc, d.storedToneCrc);
        for (size_t i = 0; i < kBlackValues; ++i) out.Single(facts::kBlackXyz.offset + kSingleSize * i, d.black[i]);
    }
    const bool stringCarried = Carries(TrailerOf(d.version).useMethod, d.version);
    const size_t stringBytes = stringCarried ? WriteGammaString(d, out, verbose) : 0;
    WriteOtherBytes(d, stringBytes, out);
    return block;
}

DecodedBlock DecodeBlock(const Block& block, bool verbose) {
    DecodedBlock result;
    auto& d = result.description;
    const Reader in(block);
    std::copy_n(block.begin() + facts::kMagic.offset, d.magic.size(), d.magic.begin());
    result.magicOk = facts::MagicAccepted(d.magic.data());
    d.version = in.Byte(facts::kVersion.offset);
    d.subVersion = in.Byte(facts::kSubVersion.offset);
    d.dataWord = in.BigEndian(facts::kDataWord.offset, facts::kDataWord.size);
    for (size_t i = 0; i < kPrimaryValues; ++i)
        d.primaries[i / 3][i % 3] = in.Single(facts::kPrimaries.offset + kSingleSize * i);
    result.headerCrc = in.Crc(facts::kHeaderCrc);
    if (!result.headerCrc.ok()) d.storedHeaderCrc = result.headerCrc.stored;
    if (Carries(facts::kWord60, d.version))
        d.word60 = static_cast<uint16_t>(in.BigEndian(facts::kWord60.offset, facts::kWord60.size));
    if (Carries(facts::kBytes66, d.version))
        for (size_t i = 0; i < d.bytes66.size(); ++i) d.bytes66[i] = in.Byte(facts::kBytes66.offset + i);
    if (Carries(facts::kFirstWhite, d.version)) {
        d.firstWhite = {in.Single(facts::kFirstWhite.offset), in.Single(facts::kFirstWhite.offset + kSingleSize)};
        d.targetLuminance = in.Single(facts::kTargetLuminance.offset);
        d.defaultWhite = {in.Single(facts::kDefaultWhite.offset), in.Single(facts::kDefaultWhite.offset + kSingleSize)};
    }
    if (Carries(facts::kToneLevels, d.version)) {
        for (size_t i = 0; i < kToneValues; ++i)
            d.toneLevels[i / 15][i % 15 / 3][i % 3] = in.Single(facts::kToneLevels.offset + kSingleSize * i);
        result.toneCrc = in.Crc(facts::kToneCrc);
        if (!result.toneCrc->ok()) d.storedToneCrc = result.toneCrc->stored;
        for (size_t i = 0; i < kBlackValues; ++i) d.black[i] = in.Single(facts::kBlackXyz.offset + kSingleSize * i);
    }
    if (Carries(TrailerOf(d.version).useMethod, d.version)) ReadGammaString(block, result, verbose);
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
