// SPDX-License-Identifier: MIT
// Arbitrary text as a LUT string in hex, the first byte choosing the method:
// it is refused in the tool's words, or decodes to a curve that the tool
// can store as a string again.

#include <cstddef>
#include <cstdint>

#include "io/tool_error.h"
#include "model/lut_string.h"
#include "tool_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    using namespace quarnel;
    if (size == 0) return 0;
    const int method = data[0] % 3;  // 0 and 1, and one the decoder must refuse
    tool::Curve curve{};
    try {
        if (tool::DecodeLutString(tool::ParseLutStringHex(fuzz::Text(data + 1, size - 1)), method, curve, false) != 0)
            return 0;
    } catch (const tool::ToolError&) {
        return 0;
    }
    try {
        tool::EncodeLutStringChecked(curve, false);
    } catch (const tool::ToolError&) {
        fuzz::Broken("a curve that a string decodes to can be stored as a string");
    }
    return 0;
}
