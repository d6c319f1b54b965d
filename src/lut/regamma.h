// SPDX-License-Identifier: MIT
#pragma once
// The re-gamma curve of request flag 0x80: 2.6 over 2.2.

#include "core/lut16.h"

namespace quarnel {

// The 2.6-over-2.2 re-gamma curve, the same in all three planes; built on
// first use and shared by every later call.
const Lut16& RegammaCurve();

}  // namespace quarnel
