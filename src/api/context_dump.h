// SPDX-License-Identifier: MIT
#pragma once
// The record in the trace log: full dumps of the context and of the LUT at
// each pipeline step, written only while the trace file exists.

#include <cstdint>

#include "quarnel/cctapi.h"

namespace quarnel {

// One LUT dump of outLut under `title`.
void DumpLut(const CctContext* ctx, const char* title);

// A full context dump under `title`; vxInput (planar 3 x 256) may be null.
void DumpContext(const CctContext* ctx, const char* title, const uint16_t* vxInput);

}  // namespace quarnel
