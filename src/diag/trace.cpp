// SPDX-License-Identifier: MIT
#include "diag/trace.h"

#include "platform/trace_file.h"

namespace quarnel {
namespace {

// The library's one trace-handle slot, and whether the running call has
// already decided about tracing (then the handle says whether it traces).
struct TraceSlot {
    std::FILE* handle = nullptr;
    bool decided = false;
};

TraceSlot& Slot() {
    static TraceSlot slot;
    return slot;
}

bool TraceFileExists(const std::string& path) {
    std::FILE* probe = platform::OpenTraceFile(path, "r");
    if (probe == nullptr) return false;
    std::fclose(probe);
    return true;
}

// A dump writes only while the trace file exists; it never creates it.
std::FILE* OpenForDump() {
    const std::string& path = platform::TraceFilePath();
    return TraceFileExists(path) ? platform::OpenTraceFile(path, "a+") : nullptr;
}

}  // namespace

void TraceReset() {
    TraceClose();  // a handle that an earlier early return left open
    const std::string& path = platform::TraceFilePath();
    TraceSlot& slot = Slot();
    slot.decided = true;
    if (!TraceFileExists(path)) return;
    platform::RemoveTraceFile(path);
    slot.handle = platform::OpenTraceFile(path, "a+");
}

void TraceClose() {
    TraceSlot& slot = Slot();
    if (slot.handle != nullptr) std::fclose(slot.handle);
    slot.handle = nullptr;
    slot.decided = false;
}

void TraceBeginVx() {
    TraceClose();
    TraceSlot& slot = Slot();
    slot.handle = OpenForDump();
    slot.decided = true;
}

void TraceEndVx() { TraceClose(); }

bool DumpsWritten() {
    const TraceSlot& slot = Slot();
    return slot.decided ? slot.handle != nullptr : TraceFileExists(platform::TraceFilePath());
}

TraceTarget::TraceTarget() {
    const TraceSlot& slot = Slot();
    if (slot.decided) {
        file_ = slot.handle;
        return;
    }
    file_ = OpenForDump();
    owned_ = file_ != nullptr;
}

TraceTarget::~TraceTarget() {
    if (owned_) std::fclose(file_);
}

}  // namespace quarnel
