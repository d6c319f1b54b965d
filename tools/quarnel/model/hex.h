// SPDX-License-Identifier: MIT
#pragma once
// Bytes as lower-case hex text, two digits a byte, and back.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarnel::tool {

std::string ToHex(const uint8_t* bytes, size_t count);
inline std::string ToHex(const std::vector<uint8_t>& bytes) { return ToHex(bytes.data(), bytes.size()); }
// Nothing unless the text is an even number of hex digits (either case).
std::optional<std::vector<uint8_t>> FromHex(std::string_view text);

}  // namespace quarnel::tool
