// SPDX-License-Identifier: MIT
#include "io/worker_pool.h"

#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <vector>

#include "io/atomic_file.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

constexpr int kWorkerFailed = 70;  // EX_SOFTWARE, seen only by the pool

struct Worker {
    pid_t pid = -1;
    int fd = -1;
    std::string buffer;  // bytes read ahead of the current message
};

// A message is its length (4 bytes, this machine's order) and its bytes.
bool SendMessage(int fd, std::string_view bytes) {
    const auto size = static_cast<uint32_t>(bytes.size());
    char head[sizeof size];
    std::memcpy(head, &size, sizeof size);
    return WriteAll(fd, std::string_view(head, sizeof head)) && WriteAll(fd, bytes);
}

[[noreturn]] void RunWorker(const WorkerPool& pool, size_t first, size_t step, size_t items, int fd) {
    int code = 0;
    try {
        for (size_t item = first; item < items; item += step)
            if (!SendMessage(fd, pool.work(item))) {
                code = kWorkerFailed;
                break;
            }
    } catch (...) {
        code = kWorkerFailed;
    }
    ::_exit(code);
}

Worker StartWorker(const WorkerPool& pool, size_t first, size_t step, size_t items) {
    int ends[2];
    if (::pipe(ends) != 0) throw ToolError(kExitIoError, std::string("cannot start a worker: ") + std::strerror(errno));
    std::cout.flush();
    std::cerr.flush();
    const pid_t pid = ::fork();
    if (pid < 0) {
        const int error = errno;
        ::close(ends[0]);
        ::close(ends[1]);
        throw ToolError(kExitIoError, std::string("cannot start a worker: ") + std::strerror(error));
    }
    if (pid == 0) {
        ::close(ends[0]);
        RunWorker(pool, first, step, items, ends[1]);
    }
    ::close(ends[1]);
    return {pid, ends[0], {}};
}

// Reads until the buffer holds `size` bytes; false at the end of the pipe.
bool Fill(Worker& w, size_t size) {
    char chunk[1 << 16];
    while (w.buffer.size() < size) {
        const ssize_t n = ::read(w.fd, chunk, sizeof chunk);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        w.buffer.append(chunk, static_cast<size_t>(n));
    }
    return true;
}

bool ReceiveMessage(Worker& w, std::string& message) {
    uint32_t size = 0;
    if (!Fill(w, sizeof size)) return false;
    std::memcpy(&size, w.buffer.data(), sizeof size);
    if (!Fill(w, sizeof size + size)) return false;
    message.assign(w.buffer, sizeof size, size);
    w.buffer.erase(0, sizeof size + size);
    return true;
}

// Why a worker ended before its work was done.
std::string Reap(Worker& w) {
    ::close(w.fd);
    int status = 0;
    while (::waitpid(w.pid, &status, 0) < 0 && errno == EINTR) {
    }
    w = Worker{};
    if (WIFSIGNALED(status)) return std::string("the check ended on signal ") + ::strsignal(WTERMSIG(status));
    return "the check ended with exit status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

void RunWorkerPool(const WorkerPool& pool, size_t items) {
    const size_t step = std::max<size_t>(1, std::min<size_t>(pool.workers, items));
    std::vector<Worker> workers;
    try {
        for (size_t k = 0; k < step && k < items; ++k) workers.push_back(StartWorker(pool, k, step, items));
        std::string message;
        for (size_t item = 0; item < items; ++item) {
            Worker& w = workers[item % step];
            if (ReceiveMessage(w, message)) {
                pool.collect(item, message);
                continue;
            }
            pool.lost(item, Reap(w));
            if (item + step < items) w = StartWorker(pool, item + step, step, items);
        }
    } catch (...) {
        for (Worker& w : workers)
            if (w.pid > 0) {
                ::kill(w.pid, SIGTERM);
                Reap(w);
            }
        throw;
    }
    for (Worker& w : workers)
        if (w.pid > 0) Reap(w);
}

unsigned AvailableProcessors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (::sched_getaffinity(0, sizeof set, &set) == 0) return static_cast<unsigned>(std::max(1, CPU_COUNT(&set)));
    return static_cast<unsigned>(std::max(1L, ::sysconf(_SC_NPROCESSORS_ONLN)));
}

}  // namespace quarnel::tool
