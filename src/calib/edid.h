// SPDX-License-Identifier: MIT
#pragma once
// The EDID blocks of the monitors the system knows, carried along with every
// calibration read. Nothing decides on them; they only travel in BiosData.

#include <cstdint>
#include <string>
#include <string_view>

#include "calib/bios_data.h"
#include "platform/display_system.h"

namespace quarnel {

// With `edidBlocks` null, adds the number of monitor-class devices whose
// registry key opened to `edidCount`; otherwise fills block i for device i
// (i < edidCount). Always returns 0.
int32_t GetEdidData(EdidBlock* edidBlocks, int32_t& edidCount);

// True when `key` holds a value named exactly "EDID" that fits the data
// buffer; copies the whole 1024-byte data buffer to `out` when it is given.
bool FindEdidValue(platform::RegistryKey key, uint8_t* out);

// The hardware identifier in a monitor's device ID ("MONITOR\<id>\..."):
// from position 8 to the first backslash at or after position 9.
std::wstring MonitorHardwareId(std::wstring_view deviceId);

}  // namespace quarnel
