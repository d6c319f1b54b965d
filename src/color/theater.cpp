// SPDX-License-Identifier: MIT
#include "color/theater.h"

#include "color/calc_gain.h"
#include "color/check_gain.h"

namespace quarnel {
namespace {

constexpr double kTheaterWhiteX = 0.3418;
constexpr double kTheaterWhiteY = 0.3757;
constexpr double kBoost = 1.05;

}  // namespace

// The boosted limiting channel passes 255 from input 243 upwards; the
// applicator holds its index at the plane's last entry.
GainTriple TheaterGains(const XyzTable& rows, const uint16_t* base, int32_t lutApiType) {
    GainRequest r = ChromaticityRequest(rows, kTheaterWhiteX, kTheaterWhiteY);
    GainSolverState state;
    state.gamma = kSolverGamma;
    CalcGain(state, &r);

    double g[3];
    for (int c = 0; c < 3; ++c) g[c] = r.gain[c] * kBoost;
    CheckGain(g, base, lutApiType);
    return {g[0], g[1], g[2]};
}

}  // namespace quarnel
