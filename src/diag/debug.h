// SPDX-License-Identifier: MIT
#pragma once
// The library's two message channels: wide messages for the debugger, and
// printf-style narrow messages on standard output.

#include <cstddef>

namespace quarnel {

// Sends a wide message (an "Enter"/"Exit" line and the like) to the debugger channel.
void DebugMessage(const wchar_t* text);

// printf to standard output; returns what printf returns.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
int DebugPrint(const char* format, ...);

// Bounded formatting into a caller buffer; -1 when formatting fails or does
// not fit, else the number of characters written.
#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
int FormatBounded(char* buffer, std::size_t capacity, const char* format, ...);
int FormatBoundedWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, ...);

}  // namespace quarnel
