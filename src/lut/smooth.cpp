// SPDX-License-Identifier: MIT
// Dark-end smoothing of an 8-bit LUT.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "diag/debug.h"
#include "lut/improve.h"

namespace quarnel {
namespace {

constexpr int kSearchTop = 64;
constexpr int kCloseDiff = 8;  // up to here the ramp bends over 20 levels
constexpr int kFarDiff = 12;   // up to here over 30; beyond, look lower
constexpr int kCloseScatter = 20;
constexpr int kFarScatter = 30;
constexpr int32_t kNoSmoothingPoint = 2;

enum LutType { kOnIdentity = 0, kAbove = 1, kBelow = 2 };

struct SmoothingPoint {
    int smoothLv = 0;
    int scatterLv = 0;
    int diff = 0;
    int type = kOnIdentity;
};

// Walks down from entry 64 to the first entry close enough to the identity.
SmoothingPoint FindSmoothingPoint(const Lut8& in, int c) {
    SmoothingPoint p;
    for (p.smoothLv = kSearchTop; p.smoothLv > 0; --p.smoothLv) {
        // Widened, so that no 8-bit table value, however wild, overflows the difference.
        const int64_t d = int64_t{in[p.smoothLv][c]} - p.smoothLv;
        p.diff = static_cast<int>(std::min<int64_t>(d < 0 ? -d : d, INT32_MAX));
        p.type = d == 0 ? kOnIdentity : (d > 0 ? kAbove : kBelow);
        if (p.diff == 0) return p;
        if (p.diff <= kCloseDiff) {
            p.scatterLv = kCloseScatter;
            return p;
        }
        if (p.diff <= kFarDiff) {
            p.scatterLv = kFarScatter;
            return p;
        }
    }
    return p;  // smoothLv 0, scatterLv 0: nothing usable down to entry 1
}

// Entries 0..scatterLv on a straight line that meets the curve's offset,
// then unit steps up to smoothLv.
void RebuildDarkEnd(const SmoothingPoint& p, int c, Lut8& out) {
    const double slope = p.type == kAbove ? (p.diff + p.scatterLv) / static_cast<double>(p.scatterLv)
                                          : (p.scatterLv - p.diff) / static_cast<double>(p.scatterLv);
    for (int j = 0; j <= p.scatterLv; ++j) {
        const double v = p.type == kAbove ? std::ceil(slope * j) : std::floor(slope * j);
        out[j][c] = static_cast<int32_t>(std::clamp(v, 0.0, kTopLevelScale));
    }
    for (int k = p.scatterLv + 1; k <= p.smoothLv; ++k) out[k][c] = out[k - 1][c] + 1;
}

}  // namespace

int32_t LutSmooth8Bit(const Lut8& in, Lut8& out) {
    out = in;
    for (int c = 0; c < kLutPlanes; ++c) {
        const SmoothingPoint p = FindSmoothingPoint(in, c);
        DebugPrint("Channel RGB[%d]:\n", c);
        DebugPrint("smoothLv = %d\n", p.smoothLv);
        DebugPrint("scatterLv = %d\n", p.scatterLv);
        DebugPrint("diff = %d\n", p.diff);
        DebugPrint("lut type: %d\n", p.type);
        if (p.scatterLv == 0) return kNoSmoothingPoint;  // an exact entry 64 included, on purpose
        if (p.smoothLv < SMOOTH_LEVEL_MIN) {
            DebugPrint("smoothLv < SMOOTH_LEVEL_MIN(%d), no change lut!!!\n", SMOOTH_LEVEL_MIN);
            continue;
        }
        RebuildDarkEnd(p, c, out);
    }
    return 0;
}

}  // namespace quarnel
