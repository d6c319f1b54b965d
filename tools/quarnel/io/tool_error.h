// SPDX-License-Identifier: MIT
#pragma once
// The tool's one failure type: a message for standard error and the
// sysexits code the process ends with.

#include <stdexcept>
#include <string>

namespace quarnel::tool {

enum ExitCode : int {
    kExitOk = 0,
    kExitChecksFailed = 1,  // the data was read, and some of it failed the checks asked for (qa)
    kExitUsage = 64,        // EX_USAGE
    kExitData = 65,         // EX_DATAERR
    kExitNoInput = 66,      // EX_NOINPUT
    kExitUnavailable = 69,  // EX_UNAVAILABLE: no display, no RandR, no such output, or no X11 support
    kExitCantCreate = 73,   // EX_CANTCREAT
    kExitIoError = 74       // EX_IOERR: a write that failed (full disk, closed pipe)
};

class ToolError : public std::runtime_error {
public:
    ToolError(int exitCode, const std::string& message) : std::runtime_error(message), code_(exitCode) {}
    int code() const { return code_; }

private:
    int code_;
};

}  // namespace quarnel::tool
