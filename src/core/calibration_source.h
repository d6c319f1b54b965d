// SPDX-License-Identifier: MIT
#pragma once
// Where the panel's calibration block comes from: the creator application's
// raw file (enableUserK with kalzenPath followed by kalzenFilename) or the
// firmware, read with panelIndex as its method.

#include <cstdint>

namespace quarnel {

struct CalibrationSource {
    int32_t enableUserK = 0;
    const char* kalzenPath = nullptr;
    const char* kalzenFilename = nullptr;
    int32_t panelIndex = 0;
};

}  // namespace quarnel
