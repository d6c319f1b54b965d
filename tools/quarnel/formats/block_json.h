// SPDX-License-Identifier: MIT
#pragma once
// The JSON description of a calibration block that `block build` reads and
// `block inspect --json` gives back; the README lists its keys. Every key of
// the block's version is required and no other is allowed, except the
// findings that inspect adds beside the description, which build skips.

#include <nlohmann/json.hpp>
#include <string>

#include "model/block_codec.h"

namespace quarnel::tool {

nlohmann::ordered_json DescriptionToJson(const BlockDescription& description);
// Throws ToolError (65) naming `source`, the key and what is wrong with it.
BlockDescription DescriptionFromJson(const std::string& text, const std::string& source);

}  // namespace quarnel::tool
