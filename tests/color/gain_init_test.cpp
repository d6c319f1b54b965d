// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include "color/apply_gains.h"
#include "color/check_gain.h"
#include "color/reading_targets.h"
#include "color/slider.h"
#include "core/lut16.h"

namespace quarnel {
namespace {

TEST(CalcReadingTargets, WeakAndStrongLieOnTheReadingLine) {
    const Xy a = kReadingLineStart, b = kReadingLineEnd;
    const double len = std::hypot(b.x - a.x, b.y - a.y);
    const Xy u{(b.x - a.x) / len, (b.y - a.y) / len};
    const auto at = [&](double along, double across = 0) {
        return Xy{a.x + along * u.x - across * u.y, a.y + along * u.y + across * u.x};
    };
    const auto gap = [](Xy p, Xy q) { return std::hypot(p.x - q.x, p.y - q.y); };
    // The current white, and how far along the line from A the weak white lies.
    const std::pair<Xy, double> cases[] = {
        {{a.x - 0.0051, 0.5}, 0.0}, {a, 0.005},      {at(len / 2, 0.01), len / 2 + 0.005},
        {at(-0.004), 0.005},        {at(-0.006), 0}, {at(2 * len), 2 * len + 0.005}};
    for (const auto& [current, weak] : cases) {
        ReadingTargets t;
        CalcReadingTargets(current, a, b, t);
        EXPECT_LT(gap(t.weak, at(weak)), 1e-12) << weak;
        EXPECT_LT(gap(t.strong, at(weak + len)), 1e-12) << weak;
    }
}

TEST(CheckGain, RaisesLowGainsToTheMinimumOutput) {
    Lut16 bases[2];  // the identity, and a dark LUT with every entry at 127 of 255
    FillIdentity(bases[0].data());
    bases[1].fill(127 * kLutStep);
    // Base, lut api type, gain and the checked gain, gains in 255ths.
    const std::array<int, 4> cases[] = {{0, 0, 76, 102},  {0, 1, 101, 102}, {0, 4, 102, 102},  {0, 2, 76, 128},
                                        {0, 3, 127, 128}, {0, 5, 128, 128}, {0, 0, -127, 102}, {0, 0, 255, 255},
                                        {1, 0, 76, 76},   {1, 2, 76, 255},  {1, 7, 255, 255}};
    for (const auto& [base, lutApiType, in, out] : cases) {
        double g[3] = {in / 255.0, 1.0, in / 255.0};
        CheckGain(g, bases[base].data(), lutApiType);
        EXPECT_EQ(std::to_array(g), (std::array{out / 255.0, 1.0, out / 255.0})) << in << " " << lutApiType;
    }
}

// The slider's ends are inclusive; past them request 2 falls back to the normal gains.
TEST(SliderRequestTable, EndsAtHalfAndOneAndAHalf) {
    ModeGains g;
    g.normal = {0.9, 0.8, 1.0}, g.warm = {1.0, 0.7, 0.45}, g.cold = {0.6, 0.9, 1.0};
    // Interval, the slider LUT's gains, and the VX modes' gains, which clamp to the ends instead.
    const std::tuple<double, GainTriple, GainTriple> cases[] = {{0.49, g.normal, g.warm},
                                                                {0.5, g.warm, g.warm},
                                                                {1.0, g.normal, g.normal},
                                                                {1.5, g.cold, g.cold},
                                                                {1.51, g.normal, g.cold}};
    for (const auto& [interval, gain, vx] : cases) {
        const SliderTable table = SliderRequestTable(interval, g, true);
        EXPECT_EQ(std::tuple(table.kind, table.gains), std::tuple(SliderTable::kGained, gain)) << interval;
        EXPECT_EQ(SliderGains(interval, g), vx) << interval;
    }
    EXPECT_EQ(SliderRequestTable(std::nan(""), g, true).kind, SliderTable::kNothing);  // not a number: writes nothing
}

}  // namespace
}  // namespace quarnel
