// SPDX-License-Identifier: MIT
#pragma once
// The panel built into the tool, so that it shows something on a machine
// without calibration data: a version-7 block as a factory would write it.

#include "model/block_codec.h"

namespace quarnel::tool {

BlockDescription SamplePanel();

}  // namespace quarnel::tool
