// SPDX-License-Identifier: MIT
#include "atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "tool_error.h"

namespace quarnel::tool {
namespace {

bool WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

[[noreturn]] void CannotCreate(const std::string& path, int error) {
    throw ToolError(kExitCantCreate, path + ": cannot create output: " + std::strerror(error));
}

}  // namespace

void WriteFileAtomically(const std::string& path, std::string_view bytes) {
    if (path == "-") {
        std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        std::cout.flush();
        return;
    }
    const std::filesystem::path target(path);
    std::string name(".");
    name.append(target.filename().string()).append(".XXXXXX");
    std::string temp = (target.parent_path() / name).string();
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) CannotCreate(path, errno);
    const bool written = ::fchmod(fd, 0644) == 0 && WriteAll(fd, bytes) && ::fsync(fd) == 0;
    const int error = errno;
    ::close(fd);
    if (!written || std::rename(temp.c_str(), path.c_str()) != 0) {
        const int failure = written ? errno : error;
        std::remove(temp.c_str());
        CannotCreate(path, failure);
    }
}

}  // namespace quarnel::tool
