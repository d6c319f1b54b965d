// SPDX-License-Identifier: MIT
#pragma once
// The library's error code of the initialisation request: the calibration
// sources set it when the calibration file cannot be opened (-3) or fails
// its checks (-4), the gain initialisation clears it and returns it.

#include <cstdint>

namespace quarnel {

int32_t& CctapiErrorCode();

}  // namespace quarnel
