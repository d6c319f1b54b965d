// SPDX-License-Identifier: MIT
#pragma once
// The minimum output level of a gain: a channel must still reach a share of
// full scale at its top input.

#include <cstdint>

namespace quarnel {

// Raises each gain below 1.0 step by step (k / 255) until the channel's entry
// at half-up(gain x 255) of the 8-bit base LUT reaches 40 % of full scale
// (lut api types 0, 1 and 4) or 50 % (every other type); a channel that gets
// there only at 255 gets exactly 1.0. Gains of 1.0 and above are left alone.
void CheckGain(double gain[3], const uint16_t* baseLut, int32_t lutApiType);

}  // namespace quarnel
