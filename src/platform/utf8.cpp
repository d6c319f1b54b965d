// SPDX-License-Identifier: MIT
#include "platform/utf8.h"

#include <cstdint>

namespace quarnel::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t cp) {
    auto byte = [&out](uint32_t v) { out.push_back(static_cast<char>(v)); };
    if (cp < 0x80) {
        byte(cp);
    } else if (cp < 0x800) {
        byte(0xC0 | (cp >> 6));
        byte(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        byte(0xE0 | (cp >> 12));
        byte(0x80 | ((cp >> 6) & 0x3F));
        byte(0x80 | (cp & 0x3F));
    } else {
        byte(0xF0 | (cp >> 18));
        byte(0x80 | ((cp >> 12) & 0x3F));
        byte(0x80 | ((cp >> 6) & 0x3F));
        byte(0x80 | (cp & 0x3F));
    }
}

void AppendWide(std::wstring& out, char32_t cp) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(cp));
}

bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t cp = static_cast<char32_t>(text[i]);
        if (IsHighSurrogate(cp) && i + 1 < text.size() && IsLowSurrogate(static_cast<char32_t>(text[i + 1]))) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
        } else if (IsHighSurrogate(cp) || IsLowSurrogate(cp) || cp > 0x10FFFF) {
            cp = kReplacement;
        }
        AppendUtf8(out, cp);
    }
    return out;
}

std::wstring FromUtf8(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const int extra = lead < 0x80           ? 0
                          : (lead >> 5) == 0x6  ? 1
                          : (lead >> 4) == 0xE  ? 2
                          : (lead >> 3) == 0x1E ? 3
                                                : -1;
        if (extra < 0 || i + static_cast<std::size_t>(extra) >= text.size()) {
            AppendWide(out, kReplacement);
            ++i;
            continue;
        }
        char32_t cp = extra == 0 ? lead : static_cast<char32_t>(lead & (0x3F >> extra));
        bool valid = true;
        for (int k = 1; k <= extra; ++k) {
            const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            if ((next & 0xC0) != 0x80) valid = false;
            cp = (cp << 6) | (next & 0x3Fu);
        }
        AppendWide(out, valid ? cp : kReplacement);
        i += valid ? static_cast<std::size_t>(extra) + 1 : 1;
    }
    return out;
}

}  // namespace quarnel::platform
