// SPDX-License-Identifier: MIT
#include "formats/block_json.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "facts/block_layout.h"
#include "formats/json_fields.h"
#include "formats/text_formats.h"
#include "model/hex.h"

namespace quarnel::tool {
namespace {

using Json = nlohmann::ordered_json;
constexpr const char* kRows[4] = {"red", "green", "blue", "white"};
constexpr std::string_view kR2r = "R2R", kHexPrefix = "0x";
constexpr size_t kMagicSize = 4;
constexpr char kFirstPrintable = ' ', kLastPrintable = '~';
constexpr uint64_t kByteMax = 0xFF, kWordMax = 0xFFFF, kDataWordMax = 0xFFFFFFFF;

// Keys by the first version that carries them.
struct Key {
    const char* name;
    int since;
    bool required;
};
constexpr int kStringVersion = facts::kUseMethodV6.firstVersion;
constexpr Key kKeys[] = {
    {"magic", facts::kMagic.firstVersion, true},
    {"version", facts::kVersion.firstVersion, true},
    {"sub_version", facts::kSubVersion.firstVersion, true},
    {"data_word", facts::kDataWord.firstVersion, true},
    {"primaries", facts::kPrimaries.firstVersion, true},
    {"stored_header_crc", facts::kHeaderCrc.stored.firstVersion, false},
    {"word60", facts::kWord60.firstVersion, true},
    {"bytes66", facts::kBytes66.firstVersion, true},
    {"first_white", facts::kFirstWhite.firstVersion, true},
    {"target_luminance", facts::kTargetLuminance.firstVersion, true},
    {"default_white", facts::kDefaultWhite.firstVersion, true},
    {"tone_levels", facts::kToneLevels.firstVersion, true},
    {"black", facts::kBlackXyz.firstVersion, true},
    {"stored_tone_crc", facts::kToneCrc.stored.firstVersion, false},
    {"gamma_lut", kStringVersion, false},
    {"gamma_string", kStringVersion, false},
    {"step_byte", facts::kStepByte.firstVersion, true},
    {"other_bytes", 0, false},
};
using facts::Carries;
bool CarriesString(int version) { return version >= kStringVersion; }
// What inspect reports beside the description; build skips them.
constexpr const char* kFindings[] = {"header_crc", "tone_crc", "lut_string", "block_status", "problem", "library"};

bool Printable(uint8_t c) { return c >= kFirstPrintable && c <= kLastPrintable; }

// Four printable characters as text, "R2R" for "R2R" and a zero byte, any
// other four bytes as "0x" and their hex.
Json MagicToJson(const std::array<uint8_t, 4>& magic) {
    if (std::all_of(magic.begin(), magic.end(), Printable)) return std::string(magic.begin(), magic.end());
    if (std::equal(kR2r.begin(), kR2r.end(), magic.begin()) && magic[3] == 0) return kR2r;
    return std::string(kHexPrefix) + ToHex(magic.data(), magic.size());
}

Json Triple(const SingleXyz& v) { return Json::array({SingleToJson(v[0]), SingleToJson(v[1]), SingleToJson(v[2])}); }

Json Pair(const std::array<float, 2>& v) { return Json::array({SingleToJson(v[0]), SingleToJson(v[1])}); }

class DescriptionReader {
public:
    DescriptionReader(const InputJson& json, const std::string& source) : json_(json), fields_(source) {}

    BlockDescription Read() {
        CheckKeys();
        BlockDescription d;
        d.version = static_cast<uint8_t>(Whole("version", kByteMax));
        CheckKeysOfVersion(d.version);
        d.magic = Magic();
        d.subVersion = static_cast<uint8_t>(Whole("sub_version", kByteMax));
        d.dataWord = static_cast<uint32_t>(Whole("data_word", kDataWordMax));
        fields_.Object(At("primaries"), "primaries", {kRows[0], kRows[1], kRows[2], kRows[3]});
        for (size_t r = 0; r < 4; ++r) d.primaries[r] = Triple(At("primaries"), "primaries", kRows[r]);
        if (Has("stored_header_crc")) d.storedHeaderCrc = static_cast<uint16_t>(Whole("stored_header_crc", kWordMax));
        if (Carries(facts::kWord60, d.version)) d.word60 = static_cast<uint16_t>(Whole("word60", kWordMax));
        if (Carries(facts::kBytes66, d.version)) {
            const auto& bytes = fields_.Array(At("bytes66"), "bytes66", d.bytes66.size());
            for (size_t i = 0; i < d.bytes66.size(); ++i)
                d.bytes66[i] = static_cast<uint8_t>(fields_.Whole(bytes[i], Child("bytes66", i), kByteMax));
        }
        if (Carries(facts::kFirstWhite, d.version)) ReadWhites(d);
        if (Carries(facts::kToneLevels, d.version)) ReadTone(d);
        if (CarriesString(d.version)) ReadGamma(d);
        if (Carries(facts::kStepByte, d.version)) d.stepByte = static_cast<uint8_t>(Whole("step_byte", kByteMax));
        if (Has("other_bytes")) ReadOtherBytes(d);
        return d;
    }

private:
    bool Has(const char* key) const { return json_.contains(key); }
    const InputJson& At(const char* key) const { return fields_.Member(json_, "", key); }
    uint64_t Whole(const char* key, uint64_t max) const { return fields_.Whole(At(key), key, max); }
    float Single(const char* key) const { return fields_.Single(At(key), key); }

    SingleXyz Triple(const InputJson& parent, const std::string& path, const char* key) const {
        const std::string where = Child(path, key);
        const auto& values = fields_.Array(fields_.Member(parent, path, key), where, 3);
        return {fields_.Single(values[0], Child(where, 0)), fields_.Single(values[1], Child(where, 1)),
                fields_.Single(values[2], Child(where, 2))};
    }

    std::array<float, 2> Pair(const char* key) const {
        const auto& values = fields_.Array(At(key), key, 2);
        return {fields_.Single(values[0], Child(key, 0)), fields_.Single(values[1], Child(key, 1))};
    }

    void CheckKeys() const {
        if (!json_.is_object()) fields_.Fail("", "expected a block description object");
        for (const auto& item : json_.items()) {
            const std::string& key = item.key();
            const bool known =
                std::any_of(std::begin(kKeys), std::end(kKeys), [&](const Key& k) { return key == k.name; }) ||
                std::find(std::begin(kFindings), std::end(kFindings), key) != std::end(kFindings);
            if (!known)
                fields_.Fail("",
                             "unknown key " + InputJson(key).dump(-1, ' ', true, InputJson::error_handler_t::replace));
        }
    }

    void CheckKeysOfVersion(int version) const {
        const std::string block = "a version-" + std::to_string(version) + " block";
        for (const Key& k : kKeys) {
            if (version < k.since && Has(k.name)) fields_.Fail(k.name, "not part of " + block);
            if (version >= k.since && k.required && !Has(k.name))
                fields_.Fail("", "missing key \"" + std::string(k.name) + "\", which " + block + " carries");
        }
        if (CarriesString(version) && Has("gamma_lut") == Has("gamma_string"))
            fields_.Fail("", block + " needs exactly one of \"gamma_lut\" and \"gamma_string\"");
    }

    std::array<uint8_t, 4> Magic() const {
        const auto& value = At("magic");
        const std::string text = value.is_string() ? value.get<std::string>() : "";
        std::array<uint8_t, 4> magic{};
        if (text == kR2r) {
            std::copy(kR2r.begin(), kR2r.end(), magic.begin());
            return magic;
        }
        if (text.size() == kMagicSize &&
            std::all_of(text.begin(), text.end(), [](char c) { return Printable(static_cast<uint8_t>(c)); })) {
            std::copy(text.begin(), text.end(), magic.begin());
            return magic;
        }
        const auto bytes =
            text.starts_with(kHexPrefix) ? FromHex(std::string_view(text).substr(kHexPrefix.size())) : std::nullopt;
        if (!bytes || bytes->size() != kMagicSize)
            fields_.Fail("magic", "expected four printable characters, \"R2R\", or \"0x\" and eight hex digits");
        std::copy(bytes->begin(), bytes->end(), magic.begin());
        return magic;
    }

    void ReadWhites(BlockDescription& d) const {
        d.firstWhite = Pair("first_white");
        d.targetLuminance = Single("target_luminance");
        d.defaultWhite = Pair("default_white");
    }

    void ReadTone(BlockDescription& d) const {
        const auto& tone = fields_.Object(At("tone_levels"), "tone_levels", {kRows[0], kRows[1], kRows[2]});
        for (size_t c = 0; c < 3; ++c) {
            const std::string channel = Child("tone_levels", kRows[c]);
            const auto& levels = fields_.Array(fields_.Member(tone, "tone_levels", kRows[c]), channel, 5);
            for (size_t level = 0; level < 5; ++level) {
                const std::string where = Child(channel, level);
                const auto& values = fields_.Array(levels[level], where, 3);
                for (size_t k = 0; k < 3; ++k) d.toneLevels[c][level][k] = fields_.Single(values[k], Child(where, k));
            }
        }
        d.black = Triple(json_, "", "black");
        if (Has("stored_tone_crc")) d.storedToneCrc = static_cast<uint16_t>(Whole("stored_tone_crc", kWordMax));
    }

    void ReadGamma(BlockDescription& d) const {
        if (Has("gamma_lut")) {
            d.gammaLut = CurveFromJsonValue(At("gamma_lut"), fields_, "gamma_lut");
            return;
        }
        const auto& string = fields_.Object(At("gamma_string"), "gamma_string", {"method", "hex"});
        const auto method =
            fields_.Whole(fields_.Member(string, "gamma_string", "method"), "gamma_string.method", kByteMax);
        const auto& hex = fields_.Member(string, "gamma_string", "hex");
        const auto bytes = hex.is_string() ? FromHex(hex.get<std::string>()) : std::nullopt;
        if (!bytes || bytes->empty())
            fields_.Fail("gamma_string.hex", "expected the string's bytes in hex, length byte first");
        d.gammaString = LutString{static_cast<int>(method), *bytes};
    }

    void ReadOtherBytes(BlockDescription& d) const {
        const auto& runs = At("other_bytes");
        if (!runs.is_object()) fields_.Fail("other_bytes", "expected an object of offset: hex");
        for (const auto& [key, value] : runs.items()) {
            const std::string where = Child("other_bytes", key);
            size_t at = 0;
            const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), at);
            if (error != std::errc() || end != key.data() + key.size() || at >= kBlockSize)
                fields_.Fail(where, "expected a byte offset 0..511 as the key");
            const auto bytes = value.is_string() ? FromHex(value.get<std::string>()) : std::nullopt;
            if (!bytes) fields_.Fail(where, "expected bytes in hex");
            d.otherBytes[at] = *bytes;
        }
    }

    const InputJson& json_;
    JsonFields fields_;
};

}  // namespace

Json DescriptionToJson(const BlockDescription& d) {
    Json json{{"magic", MagicToJson(d.magic)},
              {"version", d.version},
              {"sub_version", d.subVersion},
              {"data_word", d.dataWord}};
    for (size_t r = 0; r < 4; ++r) json["primaries"][kRows[r]] = Triple(d.primaries[r]);
    if (d.storedHeaderCrc) json["stored_header_crc"] = *d.storedHeaderCrc;
    if (Carries(facts::kWord60, d.version)) json["word60"] = d.word60;
    if (Carries(facts::kBytes66, d.version)) json["bytes66"] = d.bytes66;
    if (Carries(facts::kFirstWhite, d.version)) {
        json["first_white"] = Pair(d.firstWhite);
        json["target_luminance"] = SingleToJson(d.targetLuminance);
        json["default_white"] = Pair(d.defaultWhite);
    }
    if (Carries(facts::kToneLevels, d.version)) {
        for (size_t c = 0; c < 3; ++c)
            for (const SingleXyz& level : d.toneLevels[c]) json["tone_levels"][kRows[c]].push_back(Triple(level));
        json["black"] = Triple(d.black);
        if (d.storedToneCrc) json["stored_tone_crc"] = *d.storedToneCrc;
    }
    if (CarriesString(d.version) && d.gammaLut) json["gamma_lut"] = CurveToJsonValue(*d.gammaLut);
    if (CarriesString(d.version) && d.gammaString)
        json["gamma_string"] = {{"method", d.gammaString->method}, {"hex", ToHex(d.gammaString->bytes)}};
    if (Carries(facts::kStepByte, d.version)) json["step_byte"] = d.stepByte;
    for (const auto& [at, bytes] : d.otherBytes) json["other_bytes"][std::to_string(at)] = ToHex(bytes);
    return json;
}

BlockDescription DescriptionFromJson(const std::string& text, const std::string& source) {
    return DescriptionReader(ParseJsonInput(text, source), source).Read();
}

}  // namespace quarnel::tool
