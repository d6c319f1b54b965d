// SPDX-License-Identifier: MIT
#include "io/executable_path.h"

#include <filesystem>
#include <system_error>

#include "io/tool_error.h"

namespace quarnel::tool {

std::string RunningExecutable() {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error || !path.is_absolute()) throw ToolError(kExitUnavailable, "cannot tell where this quarnel lives");
    return path.string();
}

}  // namespace quarnel::tool
