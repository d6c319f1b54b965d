// SPDX-License-Identifier: MIT
#include "facts/block_layout.h"

#include <algorithm>

namespace quarnel::facts {

bool MagicAccepted(const uint8_t* first4) {
    return std::equal(kMagicHdoc.begin(), kMagicHdoc.end(), first4) ||
           std::equal(kMagicR2r.begin(), kMagicR2r.end(), first4);
}

}  // namespace quarnel::facts
