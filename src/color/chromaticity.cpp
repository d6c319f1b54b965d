// SPDX-License-Identifier: MIT
#include "color/chromaticity.h"

#include "core/half_up.h"

namespace quarnel {
namespace {

// McCamy's approximation of the correlated colour temperature (Color Res.
// Appl. 17, 1992): the isotemperature lines meet near the epicentre
// (0.3320, 0.1858), and the CCT is a cubic in the inverse slope n from it.
// The published cubic is 449 n^3 + 3525 n^2 + 6823.3 n + 5520.33; the system
// uses its own rounded set below, and every CCT it reports rests on them.
constexpr double kEpicentreX = 0.332;
constexpr double kEpicentreY = 0.1858;
constexpr double kCubic3 = 437.0;
constexpr double kCubic2 = 3601.0;
constexpr double kCubic1 = 6831.0;
constexpr double kCubic0 = 5517.0;

}  // namespace

ChromaPoint Chromaticity(GainSolverState& state, const double xyz[3]) {
    const double sum = xyz[0] + xyz[1] + xyz[2];
    if (sum == 0.0) {
        state.flags |= kGainZeroSum;
        return {0.0, 0.0, xyz[1]};
    }
    return {xyz[0] / sum, xyz[1] / sum, xyz[1]};
}

int32_t CctFromXy(GainSolverState& state, Xy p) {
    const double n = (p.x - kEpicentreX) / (kEpicentreY - p.y);
    // Each coefficient multiplies its whole power. HalfUp gives a NaN 0 and
    // saturates a temperature beyond the int range, so both end in a clamp.
    const int t = HalfUp(kCubic3 * (n * n * n) + kCubic2 * (n * n) + kCubic1 * n + kCubic0);
    if (t < kCctReportMin) {
        state.flags |= kGainCctBelow;
        return kCctReportMin;
    }
    if (t > kCctReportMax) {
        state.flags |= kGainCctAbove;
        return kCctReportMax;
    }
    return t;
}

bool IsInsideGamut(const GainSolverState& state, Xy p) {
    const ChromaPoint& r = state.point[kRed];
    const ChromaPoint& g = state.point[kGreen];
    const ChromaPoint& b = state.point[kBlue];
    const double c1 = (g.y - p.y) * (r.x - p.x) - (g.x - p.x) * (r.y - p.y);
    const double c2 = (b.y - p.y) * (g.x - p.x) - (b.x - p.x) * (g.y - p.y);
    const double c3 = (b.x - p.x) * (r.y - p.y) - (b.y - p.y) * (r.x - p.x);
    return (c1 > 0.0 && c2 > 0.0 && c3 > 0.0) || (c1 < 0.0 && c2 < 0.0 && c3 < 0.0);
}

}  // namespace quarnel
