// SPDX-License-Identifier: MIT
#pragma once
// The vivid tone curve: the identity below level 50, a cubic lift above it
// that meets full scale at 255.

#include <array>
#include <cstdint>

#include "core/lut16.h"
#include "lut/compose.h"

namespace quarnel {

// The curve at input level i (0..255), before any rounding.
double VividLevel(int i);

// The curve as a Lut16: half-up of the level, clamped to 0..255, x 256 in all
// three planes. Built on first use.
const Lut16& VividCurve();

// Where ComposeLut reads a table for the vivid curve, built on first use.
const ComposePlaces& VividPlaces();

// VividLevel of every input level 0..255, built on first use: the levels
// the gains of the gain-driven vivid mode scale.
const std::array<double, kLutLevels>& VividLevels();

}  // namespace quarnel
