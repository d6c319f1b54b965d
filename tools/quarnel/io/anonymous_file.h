// SPDX-License-Identifier: MIT
#pragma once
// Bytes handed to another process by descriptor (a gamma ramp for the
// compositor): an unnamed in-memory file holding them, positioned at its
// start, since some readers read from the current offset.

#include <string_view>

namespace quarnel::tool {

class AnonymousFile {
public:
    // Throws ToolError (73) when the file cannot be made or filled.
    explicit AnonymousFile(std::string_view bytes);
    ~AnonymousFile();
    AnonymousFile(const AnonymousFile&) = delete;
    AnonymousFile& operator=(const AnonymousFile&) = delete;

    int fd() const { return fd_; }

private:
    int fd_ = -1;
};

}  // namespace quarnel::tool
