// SPDX-License-Identifier: MIT
#pragma once
// The Huffman tree of a probability table and its codebook.

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "codec/probability_table.h"

namespace quarnel::codec {

using BitSequence = std::vector<bool>;

inline constexpr uint32_t kInnerNodeSymbol = 256;

struct HuffmanNode {
    uint32_t symbol = kInnerNodeSymbol;
    double probability = 0.0;
    // Branch bits: false leads to the first child, true to the second.
    std::array<bool, 2> branch{false, true};
    std::unique_ptr<HuffmanNode> first;
    std::unique_ptr<HuffmanNode> second;

    bool IsLeaf() const { return first == nullptr; }
};

struct HuffmanTree {
    std::unique_ptr<HuffmanNode> root;
    std::map<int, BitSequence> codebook;
};

// Builds the tree and its codebook from `count` table entries, printing the
// table before and after sorting and closing with "codeVec is empty".
HuffmanTree BuildHuffmanTree(const SymbolProbability* table, int count);

// The tree of table "v1".
HuffmanTree BuildTreeV1();

// Prints every code of the codebook in ascending symbol order.
void PrintCodebook(const HuffmanTree& tree);

}  // namespace quarnel::codec
