// SPDX-License-Identifier: MIT
#pragma once
// The position-list string (method 1): for each difference value other than
// 1, the positions of every plane that carry it. Unlisted positions are 1.
//
//   byte 0     length of the string, this byte included (low 8 bits of the
//              body length, plus 1)
//   groups     one per value 0, 2, 3, ... N: counts nR nG nB, then nR red,
//              nG green and nB blue positions, ascending

#include <cstdint>
#include <optional>
#include <vector>

#include "codec/lut_differences.h"

namespace quarnel::codec {

// The whole string (its real size may exceed what byte 0 says), or nothing
// when a red difference lies outside 0..7 or any difference exceeds 7.
std::optional<std::vector<uint8_t>> EncodePositionLists(const Differences& d);

// Overwrites the listed positions of `d` (filled with 1 by the caller) and
// clears position 0 of every plane. Fails unless the groups use up exactly
// the body that byte 0 declares; a byte 0 of 0 or 1 declares no body.
bool DecodePositionLists(const uint8_t* string, Differences& d);

}  // namespace quarnel::codec
