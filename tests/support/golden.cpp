// SPDX-License-Identifier: MIT
#include "support/golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/temp_dir.h"

namespace quarnel::test {

void ExpectGolden(const std::string& name, std::string actual) {
    std::erase(actual, '\r');
    const std::filesystem::path file = std::filesystem::path(QUARNEL_TEST_DATA_DIR) / name;
    const char* regenerate = std::getenv("QUARNEL_REGENERATE");
    if (regenerate != nullptr && std::string(regenerate) == "1") return WriteFile(file, actual);
    ASSERT_TRUE(std::filesystem::exists(file)) << file << " is missing: run with QUARNEL_REGENERATE=1";
    const std::string expected = ReadFile(file);
    if (expected == actual) return;
    std::istringstream want(expected), got(actual);
    std::string w, g;
    for (int line = 1;; ++line) {  // report the first line that differs
        const bool more = static_cast<bool>(std::getline(want, w)) | static_cast<bool>(std::getline(got, g));
        if (!more || w != g) {
            ADD_FAILURE() << name << " line " << line << "\n  expected: " << w << "\n  actual:   " << g;
            return;
        }
        w.clear(), g.clear();
    }
}

}  // namespace quarnel::test
