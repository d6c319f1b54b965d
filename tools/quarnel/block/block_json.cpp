// SPDX-License-Identifier: MIT
#include "block/block_json.h"

#include <charconv>
#include <cstdlib>

#include "formats/text_formats.h"
#include "tool_error.h"

namespace quarnel::tool {
namespace {

using Json = nlohmann::ordered_json;
constexpr const char* kRows[4] = {"red", "green", "blue", "white"};

// The block holds single-precision values; show each as the shortest
// decimal that reads back to the same single, as its author wrote it.
double Shortest(double v) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text - 1, static_cast<float>(v)).ptr;
    *end = '\0';
    return std::strtod(text, nullptr);
}

Json Triple(const Xyz& v) { return Json::array({Shortest(v[0]), Shortest(v[1]), Shortest(v[2])}); }

Json Planes(const Curve& curve) { return Json{{"red", curve[0]}, {"green", curve[1]}, {"blue", curve[2]}}; }

template <typename T>
void Read(const nlohmann::json& json, const char* key, T& value) {
    if (json.contains(key)) json.at(key).get_to(value);
}

}  // namespace

Json DescriptionToJson(const BlockDescription& d) {
    Json json{{"magic", d.magic}, {"version", d.version}, {"sub_version", d.subVersion}, {"data_word", d.dataWord}};
    for (size_t r = 0; r < 4; ++r) json["primaries"][kRows[r]] = Triple(d.primaries[r]);
    if (d.version >= 2) json["word60"] = d.word60;
    if (d.version >= 3) json["bytes66"] = d.bytes66;
    if (d.version >= 4) {
        json["first_white"] = {Shortest(d.firstWhite[0]), Shortest(d.firstWhite[1])};
        json["target_luminance"] = Shortest(d.targetLuminance);
        json["default_white"] = {Shortest(d.defaultWhite[0]), Shortest(d.defaultWhite[1])};
    }
    if (d.version >= 5) {
        for (size_t c = 0; c < 3; ++c)
            for (const Xyz& level : d.toneLevels[c]) json["tone_levels"][kRows[c]].push_back(Triple(level));
        json["black"] = Triple(d.black);
    }
    if (d.version >= 6 && d.gammaLut) json["gamma_lut"] = Planes(*d.gammaLut);
    if (d.version >= 7) json["step_byte"] = d.stepByte;
    return json;
}

BlockDescription DescriptionFromJson(const std::string& text, const std::string& source) {
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (json.is_discarded() || !json.is_object()) throw ToolError(kExitData, source + ": malformed JSON");
    BlockDescription d;
    try {
        if (!json.contains("version") || !json.contains("primaries"))
            throw ToolError(kExitData, source + ": \"version\" and \"primaries\" are required");
        Read(json, "magic", d.magic);
        Read(json, "version", d.version);
        Read(json, "sub_version", d.subVersion);
        Read(json, "data_word", d.dataWord);
        for (size_t r = 0; r < 4; ++r) json.at("primaries").at(kRows[r]).get_to(d.primaries[r]);
        Read(json, "word60", d.word60);
        Read(json, "bytes66", d.bytes66);
        Read(json, "first_white", d.firstWhite);
        Read(json, "target_luminance", d.targetLuminance);
        Read(json, "default_white", d.defaultWhite);
        if (json.contains("tone_levels"))
            for (size_t c = 0; c < 3; ++c) json.at("tone_levels").at(kRows[c]).get_to(d.toneLevels[c]);
        Read(json, "black", d.black);
        Read(json, "step_byte", d.stepByte);
        if (json.contains("gamma_lut")) d.gammaLut = CurveFromJson(json.at("gamma_lut").dump(), source + ": gamma_lut");
    } catch (const nlohmann::json::exception& e) {
        throw ToolError(kExitData, source + ": " + e.what());
    }
    if (d.subVersion < 0 || d.subVersion > 255 || d.stepByte < 0 || d.stepByte > 255 || d.word60 > 0xFFFF)
        throw ToolError(kExitData, source + ": sub_version, step_byte and word60 must fit their bytes");
    return d;
}

}  // namespace quarnel::tool
