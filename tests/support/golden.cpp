// SPDX-License-Identifier: MIT
#include "support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "support/temp_dir.h"

namespace quarnel::test {

namespace {

// The whole line of `text` that holds position `at`.
std::string LineAt(const std::string& text, std::size_t at) {
    const std::size_t start = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;  // npos + 1 is 0
    return text.substr(start, text.find('\n', at) - start);
}

}  // namespace

void ExpectGolden(const std::string& name, std::string actual) {
    std::erase(actual, '\r');
    const std::filesystem::path file = std::filesystem::path(QUARNEL_TEST_DATA_DIR) / name;
    const char* regenerate = std::getenv("QUARNEL_REGENERATE");
    if (regenerate != nullptr && std::string(regenerate) == "1") return WriteFile(file, actual);
    const std::string expected = ReadFile(file);
    const auto at = static_cast<std::size_t>(
        std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end()).first - expected.begin());
    EXPECT_TRUE(expected == actual) << file << " differs at line "
                                    << std::count(expected.begin(), expected.begin() + static_cast<long>(at), '\n') + 1
                                    << " (QUARNEL_REGENERATE=1 rewrites it)\n  expected: " << LineAt(expected, at)
                                    << "\n  actual:   " << LineAt(actual, at);
}

}  // namespace quarnel::test
