// SPDX-License-Identifier: MIT
#pragma once
// Strict reading of JSON inputs: every value typed and range-checked, every
// fault reported as "SOURCE: PATH: what was wrong" (ToolError, 65), never in
// the parser's own words.

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace quarnel::tool {

using InputJson = nlohmann::json;

// Parses `text`; a syntax error names the byte where it was found.
InputJson ParseJsonInput(const std::string& text, const std::string& source);

class JsonFields {
public:
    explicit JsonFields(std::string source) : source_(std::move(source)) {}

    [[noreturn]] void Fail(const std::string& path, const std::string& what) const;
    // A whole number 0..max; integral floats such as 2.0 count.
    uint64_t Whole(const InputJson& value, const std::string& path, uint64_t max) const;
    // A number that a single-precision value holds, or a bit pattern "0x" and
    // eight hex digits (how NaN and infinities are written).
    float Single(const InputJson& value, const std::string& path) const;
    // An array of exactly `size` entries.
    const InputJson& Array(const InputJson& value, const std::string& path, size_t size) const;
    // An object whose keys are all among `known`.
    const InputJson& Object(const InputJson& value, const std::string& path,
                            std::initializer_list<std::string_view> known) const;
    // A key that must be there.
    const InputJson& Member(const InputJson& object, const std::string& path, const std::string& key) const;

private:
    std::string source_;
};

// The JSON form of a single that Single() reads back bit for bit: the
// shortest decimal for finite values, the bit pattern for the others.
nlohmann::ordered_json SingleToJson(float value);

// "path.key" and "path[index]", for messages.
std::string Child(const std::string& path, std::string_view key);
std::string Child(const std::string& path, size_t index);

}  // namespace quarnel::tool
