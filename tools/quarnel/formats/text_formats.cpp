// SPDX-License-Identifier: MIT
#include "formats/text_formats.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tool_error.h"

namespace quarnel::tool {
namespace {

constexpr const char* kPlaneNames[3] = {"red", "green", "blue"};
constexpr double kInputScale = kCurveSize - 1;

[[noreturn]] void BadData(const std::string& source, const std::string& what) {
    throw ToolError(kExitData, source + ": " + what);
}

// Parses "index,red,green,blue"; false when the line is not four integers.
bool ParseRow(const std::string& line, long (&fields)[4]) {
    char tail = 0;
    return std::sscanf(line.c_str(), " %ld , %ld , %ld , %ld %c", &fields[0], &fields[1], &fields[2], &fields[3],
                       &tail) == 4;
}

}  // namespace

std::string CurveToCsv(const Curve& curve) {
    std::string text = "index,red,green,blue\n";
    for (size_t i = 0; i < kCurveSize; ++i)
        text += std::to_string(i) + ',' + std::to_string(curve[0][i]) + ',' + std::to_string(curve[1][i]) + ',' +
                std::to_string(curve[2][i]) + '\n';
    return text;
}

std::string CurveToJson(const Curve& curve) {
    nlohmann::ordered_json json;
    for (size_t c = 0; c < 3; ++c) json[kPlaneNames[c]] = curve[c];
    return json.dump() + '\n';
}

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
    for (int number = 1; std::getline(lines, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos || (number == 1 && line.find("index") == 0)) continue;
        long fields[4];
        const std::string where = "line " + std::to_string(number) + ": ";
        if (!ParseRow(line, fields)) BadData(source, where + "expected index,red,green,blue");
        if (fields[0] != static_cast<long>(rows)) BadData(source, where + "expected index " + std::to_string(rows));
        for (size_t c = 0; c < 3; ++c) {
            if (fields[c + 1] < 0 || fields[c + 1] > 65535) BadData(source, where + "value outside 0..65535");
            curve[c][rows] = static_cast<uint16_t>(fields[c + 1]);
        }
        if (++rows > kCurveSize) BadData(source, where + "more than 256 rows");
    }
    if (rows != kCurveSize) BadData(source, std::to_string(rows) + " rows, expected 256");
    return curve;
}

Curve CurveFromJson(const std::string& text, const std::string& source) {
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (json.is_discarded()) BadData(source, "malformed JSON");
    Curve curve{};
    for (size_t c = 0; c < 3; ++c) {
        const auto plane = json.is_object() ? json.find(kPlaneNames[c]) : json.end();
        if (plane == json.end() || !plane->is_array() || plane->size() != kCurveSize)
            BadData(source, std::string("\"") + kPlaneNames[c] + "\" must be an array of 256 entries");
        for (size_t i = 0; i < kCurveSize; ++i) {
            const auto& v = (*plane)[i];
            if (!v.is_number_unsigned() || v.get<uint64_t>() > 65535)
                BadData(source, std::string("\"") + kPlaneNames[c] + "\" holds a value outside 0..65535");
            curve[c][i] = v.get<uint16_t>();
        }
    }
    return curve;
}

}  // namespace quarnel::tool
