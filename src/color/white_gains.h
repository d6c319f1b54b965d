// SPDX-License-Identifier: MIT
#pragma once

#include "color/chromaticity.h"
#include "color/gain_types.h"

namespace quarnel {

// Gains that make full drive show `target` at the highest luminance the
// state's primaries reach: the limiting channel gets exactly 1.0. Also sets
// resultY and, when nativeY is not 0, lumChangePct. Leaves everything as it
// is when a primary or target coordinate, a primary luminance, the mix or
// one of its shares is exactly 0.
void SolveWhiteGains(GainSolverState& state, Xy target, double gain[3]);

}  // namespace quarnel
