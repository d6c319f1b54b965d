// SPDX-License-Identifier: MIT
#pragma once
// The fixed probability table "v1" of the LUT difference symbols 0..4. Every
// build derives its Huffman code from this table, so it must never change.

#include <array>
#include <cstdint>

namespace quarnel::codec {

struct SymbolProbability {
    uint32_t symbol;
    double probability;
};

inline constexpr int kSymbolCount = 5;

inline constexpr std::array<SymbolProbability, kSymbolCount> kTableV1{{
    {0, 0.0501},
    {1, 0.9043},
    {2, 0.0441},
    {3, 0.0012},
    {4, 0.0001},
}};

// Version nibble stored in the string header for table "v1".
inline constexpr uint8_t kTableVersionV1 = 0x1;

}  // namespace quarnel::codec
