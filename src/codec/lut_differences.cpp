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

// Each plane's 255 differences are summed in three runs of 85 side by side,
// so that no running sum waits on the other two; each run is then raised by
// the sums of the runs before it. The planes are summed without stopping
// early, so the loops have no branch: the sums are ORed together as unsigned
// values, and only sums within 0..255 leave every bit above the low eight
// clear. The 64-bit sums cannot overflow over 255 int differences.
std::optional<Lut16> SumDifferences(const Differences& d) {
    constexpr int kRuns = 3;
    constexpr int kRun = kTopLevel / kRuns;  // 85
    static_assert(kRun * kRuns == kTopLevel);
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        const int* plane = d.data() + LutIndex(c, 0) + 1;  // entry 0 stays 0
        int64_t sums[kTopLevel];
        int64_t run[kRuns] = {};
        for (int k = 0; k < kRun; ++k)
            for (int r = 0; r < kRuns; ++r) sums[r * kRun + k] = run[r] += plane[r * kRun + k];
        for (int k = 0; k < kRun; ++k) {
            sums[kRun + k] += run[0];
            sums[2 * kRun + k] += run[0] + run[1];
        }
        uint16_t* out = lut.data() + LutIndex(c, 0) + 1;
        uint64_t seen = 0;
        for (int i = 0; i < kTopLevel; ++i) {
            seen |= static_cast<uint64_t>(sums[i]);
            out[i] = static_cast<uint16_t>(sums[i] * kLutStep);
        }
        if ((seen >> kLevelBits) != 0 || sums[kTopLevel - 1] != kTopLevel) return std::nullopt;
    }
    return lut;
}

}  // namespace quarnel::codec
