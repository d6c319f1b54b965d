// SPDX-License-Identifier: MIT
#include "display/colord/icc_folder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "io/tool_error.h"

namespace quarnel::tool::colord {
namespace {

namespace fs = std::filesystem;
constexpr const char* kPrefix = "quarnel-";
constexpr const char* kExtension = ".icc";

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

std::string UserIccFolder() {
    fs::path data = Environment("XDG_DATA_HOME");
    if (data.empty() || !data.is_absolute()) {
        const std::string home = Environment("HOME");
        if (home.empty())
            throw ToolError(kExitCantCreate, "cannot find the ICC folder: neither XDG_DATA_HOME nor HOME is set");
        data = fs::path(home) / ".local" / "share";
    }
    const fs::path folder = data / "icc";
    std::error_code error;
    fs::create_directories(folder, error);
    if (error || !fs::is_directory(folder))
        throw ToolError(kExitCantCreate, folder.string() + ": cannot create the ICC folder: " +
                                             (error ? error.message() : "not a directory"));
    return folder.string();
}

std::string ProfileFileName(const std::string& device) {
    std::string name = kPrefix;
    for (char c : device) name += std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' ? c : '_';
    return name + kExtension;
}

bool IsOurs(const std::string& file, const std::string& folder) {
    const fs::path path(file);
    const std::string name = path.filename().string();
    return path.parent_path() == fs::path(folder) && name.rfind(kPrefix, 0) == 0 && path.extension() == kExtension;
}

}  // namespace quarnel::tool::colord
