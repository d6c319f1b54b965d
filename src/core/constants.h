// SPDX-License-Identifier: MIT
#pragma once
// Numbers that several parts of the library share: the sizes of the driver
// arrays and of the calibration block, and the two 16-bit full scales.

#include "facts/block_layout.h"

namespace quarnel {

// 8-bit full scale as a 16-bit entry: the identity ramp is i x 256.
inline constexpr int kLutStep = 256;
inline constexpr double kLutFullScale = 65280.0;

// Top of the unsigned 16-bit range: the clamp of every 16-bit output.
inline constexpr double kMax16 = 65535.0;

// Points of each NVIDIA float array (interleaved red, green, blue).
inline constexpr int kNvPoints = 1024;
inline constexpr int kNvFloatsPerArray = kNvPoints * 3;
// The last point, and the scale a point index is divided by.
inline constexpr int kNvTop = kNvPoints - 1;
inline constexpr double kNvTopScale = kNvTop;

// The factory calibration block, in firmware or as a raw file, as the
// library's signed sizes and indices count it.
inline constexpr int kBlockSize = static_cast<int>(facts::kBlockSize);
// Where a version-7 block keeps the LUT improvement's interpolation step.
inline constexpr int kBlockStepByte = static_cast<int>(facts::kStepByte.offset);

}  // namespace quarnel
