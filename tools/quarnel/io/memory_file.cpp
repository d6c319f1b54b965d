// SPDX-License-Identifier: MIT
#include "io/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "io/atomic_file.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

std::string FdPath(int fd) { return "/proc/self/fd/" + std::to_string(fd); }

}  // namespace

MemoryFile::MemoryFile(std::string_view bytes) {
    fd_ = ::memfd_create("quarnel-sample", MFD_CLOEXEC);
    if (fd_ >= 0 && WriteAll(fd_, bytes) && ::access(FdPath(fd_).c_str(), R_OK) == 0) {
        path_ = FdPath(fd_);
        return;
    }
    if (fd_ >= 0) ::close(fd_);
    std::error_code error;
    tempPath_ = (std::filesystem::temp_directory_path(error) / "quarnel-sample-XXXXXX").string();
    fd_ = ::mkstemp(tempPath_.data());
    if (fd_ < 0) throw ToolError(kExitCantCreate, tempPath_ + ": cannot create the sample panel's block");
    guard_ = std::make_unique<RemoveOnSignal>(tempPath_.c_str());
    path_ = tempPath_;
    if (!WriteAll(fd_, bytes)) {
        const int failure = errno;
        Release();
        throw ToolError(kExitCantCreate, path_ + ": cannot write the sample panel's block: " + std::strerror(failure));
    }
}

MemoryFile::~MemoryFile() { Release(); }

void MemoryFile::Release() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!tempPath_.empty()) ::unlink(tempPath_.c_str());
    tempPath_.clear();
    guard_.reset();
}

}  // namespace quarnel::tool
