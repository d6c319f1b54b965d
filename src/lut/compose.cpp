// SPDX-License-Identifier: MIT
#include "lut/compose.h"

#include <algorithm>
#include <array>
#include <functional>

#include "core/half_up.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

constexpr int32_t kUnknownKind = 1;

int MapIndex(uint32_t kind, uint16_t entry) {
    if (kind != kComposeDirect) return std::clamp(HalfUp(entry / kLutFullScale * kTopLevelScale), 0, kTopLevel);
    return std::min<int>(entry, kTopLevel);
}

// Whether writing `out` could change entries of `base` still to be read.
bool Overlaps(const uint16_t* base, const uint16_t* out) {
    const std::less<const uint16_t*> before;
    return before(base, out + kLutEntries) && before(out, base + kLutEntries);
}

}  // namespace

int32_t ComposeLut(uint32_t kind, const uint16_t* map, const uint16_t* base, uint16_t* out) {
    Lut16 copy;  // only when out shares memory with base
    const uint16_t* source = base;
    if (Overlaps(base, out)) {
        std::copy(base, base + kLutEntries, copy.begin());
        source = copy.data();
    }
    if (kind > kComposeDirect) {
        std::copy(source, source + kLutEntries, out);
        return kUnknownKind;
    }
    for (int c = 0; c < kLutPlanes; ++c) {
        const uint16_t* from = source + LutIndex(c, 0);
        const uint16_t* to = map + LutIndex(c, 0);
        std::array<int32_t, kLutLevels> index;  // a pass of its own, which vectorises
        for (std::size_t i = 0; i < index.size(); ++i) index[i] = MapIndex(kind, to[i]);
        for (std::size_t i = 0; i < index.size(); ++i) out[LutIndex(c, 0) + i] = from[index[i]];
    }
    return 0;
}

}  // namespace quarnel
