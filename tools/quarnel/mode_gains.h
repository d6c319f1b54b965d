// SPDX-License-Identifier: MIT
#pragma once
// The white-point gains each mode applies, read from the record after its
// request, and what they make of the panel's white.

#include <array>
#include <optional>

#include "curve.h"
#include "mode_curve.h"
#include "quarnel/cctapi.h"

namespace quarnel::tool {

using Gains = std::array<double, 3>;

std::optional<Gains> ModeGains(Mode mode, const CctContext& ctx, const Curve& curve);

struct WhitePoint {
    double x = 0.0, y = 0.0;
    int cct = 0;  // kelvin, McCamy's approximation
};

// The white that full drive at `gains` gives on the panel's primaries
// (factory measurement, else the record's colour space), assuming the
// solver's gamma of 2.2.
std::optional<WhitePoint> WhiteFromGains(const CctContext& ctx, const Gains& gains);

}  // namespace quarnel::tool
