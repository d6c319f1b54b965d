// SPDX-License-Identifier: MIT
#pragma once
// The own work of each gain-driven CCTAPI request: its 16-bit LUT, written
// into outLut before the shared improvement, brightness and conversion tail.

#include "api/request.h"
#include "quarnel/cctapi.h"

namespace quarnel {

using ModeLutBuilder = void (*)(CctContext& ctx, const RequestArgs& args);

void BuildGetLut(CctContext& ctx, const RequestArgs& args);
void BuildTheaterModeLut(CctContext& ctx, const RequestArgs& args);
void BuildVividModeLut(CctContext& ctx, const RequestArgs& args);
void BuildReadingStrongLut(CctContext& ctx, const RequestArgs& args);
void BuildReadingWeakLut(CctContext& ctx, const RequestArgs& args);
void BuildReadingMultiLut(CctContext& ctx, const RequestArgs& args);

}  // namespace quarnel
