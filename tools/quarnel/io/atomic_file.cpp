// SPDX-License-Identifier: MIT
#include "io/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "io/exit_cleanup.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

namespace fs = std::filesystem;

// The kernel gives up on a chain of symbolic links after as many.
constexpr int kMaxLinkHops = 40;
// A new file gets what the user's umask leaves of read and write for all.
constexpr mode_t kNewFileMode = 0666;

[[noreturn]] void CannotCreate(const std::string& path, int error) {
    throw ToolError(kExitCantCreate, path + ": cannot create output: " + std::strerror(error));
}

[[noreturn]] void WriteFailed(const std::string& path, int error) {
    // A stream that failed earlier no longer knows why.
    throw ToolError(kExitIoError,
                    path + ": write error" + (error != 0 ? ": " + std::string(std::strerror(error)) : ""));
}

// The file a chain of symbolic links ends at, existing or not; the link
// stays and what it points to is replaced.
fs::path FollowLinks(const std::string& path) {
    fs::path at(path);
    for (int hop = 0; hop < kMaxLinkHops; ++hop) {
        struct stat info {};
        if (::lstat(at.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return at;
        std::error_code error;
        const fs::path next = fs::read_symlink(at, error);
        if (error) CannotCreate(path, error.value());
        at = next.is_absolute() ? next : at.parent_path() / next;
    }
    CannotCreate(path, ELOOP);
}

// Devices, FIFOs and sockets are written where they are: replacing one with
// a regular file would break whatever else uses it.
void WriteInPlace(const std::string& path, std::string_view bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) CannotCreate(path, errno);
    const bool written = WriteAll(fd, bytes);
    const int error = errno;
    if (::close(fd) != 0 && written) WriteFailed(path, errno);
    if (!written) WriteFailed(path, error);
}

// The bytes go to a temporary file beside `target`, which is renamed over it
// once complete. An existing target's mode (and owner, where allowed) carries over.
void Replace(const std::string& path, const fs::path& target, const struct stat* existing, std::string_view bytes) {
    std::string name(".");
    name.append(target.filename().string()).append(".XXXXXX");
    std::string temp = (target.parent_path() / name).string();
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) CannotCreate(path, errno);
    const RemoveOnSignal guard(temp.c_str());
    const mode_t umask = ::umask(0);
    ::umask(umask);
    if (existing != nullptr && ::fchown(fd, existing->st_uid, existing->st_gid) != 0) {
        // Not ours to give away; the mode still carries over.
    }
    const mode_t mode = existing != nullptr ? existing->st_mode & 07777 : kNewFileMode & ~umask;
    const bool written = ::fchmod(fd, mode) == 0 && WriteAll(fd, bytes) && ::fsync(fd) == 0;
    int error = errno;
    const bool closed = ::close(fd) == 0;
    if (written && !closed) error = errno;
    if (!written || !closed) {
        ::unlink(temp.c_str());
        WriteFailed(path, error);
    }
    if (std::rename(temp.c_str(), target.c_str()) != 0) {
        error = errno;
        ::unlink(temp.c_str());
        CannotCreate(path, error);
    }
}

}  // namespace

void FlushStandardOutput() {
    errno = 0;
    std::cout.flush();
    if (!std::cout) WriteFailed("standard output", errno);
}

void WriteFileAtomically(const std::string& path, std::string_view bytes) {
    if (path == "-") {
        errno = 0;
        std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
        if (!std::cout) WriteFailed("standard output", errno);
        return;
    }
    struct stat named {};
    const bool exists = ::stat(path.c_str(), &named) == 0;
    if (exists && S_ISDIR(named.st_mode)) CannotCreate(path, EISDIR);
    if (exists && !S_ISREG(named.st_mode)) return WriteInPlace(path, bytes);
    const fs::path target = FollowLinks(path);
    struct stat resolved {};
    // A link the kernel resolves by itself (/dev/stdout, /proc/self/fd/N) names
    // no path of its file: write through it.
    if (exists &&
        (::stat(target.c_str(), &resolved) != 0 || resolved.st_ino != named.st_ino || resolved.st_dev != named.st_dev))
        return WriteInPlace(path, bytes);
    Replace(path, target, exists ? &named : nullptr, bytes);
}

bool WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

}  // namespace quarnel::tool
