// SPDX-License-Identifier: MIT
#include "io/stop_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <vector>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

// The handler may run on any thread of the process (a sanitizer's own
// included), so it only writes a byte into a pipe that the waiting thread
// reads.
constexpr int kStopSignals[] = {SIGINT, SIGTERM};
int gWriteEnd = -1;

extern "C" void NoteStop(int) {
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(gWriteEnd, &byte, 1);
    errno = saved;
}

}  // namespace

StopSignals::StopSignals() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        throw ToolError(kExitUnavailable, "cannot wait for SIGINT and SIGTERM");
    fd_ = ends[0];
    writeEnd_ = gWriteEnd = ends[1];
    struct sigaction action {};
    action.sa_handler = NoteStop;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int s : kStopSignals) {
        struct sigaction previous {};
        // A signal the caller chose to ignore (nohup, a background job) stays ignored.
        if (sigaction(s, nullptr, &previous) == 0 && previous.sa_handler != SIG_IGN) sigaction(s, &action, nullptr);
    }
}

// The handlers stay: a second SIGINT or SIGTERM (a process group's, sent
// after the process's own) must not end the process while it gives the
// display back; it only writes into a closed pipe then.
StopSignals::~StopSignals() {
    gWriteEnd = -1;
    ::close(fd_);
    ::close(writeEnd_);
}

bool StopSignals::Arrived() {
    char bytes[16];
    return ::read(fd_, bytes, sizeof bytes) > 0;
}

std::size_t WaitReadable(std::initializer_list<int> fds) {
    std::vector<pollfd> polled;
    for (const int fd : fds) polled.push_back({fd, POLLIN, 0});
    for (;;) {
        if (::poll(polled.data(), polled.size(), -1) < 0) {
            if (errno == EINTR) continue;
            throw ToolError(kExitIoError, "cannot wait for the display");
        }
        for (std::size_t i = 0; i < polled.size(); ++i)
            if (polled[i].revents != 0) return i;
    }
}

}  // namespace quarnel::tool
