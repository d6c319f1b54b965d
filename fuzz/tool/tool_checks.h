// SPDX-License-Identifier: MIT
#pragma once
// What every tool fuzz target holds to: a refusal is a ToolError, anything
// else escaping is a bug; a broken promise aborts with the reason.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "formats/block_json.h"
#include "model/block_codec.h"

namespace quarnel::fuzz {

[[noreturn]] inline void Broken(const char* promise) {
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

inline std::string Text(const uint8_t* data, std::size_t size) {
    return std::string(reinterpret_cast<const char*>(data), size);
}

// A block's description, written as JSON and read back, builds the block
// again byte for byte.
inline void ExpectFaithfulRebuild(const tool::Block& block) {
    const tool::DecodedBlock decoded = tool::DecodeBlock(block, false);
    const std::string json = tool::DescriptionToJson(decoded.description).dump();
    if (tool::EncodeBlock(tool::DescriptionFromJson(json, "rebuild"), false) != block)
        Broken("inspect then build gives back the same block");
}

}  // namespace quarnel::fuzz
