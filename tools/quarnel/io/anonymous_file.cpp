// SPDX-License-Identifier: MIT
#include "io/anonymous_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

#include "io/tool_error.h"

namespace quarnel::tool {

AnonymousFile::AnonymousFile(std::string_view bytes) : fd_(::memfd_create("quarnel-ramp", MFD_CLOEXEC)) {
    if (fd_ < 0) throw ToolError(kExitCantCreate, "cannot make an in-memory file for the ramp");
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd_, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ::close(fd_);
            throw ToolError(kExitCantCreate, "cannot fill the in-memory file for the ramp");
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    ::lseek(fd_, 0, SEEK_SET);
}

AnonymousFile::~AnonymousFile() { ::close(fd_); }

}  // namespace quarnel::tool
