// SPDX-License-Identifier: MIT
#include "diag/debug.h"

#include <cstdarg>
#include <cstdio>

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

}  // namespace quarnel
