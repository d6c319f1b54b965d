// SPDX-License-Identifier: MIT
#pragma once
// Sends standard output to /dev/null while it lives, so that the library's
// messages cost what writing them costs and no more.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace quarnel::bench {

class QuietStdout {
public:
    QuietStdout() : saved_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    ~QuietStdout() {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved_;
};

}  // namespace quarnel::bench
