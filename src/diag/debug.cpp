// SPDX-License-Identifier: MIT
#include "diag/debug.h"

#include <cstdarg>
#include <cstdio>
#include <cwchar>

#include "platform/debug_channel.h"
#include "platform/standard_output.h"

namespace quarnel {

void DebugMessage(const wchar_t* text) { platform::ActiveDebugChannel().Write(text); }

int DebugPrint(const char* format, ...) {
    va_list args;
    va_start(args, format);
    int result = 0;
    try {
        result = platform::ActiveStandardOutput().Print(format, args);
    } catch (...) {
        va_end(args);
        throw;
    }
    va_end(args);
    return result;
}

int FormatBounded(char* buffer, std::size_t capacity, const char* format, ...) {
    if (buffer == nullptr || capacity == 0) return -1;
    va_list args;
    va_start(args, format);
    const int result = std::vsnprintf(buffer, capacity, format, args);
    va_end(args);
    if (result < 0 || static_cast<std::size_t>(result) >= capacity) {
        buffer[0] = '\0';
        return -1;
    }
    return result;
}

int FormatBoundedWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, ...) {
    if (buffer == nullptr || capacity == 0) return -1;
    va_list args;
    va_start(args, format);
    const int result = std::vswprintf(buffer, capacity, format, args);
    va_end(args);
    if (result < 0) {
        buffer[0] = L'\0';
        return -1;
    }
    return result;
}

}  // namespace quarnel
