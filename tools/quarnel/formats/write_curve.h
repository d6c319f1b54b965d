// SPDX-License-Identifier: MIT
#pragma once
// Writers of a 3 x 256 curve in every output format of the tool. A target
// file is written beside itself and renamed, so it never appears half-written.

#include <optional>
#include <string>
#include <string_view>

#include "formats/curve_subject.h"
#include "model/curve.h"

namespace quarnel::tool {

enum class CurveFormat { Csv, Json, Cal, Icc, Png, Svg };

// "csv", "json", "cal", "icc", "png", "svg", in any case.
std::optional<CurveFormat> ParseCurveFormat(std::string_view name);

// The explicit format when given, else the path's extension in any case;
// CSV for standard output and for a device or pipe named without an
// extension. Throws ToolError (64) when neither names a known format.
CurveFormat ChooseCurveFormat(const std::string& path, const std::string& explicitFormat);

// path "-" writes the text formats (csv, json, cal) to standard output; a
// profile describes `subject`. Throws ToolError: 73 when the output cannot be
// created, 64 for a binary format to standard output.
void WriteCurve(const Curve& curve, CurveFormat format, const std::string& path, const CurveSubject& subject);

}  // namespace quarnel::tool
