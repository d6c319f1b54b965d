// SPDX-License-Identifier: MIT
#include "platform/trace_file.h"

#include <utility>

namespace quarnel::platform {

std::string SystemTraceFilePath();  // per-system backend

namespace {
std::string& Slot() {
    static std::string path = SystemTraceFilePath();
    return path;
}
}  // namespace

const std::string& TraceFilePath() { return Slot(); }

ScopedTraceFilePath::ScopedTraceFilePath(std::string path) : previous_(std::move(Slot())) { Slot() = std::move(path); }

ScopedTraceFilePath::~ScopedTraceFilePath() { Slot() = std::move(previous_); }

}  // namespace quarnel::platform
