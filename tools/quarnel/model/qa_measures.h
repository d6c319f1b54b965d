// SPDX-License-Identifier: MIT
#pragma once
// What factory QA measures on a panel from its block alone: how much of a
// reference gamut its primaries cover, how far one white lies from another,
// and each channel's native gamma from the tone readings.

#include <array>
#include <limits>
#include <optional>

#include "model/cie1931.h"
#include "model/panel_model.h"

namespace quarnel::tool {

using Triangle = std::array<Xy, 3>;  // red, green, blue

// DCI-P3 (SMPTE RP 431-2) primaries.
constexpr Triangle kDciP3Primaries{{{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}}};

// The area of the panel's xy triangle that lies inside the reference's, over
// the reference's area: 1 for a panel whose gamut holds the reference.
double GamutCoverage(const Triangle& panel, const Triangle& reference);

inline constexpr double kNotMeasured = std::numeric_limits<double>::quiet_NaN();
inline constexpr Xy kNoChromaticity{kNotMeasured, kNotMeasured};

// What the block's own measurements say of the panel; NaN where they say nothing.
struct NativeMeasures {
    Xy white = kNoChromaticity;  // from the white row
    double whiteY = kNotMeasured;
    Triangle primaries{kNoChromaticity, kNoChromaticity, kNoChromaticity};
    double srgbCoverage = kNotMeasured, p3Coverage = kNotMeasured;
    std::array<double, 3> gamma{kNotMeasured, kNotMeasured, kNotMeasured};  // with tone readings
};
NativeMeasures MeasureNative(const PanelMeasurements& measured);

// Euclidean distance in the CIE 1976 u'v' diagram, where equal distances
// look about equally different.
double DeltaUv(const Xy& a, const Xy& b);

// The exponent of the power law that best fits the channel's grey levels
// (luminance above black over full drive's), least squares on logarithms;
// nothing without tone readings or without a usable level.
std::optional<double> NativeGamma(const PanelMeasurements& measured, size_t channel);

}  // namespace quarnel::tool
