// SPDX-License-Identifier: MIT
#pragma once
// A calibration block as a file on disk.

#include <string>

namespace quarnel::tool {

// Exactly 512 bytes, else ToolError (65); 66 when it cannot be read.
std::string ReadBlockFile(const std::string& path);

}  // namespace quarnel::tool
