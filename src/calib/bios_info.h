// SPDX-License-Identifier: MIT
#pragma once
// GetBIOSInfo: reads the panel's factory calibration and hands it on, with
// the two records of the gain initialisation.

#include <cstdint>

#include "color/factory_targets.h"
#include "color/gain_types.h"
#include "color/tone_model.h"
#include "core/calibration_source.h"
#include "core/lut16.h"

namespace quarnel {

// What the factory calibration leaves for the colour requests. Fields the
// read does not reach, and the table gammaLut points to, keep what the
// caller put in them.
struct FactoryData {
    int32_t fromBios = 0;
    XyzTable bios;        // the block's primaries, when a block was found
    int32_t biosVer = 0;  // the block's version; -1 without a usable block
    int32_t gammaK = 0;   // set to 1 for tone data (version 5 and later)
    // The caller's planar table of kLutEntries entries, which takes the
    // decoded factory LUT of version 6 and later where it lies, uncopied.
    uint16_t* gammaLut = nullptr;
};

// Reads the block of `source` and writes `data`, the targets of version-4
// and later blocks and the tone model of version-5 and later blocks.
void GetBIOSInfo(const CalibrationSource& source, FactoryData& data, ToneModel& tone, FactoryTargets& targets);

}  // namespace quarnel
