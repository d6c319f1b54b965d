// SPDX-License-Identifier: MIT
#include "formats/write_curve.h"

#include <algorithm>
#include <cctype>

#include "formats/binary_formats.h"
#include "formats/text_formats.h"
#include "io/atomic_file.h"
#include "io/file_name.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

struct FormatEntry {
    CurveFormat format;
    std::string_view name;
    bool text;
    std::string (*render)(const Curve&);
};

constexpr FormatEntry kFormats[] = {
    {CurveFormat::Csv, "csv", true, CurveToCsv},  {CurveFormat::Json, "json", true, CurveToJson},
    {CurveFormat::Cal, "cal", true, CurveToCal},  {CurveFormat::Icc, "icc", false, nullptr},
    {CurveFormat::Png, "png", false, CurveToPng}, {CurveFormat::Svg, "svg", false, CurveToSvg},
};

const FormatEntry& Entry(CurveFormat format) {
    for (const auto& entry : kFormats)
        if (entry.format == format) return entry;
    return kFormats[0];
}

}  // namespace

std::optional<CurveFormat> ParseCurveFormat(std::string_view name) {
    const auto sameLetter = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    for (const auto& entry : kFormats)
        if (std::equal(entry.name.begin(), entry.name.end(), name.begin(), name.end(), sameLetter)) return entry.format;
    return std::nullopt;
}

CurveFormat ChooseCurveFormat(const std::string& path, const std::string& explicitFormat) {
    if (!explicitFormat.empty()) {
        if (const auto format = ParseCurveFormat(explicitFormat)) return *format;
        throw ToolError(kExitUsage, "unknown format \"" + explicitFormat + "\" (csv, json, cal, icc, png, svg)");
    }
    const std::string extension = ExtensionOf(path);
    if (path == "-" || (extension.empty() && IsStream(path))) return CurveFormat::Csv;
    if (const auto format = ParseCurveFormat(extension)) return *format;
    throw ToolError(kExitUsage, path + ": cannot tell the format from the name; use --format");
}

void WriteCurve(const Curve& curve, CurveFormat format, const std::string& path, const CurveSubject& subject) {
    const FormatEntry& entry = Entry(format);
    if (path == "-" && !entry.text)
        throw ToolError(kExitUsage, std::string(entry.name) + " is not written to standard output; name a file");
    WriteFileAtomically(path, format == CurveFormat::Icc ? CurveToIcc(curve, subject) : entry.render(curve));
}

}  // namespace quarnel::tool
