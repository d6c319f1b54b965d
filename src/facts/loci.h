// SPDX-License-Identifier: MIT
#pragma once
// The Planckian and CIE daylight loci in CIE 1931 xy, as functions of the
// colour temperature in kelvin, over the range each approximation holds.
// Callers clamp to these ranges themselves.

#include "facts/chromaticity.h"

namespace quarnel::facts {

// Cubic spline of the Planckian locus: x in 1/T over two segments, y in x
// over three. A temperature at a segment end belongs to the warmer segment.
inline constexpr int kPlanckianMinKelvin = 1667;
inline constexpr int kPlanckianWarmestEnd = 2222;  // last kelvin of the warmest y cubic
inline constexpr int kPlanckianWarmEnd = 4000;     // last kelvin of the warm x and y cubics
inline constexpr int kPlanckianMaxKelvin = 25000;

double PlanckianX(double kelvin);
// y on the segment of `kelvin`, at `x` (normally PlanckianX(kelvin)).
double PlanckianY(double kelvin, double x);
Xy PlanckianXy(double kelvin);

// CIE daylight locus: x in 1/T over two segments, then y as a quadratic in x.
inline constexpr int kDaylightMinKelvin = 4000;
inline constexpr int kDaylightWarmEnd = 7000;  // last kelvin of the warm x cubic
inline constexpr int kDaylightMaxKelvin = 25000;

Xy DaylightXy(double kelvin);

}  // namespace quarnel::facts
