// SPDX-License-Identifier: MIT
#pragma once
// An output too large to build in memory, written piece by piece and still
// appearing whole or not at all: the pieces go to a temporary file beside
// the target, renamed over it by Commit. Without Commit (an exception, a
// signal) nothing is left behind. "-" writes to standard output.

#include <memory>
#include <string>
#include <string_view>

namespace quarnel::tool {

class RemoveOnSignal;

class OutputStream {
public:
    // Throws ToolError (73) when the temporary file cannot be created.
    explicit OutputStream(std::string path);
    ~OutputStream();
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    OutputStream& operator<<(std::string_view bytes);
    // Throws ToolError (74) when any write failed, (73) when the rename does.
    void Commit();

private:
    void Flush();

    std::string path_, temp_;
    int fd_ = -1;
    std::string pending_;
    bool failed_ = false;
    int error_ = 0;
    std::unique_ptr<RemoveOnSignal> guard_;
};

}  // namespace quarnel::tool
