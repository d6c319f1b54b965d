// SPDX-License-Identifier: MIT
#pragma once
// Packing of a bit sequence into bytes, least significant bit first: the
// first bit is bit 0 of byte 0, the ninth is bit 0 of byte 1.

#include <cstdint>
#include <vector>

#include "codec/huffman_tree.h"

namespace quarnel::codec {

// Most data bytes a firmware string can carry after its two header bytes.
inline constexpr int kMaxDataBytes = 253;

struct PackedBits {
    std::vector<uint8_t> bytes;  // every packed byte, unused high bits 0
    int bytesUsed = 0;           // reported byte count: 0 when over kMaxDataBytes
    int bitsInLastByte = 0;      // 1..8, or 0 when over kMaxDataBytes
};

PackedBits PackBits(const BitSequence& bits);

// Expands `count` bytes into bits, eight per byte, least significant first.
BitSequence UnpackBits(const uint8_t* bytes, int count);

}  // namespace quarnel::codec
