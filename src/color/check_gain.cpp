// SPDX-License-Identifier: MIT
#include "color/check_gain.h"

#include <algorithm>

#include "core/half_up.h"
#include "core/lut16.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

constexpr double kLowThreshold = 0.4;   // the driver takes the LUT as it stands
constexpr double kHighThreshold = 0.5;  // every other driver interface

int Threshold(int32_t lutApiType) {
    const bool low =
        lutApiType == CCT_LUT_API_PLAIN || lutApiType == CCT_LUT_API_SRGB || lutApiType == CCT_LUT_API_IGCL;
    return HalfUp((low ? kLowThreshold : kHighThreshold) * kTopLevel);
}

int Low8(uint16_t entry) { return HalfUp(entry / static_cast<double>(kLutStep)); }

void CheckChannel(double& gain, const uint16_t* plane, int threshold) {
    if (!(gain < 1.0)) return;  // as written: a gain that is not a number is left alone
    // A negative gain starts at the plane's first entry rather than before it.
    int k = std::max(HalfUp(gain * kTopLevel), 0);
    if (Low8(plane[k]) >= threshold) return;
    for (;;) {
        if (++k >= kTopLevel) {
            gain = 1.0;
            return;
        }
        gain = k / static_cast<double>(kTopLevel);
        if (Low8(plane[k]) >= threshold) return;
    }
}

}  // namespace

void CheckGain(double gain[3], const uint16_t* baseLut, int32_t lutApiType) {
    const int threshold = Threshold(lutApiType);
    for (int c = 0; c < kLutPlanes; ++c) CheckChannel(gain[c], baseLut + LutIndex(c, 0), threshold);
}

}  // namespace quarnel
