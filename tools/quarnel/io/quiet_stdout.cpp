// SPDX-License-Identifier: MIT
#include "io/quiet_stdout.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace quarnel::tool {
namespace {

void FlushAll() {
    std::cout.flush();
    std::fflush(stdout);
}

// Points file descriptor 1 at `fd` and returns a duplicate of the old one.
int Redirect(int fd) {
    FlushAll();
    const int saved = ::dup(STDOUT_FILENO);
    if (saved >= 0) ::dup2(fd, STDOUT_FILENO);
    return saved;
}

void Restore(int saved) {
    if (saved < 0) return;
    FlushAll();
    // A failure of the library's chatter is no failure of the tool's data.
    std::clearerr(stdout);
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
}

}  // namespace

QuietStdout::QuietStdout(bool toStderr) {
    if (toStderr) {
        saved_ = Redirect(STDERR_FILENO);
        return;
    }
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null < 0) return;
    saved_ = Redirect(null);
    ::close(null);
}

QuietStdout::~QuietStdout() { Restore(saved_); }

StdoutCapture::StdoutCapture() {
    std::FILE* file = std::tmpfile();
    if (file == nullptr) return;
    file_ = ::dup(::fileno(file));
    std::fclose(file);
    if (file_ >= 0) saved_ = Redirect(file_);
}

StdoutCapture::~StdoutCapture() { Finish(); }

std::string StdoutCapture::Finish() {
    Restore(saved_);
    saved_ = -1;
    std::string text;
    if (file_ < 0) return text;
    ::lseek(file_, 0, SEEK_SET);
    char buffer[4096];
    for (ssize_t n; (n = ::read(file_, buffer, sizeof buffer)) > 0;) text.append(buffer, static_cast<size_t>(n));
    ::close(file_);
    file_ = -1;
    return text;
}

}  // namespace quarnel::tool
