// SPDX-License-Identifier: MIT
#pragma once
// A fresh directory for one test, removed with everything in it afterwards.

#include <filesystem>
#include <string>

namespace quarnel::test {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& bytes);

}  // namespace quarnel::test
