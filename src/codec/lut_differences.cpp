// SPDX-License-Identifier: MIT
#include "codec/lut_differences.h"

#include <algorithm>

namespace quarnel::codec {
namespace {
constexpr int kTopLevel = kLutLevels - 1;
constexpr int kFullScale = kTopLevel * kLutStep;
}  // namespace

std::optional<Differences> MakeDifferences(const uint16_t* lut) {
    Differences d{};
    for (int c = 0; c < kLutPlanes; ++c) {
        if (lut[LutIndex(c, 0)] != 0) return std::nullopt;
        for (int i = 1; i < kLutLevels; ++i)
            d[LutIndex(c, i)] = lut[LutIndex(c, i)] / kLutStep - lut[LutIndex(c, i - 1)] / kLutStep;
    }
    return d;
}

// Each plane is summed without stopping early, keeping only the lowest and
// highest running sum, so the loop has no branch; the 64-bit sum cannot
// overflow over 256 int differences.
std::optional<Lut16> SumDifferences(const Differences& d) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        const int* plane = d.data() + LutIndex(c, 0);
        uint16_t* out = lut.data() + LutIndex(c, 0);
        int64_t value = 0;
        int64_t lowest = 0;
        int64_t highest = 0;
        for (int i = 1; i < kLutLevels; ++i) {
            value += plane[i];
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
            out[i] = static_cast<uint16_t>(value * kLutStep);
        }
        if (lowest < 0 || highest > kTopLevel || value * kLutStep != kFullScale) return std::nullopt;
    }
    return lut;
}

}  // namespace quarnel::codec
