// SPDX-License-Identifier: MIT
#include "color/locus.h"

#include <cmath>

#include "facts/loci.h"

namespace quarnel {
namespace {

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

}  // namespace

Xy DaylightLocusXy(GainSolverState& state, int32_t kelvin) {
    return facts::DaylightXy(ClampFlagged(state, kelvin, facts::kDaylightMinKelvin, facts::kDaylightMaxKelvin,
                                          kGainDaylightBelow, kGainDaylightAbove));
}

// x is taken at 4000 K at the least, with the daylight locus's flags, while
// y still follows the requested temperature's segment.
Xy PlanckianLocusXy(GainSolverState& state, int32_t kelvin) {
    const int32_t t = ClampFlagged(state, kelvin, facts::kPlanckianMinKelvin, facts::kPlanckianMaxKelvin,
                                   kGainPlanckianBelow, kGainPlanckianAbove);
    const int32_t tx = ClampFlagged(state, t, facts::kPlanckianWarmEnd, facts::kPlanckianMaxKelvin, kGainDaylightBelow,
                                    kGainDaylightAbove);
    const double x = facts::PlanckianX(tx);
    return {x, facts::PlanckianY(t, x)};
}

void OffsetDaylightLocusXy(GainSolverState& state, int32_t kelvin, Xy& out) {
    const int32_t t = ClampFlagged(state, kelvin, facts::kDaylightMinKelvin, facts::kDaylightMaxKelvin,
                                   kGainOffsetDaylightBelow, kGainOffsetDaylightAbove);
    const facts::Uv p = facts::ToUv(PlanckianLocusXy(state, t));
    const facts::Uv d = facts::ToUv(DaylightLocusXy(state, t));
    const facts::Uv dir{d.u - p.u, d.v - p.v};
    const double len = std::sqrt(dir.u * dir.u + dir.v * dir.v);
    if (len == 0.0) return;
    out = facts::FromUv({d.u + kDaylightOffsetUv * dir.u / len, d.v + kDaylightOffsetUv * dir.v / len});
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
