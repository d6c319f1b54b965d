// SPDX-License-Identifier: MIT
#include "codec/huffman_string.h"

#include <algorithm>

#include "codec/bit_packing.h"
#include "codec/huffman_coding.h"
#include "codec/huffman_tree.h"
#include "diag/debug.h"

namespace quarnel::codec {
namespace {

constexpr int kHeaderBytes = 2;
constexpr int kBitsPerByte = 8;
constexpr uint8_t kLowNibble = 0x0F;
constexpr int kNibbleBits = 4;

uint8_t HeaderByte1(int bitsInLastByte) {
    return static_cast<uint8_t>((kTableVersionV1 << kNibbleBits) | bitsInLastByte);
}

void DropPaddingBits(BitSequence& bits, int validBitsInLastByte) {
    if (validBitsInLastByte < 1 || validBitsInLastByte >= kBitsPerByte) return;
    for (int k = validBitsInLastByte; k < kBitsPerByte && !bits.empty(); ++k) bits.pop_back();
}

bool PositionZeroIsZero(const Differences& d) {
    for (int c = 0; c < kLutPlanes; ++c)
        if (d[LutIndex(c, 0)] != 0) return false;
    return true;
}

}  // namespace

std::optional<std::vector<uint8_t>> EncodeHuffmanString(const Differences& d) {
    DebugPrint("\n=== Get Huffman Table v1 ===\n");
    DebugPrint("\n=== Create Huffman Tree ===\n");
    const HuffmanTree tree = BuildTreeV1();
    PrintCodebook(tree);

    DebugPrint("\n=== Encode ===\n");
    BitSequence bits;
    if (!Encode(tree, d.data(), d.size(), bits)) {
        DebugPrint("Encode() failed!!!\n");
        return std::nullopt;
    }

    DebugPrint("\n=== Convert to Bios String ===\n");
    const PackedBits packed = PackBits(bits);
    DebugPrint("# of byte used: %d\n", packed.bytesUsed);
    DebugPrint("# of bit used in last byte: %d\n", packed.bitsInLastByte);
    if (packed.bytesUsed > kMaxDataBytes) {
        DebugPrint("String size(%d) after encoded is out of max range %d", packed.bytesUsed, kMaxDataBytes);
        return std::nullopt;
    }

    std::vector<uint8_t> string{static_cast<uint8_t>(packed.bytesUsed + kHeaderBytes),
                                HeaderByte1(packed.bitsInLastByte)};
    string.insert(string.end(), packed.bytes.begin(), packed.bytes.end());
    return string;
}

bool DecodeHuffmanString(const uint8_t* string, int count, Differences& d) {
    DebugPrint("\n=== Get Huffman Table v1 ===\n");
    // A length byte below 2 leaves no room for data, nor for the second
    // header byte: that byte is not read, and no data bytes are expanded.
    const int length = string[0];
    const bool hasHeader = length >= kHeaderBytes;
    if (hasHeader && (string[1] >> kNibbleBits) != kTableVersionV1) return false;

    DebugPrint("\n=== Convert from Bios String ===\n");
    BitSequence bits;
    if (hasHeader) {
        bits = UnpackBits(string + kHeaderBytes, length - kHeaderBytes);
        DropPaddingBits(bits, string[1] & kLowNibble);
    }

    DebugPrint("\n=== Create Huffman Tree ===\n");
    const HuffmanTree tree = BuildTreeV1();
    DebugPrint("\n=== Decode ===\n");
    std::vector<int> symbols;
    Decode(tree, bits, symbols);

    const auto decoded = static_cast<long long>(symbols.size());
    if (decoded > count || decoded > static_cast<long long>(d.size())) return false;
    std::copy(symbols.begin(), symbols.end(), d.begin());
    return PositionZeroIsZero(d);
}

}  // namespace quarnel::codec
