// SPDX-License-Identifier: MIT
#pragma once
// Outputs appear whole or not at all: the bytes go to a temporary file in
// the target's folder, which is renamed over the target once complete.

#include <string>
#include <string_view>

namespace quarnel::tool {

// Throws ToolError (73) when the file cannot be created; nothing is left
// behind then. Path "-" writes to standard output.
void WriteFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace quarnel::tool
