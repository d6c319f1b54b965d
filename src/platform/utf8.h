// SPDX-License-Identifier: MIT
#pragma once
// Conversions between the library's wide messages and UTF-8 text.

#include <string>
#include <string_view>

namespace quarnel::platform {

std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

}  // namespace quarnel::platform
