// SPDX-License-Identifier: MIT
#include "lut/convert_taps.h"

#include <algorithm>
#include <cmath>

#include "core/srgb.h"
#include "lut/default_lut.h"

namespace quarnel::convert {
namespace {

SrgbTaps BuildSrgbTaps() {
    SrgbTaps taps{};
    for (std::size_t i = 0; i < kLutLevels; ++i) {
        const double p = SrgbEncode(static_cast<double>(i) / kTopLevelScale) * kTopLevelScale;
        const double lo = std::clamp(std::floor(p), 0.0, kTopLevelScale);
        const double hi = std::min(kTopLevelScale, std::ceil(p));
        taps.lo[i] = static_cast<uint8_t>(lo);
        taps.f[i] = hi != lo ? p - lo : 0.0;
        taps.twice[i] = Half{taps.f[i], taps.f[i]};
    }
    return taps;
}

void PlacePoints(NvTaps& taps) {
    taps.first.fill(static_cast<uint16_t>(kNvPoints));
    for (std::size_t j = kNvPoints; j-- > 0;) {
        const auto q = static_cast<float>(static_cast<double>(j) * kTopLevelScale / kNvTopScale);
        const float lo = std::floor(q);
        const float hi = std::ceil(q);
        float d = hi - lo;
        if (d == 0.0f) d = 1.0f;
        taps.first[static_cast<std::size_t>(lo)] = static_cast<uint16_t>(j);
        taps.f[j] = static_cast<double>((q - lo) / d);
    }
}

void SpreadFractions(NvTaps& taps) {
    for (std::size_t k = 0; k < kTopLevel; ++k) {
        for (std::size_t n = 0; n < kSpreadPerLevel; ++n)
            taps.spread[kSpreadPerLevel * k + n] = taps.f[taps.first[k] + n / kLutPlanes];
        if (taps.first[k + 1] - taps.first[k] > static_cast<int>(kLanes))
            taps.fifth[taps.fifthCount++] = static_cast<uint8_t>(k);
    }
}

NvTaps BuildNvTaps() {
    NvTaps taps{};
    PlacePoints(taps);
    SpreadFractions(taps);
    return taps;
}

}  // namespace

const SrgbTaps& Srgb() {
    static const SrgbTaps taps = BuildSrgbTaps();
    return taps;
}

const NvTaps& Nv() {
    static const NvTaps taps = BuildNvTaps();
    return taps;
}

const std::array<float, kNvFloatsPerArray>& NvPreGamma() {
    static const std::array<float, kNvFloatsPerArray> ramp = [] {
        std::array<float, kNvFloatsPerArray> r = IdentityFloatRamp();
        for (float& v : r) v = static_cast<float>(SrgbDecode(static_cast<double>(v)));
        return r;
    }();
    return ramp;
}

}  // namespace quarnel::convert
