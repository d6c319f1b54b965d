// SPDX-License-Identifier: MIT
#include "model/block_file.h"

#include "io/input_file.h"
#include "model/block_codec.h"

namespace quarnel::tool {

std::string ReadBlockFile(const std::string& path) { return ReadFileOfSize(path, kBlockSize, "a calibration block"); }

}  // namespace quarnel::tool
