// SPDX-License-Identifier: MIT
// Arbitrary text as a curve, both as CSV and as JSON. A curve that is read
// writes and reads back unchanged, and a LUT string is only ever made for a
// curve that it decodes back to.

#include <cstddef>
#include <cstdint>
#include <optional>

#include "formats/text_formats.h"
#include "io/tool_error.h"
#include "model/lut_string.h"
#include "tool_checks.h"

namespace {

using namespace quarnel;

void Check(const tool::Curve& curve) {
    if (tool::CurveFromCsv(tool::CurveToCsv(curve), "csv") != curve) quarnel::fuzz::Broken("CSV round trip");
    if (tool::CurveFromJson(tool::CurveToJson(curve), "json") != curve) quarnel::fuzz::Broken("JSON round trip");
    std::optional<tool::LutString> string;
    try {
        string = tool::EncodeLutStringChecked(curve, false);
    } catch (const tool::ToolError&) {
        return;
    }
    tool::Curve decoded{};
    if (tool::DecodeLutString(string->bytes, string->method, decoded, false) != 0 || decoded != curve)
        quarnel::fuzz::Broken("an accepted curve decodes back from its string");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string text = quarnel::fuzz::Text(data, size);
    for (auto* read : {&tool::CurveFromCsv, &tool::CurveFromJson}) try {
            Check(read(text, "fuzz"));
        } catch (const tool::ToolError&) {
        }
    return 0;
}
