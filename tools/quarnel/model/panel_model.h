// SPDX-License-Identifier: MIT
#pragma once
// The panel as its factory measured it, and what it shows for any drive:
// black plus each channel's full-drive colour times that channel's response.
// Profiles, the modes table and plots of the panel all read it from here.

#include <algorithm>
#include <array>
#include <optional>

#include "facts/block_layout.h"
#include "facts/chromaticity.h"
#include "model/block_codec.h"
#include "model/curve.h"

namespace quarnel::tool {

using Drive = std::array<double, 3>;  // red, green, blue, each 0..1
using Xyz = std::array<double, 3>;    // CIE XYZ

// Drive levels of the factory's tone measurements: black, five grey levels
// (the block's tone levels), full drive.
inline constexpr std::array<double, 7> kToneDriveLevels = [] {
    std::array<double, 7> levels{};
    std::ranges::copy(facts::kToneDriveLevels, levels.begin());
    return levels;
}();
inline constexpr size_t kGreyLevels = 5;

struct ToneMeasurements {
    Xyz black{};
    std::array<std::array<Xyz, kGreyLevels>, 3> levels{};  // channel, grey level
};

struct PanelMeasurements {
    std::array<Xyz, 4> primaries{};        // red, green, blue, white at full drive
    std::optional<ToneMeasurements> tone;  // blocks of version 5 on
};

struct PanelModel {
    Xyz black{};                                      // zero without tone measurements
    std::array<Xyz, 3> channel{};                     // full-drive colour above black, scaled to reproduce white
    std::array<std::array<double, 7>, 3> response{};  // at kToneDriveLevels, 0 at black, 1 at full drive
    bool measuredTone = false;                        // else a gamma of 2.2
};

// Without tone measurements every channel follows this power law.
inline constexpr double kAssumedGamma = 2.2;

PanelModel FromMeasurements(const PanelMeasurements& measured);

// A channel's share of its full-drive colour at `drive` (0..1): between
// measured levels a power law through both neighbours, so a panel that
// follows one is reproduced exactly.
double Response(const PanelModel& model, size_t channel, double drive);

Xyz Emission(const PanelModel& model, const Drive& drive);

// How much of each channel's colour the panel's black amounts to, so that
// black = sum of share x channel colour (never negative: a black outside the
// channels' cone is approximated from inside it).
Xyz BlackShares(const PanelModel& model);

// The drive a curve plane gives at `input` (0..1): entries / 65280,
// interpolated linearly between entries as loaders of curves do.
double CurveDrive(const CurvePlane& plane, double input);

// The white of the panel with `curve` loaded: full input through the curve.
Xyz CalibratedWhite(const PanelModel& model, const Curve& curve);

using Chromaticity = facts::Xy;
std::optional<Chromaticity> ToChromaticity(const Xyz& xyz);
// Correlated colour temperature in kelvin, McCamy's approximation with the
// library's coefficients, rounded to the nearest kelvin. Unlike the library's
// reports it is not clamped: the tool shows the white the panel really gives.
int Cct(const Chromaticity& xy);

}  // namespace quarnel::tool
