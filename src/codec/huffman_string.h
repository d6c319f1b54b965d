// SPDX-License-Identifier: MIT
#pragma once
// The Huffman string (method 0): the 768 difference symbols coded with the
// fixed table "v1" and packed least significant bit first.
//
//   byte 0     length of the string, header included (data bytes + 2)
//   byte 1     high nibble: table version 1; low nibble: valid bits in the
//              last data byte, 1..8
//   byte 2..   data, at most 253 bytes

#include <cstdint>
#include <optional>
#include <vector>

#include "codec/lut_differences.h"

namespace quarnel::codec {

// The whole string, or nothing when a difference has no code. Data beyond
// 253 bytes is still written whole, behind the length byte 2: packing
// reports such data as empty, and existing readers expect exactly that.
std::optional<std::vector<uint8_t>> EncodeHuffmanString(const Differences& d);

// Decodes into the start of `d` (filled with 1 by the caller). Fails on a
// foreign table version, on more than `count` symbols, and when a plane's
// position 0 does not decode to 0. A length byte below 2 carries no data
// (and no version to check), so it fails at that last test.
bool DecodeHuffmanString(const uint8_t* string, int count, Differences& d);

}  // namespace quarnel::codec
