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

}  // namespace quarnel
