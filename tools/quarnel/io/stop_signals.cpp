// SPDX-License-Identifier: MIT
#include "io/stop_signals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <vector>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

sigset_t StopSet() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

}  // namespace

StopSignals::StopSignals() {
    const sigset_t set = StopSet();
    if (::sigprocmask(SIG_BLOCK, &set, nullptr) != 0 || (fd_ = ::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK)) < 0)
        throw ToolError(kExitUnavailable, "cannot wait for SIGINT and SIGTERM");
}

StopSignals::~StopSignals() {
    ::close(fd_);
    const sigset_t set = StopSet();
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

bool StopSignals::Arrived() {
    signalfd_siginfo info{};
    return ::read(fd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info);
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
