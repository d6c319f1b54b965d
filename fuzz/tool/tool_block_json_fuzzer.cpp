// SPDX-License-Identifier: MIT
// Arbitrary text as a block description: it is refused in the tool's words
// or builds a block whose own description builds it again.

#include <cstddef>
#include <cstdint>

#include "io/tool_error.h"
#include "tool_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    using namespace quarnel;
    tool::Block block{};
    try {
        block = tool::EncodeBlock(tool::DescriptionFromJson(fuzz::Text(data, size), "fuzz"), false);
    } catch (const tool::ToolError&) {
        return 0;
    }
    fuzz::ExpectFaithfulRebuild(block);
    return 0;
}
