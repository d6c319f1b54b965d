// SPDX-License-Identifier: MIT
#pragma once
// A command that holds a display runs until the user stops it. Once a
// StopSignals is made, SIGINT and SIGTERM no longer end the process: while
// it lives they become readable on a descriptor that the command waits on
// next to its display's connection, so that it can give the display back
// and exit 0; after it, they are ignored while the process ends.

#include <cstddef>
#include <initializer_list>

namespace quarnel::tool {

class StopSignals {
public:
    // Throws ToolError (69) when the signals cannot be redirected.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    int fd() const { return fd_; }
    // Whether SIGINT or SIGTERM has arrived; reads it off the descriptor.
    bool Arrived();

private:
    int fd_ = -1;
    int writeEnd_ = -1;
};

// Sleeps until one of `fds` is readable (or closed) and returns its place
// in the list.
std::size_t WaitReadable(std::initializer_list<int> fds);

}  // namespace quarnel::tool
