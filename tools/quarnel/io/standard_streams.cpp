// SPDX-License-Identifier: MIT
#include "io/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace quarnel::tool {

void HoldClosedStandardStreams() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(fd, F_GETFD) < 0 && errno == EBADF) ::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

}  // namespace quarnel::tool
