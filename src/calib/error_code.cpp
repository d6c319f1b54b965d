// SPDX-License-Identifier: MIT
#include "calib/error_code.h"

namespace quarnel {

int32_t& CctapiErrorCode() {
    static int32_t code = 0;
    return code;
}

}  // namespace quarnel
