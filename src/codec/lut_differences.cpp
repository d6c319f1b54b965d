// SPDX-License-Identifier: MIT
#include "codec/lut_differences.h"

namespace quarnel::codec {
namespace {
constexpr int kTopLevel = kLutLevels - 1;
constexpr int kLevelBits = 8;  // levels 0..255 fit in the low eight bits
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

// Each plane is summed without stopping early, so the loop has no branch:
// the running sums are ORed together as unsigned values, and only sums
// within 0..255 leave every bit above the low eight clear. The 64-bit sum
// cannot overflow over 256 int differences.
std::optional<Lut16> SumDifferences(const Differences& d) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        const int* plane = d.data() + LutIndex(c, 0);
        uint16_t* out = lut.data() + LutIndex(c, 0);
        int64_t value = 0;
        uint64_t seen = 0;
        for (int i = 1; i < kLutLevels; ++i) {
            value += plane[i];
            seen |= static_cast<uint64_t>(value);
            out[i] = static_cast<uint16_t>(value * kLutStep);
        }
        if ((seen >> kLevelBits) != 0 || value != kTopLevel) return std::nullopt;
    }
    return lut;
}

}  // namespace quarnel::codec
