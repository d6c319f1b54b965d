// SPDX-License-Identifier: MIT
#include "codec/huffman_coding.h"

#include "diag/debug.h"

namespace quarnel::codec {

bool Encode(const HuffmanTree& tree, const int* symbols, std::size_t count, BitSequence& bits) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto code = tree.codebook.find(symbols[i]);
        if (code == tree.codebook.end()) {
            DebugPrint("Not found %d in codebook!!!\n", symbols[i]);
            return false;
        }
        bits.insert(bits.end(), code->second.begin(), code->second.end());
    }
    return true;
}

void Decode(const HuffmanTree& tree, const BitSequence& bits, std::vector<int>& symbols) {
    const HuffmanNode* root = tree.root.get();
    if (root == nullptr) return;
    const HuffmanNode* node = root;
    for (bool bit : bits) {
        if (node->IsLeaf()) break;  // a one-leaf tree codes nothing
        node = bit ? node->second.get() : node->first.get();
        if (node->IsLeaf()) {
            symbols.push_back(static_cast<int>(node->symbol));
            node = root;
        }
    }
}

}  // namespace quarnel::codec
