// SPDX-License-Identifier: MIT
#pragma once
// Golden files: long expected outputs kept under tests/data. With the environment variable
// QUARNEL_REGENERATE=1 a golden check rewrites its file from what the code produced instead of comparing.

#include <sstream>
#include <string>

namespace quarnel::test {

void ExpectGolden(const std::string& name, const std::string& actual);

// The values separated by single spaces, ending the line.
template <typename... T>
std::string Row(const T&... values) {
    std::ostringstream out;
    out.precision(17);
    const char* gap = "";
    ((out << gap << values, gap = " "), ...);
    out << '\n';
    return out.str();
}

}  // namespace quarnel::test
