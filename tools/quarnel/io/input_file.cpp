// SPDX-License-Identifier: MIT
#include "io/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

[[noreturn]] void Unreadable(const std::string& path, const std::string& why) {
    throw ToolError(kExitNoInput, path + ": cannot read input: " + why);
}

class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() { ::close(fd_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }

private:
    int fd_;
};

// Only a regular file has an end the tool can count on: a named pipe waits
// for a writer, a terminal for its user, a device may never stop.
void CheckKind(const std::string& path, const struct stat& info) {
    if (S_ISDIR(info.st_mode)) Unreadable(path, "it is a directory");
    if (!S_ISREG(info.st_mode)) Unreadable(path, "it is not a regular file");
}

// At most `limit` + 1 bytes: one more than allowed tells that there are more.
std::string ReadBounded(const std::string& path, size_t limit) {
    // O_NONBLOCK: opening a named pipe with no writer would wait for one.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) Unreadable(path, std::strerror(errno));
    const Descriptor file(fd);
    struct stat info {};
    if (::fstat(fd, &info) != 0) Unreadable(path, std::strerror(errno));
    CheckKind(path, info);
    std::string bytes(limit + 1, '\0');
    size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + got, bytes.size() - got);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) Unreadable(path, std::strerror(errno));
        if (n == 0) break;
        got += static_cast<size_t>(n);
    }
    bytes.resize(got);
    return bytes;
}

}  // namespace

void RequireRegularFile(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) Unreadable(path, std::strerror(errno));
    CheckKind(path, info);
}

std::string ReadInputFile(const std::string& path, size_t limit) {
    std::string bytes = ReadBounded(path, limit);
    if (bytes.size() > limit) throw ToolError(kExitData, path + ": more than " + std::to_string(limit) + " bytes");
    return bytes;
}

std::string ReadFileOfSize(const std::string& path, size_t size, const std::string& what) {
    const std::string bytes = ReadBounded(path, size);
    const std::string expected = std::to_string(size);
    if (bytes.size() > size) throw ToolError(kExitData, path + ": not " + what + ": more than " + expected + " bytes");
    if (bytes.size() < size)
        throw ToolError(kExitData,
                        path + ": not " + what + ": " + std::to_string(bytes.size()) + " bytes, expected " + expected);
    return bytes;
}

}  // namespace quarnel::tool
