// SPDX-License-Identifier: MIT
#pragma once
// The two informational services of the Huffman model.

#include <cstdint>

namespace quarnel::codec {

// GetHfmInfor: five symbols of table "v1" with their probabilities, code
// lengths and code values; count = 5. -1 when a pointer is null.
int32_t GetHuffmanInfo(uint32_t* symbols, double* probabilities, uint32_t* codeLengths, uint32_t* codes,
                       uint32_t* count);

// ShowHfmVer: prints the Huffman kernel version; returns what printf returns.
int32_t ShowHuffmanVersion();

}  // namespace quarnel::codec
