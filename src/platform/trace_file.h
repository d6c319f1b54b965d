// SPDX-License-Identifier: MIT
#pragma once
// The trace log's fixed file: its presence switches tracing on.

#include <cstdio>
#include <string>

namespace quarnel::platform {

// The fixed trace file of this system, or the one a test put in place.
const std::string& TraceFilePath();

// Opens the trace file with an fopen mode ("r" or "a+") without following a
// symbolic link at its place; null when it cannot be opened.
std::FILE* OpenTraceFile(const std::string& path, const char* mode);

// Deletes the trace file; false when it could not be removed.
bool RemoveTraceFile(const std::string& path);

// Test seam: points the trace log at `path` for the object's lifetime.
class ScopedTraceFilePath {
public:
    explicit ScopedTraceFilePath(std::string path);
    ~ScopedTraceFilePath();
    ScopedTraceFilePath(const ScopedTraceFilePath&) = delete;
    ScopedTraceFilePath& operator=(const ScopedTraceFilePath&) = delete;

private:
    std::string previous_;
};

}  // namespace quarnel::platform
