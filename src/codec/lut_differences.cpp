// SPDX-License-Identifier: MIT
#include "codec/lut_differences.h"

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

// Each plane is summed without stopping early, so the loop stays branch-free;
// the 64-bit sum cannot overflow over 256 int differences.
std::optional<Lut16> SumDifferences(const Differences& d) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        int64_t value = 0;
        bool inRange = true;
        for (int i = 1; i < kLutLevels; ++i) {
            value += d[LutIndex(c, i)];
            inRange &= value >= 0 && value <= kTopLevel;
            lut[LutIndex(c, i)] = static_cast<uint16_t>(value * kLutStep);
        }
        if (!inRange || value * kLutStep != kFullScale) return std::nullopt;
    }
    return lut;
}

}  // namespace quarnel::codec
