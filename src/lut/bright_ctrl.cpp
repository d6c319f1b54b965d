// SPDX-License-Identifier: MIT
#include "lut/bright_ctrl.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/half_up.h"
#include "core/lut16.h"
#include "diag/debug.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

constexpr double kThresholdQcom = 0.8;
constexpr double kThresholdOther = 0.1;
constexpr double kSearchLimit = 0.2;
constexpr double kKnee = 0.4;
constexpr double kKneeSpan = 0.6;
constexpr double kMinPeakRatio = 0.55;

// Whether a green entry lies above the search limit: its share of the full
// scale, rounded to single precision, compared in double.
bool AboveSearchLimit(unsigned entry) {
    return static_cast<double>(static_cast<float>(entry / kLutFullScale)) > kSearchLimit;
}

// The smallest entry above the search limit: the test rises with the entry
// (dividing and rounding keep the order), so an entry passes exactly when it
// reaches this one.
uint16_t FirstEntryAboveSearchLimit() {
    static const auto first = [] {
        unsigned entry = 0;
        while (!AboveSearchLimit(entry)) ++entry;
        return static_cast<uint16_t>(entry);
    }();
    return first;
}

// The first green entry above the search limit, at or after nIndex, moves
// the threshold up to that level.
double FindThreshold(const uint16_t* lut, double scaleTH, int nIndex) {
    const uint16_t first = FirstEntryAboveSearchLimit();
    for (int i = nIndex; i < kLutLevels; ++i)
        if (lut[LutIndex(1, i)] >= first) return static_cast<double>(static_cast<float>(i)) / kTopLevelScale;
    return scaleTH;
}

// Output entry i takes source entry half-up(i x k); a factor that is not a
// number or that reaches below the table maps to its first entry. At full
// scale every entry maps to itself and the table stays as it is.
void Resample(uint16_t* lut, double k) {
    // A factor within this much of 1, spread over the whole table, stays
    // below half a level (the margin absorbs the rounding of i x k): every
    // entry then rounds back to itself.
    constexpr double kUnmovedSpread = 0.49;
    if (std::abs(k - 1.0) * kTopLevelScale < kUnmovedSpread) return;
    const double* level = LevelValues().data();
    std::array<int32_t, kLutLevels> index;
    for (std::size_t i = 0; i < index.size(); ++i) index[i] = HalfUpWithin(level[i] * k, kTopLevel);
    int32_t moved = 0;
    for (std::size_t i = 0; i < index.size(); ++i) moved |= index[i] ^ static_cast<int32_t>(i);
    if (moved == 0) return;
    for (int c = 0; c < kLutPlanes; ++c) {
        uint16_t* plane = lut + LutIndex(c, 0);
        std::array<uint16_t, kLutLevels> source;
        std::copy_n(plane, kLutLevels, source.begin());
        for (std::size_t i = 0; i < source.size(); ++i) plane[i] = source[static_cast<std::size_t>(index[i])];
    }
}

void LiftDimPeak(uint16_t* lut) {
    const double top =
        std::min({static_cast<double>(lut[LutIndex(2, kTopLevel)]), static_cast<double>(lut[LutIndex(1, kTopLevel)]),
                  static_cast<double>(lut[LutIndex(0, kTopLevel)]), kMax16});
    const double peak = top / kLutFullScale;
    if (!(kMinPeakRatio > peak)) return;
    const double factor = kMinPeakRatio / peak;
    for (int i = 0; i < kLutEntries; ++i) {
        double v = lut[i] * factor;
        if (v > kLutFullScale) v = kLutFullScale;  // leaves 0 x infinity (not a number) as it is
        lut[i] = static_cast<uint16_t>(TruncToInt(v));
    }
}

}  // namespace

int32_t LutBrightCtrl(uint16_t* lut, uint32_t lutApiType, double scale) {
    DebugMessage(L"; VOK: ##Enter LutBrightCtrl()##\n");
    double scaleTH = lutApiType == CCT_LUT_API_QCOM ? kThresholdQcom : kThresholdOther;
    const int nIndex = TruncToInt(scaleTH * kTopLevelScale + 0.5);
    DebugPrint("scale: %f, Scale TH: %f, nIndex: %d\n", scale, scaleTH, nIndex);
    // At full scale the threshold's share of the factor cancels: for every
    // threshold the search can find, the factor comes out within a few units
    // in the last place of 1, far too close to move an entry, so the table
    // stays as it is without searching for the threshold.
    const double level = std::clamp(scale, 0.0, 1.0);
    if (level != 1.0) {
        scaleTH = FindThreshold(lut, scaleTH, nIndex);
        Resample(lut, (level - kKnee) * (1.0 - scaleTH) / kKneeSpan + scaleTH);
    }

    if (lutApiType == CCT_LUT_API_QCOM) LiftDimPeak(lut);
    DebugMessage(L"; VOK: ##Exit  LutBrightCtrl()##\n");
    return 0;
}

}  // namespace quarnel
