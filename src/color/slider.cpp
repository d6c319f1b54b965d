// SPDX-License-Identifier: MIT
#include "color/slider.h"

#include "color/apply_gains.h"

namespace quarnel {
namespace {

constexpr double kWarmEnd = 0.5;
constexpr double kNormal = 1.0;
constexpr double kColdEnd = 1.5;

}  // namespace

// The request's blend weighs the two triples, (1 - s) x normal + s x end;
// the VX modes' line runs from the end toward normal. The two are the same
// line but round differently, and each request keeps its own rounding.
SliderTable SliderRequestTable(double interval, const ModeGains& gains, bool fromBios) {
    double v = interval;
    if (v > kColdEnd || v < kWarmEnd) v = kNormal;
    const double s = 2.0 * (v - kNormal);  // -1 at the warm end, 1 at the cold end
    GainSolverState state;
    // The three tests are made as written: an interval that is not a number
    // passes none of them and leaves nothing to write.
    if (s > 0.0) return {SliderTable::kGained, BlendedGains(state, s, gains.normal.data(), gains.cold.data())};
    if (s < 0.0) return {SliderTable::kGained, BlendedGains(state, -s, gains.normal.data(), gains.warm.data())};
    if (s == 0.0) {
        if (!fromBios) return {SliderTable::kBase, {}};
        return {SliderTable::kGained, BlendedGains(state, 0.0, gains.normal.data(), gains.normal.data())};
    }
    return {};
}

// The clamp is written out: a position that is not a number passes none of
// the tests, gives gains that are not numbers, and those read the base
// LUT's first entry.
GainTriple SliderGains(double interval, const ModeGains& gains) {
    double t = interval;
    if (t < kWarmEnd) t = kWarmEnd;
    if (t > kColdEnd) t = kColdEnd;
    const bool warm = t < kNormal;
    const GainTriple& ref = warm ? gains.warm : gains.cold;
    const double anchor = warm ? kWarmEnd : kColdEnd;
    GainTriple g;
    for (std::size_t c = 0; c < 3; ++c) {
        g[c] = t == kNormal ? gains.normal[c] : ref[c] + (gains.normal[c] - ref[c]) / (kNormal - anchor) * (t - anchor);
    }
    return g;
}

}  // namespace quarnel
