// SPDX-License-Identifier: MIT
#pragma once
// The trace log: full dumps of the context and of the LUT at each pipeline
// step, written only while the fixed trace file exists.

#include <cstdint>

#include "quarnel/cctapi.h"

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

// One LUT dump of outLut under `title`.
void DumpLut(const CctContext* ctx, const char* title);

// A full context dump under `title`; vxInput (planar 3 x 256) may be null.
void DumpContext(const CctContext* ctx, const char* title, const uint16_t* vxInput);

}  // namespace quarnel
