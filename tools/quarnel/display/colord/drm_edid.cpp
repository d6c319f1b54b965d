// SPDX-License-Identifier: MIT
#include "display/colord/drm_edid.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace quarnel::tool::colord {
namespace {

namespace fs = std::filesystem;
constexpr const char* kDrmClass = "/sys/class/drm";

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// "card0-eDP-1" -> "eDP-1"; empty for the cards themselves.
std::string ConnectorName(const std::string& entry) {
    const size_t dash = entry.find('-');
    return entry.rfind("card", 0) == 0 && dash != std::string::npos ? entry.substr(dash + 1) : "";
}

}  // namespace

std::vector<OutputEdid> ConnectedEdids() {
    std::vector<OutputEdid> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(kDrmClass, error)) {
        const std::string output = ConnectorName(entry.path().filename().string());
        if (output.empty() || ReadAll(entry.path() / "status").rfind("connected", 0) != 0) continue;
        std::string edid = ReadAll(entry.path() / "edid");
        if (!edid.empty()) found.push_back({output, std::move(edid)});
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.output < b.output; });
    return found;
}

}  // namespace quarnel::tool::colord
