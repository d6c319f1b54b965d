// SPDX-License-Identifier: MIT
#pragma once
// Standard output: where the library's formatted narrow messages go.

#include <cstdarg>

#include "platform/seam.h"

namespace quarnel::platform {

class StandardOutput {
public:
    virtual ~StandardOutput() = default;
    // Formats like vprintf; returns what vprintf returns.
    virtual int Print(const char* format, std::va_list args) = 0;
};

// The process's standard output stream, unless a test has put its own in place.
StandardOutput& ActiveStandardOutput();

// Test seam: routes the formatted messages to a fake for the object's lifetime.
using ScopedStandardOutput = ScopedOverride<StandardOutput>;

}  // namespace quarnel::platform
