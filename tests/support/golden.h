// SPDX-License-Identifier: MIT
#pragma once
// Golden files: long expected outputs kept under tests/data. With the environment variable
// QUARNEL_REGENERATE=1 a golden check rewrites its file from what the code produced instead of comparing.
// Carriage returns in `actual` are ignored, so text files written on Windows compare alike.

#include <sstream>
#include <string>

namespace quarnel::test {

void ExpectGolden(const std::string& name, std::string actual);

// The values separated by single spaces, ending the line.
template <typename... T>
std::string Row(const T&... values) {
    std::ostringstream out;
    out.precision(12);  // enough to see a fault, short of the last bits that differ between maths libraries
    const char* gap = "";
    ((out << gap << values, gap = " "), ...);
    out << '\n';
    return out.str();
}

// `count` values from `values` as one row; bytes show as numbers.
template <typename T>
std::string RowOf(const T* values, std::size_t count) {
    std::ostringstream out;
    out.precision(12);
    for (std::size_t i = 0; i < count; ++i) out << (i ? " " : "") << +values[i];
    out << '\n';
    return out.str();
}

}  // namespace quarnel::test
