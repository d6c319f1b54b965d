// SPDX-License-Identifier: MIT
// Arbitrary bytes as a 512-byte block (shorter inputs padded with zeros):
// every block decodes to a description that rebuilds it byte for byte.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "tool_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    quarnel::tool::Block block{};
    std::copy_n(data, std::min(size, block.size()), block.begin());
    quarnel::fuzz::ExpectFaithfulRebuild(block);
    return 0;
}
