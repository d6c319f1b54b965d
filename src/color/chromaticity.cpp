// SPDX-License-Identifier: MIT
#include "color/chromaticity.h"

#include "core/half_up.h"

namespace quarnel {

ChromaPoint Chromaticity(GainSolverState& state, const double xyz[3]) {
    const double sum = xyz[0] + xyz[1] + xyz[2];
    if (sum == 0.0) {
        state.flags |= kGainZeroSum;
        return {0.0, 0.0, xyz[1]};
    }
    const Xy p = facts::ChromaticityOf(xyz[0], xyz[1], xyz[2]);
    return {p.x, p.y, xyz[1]};
}

int32_t CctFromXy(GainSolverState& state, Xy p) {
    // HalfUp gives a NaN 0 and saturates a temperature beyond the int range,
    // so both end in a clamp.
    const int t = HalfUp(facts::McCamyKelvin(p));
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
