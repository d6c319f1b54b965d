// SPDX-License-Identifier: MIT
#pragma once
// GetBIOSInfo: reads the panel's factory calibration and hands it to the
// context and to the two records of the gain initialisation.

#include "color/factory_targets.h"
#include "color/tone_model.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// Writes fromBios, bios, biosVer (-1 when there is no usable block), gammaK
// and gammaLut of `ctx`, the targets of version-4 and later blocks and the
// tone model of version-5 and later blocks.
void GetBIOSInfo(CctContext& ctx, ToneModel& tone, FactoryTargets& targets);

}  // namespace quarnel
