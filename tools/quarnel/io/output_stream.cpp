// SPDX-License-Identifier: MIT
#include "io/output_stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "io/atomic_file.h"
#include "io/exit_cleanup.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

constexpr size_t kChunk = size_t{1} << 20;
constexpr mode_t kNewFileMode = 0666;

[[noreturn]] void CannotCreate(const std::string& path, int error) {
    throw ToolError(kExitCantCreate, path + ": cannot create output: " + std::strerror(error));
}

}  // namespace

OutputStream::OutputStream(std::string path) : path_(std::move(path)) {
    if (path_ == "-") {
        fd_ = STDOUT_FILENO;
        return;
    }
    const std::filesystem::path target(path_);
    if (target.filename().empty()) CannotCreate(path_, EISDIR);
    std::string name(".");
    name.append(target.filename().string()).append(".XXXXXX");
    temp_ = (target.parent_path() / name).string();
    fd_ = ::mkstemp(temp_.data());
    if (fd_ < 0) CannotCreate(path_, errno);
    guard_ = std::make_unique<RemoveOnSignal>(temp_.c_str());
    const mode_t umask = ::umask(0);
    ::umask(umask);
    ::fchmod(fd_, kNewFileMode & ~umask);
}

OutputStream::~OutputStream() {
    if (temp_.empty() || fd_ < 0) return;
    ::close(fd_);
    ::unlink(temp_.c_str());
}

void OutputStream::Flush() {
    if (!failed_ && !WriteAll(fd_, pending_)) {
        failed_ = true;
        error_ = errno;
    }
    pending_.clear();
}

OutputStream& OutputStream::operator<<(std::string_view bytes) {
    pending_.append(bytes);
    if (pending_.size() >= kChunk) Flush();
    return *this;
}

void OutputStream::Commit() {
    Flush();
    const std::string where = temp_.empty() ? "standard output" : path_;
    if (!temp_.empty() && !failed_ && ::fsync(fd_) != 0) failed_ = true, error_ = errno;
    if (failed_) throw ToolError(kExitIoError, where + ": write error: " + std::strerror(error_));
    if (temp_.empty()) return;
    const int closed = ::close(fd_);
    fd_ = -1;
    if (closed != 0 || std::rename(temp_.c_str(), path_.c_str()) != 0) {
        const int error = errno;
        ::unlink(temp_.c_str());
        CannotCreate(path_, error);
    }
}

}  // namespace quarnel::tool
