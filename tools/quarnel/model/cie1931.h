// SPDX-License-Identifier: MIT
#pragma once
// The landmarks of the CIE 1931 xy chromaticity diagram: the spectral locus,
// the Planckian locus and the sRGB reference gamut.

#include <array>
#include <vector>

#include "facts/loci.h"

namespace quarnel::tool {

using Xy = facts::Xy;

struct SpectralPoint {
    int nanometres;
    Xy xy;
};

// Monochromatic light from 380 to 700 nm in 5 nm steps, for the 2-degree
// standard observer.
std::vector<SpectralPoint> SpectralLocus();

// The chromaticity of a black body at `kelvin`, valid from 1667 K to 25000 K:
// the library's own locus, without the flattening of its warm end that the
// library applies when it places a target.
using facts::PlanckianXy;
constexpr double kPlanckianMinKelvin = facts::kPlanckianMinKelvin, kPlanckianMaxKelvin = facts::kPlanckianMaxKelvin;

// sRGB (IEC 61966-2-1): red, green, blue primaries and the D65 white.
constexpr std::array<Xy, 3> kSrgbPrimaries{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}};
constexpr Xy kD65{0.3127, 0.3290};

}  // namespace quarnel::tool
