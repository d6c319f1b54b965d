// SPDX-License-Identifier: MIT
#pragma once
// The curve as text: CSV rows, a JSON object of three arrays, and the
// calibration file format that colour-management loaders read.

#include <string>

#include "formats/json_fields.h"
#include "model/curve.h"

namespace quarnel::tool {

std::string CurveToCsv(const Curve& curve);
std::string CurveToJson(const Curve& curve);
nlohmann::ordered_json CurveToJsonValue(const Curve& curve);
std::string CurveToCal(const Curve& curve);

// Read back CSV (index,red,green,blue; a header line is allowed) or JSON.
// Throw ToolError (65) naming `source` and the fault.
Curve CurveFromCsv(const std::string& text, const std::string& source);
Curve CurveFromJson(const std::string& text, const std::string& source);
// A curve object inside a larger JSON input, at `path`.
Curve CurveFromJsonValue(const InputJson& json, const JsonFields& fields, const std::string& path);

}  // namespace quarnel::tool
