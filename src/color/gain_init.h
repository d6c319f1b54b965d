// SPDX-License-Identifier: MIT
#pragma once
// The gain half of the initialisation request: the five white-point gain
// triples every later LUT request uses.

#include "color/factory_targets.h"
#include "color/tone_model.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// With factory data (fromBios set): solves the normal gains toward the
// factory white (or the fixed target of `useFixedTarget`), warm and cold
// 1000 K either side of the normal white, and the two reading gains from the
// bios table; builds the factory gamma LUT of version-5 data. Without it:
// warm and cold 1000 K either side of the icc table's native white, unit
// normal gains and the reading gains from the icc table. Then raises every
// gain to the minimum output level of the base LUT.
void InitGains(CctContext& ctx, const FactoryTargets& targets, ToneModel& tone, bool useFixedTarget);

}  // namespace quarnel
