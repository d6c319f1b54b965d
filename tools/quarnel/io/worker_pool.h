// SPDX-License-Identifier: MIT
#pragma once
// Work spread over child processes, for work that must not share a process
// (the calibration library keeps unlocked process-wide state). Each worker
// takes every n-th item; the results come back in item order, so the caller
// streams them as if it had done the work itself.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace quarnel::tool {

struct WorkerPool {
    unsigned workers = 1;
    // Runs in a worker, once per item; its result travels back as bytes.
    std::function<std::string(size_t item)> work;
    // Runs in the caller, for every item in order.
    std::function<void(size_t item, std::string_view result)> collect;
    // Runs in the caller for an item whose worker died on it (a signal, an
    // exception); the pool starts a new worker for the items after it.
    std::function<void(size_t item, const std::string& why)> lost;
};

// Throws ToolError (74) when a worker cannot be started.
void RunWorkerPool(const WorkerPool& pool, size_t items);

// The processors this process may run on; at least 1.
unsigned AvailableProcessors();

}  // namespace quarnel::tool
