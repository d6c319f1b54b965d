// SPDX-License-Identifier: MIT
#pragma once
// The layout of the 512-byte calibration block and its two CRC checks.

#include "calib/bios_data.h"

namespace quarnel {

// Parses `raw` from `cursor` on. A bad magic sets BiosDataStatus to
// kBiosBadBlock and stops; returns false when a field would lie past
// `length` (the caller turns that into kBiosBadBlock too).
bool ParseHeader(BiosData& data);

// The header CRC covers the primaries, the tone CRC the tone levels.
bool CheckHeaderCrc(const BiosData& data);
bool CheckToneCrc(const BiosData& data);

}  // namespace quarnel
