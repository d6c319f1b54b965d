// SPDX-License-Identifier: MIT
#include "support/temp_dir.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>

namespace quarnel::test {

TempDir::TempDir() {
    static std::atomic<unsigned> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    std::ostringstream name;
    name << "quarnel-test-" << stamp << "-" << counter++;
    path_ = std::filesystem::temp_directory_path() / name.str();
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace quarnel::test
