// SPDX-License-Identifier: MIT
#include "io/file_name.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace quarnel::tool {

namespace fs = std::filesystem;

std::string ExtensionOf(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

bool HasExtension(const std::string& path, std::string_view extension) { return ExtensionOf(path) == extension; }

bool IsStream(const std::string& path) {
    // /dev/stdout redirected to a file resolves to that file, yet is still the stream.
    if (path.rfind("/dev/", 0) == 0) return true;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return !error && (fs::is_character_file(status) || fs::is_fifo(status) || fs::is_socket(status));
}

}  // namespace quarnel::tool
