// SPDX-License-Identifier: MIT
#pragma once
// The factory gamma table: from the seven measured XYZ levels of each primary
// to a per-channel 256-entry table of drive codes whose response follows the
// target transfer curve (sRGB, or a pure power law).

#include <array>
#include <cstdint>

#include "color/tone_model.h"

namespace quarnel {

using ColumnExponents = std::array<double, 3>;                 // X, Y, Z
using ResponseCurve = std::array<std::array<double, 3>, 256>;  // [drive code][X, Y, Z]
using ColumnLookup = std::array<std::array<int32_t, 3>, 256>;  // [input level][X, Y, Z] -> drive code

// The first value above this becomes the top of the straight black ramp.
inline constexpr int32_t kFactoryBlackThreshold = 30;

// Best exponent 0.00..9.99 per column for the measurements normalised to the
// full-drive level; ties keep the smaller exponent.
ColumnExponents FitChannelExponents(const ToneChannel& tone);

// The primary's XYZ at every drive code, interpolated between the measured
// levels with a fixed shape per segment.
ResponseCurve BuildResponseCurve(const ToneChannel& tone);

// Per column and input level, the drive code whose response is nearest the
// target curve. Codes are always 0..255, also for measurements that make the
// arithmetic infinite or not a number.
ColumnLookup InvertResponseCurve(const ResponseCurve& curve, const ColumnExponents& exponents, double targetGamma);

// Fills model.gammaTable from the tone measurements and sets blackThreshold
// to 30. Every entry is a drive code 0..255. Always returns 0.
int32_t BuildFactoryGammaTable(ToneModel& model);

}  // namespace quarnel
