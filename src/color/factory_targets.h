// SPDX-License-Identifier: MIT
#pragma once
// FactoryTargets: the white targets that version-4 and later calibration data
// carry, filled by the calibration source for the gain initialisation.

#include <cstdint>

#include "facts/block_layout.h"

namespace quarnel {

// Calibration data from this version on carries white targets of its own.
inline constexpr int32_t kTargetsVersion = facts::kDefaultWhite.firstVersion;

// Presets the gain initialisation writes before the calibration data is read.
inline constexpr double kPresetFirstWhiteX = 0.304670011;
inline constexpr double kPresetFirstWhiteY = 0.319584911;

struct FactoryTargets {
    double firstWhite[2] = {kPresetFirstWhiteX, kPresetFirstWhiteY};
    double targetLuminance = 0.0;
    int32_t valid = 0;
    double defaultWhite[2] = {0.0, 0.0};
};

}  // namespace quarnel
