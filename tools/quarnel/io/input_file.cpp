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

// At most `limit` + 1 bytes: one more than allowed tells that there are more.
std::string ReadBounded(const std::string& path, size_t limit) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) Unreadable(path, std::strerror(errno));
    const Descriptor file(fd);
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) Unreadable(path, "it is a directory");
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
