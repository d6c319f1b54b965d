// SPDX-License-Identifier: MIT
#include "codec/huffman_info.h"
#include "codec/huffman_tree.h"
#include "diag/debug.h"

namespace quarnel::codec {
namespace {

constexpr const char* kHuffmanKernelVersion = "v1.0.0_20181005";
constexpr int32_t kInfoFailed = -1;

uint32_t CodeValue(const BitSequence& code) {
    uint32_t value = 0;
    for (bool bit : code) value = value * 2 + (bit ? 1u : 0u);
    return value;
}

int32_t FillHuffmanInfo(uint32_t* symbols, double* probabilities, uint32_t* codeLengths, uint32_t* codes) {
    for (int i = 0; i < kSymbolCount; ++i) {
        symbols[i] = kTableV1[static_cast<std::size_t>(i)].symbol;
        probabilities[i] = kTableV1[static_cast<std::size_t>(i)].probability;
    }
    const HuffmanTree tree = BuildHuffmanTree(kTableV1.data(), kSymbolCount);
    PrintCodebook(tree);
    for (int i = 0; i < kSymbolCount; ++i) {
        const auto code = tree.codebook.find(i);
        const BitSequence empty;
        const BitSequence& bits = code == tree.codebook.end() ? empty : code->second;
        codeLengths[i] = static_cast<uint32_t>(bits.size());
        codes[i] = CodeValue(bits);
    }
    return 0;
}

}  // namespace

int32_t GetHuffmanInfo(uint32_t* symbols, double* probabilities, uint32_t* codeLengths, uint32_t* codes,
                       uint32_t* count) {
    if (symbols == nullptr || probabilities == nullptr || codeLengths == nullptr || codes == nullptr ||
        count == nullptr)
        return kInfoFailed;
    const int32_t status = FillHuffmanInfo(symbols, probabilities, codeLengths, codes);
    *count = status == 0 ? static_cast<uint32_t>(kSymbolCount) : 0;
    return status;
}

int32_t ShowHuffmanVersion() { return DebugPrint("Huffman kernel version: %s\n", kHuffmanKernelVersion); }

}  // namespace quarnel::codec
