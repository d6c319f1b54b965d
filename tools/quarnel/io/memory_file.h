// SPDX-License-Identifier: MIT
#pragma once
// Bytes the library must read by path, without leaving a file behind: an
// in-memory file seen as /proc/self/fd/N. Where the system offers none, a
// temporary file in TMPDIR, removed on every exit, signals included.

#include <memory>
#include <string>
#include <string_view>

#include "io/exit_cleanup.h"

namespace quarnel::tool {

class MemoryFile {
public:
    // Throws ToolError (73) when neither kind of file can be made.
    explicit MemoryFile(std::string_view bytes);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const std::string& path() const { return path_; }

private:
    void Release();

    int fd_ = -1;
    std::string path_;
    std::string tempPath_;  // only for the fallback
    std::unique_ptr<RemoveOnSignal> guard_;
};

}  // namespace quarnel::tool
