// SPDX-License-Identifier: MIT
#include "lut/compose.h"

#include <algorithm>

#include "core/half_up.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

constexpr int32_t kUnknownKind = 1;

int MapIndex(uint32_t kind, uint16_t entry) {
    if (kind != kComposeDirect) return std::clamp(HalfUp(entry / kLutFullScale * kTopLevelScale), 0, kTopLevel);
    return std::min<int>(entry, kTopLevel);
}

// Written out rather than std::clamp so that the rule for a gain that is not
// a number is plain: it passes neither test, and half-up turns it into 0.
double ClampLevel(double v) {
    if (v < 0.0) return 0.0;
    if (v > kTopLevel) return kTopLevel;
    return v;
}

}  // namespace

int32_t ComposeLut(uint32_t kind, const uint16_t* map, const uint16_t* base, uint16_t* out) {
    Lut16 source;  // a copy, so that out may be base
    std::copy(base, base + kLutEntries, source.begin());
    const bool known = kind <= kComposeDirect;
    for (int c = 0; c < kLutPlanes; ++c) {
        for (int i = 0; i < kLutLevels; ++i) {
            const int index = known ? MapIndex(kind, map[LutIndex(c, i)]) : i;
            out[LutIndex(c, i)] = source[LutIndex(c, index)];
        }
    }
    return known ? 0 : kUnknownKind;
}

void ApplyGainClampedAt(const double level[256], const double gain[3], const uint16_t* base, uint16_t* out) {
    Lut16 source;
    std::copy(base, base + kLutEntries, source.begin());
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i)
            out[LutIndex(c, i)] = source[LutIndex(c, HalfUp(ClampLevel(level[i] * gain[c])))];
}

void ApplyGainClamped(const double gain[3], const uint16_t* base, uint16_t* out) {
    double level[kLutLevels];
    for (int i = 0; i < kLutLevels; ++i) level[i] = i;
    ApplyGainClampedAt(level, gain, base, out);
}

}  // namespace quarnel
