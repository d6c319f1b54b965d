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

// What every solve on one measurement table starts from, worked out once for
// the solves that share the table: each row's chromaticity, whether native
// white lies inside the primaries' gamut, and its colour temperature, with
// the status bits that working them out raises.
struct SolverRows {
    ChromaPoint point[4];
    uint32_t pointFlags = 0;
    bool nativeInside = false;
    int32_t nativeCct = 0;
    uint32_t nativeCctFlags = 0;
};

// The rows red, green, blue and white; columns X, Y, Z.
SolverRows PrepareRows(const double primaryXyz[4][3]);

// CalcGain for a request whose primaryXyz `rows` was prepared from.
void CalcGain(GainSolverState& state, GainRequest* request, const SolverRows& rows);

// A request for the white (x, y) on the measurement rows (red, green, blue,
// white; X, Y, Z): offset daylight locus, no luminance floor, no LUT.
GainRequest ChromaticityRequest(const XyzTable& rows, double x, double y);

}  // namespace quarnel
