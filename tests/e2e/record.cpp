// SPDX-License-Identifier: MIT
#include "e2e/record.h"

#include <bit>
#include <cmath>

namespace quarnel::test {

namespace {

// The whole-number step that carries most doubles exactly: the 16-bit full scale of an 8-bit input.
constexpr double kScale = 65280.0;

// Bit patterns of a smooth interleaved red, green, blue curve: each channel's second differences are small.
constexpr std::size_t kChannels = 3;

std::vector<int64_t> Differences(std::vector<int64_t> v) {
    for (int order = 0; order < 2; ++order)
        for (std::size_t i = v.size(); i-- > kChannels;)
            v[i] = static_cast<int64_t>(static_cast<uint64_t>(v[i]) - static_cast<uint64_t>(v[i - kChannels]));
    return v;
}

// Values as multiples of 1 / scale when each one is exactly that, else as bit patterns.
std::string EncodeReal(const double* values, std::size_t count) {
    std::vector<int64_t> whole(count);
    bool exact = true;
    for (std::size_t i = 0; i < count && exact; ++i) {
        whole[i] = std::llround(values[i] * kScale);
        exact = std::bit_cast<uint64_t>(static_cast<double>(whole[i]) / kScale) == std::bit_cast<uint64_t>(values[i]);
    }
    if (exact) return std::string("/") + std::to_string(static_cast<int>(kScale)) + " " + EncodeRuns(whole);
    for (std::size_t i = 0; i < count; ++i) whole[i] = static_cast<int64_t>(std::bit_cast<uint64_t>(values[i]));
    return "bits " + EncodeRuns(Differences(whole));
}

}  // namespace

std::string EncodeRuns(const std::vector<int64_t>& values) {
    std::string text;
    uint64_t previous = 0;
    for (std::size_t i = 0; i < values.size();) {
        const auto step = static_cast<int64_t>(static_cast<uint64_t>(values[i]) - previous);
        std::size_t n = 1;
        while (i + n < values.size() && static_cast<int64_t>(static_cast<uint64_t>(values[i + n]) -
                                                             static_cast<uint64_t>(values[i + n - 1])) == step)
            ++n;
        text += std::string(text.empty() ? "" : " ") + std::to_string(step) +
                (n > 1 ? std::string("*") + std::to_string(n) : "");
        previous = static_cast<uint64_t>(values[i + n - 1]);
        i += n;
    }
    return text;
}

std::string ValueTable::Name(char kind, const std::string& encoded) {
    auto [at, fresh] = named_.try_emplace(kind + encoded);
    if (fresh) {
        at->second = std::string(1, kind) + std::to_string(counts_[kind]++);
        lines_.push_back(at->second + " " + encoded + "\n");
    }
    return at->second;
}

std::string ValueTable::Lut(const uint16_t* values, std::size_t count) {
    return Name('L', EncodeRuns(std::vector<int64_t>(values, values + count)));
}

std::string ValueTable::Doubles(char kind, const double* values, std::size_t count) {
    return Name(kind, EncodeReal(values, count));
}

std::string ValueTable::Lines() const {
    std::string text;
    for (char kind : {'L', 'I', 'V'})
        for (const std::string& line : lines_)
            if (line[0] == kind) text += line;
    return text;
}

}  // namespace quarnel::test
