// SPDX-License-Identifier: MIT
#include "color/locus.h"

#include <algorithm>
#include <cmath>

namespace quarnel {
namespace {

// The loci, as approximations of published curves (T in kelvin):
// - CIE daylight locus (CIE 15:2004): x as a cubic in 1/T over 4000..7000 K
//   and 7000..25000 K, then y = -3 x^2 + 2.87 x - 0.275.
// - Planckian locus: the cubic spline of Kim et al. (2002), x as a cubic in
//   1/T over 1667..4000 K and 4000..25000 K, y as a cubic in x over
//   1667..2222, 2222..4000 and 4000..25000 K. The second low-range x
//   coefficient is 0.234358 here (published 0.2343589); the system's value.
// - CIE 1960 UCS (u, v) = (4x, 6y) / (-2x + 12y + 3), where the offset
//   daylight locus is formed.
constexpr int32_t kDaylightMin = 4000;
constexpr int32_t kDaylightMax = 25000;
constexpr int32_t kDaylightKnee = 7000;
constexpr int32_t kPlanckianMin = 1667;
constexpr int32_t kPlanckianMax = 25000;
constexpr int32_t kPlanckianWarmY = 2222;  // last kelvin of the warmest y polynomial
constexpr int32_t kPlanckianKnee = 4000;
constexpr double kPlanckianXMin = 4000.0;
constexpr double kPlanckianXMax = 25000.0;
// How far beyond the daylight point, away from the Planckian locus, the
// offset daylight locus runs: 0.003 in (u, v), about the width of the band
// of whites that still read as neutral.
constexpr double kDaylightOffsetUv = 0.003;

int32_t ClampFlagged(GainSolverState& state, int32_t v, int32_t lo, int32_t hi, uint32_t belowBit, uint32_t aboveBit) {
    if (v < lo) {
        state.flags |= belowBit;
        return lo;
    }
    if (v > hi) {
        state.flags |= aboveBit;
        return hi;
    }
    return v;
}

// Each coefficient multiplies its whole power, the terms added left to right.
double Cubic(double a3, double a2, double a1, double a0, double v) {
    return a3 * (v * v * v) + a2 * (v * v) + a1 * v + a0;
}

struct Uv {
    double u;
    double v;
};

Uv ToUv(Xy p) {
    const double d = -2.0 * p.x + 12.0 * p.y + 3.0;
    return {4.0 * p.x / d, 6.0 * p.y / d};
}

Xy FromUv(Uv p) {
    const double d = 2.0 * p.u - 8.0 * p.v + 4.0;
    return {3.0 * p.u / d, 2.0 * p.v / d};
}

}  // namespace

Xy DaylightLocusXy(GainSolverState& state, int32_t kelvin) {
    const double t = ClampFlagged(state, kelvin, kDaylightMin, kDaylightMax, kGainDaylightBelow, kGainDaylightAbove);
    const double e6 = std::pow(10.0, 6.0);
    const double e9 = std::pow(10.0, 9.0);
    const double e3 = std::pow(10.0, 3.0);
    double x;
    if (t <= kDaylightKnee)
        x = 2.9678 * e6 / (t * t) - 4.607 * e9 / (t * t * t) + 0.09911 * e3 / t + 0.244063;
    else
        x = 1.9018 * e6 / (t * t) - 2.0064 * e9 / (t * t * t) + 0.24748 * e3 / t + 0.23704;
    return {x, 2.87 * x - 3.0 * (x * x) - 0.275};
}

Xy PlanckianLocusXy(GainSolverState& state, int32_t kelvin) {
    const int32_t t =
        ClampFlagged(state, kelvin, kPlanckianMin, kPlanckianMax, kGainPlanckianBelow, kGainPlanckianAbove);
    double tx = t;
    if (tx < kPlanckianXMin) {
        state.flags |= kGainDaylightBelow;
        tx = kPlanckianXMin;
    } else if (tx > kPlanckianXMax) {
        state.flags |= kGainDaylightAbove;
        tx = kPlanckianXMax;
    }
    double x;
    if (t <= kPlanckianKnee)
        x = -0.2661239e9 / (tx * tx * tx) - 0.234358e6 / (tx * tx) + 0.8776956e3 / tx + 0.17991;
    else
        x = -3.0258469e9 / (tx * tx * tx) + 2.1070379e6 / (tx * tx) + 0.2226347e3 / tx + 0.24039;
    double y;
    if (t <= kPlanckianWarmY)
        y = Cubic(-1.1063814, -1.3481102, 2.18555832, -0.20219683, x);
    else if (t <= kPlanckianKnee)
        y = Cubic(-0.9549476, -1.37418593, 2.09137015, -0.16748867, x);
    else
        y = Cubic(3.081758, -5.8733867, 3.75112997, -0.37001483, x);
    return {x, y};
}

void OffsetDaylightLocusXy(GainSolverState& state, int32_t kelvin, Xy& out) {
    const int32_t t =
        ClampFlagged(state, kelvin, kDaylightMin, kDaylightMax, kGainOffsetDaylightBelow, kGainOffsetDaylightAbove);
    const Uv p = ToUv(PlanckianLocusXy(state, t));
    const Uv d = ToUv(DaylightLocusXy(state, t));
    const Uv dir{d.u - p.u, d.v - p.v};
    const double len = std::sqrt(dir.u * dir.u + dir.v * dir.v);
    if (len == 0.0) return;
    out = FromUv({d.u + kDaylightOffsetUv * dir.u / len, d.v + kDaylightOffsetUv * dir.v / len});
}

void LocusXy(GainSolverState& state, uint32_t locus, int32_t kelvin, Xy& out) {
    switch (locus) {
        case kLocusPlanckian:
            out = PlanckianLocusXy(state, kelvin);
            return;
        case kLocusDaylight:
            out = DaylightLocusXy(state, kelvin);
            return;
        case kLocusOffsetDaylight:
            break;
        default:
            state.flags |= kGainUnknownLocus;
            break;
    }
    OffsetDaylightLocusXy(state, kelvin, out);
}

}  // namespace quarnel
