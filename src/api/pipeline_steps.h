// SPDX-License-Identifier: MIT
#pragma once
// The LUT steps that the CCTAPI mode pipelines and the VX modes share, bound
// to the context's own fields.

#include <cstdint>

#include "core/calibration_source.h"
#include "lut/improve.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// Reads the interpolation step (byte 297 of the calibration block) from
// `source` on a reader made for this one fetch.
int32_t FetchStepByte(const CalibrationSource& source, uint8_t& step);

// LutImprove with the step read from the calibration source; its result is
// not looked at.
void ImproveLut(const CctContext& ctx, uint16_t* lut);

// The same for the table `pending` stands for, written into `lut`.
void ImproveLut(const CctContext& ctx, const PendingLut& pending, uint16_t* lut);

// LutBrightCtrl on outLut with the context's driver type and scale.
void BrightenOutLut(CctContext& ctx);

// LutConvert of outLut into the context's own driver arrays.
int32_t ConvertOutLut(CctContext& ctx);

}  // namespace quarnel
