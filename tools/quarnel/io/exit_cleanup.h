// SPDX-License-Identifier: MIT
#pragma once
// Files the tool creates for a moment (an output before it is renamed into
// place, the sample panel's block where no in-memory file exists) must not
// outlive the process, not even one ended by SIGINT, SIGTERM or SIGHUP.
// A closed pipe is an ordinary write error: SIGPIPE is ignored.

namespace quarnel::tool {

// Installs the signal handlers; main calls it once, first thing.
void InstallExitCleanup();

// While it lives, the file at `path` is removed if a signal ends the
// process. The owner still removes it on every ordinary path.
class RemoveOnSignal {
public:
    explicit RemoveOnSignal(const char* path);
    ~RemoveOnSignal();
    RemoveOnSignal(const RemoveOnSignal&) = delete;
    RemoveOnSignal& operator=(const RemoveOnSignal&) = delete;

private:
    int slot_ = -1;
};

}  // namespace quarnel::tool
