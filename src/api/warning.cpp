// SPDX-License-Identifier: MIT
#include "api/warning.h"

namespace quarnel {

int32_t& WarningWord() {
    static int32_t word = 0;
    return word;
}

}  // namespace quarnel
