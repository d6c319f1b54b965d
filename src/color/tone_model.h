// SPDX-License-Identifier: MIT
#pragma once
// ToneModel: the factory tone measurements of version-5 and later calibration
// data, filled by the calibration source and turned into the factory gamma
// table by the gain initialisation.

#include <array>
#include <cstdint>

#include "facts/block_layout.h"

namespace quarnel {

// Calibration data from this version on carries tone measurements; data of
// exactly this version carries them without a LUT string.
inline constexpr int32_t kToneVersion = facts::kToneLevels.firstVersion;

inline constexpr int kToneLevelCount = static_cast<int>(facts::kToneDriveLevels.size());
// Drive levels of the seven measurements per primary, in order.
inline constexpr std::array<int32_t, kToneLevelCount> kToneLevels = facts::kToneDriveLevels;
// Seven levels x (X, Y, Z).
inline constexpr int kModelToneValuesPerChannel = kToneLevelCount * 3;

using ToneChannel = std::array<double, kModelToneValuesPerChannel>;
using GammaTable = std::array<std::array<int32_t, 3>, 256>;  // [input level][red, green, blue]

struct ToneModel {
    int32_t levelCount = 0;
    std::array<int32_t, kToneLevelCount> levels{};
    // Per channel: black XYZ, five grey levels x XYZ, then the full-drive XYZ.
    ToneChannel toneR{};
    ToneChannel toneG{};
    ToneChannel toneB{};
    int32_t toneModelReady = 0;
    // 0 selects the sRGB transfer; any other value a pure power law.
    double targetGamma = 0.0;
    int32_t blackThreshold = 0;
    // Written whole by BuildFactoryGammaTable and read only after it: not
    // cleared beforehand, since most initialisations never build it.
    GammaTable gammaTable;
};

}  // namespace quarnel
