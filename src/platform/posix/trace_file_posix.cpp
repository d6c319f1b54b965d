// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "platform/trace_file.h"

namespace quarnel::platform {

std::string SystemTraceFilePath() { return "/var/log/QXTRACE/VOKLOG/CctTrace.txt"; }

std::FILE* OpenTraceFile(const std::string& path, const char* mode) {
    const bool append = std::strchr(mode, 'a') != nullptr;
    // O_NOFOLLOW: a link planted at the trace path must not redirect our writes.
    const int flags = (append ? (O_RDWR | O_APPEND | O_CREAT) : O_RDONLY) | O_NOFOLLOW | O_CLOEXEC;
    const int fd = ::open(path.c_str(), flags, 0644);
    if (fd < 0) return nullptr;
    std::FILE* file = ::fdopen(fd, mode);
    if (file == nullptr) ::close(fd);
    return file;
}

bool RemoveTraceFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

}  // namespace quarnel::platform
