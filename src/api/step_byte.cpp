// SPDX-License-Identifier: MIT
// The interpolation step for the LUT improvement, read on demand from the
// calibration source.

#include <memory>

#include "api/pipeline_steps.h"
#include "calib/source.h"

namespace quarnel {

int32_t FetchStepByte(const CalibrationSource& source, uint8_t& step) {
    auto reader = std::make_unique<BiosData>();
    const int32_t result = GetBIOS_Data(*reader, step, source);
    Close(std::move(reader));
    return result;
}

}  // namespace quarnel
