// SPDX-License-Identifier: MIT
#pragma once
// The vivid tone curve: the identity below level 50, a cubic lift above it
// that meets full scale at 255.

#include <cstdint>

#include "core/lut16.h"

namespace quarnel {

// The curve at input level i (0..255), before any rounding.
double VividLevel(int i);

// The curve as a Lut16: half-up of the level, clamped to 0..255, x 256 in all
// three planes.
Lut16 BuildVividCurve();

// The vivid LUT of the gain-driven vivid mode: out[c][i] =
// base[c][half-up(clamp(VividLevel(i) x gain[c], 0, 255))].
void ApplyVividGains(const double gain[3], const uint16_t* base, uint16_t* out);

}  // namespace quarnel
