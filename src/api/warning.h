// SPDX-License-Identifier: MIT
#pragma once
// The library's warning word: cleared at the start of every CCTAPI call and
// copied into cctWarning at its end. No step raises it, so callers read 0.

#include <cstdint>

namespace quarnel {

int32_t& WarningWord();

}  // namespace quarnel
