// SPDX-License-Identifier: MIT
#pragma once
// Chromaticities of a colour temperature on the three loci a target can be
// placed on. Each clamps its integer kelvin and reports the clamp in the
// state's flags.

#include <cstdint>

#include "color/chromaticity.h"
#include "color/gain_types.h"

namespace quarnel {

// CIE daylight locus, 4000..25000 K (0x80 below, 0x100 above).
Xy DaylightLocusXy(GainSolverState& state, int32_t kelvin);

// Cubic-spline Planckian locus, 1667..25000 K (0x200 below, 0x400 above).
// Below 4000 K x stays at its 4000 K value (0x80): the warm end is flattened
// on purpose, while y still follows the requested temperature.
Xy PlanckianLocusXy(GainSolverState& state, int32_t kelvin);

// The daylight point pushed 0.003 further from the Planckian locus in CIE
// 1960 (u, v), 4000..25000 K (0x800 below, 0x1000 above). `out` is left as it
// is when the two loci meet.
void OffsetDaylightLocusXy(GainSolverState& state, int32_t kelvin, Xy& out);

// Places `kelvin` on `locus`; an unknown locus acts as offset daylight and sets 0x10.
void LocusXy(GainSolverState& state, uint32_t locus, int32_t kelvin, Xy& out);

}  // namespace quarnel
