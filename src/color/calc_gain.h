// SPDX-License-Identifier: MIT
#pragma once

#include "color/gain_types.h"

namespace quarnel {

// The white-point gain solver. Places the request's target (a chromaticity,
// the native colour temperature plus an offset, or an absolute temperature on
// a locus), walks it into the primaries' gamut along its locus if needed,
// solves the gains, and keeps the white above the luminance floor by moving
// the target toward native white. Every failure ends in native white with
// gains 1, 1, 1 and the reason in warnFlags. A null request sets flags to 1.
void CalcGain(GainSolverState& state, GainRequest* request);

// A request for the white (x, y) on the measurement rows (red, green, blue,
// white; X, Y, Z): offset daylight locus, no luminance floor, no LUT.
GainRequest ChromaticityRequest(const XyzTable& rows, double x, double y);

}  // namespace quarnel
