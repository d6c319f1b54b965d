// SPDX-License-Identifier: MIT
#include "model/hex.h"

namespace quarnel::tool {
namespace {

constexpr char kDigits[] = "0123456789abcdef";
constexpr int kNibbleBits = 4, kNibbleMask = 0xF, kDecimalDigits = 10;

int Nibble(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + kDecimalDigits;
    if (c >= 'A' && c <= 'F') return c - 'A' + kDecimalDigits;
    return -1;
}

}  // namespace

std::string ToHex(const uint8_t* bytes, size_t count) {
    std::string text;
    text.reserve(2 * count);
    for (size_t i = 0; i < count; ++i) {
        text += kDigits[bytes[i] >> kNibbleBits];
        text += kDigits[bytes[i] & kNibbleMask];
    }
    return text;
}

std::optional<std::vector<uint8_t>> FromHex(std::string_view text) {
    if (text.size() % 2 != 0) return std::nullopt;
    std::vector<uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (size_t i = 0; i < text.size(); i += 2) {
        const int high = Nibble(text[i]), low = Nibble(text[i + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes.push_back(static_cast<uint8_t>(high << kNibbleBits | low));
    }
    return bytes;
}

}  // namespace quarnel::tool
