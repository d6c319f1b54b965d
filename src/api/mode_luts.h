// SPDX-License-Identifier: MIT
#pragma once
// The own work of each gain-driven CCTAPI request: its 16-bit LUT, for the
// shared improvement, brightness and conversion tail.

#include <optional>

#include "api/gained_lut.h"
#include "api/request.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// A mode's LUT: written into outLut by the builder, or (for the modes that
// apply gains to the base LUT) returned as the gained table it stands for,
// for the pipeline to write out.
using ModeLut = std::optional<GainedLut>;
using ModeLutBuilder = ModeLut (*)(CctContext& ctx, const RequestArgs& args);

ModeLut BuildGetLut(CctContext& ctx, const RequestArgs& args);
ModeLut BuildTheaterLut(CctContext& ctx, const RequestArgs& args);
ModeLut BuildVividModeLut(CctContext& ctx, const RequestArgs& args);
ModeLut BuildReadingStrongLut(CctContext& ctx, const RequestArgs& args);
ModeLut BuildReadingWeakLut(CctContext& ctx, const RequestArgs& args);
ModeLut BuildReadingMultiLut(CctContext& ctx, const RequestArgs& args);

}  // namespace quarnel
