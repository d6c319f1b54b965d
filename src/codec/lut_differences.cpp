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

std::optional<Lut16> SumDifferences(const Differences& d) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        int value = 0;
        int entry = 0;
        for (int i = 0; i < kLutLevels; ++i) {
            value = i == 0 ? 0 : value + d[LutIndex(c, i)];
            entry = value * kLutStep;
            if (entry < 0 || entry > UINT16_MAX) return std::nullopt;
            lut[LutIndex(c, i)] = static_cast<uint16_t>(entry);
        }
        if (entry != kFullScale) return std::nullopt;
    }
    return lut;
}

}  // namespace quarnel::codec
