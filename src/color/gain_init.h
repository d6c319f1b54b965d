// SPDX-License-Identifier: MIT
#pragma once
// The gain half of the initialisation request: the five white-point gain
// triples every later LUT request uses.

#include <cstdint>
#include <optional>

#include "color/factory_targets.h"
#include "color/gain_types.h"
#include "color/tone_model.h"
#include "core/lut16.h"

namespace quarnel {

// What the solves start from: the factory measurement (`fromBios`) with its
// version and white targets, or else the caller's colour table.
struct GainInitInput {
    XyzTable rows;
    bool fromBios = false;
    int32_t biosVer = 0;
    FactoryTargets targets;
};

// With factory data: the normal gains toward the factory white (or the
// fixed target of `useFixedTarget`), warm and cold 1000 K either side of the
// normal white, and the two reading gains. Without it: warm and cold 1000 K
// either side of the table's native white, unit normal gains and the
// reading gains.
ModeGains SolveModeGains(const GainInitInput& in, bool useFixedTarget);

// The factory gamma LUT of version-5 tone data, or nothing when the table
// cannot be built.
std::optional<Lut16> FactoryGammaLut(ToneModel& tone);

// Raises every gain to the minimum output level of `base` for the driver type.
void CheckModeGains(ModeGains& gains, const uint16_t* base, int32_t lutApiType);

}  // namespace quarnel
