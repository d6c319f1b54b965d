// SPDX-License-Identifier: MIT
#pragma once
// Coding of symbol sequences as bit sequences with a Huffman tree.

#include <cstddef>
#include <vector>

#include "codec/huffman_tree.h"

namespace quarnel::codec {

// Appends the code of each of the `count` symbols to `bits`. A symbol
// without a code prints "Not found %d in codebook!!!" and fails.
bool Encode(const HuffmanTree& tree, const int* symbols, std::size_t count, BitSequence& bits);

// Walks the tree from the root for every bit (0 to the first child, 1 to the
// second) and appends each leaf reached to `symbols`. An unfinished code at
// the end of `bits` is dropped.
void Decode(const HuffmanTree& tree, const BitSequence& bits, std::vector<int>& symbols);

}  // namespace quarnel::codec
