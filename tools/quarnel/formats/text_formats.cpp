// SPDX-License-Identifier: MIT
#include "formats/text_formats.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

constexpr const char* kPlaneNames[3] = {"red", "green", "blue"};
constexpr double kInputScale = kCurveSize - 1;
constexpr uint32_t kLargestEntry = 65535;

[[noreturn]] void BadData(const std::string& source, const std::string& what) {
    throw ToolError(kExitData, source + ": " + what);
}

// Parses "index,red,green,blue" into four integers 0..65535 (blanks around
// each allowed); false when the line is anything else.
bool ParseRow(const std::string& line, uint32_t (&fields)[4]) {
    std::string_view rest(line);
    for (size_t i = 0; i < 4; ++i) {
        const size_t comma = i < 3 ? rest.find(',') : rest.size();
        if (comma == std::string_view::npos) return false;
        std::string_view field = rest.substr(0, comma);
        const size_t first = field.find_first_not_of(" \t"), last = field.find_last_not_of(" \t\r");
        if (first == std::string_view::npos) return false;
        field = field.substr(first, last + 1 - first);
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), fields[i]);
        if (error != std::errc() || end != field.data() + field.size() || fields[i] > kLargestEntry) return false;
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return true;
}

}  // namespace

std::string CurveToCsv(const Curve& curve) {
    std::string text = "index,red,green,blue\n";
    for (size_t i = 0; i < kCurveSize; ++i)
        text += std::to_string(i) + ',' + std::to_string(curve[0][i]) + ',' + std::to_string(curve[1][i]) + ',' +
                std::to_string(curve[2][i]) + '\n';
    return text;
}

nlohmann::ordered_json CurveToJsonValue(const Curve& curve) {
    nlohmann::ordered_json json;
    for (size_t c = 0; c < 3; ++c) json[kPlaneNames[c]] = curve[c];
    return json;
}

std::string CurveToJson(const Curve& curve) { return CurveToJsonValue(curve).dump() + '\n'; }

std::string CurveToCal(const Curve& curve) {
    std::string text =
        "CAL\n\nDESCRIPTOR \"Quarnel display calibration curve\"\nORIGINATOR \"quarnel\"\n"
        "DEVICE_CLASS \"DISPLAY\"\nCOLOR_REP \"RGB\"\n\nNUMBER_OF_FIELDS 4\nBEGIN_DATA_FORMAT\n"
        "RGB_I RGB_R RGB_G RGB_B\nEND_DATA_FORMAT\n\nNUMBER_OF_SETS 256\nBEGIN_DATA\n";
    char row[96];
    for (size_t i = 0; i < kCurveSize; ++i) {
        // Nine decimals keep every 16-bit value exact when scaled back.
        std::snprintf(row, sizeof row, "%.9f %.9f %.9f %.9f\n", static_cast<double>(i) / kInputScale,
                      NormalisedEntry(curve[0][i]), NormalisedEntry(curve[1][i]), NormalisedEntry(curve[2][i]));
        text += row;
    }
    return text + "END_DATA\n";
}

Curve CurveFromCsv(const std::string& text, const std::string& source) {
    Curve curve{};
    std::istringstream lines(text);
    std::string line;
    size_t rows = 0;
    for (size_t number = 1; std::getline(lines, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos || (number == 1 && line.starts_with("index")))
            continue;
        const std::string where = "line " + std::to_string(number) + ": ";
        if (rows == kCurveSize) BadData(source, where + "more than 256 rows");
        uint32_t fields[4];
        if (!ParseRow(line, fields)) BadData(source, where + "expected index,red,green,blue, each 0..65535");
        if (fields[0] != rows) BadData(source, where + "expected index " + std::to_string(rows));
        for (size_t c = 0; c < 3; ++c) curve[c][rows] = static_cast<uint16_t>(fields[c + 1]);
        ++rows;
    }
    if (rows != kCurveSize) BadData(source, std::to_string(rows) + " rows, expected 256");
    return curve;
}

Curve CurveFromJsonValue(const InputJson& json, const JsonFields& fields, const std::string& path) {
    fields.Object(json, path, {kPlaneNames[0], kPlaneNames[1], kPlaneNames[2]});
    Curve curve{};
    for (size_t c = 0; c < 3; ++c) {
        const std::string plane = Child(path, kPlaneNames[c]);
        const auto& values = fields.Array(fields.Member(json, path, kPlaneNames[c]), plane, kCurveSize);
        for (size_t i = 0; i < kCurveSize; ++i)
            curve[c][i] = static_cast<uint16_t>(fields.Whole(values[i], Child(plane, i), kLargestEntry));
    }
    return curve;
}

Curve CurveFromJson(const std::string& text, const std::string& source) {
    return CurveFromJsonValue(ParseJsonInput(text, source), JsonFields(source), "");
}

}  // namespace quarnel::tool
