// SPDX-License-Identifier: MIT
#include "codec/bit_packing.h"

namespace quarnel::codec {
namespace {
constexpr int kBitsPerByte = 8;
}

PackedBits PackBits(const BitSequence& bits) {
    PackedBits packed;
    packed.bytes.assign((bits.size() + kBitsPerByte - 1) / kBitsPerByte, 0);
    for (std::size_t i = 0; i < bits.size(); ++i)
        if (bits[i]) packed.bytes[i / kBitsPerByte] |= static_cast<uint8_t>(1u << (i % kBitsPerByte));

    const auto byteCount = static_cast<int>(packed.bytes.size());
    if (byteCount > kMaxDataBytes) return packed;  // reported as 0 bytes, 0 bits
    const auto tail = static_cast<int>(bits.size() % kBitsPerByte);
    packed.bytesUsed = byteCount;
    packed.bitsInLastByte = tail == 0 ? kBitsPerByte : tail;
    return packed;
}

BitSequence UnpackBits(const uint8_t* bytes, int count) {
    BitSequence bits;
    for (int i = 0; i < count; ++i)
        for (int b = 0; b < kBitsPerByte; ++b) bits.push_back(((bytes[i] >> b) & 1u) != 0);
    return bits;
}

}  // namespace quarnel::codec
