// SPDX-License-Identifier: MIT
#pragma once
// The library's two message channels: wide messages for the debugger, and
// printf-style narrow messages on standard output.

namespace quarnel {

// Sends a wide message (an "Enter"/"Exit" line and the like) to the debugger channel.
void DebugMessage(const wchar_t* text);

// printf to standard output; returns what printf returns.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
int DebugPrint(const char* format, ...);

}  // namespace quarnel
