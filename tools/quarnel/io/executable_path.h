// SPDX-License-Identifier: MIT
#pragma once
// Where the running tool lives, for entries that run it again later.

#include <string>

namespace quarnel::tool {

// The absolute path of the running executable. Throws ToolError (69) when
// the system does not say.
std::string RunningExecutable();

}  // namespace quarnel::tool
