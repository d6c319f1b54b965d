// SPDX-License-Identifier: MIT
#pragma once
// A production lot made up from the sample panel, to try factory QA on:
// each panel's primaries, black and tone response vary by a few percent,
// its block is of any version from 4 to 7, and a share of the blocks is
// damaged the ways blocks get damaged (a flipped byte, a short file, a
// wrong magic). Each panel depends only on the seed and its number.

#include <cstdint>
#include <string>

namespace quarnel::tool {

struct LotPanel {
    std::string bytes;  // the file's contents: 512 bytes unless truncated
    int version = 0;
    std::string damage;  // "none", "flipped-primaries", "flipped-tone", "truncated", "bad-magic"
};

LotPanel MakeLotPanel(uint64_t seed, uint64_t number, double damagedShare);

}  // namespace quarnel::tool
