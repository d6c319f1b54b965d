// SPDX-License-Identifier: MIT
#pragma once
// The two sources of the calibration block: the creator application's raw
// file (kalzenPath immediately followed by kalzenFilename) or the firmware.
// There is no fallback from one to the other.

#include <array>
#include <cstdint>
#include <optional>

#include "calib/bios_data.h"
#include "core/calibration_source.h"

namespace quarnel {

// Reads, parses and checks the block of the chosen source (the file when
// enableUserK is 1); null when the read or any check failed.
std::optional<BiosData> Open(int32_t enableUserK, const char* kalzenPath, const char* kalzenFilename,
                             int32_t panelIndex);

// Makes the fresh record `data` the one for the file at `path`, given the
// block a probe read from it (nothing when the file did not open): the path
// and the block are kept when it opened. A null path is fatal to the process.
void CCTLoadBIOS(const char* path, const std::optional<std::array<uint8_t, kBlockSize>>& probed, BiosData& data);

// Reads the block (from the file when enableUserK is non-zero, else from the
// firmware with panelIndex as method; a block the record's probe already read
// is taken as it is) with the EDID blocks, then parses and checks it. -1 when the file could not be opened, else 0; the
// outcome is in BiosDataStatus.
int32_t GetData(BiosData& data, int32_t enableUserK, const char* kalzenPath, const char* kalzenFilename,
                int32_t panelIndex);

// Reads the block without parsing it and hands out its byte 297 (0 when the
// source could not be read). Always 0.
int32_t GetBIOS_Data(uint8_t& flag297, const CalibrationSource& source);

// Releases the record with its block, LUT string and EDID blocks.
void Close(std::optional<BiosData>& data);

}  // namespace quarnel
