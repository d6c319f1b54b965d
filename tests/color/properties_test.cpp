// SPDX-License-Identifier: MIT
// The gain solve over seeded random panels, checked against the colour the
// panel shows for the gains rather than against earlier output.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "color/calc_gain.h"
#include "color/chromaticity.h"
#include "color/panels.h"

namespace quarnel {
namespace {

// sRGB-like primaries moved up to 0.02 in xy, a 150..500 cd/m2 white whose
// channel shares vary by a fifth.
GainRequest RandomPanel(std::mt19937& rng) {
    std::uniform_real_distribution<double> move(-0.02, 0.02), white(150.0, 500.0), share(0.8, 1.2);
    const double y = white(rng);
    return test::Panel({0.64 + move(rng), 0.33 + move(rng), 0.2126 * y * share(rng)},
                       {0.30 + move(rng), 0.60 + move(rng), 0.7152 * y * share(rng)},
                       {0.15 + move(rng), 0.06 + move(rng) / 4, 0.0722 * y * share(rng)});
}

// Drive g of a primary gives g^gamma of its full-drive XYZ; the three add up.
Xy Shown(const GainRequest& r) {
    double xyz[3] = {};
    for (int i = kRed; i <= kBlue; ++i)
        for (int c = 0; c < 3; ++c) xyz[c] += std::pow(r.gain[i], kSolverGamma) * r.primaryXyz[i][c];
    const double sum = xyz[0] + xyz[1] + xyz[2];
    return {xyz[0] / sum, xyz[1] / sum};
}

TEST(CalcGainProperty, GainsShowTheTargetForEveryModeAndLocus) {
    std::mt19937 rng(17);
    std::uniform_real_distribution<double> near(-0.02, 0.02);
    std::uniform_int_distribution<int32_t> offset(-2500, 2500), kelvin(3000, 12000);
    int solved = 0;
    for (int panel = 0; panel < 100; ++panel)
        for (uint32_t mode : {kTargetChromaticity, kTargetNativeOffset, kTargetAbsoluteCct})
            for (uint32_t locus : {kLocusPlanckian, kLocusDaylight, kLocusOffsetDaylight}) {
                GainRequest r = RandomPanel(rng);
                r.targetMode = mode, r.locus = locus, r.targetX = 0.3127 + near(rng), r.targetY = 0.329 + near(rng);
                r.cctOffset = offset(rng), r.targetCct = kelvin(rng);
                GainSolverState s = test::FreshState();
                CalcGain(s, &r);
                ASSERT_EQ(*std::max_element(r.gain, r.gain + 3), 1.0);
                if ((r.warnFlags & kGainFellBack) != 0) continue;  // unit gains on native white
                ++solved;
                const Xy shown = Shown(r);
                ASSERT_NEAR(shown.x, s.targetX, 1e-12) << panel << " " << mode << " " << locus;
                ASSERT_NEAR(shown.y, s.targetY, 1e-12) << panel << " " << mode << " " << locus;
                if (mode == kTargetChromaticity && (r.warnFlags & kGainWalkStep) == 0) {
                    ASSERT_EQ(std::make_pair(s.targetX, s.targetY), std::make_pair(r.targetX, r.targetY));
                }
            }
    EXPECT_GT(solved, 800);
}

}  // namespace
}  // namespace quarnel
