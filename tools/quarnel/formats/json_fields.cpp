// SPDX-License-Identifier: MIT
#include "formats/json_fields.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "io/tool_error.h"
#include "model/hex.h"

namespace quarnel::tool {
namespace {

constexpr std::string_view kBitPrefix = "0x";
constexpr size_t kBitDigits = 8;
constexpr double kLargestSingle = std::numeric_limits<float>::max();
constexpr double kLargestExactWhole = 9007199254740992.0;  // 2^53: every whole double below is exact

std::string Shown(const InputJson& value) {
    std::string text = value.dump(-1, ' ', true, InputJson::error_handler_t::replace);
    constexpr size_t kShownChars = 40;
    return text.size() > kShownChars ? text.substr(0, kShownChars) + "..." : text;
}

}  // namespace

InputJson ParseJsonInput(const std::string& text, const std::string& source) {
    // Copying, printing and comparing a value recurse once per level: a
    // megabyte of brackets would overflow the stack. Our inputs nest three deep.
    constexpr int kMaxDepth = 64;
    const auto shallow = [&](int depth, InputJson::parse_event_t, InputJson&) {
        if (depth > kMaxDepth)
            throw ToolError(kExitData, source + ": JSON nested deeper than " + std::to_string(kMaxDepth) + " levels");
        return true;
    };
    try {
        return InputJson::parse(text, shallow);
    } catch (const InputJson::exception& e) {
        const auto* parse = dynamic_cast<const InputJson::parse_error*>(&e);
        throw ToolError(kExitData, source + ": malformed JSON" +
                                       (parse != nullptr ? " near byte " + std::to_string(parse->byte) : ""));
    }
}

void JsonFields::Fail(const std::string& path, const std::string& what) const {
    throw ToolError(kExitData, source_ + ": " + (path.empty() ? "" : path + ": ") + what);
}

uint64_t JsonFields::Whole(const InputJson& value, const std::string& path, uint64_t max) const {
    const std::string range = "expected a whole number 0.." + std::to_string(max) + ", found " + Shown(value);
    if (value.is_number_unsigned() && value.get<uint64_t>() <= max) return value.get<uint64_t>();
    if (value.is_number_float()) {
        const double v = value.get<double>();
        if (v >= 0 && v <= static_cast<double>(max) && v < kLargestExactWhole && std::floor(v) == v)
            return static_cast<uint64_t>(v);
    }
    Fail(path, range);
}

float JsonFields::Single(const InputJson& value, const std::string& path) const {
    if (value.is_number()) {
        const double v = value.get<double>();
        if (std::isfinite(v) && std::fabs(v) <= kLargestSingle) return static_cast<float>(v);
        Fail(path, Shown(value) + " is beyond the range of a single-precision value");
    }
    if (value.is_string()) {
        const auto& text = value.get_ref<const std::string&>();
        const auto bytes = text.size() == kBitPrefix.size() + kBitDigits && text.starts_with(kBitPrefix)
                               ? FromHex(std::string_view(text).substr(kBitPrefix.size()))
                               : std::nullopt;
        if (bytes)
            return std::bit_cast<float>(static_cast<uint32_t>((*bytes)[0]) << 24 |
                                        static_cast<uint32_t>((*bytes)[1]) << 16 |
                                        static_cast<uint32_t>((*bytes)[2]) << 8 | (*bytes)[3]);
    }
    Fail(path, "expected a number or a bit pattern such as \"0x7fc00000\", found " + Shown(value));
}

const InputJson& JsonFields::Array(const InputJson& value, const std::string& path, size_t size) const {
    if (!value.is_array() || value.size() != size)
        Fail(path, "expected an array of " + std::to_string(size) + " entries, found " + Shown(value));
    return value;
}

const InputJson& JsonFields::Object(const InputJson& value, const std::string& path,
                                    std::initializer_list<std::string_view> known) const {
    if (!value.is_object()) Fail(path, "expected an object, found " + Shown(value));
    for (const auto& [key, member] : value.items())
        if (std::find(known.begin(), known.end(), key) == known.end())
            Fail(path, "unknown key " + Shown(InputJson(key)));
    return value;
}

const InputJson& JsonFields::Member(const InputJson& object, const std::string& path, const std::string& key) const {
    const auto found = object.find(key);
    if (found == object.end()) Fail(path, "missing key \"" + key + "\"");
    return *found;
}

nlohmann::ordered_json SingleToJson(float value) {
    if (!std::isfinite(value)) {
        char bits[kBitPrefix.size() + kBitDigits + 1];
        std::snprintf(bits, sizeof bits, "0x%08x", std::bit_cast<uint32_t>(value));
        return bits;
    }
    // The shortest decimal that reads back to the same single, as its author
    // wrote it; the exact value on the rare occasions the double in between
    // would round elsewhere or lie beyond the largest single.
    char text[32];
    *std::to_chars(text, text + sizeof text - 1, value).ptr = '\0';
    const double shortest = std::strtod(text, nullptr);
    const bool faithful = std::fabs(shortest) <= kLargestSingle && static_cast<float>(shortest) == value;
    return faithful ? shortest : static_cast<double>(value);
}

std::string Child(const std::string& path, std::string_view key) {
    return path.empty() ? std::string(key) : path + "." + std::string(key);
}

std::string Child(const std::string& path, size_t index) { return path + "[" + std::to_string(index) + "]"; }

}  // namespace quarnel::tool
