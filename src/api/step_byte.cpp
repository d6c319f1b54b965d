// SPDX-License-Identifier: MIT
// The interpolation step for the LUT improvement, read on demand from the
// calibration source.

#include "api/pipeline_steps.h"
#include "calib/source.h"

namespace quarnel {

int32_t FetchStepByte(const CalibrationSource& source, uint8_t& step) { return GetBIOS_Data(step, source); }

}  // namespace quarnel
