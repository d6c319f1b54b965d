// SPDX-License-Identifier: MIT
#pragma once
// The JSON description of a calibration block that `block build` reads and
// `block inspect --json` gives back. Keys, all optional but version and
// primaries:
//   magic "HDOC" | "R2R", version 1..255, sub_version, data_word,
//   primaries {red, green, blue, white: [X, Y, Z]},
//   word60 (version 2 on), bytes66 [4 bytes] (3 on),
//   first_white [x, y], target_luminance, default_white [x, y] (4 on),
//   tone_levels {red, green, blue: five [X, Y, Z]}, black [X, Y, Z] (5 on),
//   gamma_lut {red, green, blue: 256 entries, 65280 full scale} (6 on),
//   step_byte (7 on).

#include <nlohmann/json.hpp>
#include <string>

#include "block/block_codec.h"

namespace quarnel::tool {

nlohmann::ordered_json DescriptionToJson(const BlockDescription& description);
// Throws ToolError (65) naming `source` and the faulty key.
BlockDescription DescriptionFromJson(const std::string& text, const std::string& source);

}  // namespace quarnel::tool
