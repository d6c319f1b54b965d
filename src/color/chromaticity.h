// SPDX-License-Identifier: MIT
#pragma once
// CIE 1931 chromaticity primitives: a row's chromaticity, McCamy's colour
// temperature and the test whether a point lies inside the panel's gamut.

#include <cstdint>

#include "color/gain_types.h"
#include "facts/chromaticity.h"

namespace quarnel {

using Xy = facts::Xy;

// Every colour temperature the system reports lies in this range.
inline constexpr int32_t kCctReportMin = facts::kReportedCctMin;
inline constexpr int32_t kCctReportMax = facts::kReportedCctMax;

// (X, Y, Z) -> (x, y, Y). A row summing to 0 gives (0, 0) and sets 0x2.
ChromaPoint Chromaticity(GainSolverState& state, const double xyz[3]);

// McCamy's cubic with the system's coefficients, half-up, clamped to 2222..13000.
int32_t CctFromXy(GainSolverState& state, Xy p);

// Strictly inside the triangle of the state's red, green and blue points; a
// point on an edge or a vertex is outside.
bool IsInsideGamut(const GainSolverState& state, Xy p);

}  // namespace quarnel
