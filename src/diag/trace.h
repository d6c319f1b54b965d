// SPDX-License-Identifier: MIT
#pragma once
// The trace log: a file the library writes its dumps into only while the
// fixed trace file exists. What a dump holds is its writer's business.

#include <cstdio>

namespace quarnel {

// Each call looks for the trace file once, at its start, and that look
// decides whether the call's dumps are written; a trace file created or
// deleted during a call takes effect from the next call. Dumps made outside
// any call look for the file themselves.

// Start of every CCTAPI call: empty an existing trace file and keep it open
// for appending; without the file, tracing stays off for this call.
void TraceReset();

// End of a call: close the trace handle if one is open.
void TraceClose();

// Start and end of a CCTAPI_VX call: an existing trace file is kept as it is
// and this call's dumps are appended to it.
void TraceBeginVx();
void TraceEndVx();

// Brackets a CCTAPI_VX call with TraceBeginVx and TraceEndVx.
class VxTraceScope {
public:
    VxTraceScope() { TraceBeginVx(); }
    ~VxTraceScope() { TraceEndVx(); }
    VxTraceScope(const VxTraceScope&) = delete;
    VxTraceScope& operator=(const VxTraceScope&) = delete;
};

// Whether a dump made now is written: in a call, as its start decided;
// outside any call, whether the trace file exists.
bool DumpsWritten();

// Where one dump made now goes: the call's trace file, a file opened for
// this dump alone outside any call, or nowhere (file() is null).
class TraceTarget {
public:
    TraceTarget();
    ~TraceTarget();
    TraceTarget(const TraceTarget&) = delete;
    TraceTarget& operator=(const TraceTarget&) = delete;
    std::FILE* file() const { return file_; }

private:
    std::FILE* file_ = nullptr;
    bool owned_ = false;  // opened for this dump, closed with it
};

}  // namespace quarnel
