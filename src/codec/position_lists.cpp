// SPDX-License-Identifier: MIT
#include "codec/position_lists.h"

#include <algorithm>
#include <array>

namespace quarnel::codec {
namespace {

constexpr int kMaxDifference = 7;
constexpr int kRedPlane = 0;

using Lists = std::array<std::array<std::vector<uint8_t>, kLutPlanes>, kMaxDifference>;

// Group g stands for the difference 0 when g = 0 and g + 1 otherwise.
int GroupValue(int g) { return g == 0 ? 0 : g + 1; }
int GroupOf(int value) { return value == 0 ? 0 : value - 1; }

bool Listed(int value) { return value == 0 || (value >= 2 && value <= kMaxDifference); }

// Red differences outside 0..7 fail; green and blue ones are left out and
// so read back as 1. Kept as the factory tools have always written it.
std::optional<Lists> CollectPositions(const Differences& d) {
    Lists lists;
    for (int i = 1; i < kLutLevels; ++i) {
        for (int c = 0; c < kLutPlanes; ++c) {
            const int value = d[LutIndex(c, i)];
            if (c == kRedPlane && (value < 0 || value > kMaxDifference)) return std::nullopt;
            if (Listed(value))
                lists[static_cast<std::size_t>(GroupOf(value))][static_cast<std::size_t>(c)].push_back(
                    static_cast<uint8_t>(i));
        }
    }
    return lists;
}

}  // namespace

std::optional<std::vector<uint8_t>> EncodePositionLists(const Differences& d) {
    const auto lists = CollectPositions(d);
    if (!lists) return std::nullopt;
    const int groups = *std::max_element(d.begin(), d.end());
    if (groups > kMaxDifference) return std::nullopt;

    std::vector<uint8_t> string(1, 0);
    for (int g = 0; g < groups; ++g) {
        const auto& group = (*lists)[static_cast<std::size_t>(g)];
        for (const auto& plane : group) string.push_back(static_cast<uint8_t>(plane.size()));
        for (const auto& plane : group) string.insert(string.end(), plane.begin(), plane.end());
    }
    const std::size_t body = string.size() - 1;
    string[0] = static_cast<uint8_t>((body & 0xFFu) + 1);  // wraps to 0 for a body of 255
    return string;
}

bool DecodePositionLists(const uint8_t* string, Differences& d) {
    // A length byte of 0 or 1 leaves no body: no groups, every difference 1.
    const int length = string[0];
    int at = 1;
    for (int g = 0; at < length; ++g) {
        if (length - at < kLutPlanes) return false;
        const std::array<int, kLutPlanes> counts{string[at], string[at + 1], string[at + 2]};
        at += kLutPlanes;
        for (int c = 0; c < kLutPlanes; ++c) {
            if (length - at < counts[static_cast<std::size_t>(c)]) return false;
            for (int k = 0; k < counts[static_cast<std::size_t>(c)]; ++k) d[LutIndex(c, string[at++])] = GroupValue(g);
        }
    }
    for (int c = 0; c < kLutPlanes; ++c) d[LutIndex(c, 0)] = 0;
    return true;
}

}  // namespace quarnel::codec
