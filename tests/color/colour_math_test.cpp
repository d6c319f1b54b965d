// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "color/chromaticity.h"
#include "color/locus.h"

namespace quarnel {
namespace {

TEST(CctFromXy, SystemCubicNearPublishedValuesAndClamped) {
    struct {
        Xy p;
        int32_t cct;
        uint32_t flags;
        double published, allowance;  // McCamy's published cubic parts from the system's by up to this much
    } cases[] = {
        {{0.31271, 0.32902}, 6503, 0, 6504.0, 5.0},   // D65
        {{0.44757, 0.40745}, 2872, 0, 2856.0, 20.0},  // illuminant A
        {{0.60, 0.35}, 2222, kGainCctBelow, 0, 0},    {{0.26, 0.27}, 13000, kGainCctAbove, 0, 0},
        {{0.332, 0.1858}, 2222, kGainCctBelow, 0, 0},  // 0 / 0 at the epicentre
    };
    for (const auto& tc : cases) {
        GainSolverState s;
        const int32_t t = CctFromXy(s, tc.p);
        EXPECT_EQ(t, tc.cct) << tc.p.x;
        EXPECT_EQ(s.flags, tc.flags) << tc.p.x;
        if (tc.allowance == 0) continue;
        EXPECT_NEAR(t, tc.published, tc.allowance);
    }
}

TEST(Polynomials, EachCoefficientMultipliesItsWholePower) {
    GainSolverState s;  // inputs where multiplying from the coefficient outwards gives another double or kelvin
    EXPECT_EQ(DaylightLocusXy(s, 4002).y, 0x1.88ec72f63ad7cp-2);
    EXPECT_EQ(PlanckianLocusXy(s, 4004).y, 0x1.819d00035ed34p-2);
    EXPECT_EQ(CctFromXy(s, {0x1.8a46beecde388p-2, 0.3}), 3077);
    EXPECT_EQ(CctFromXy(s, {0x1.8969a58235ba1p-2, 0.3}), 3106);
}

TEST(Loci, MatchPublishedChromaticitiesAndReportEveryClamp) {
    struct {
        Xy (*locus)(GainSolverState&, int32_t);
        int32_t kelvin;
        uint32_t flags;
        Xy published;  // (0, 0): not checked
    } cases[] = {
        {DaylightLocusXy, 5003, 0, {0.34567, 0.35850}},  // D50
        {DaylightLocusXy, 6504, 0, {0.31271, 0.32902}},  // D65
        {DaylightLocusXy, 7504, 0, {0.29902, 0.31485}},  // D75
        {PlanckianLocusXy, 5000, 0, {0.3451, 0.3516}},
        {PlanckianLocusXy, 6500, 0, {0.3135, 0.3237}},
        {PlanckianLocusXy, 10000, 0, {0.2807, 0.2884}},
        {DaylightLocusXy, 3999, kGainDaylightBelow, {}},
        {DaylightLocusXy, 25001, kGainDaylightAbove, {}},
        {DaylightLocusXy, 4000, 0, {}},
        {PlanckianLocusXy, 1666, kGainPlanckianBelow | kGainDaylightBelow, {}},
        {PlanckianLocusXy, 3999, kGainDaylightBelow, {}},
        {PlanckianLocusXy, 4000, 0, {}},
        {PlanckianLocusXy, 25001, kGainPlanckianAbove, {}},
    };
    for (const auto& tc : cases) {
        GainSolverState s;
        const Xy p = tc.locus(s, tc.kelvin);
        EXPECT_EQ(s.flags, tc.flags) << tc.kelvin;
        if (tc.published.x == 0) continue;
        EXPECT_NEAR(p.x, tc.published.x, 2e-4) << tc.kelvin;
        EXPECT_NEAR(p.y, tc.published.y, 2e-4) << tc.kelvin;
    }
    for (auto [kelvin, flags] :
         {std::pair{3000, kGainOffsetDaylightBelow}, std::pair{30000, kGainOffsetDaylightAbove}}) {
        GainSolverState s;
        Xy out;
        OffsetDaylightLocusXy(s, kelvin, out);
        EXPECT_EQ(s.flags, flags) << kelvin;
    }
}

TEST(PlanckianLocusXy, KeepsTheFourThousandKelvinXBelowIt) {
    GainSolverState s;
    const Xy warm = PlanckianLocusXy(s, 2000), lessWarm = PlanckianLocusXy(s, 3500);
    const double x = 0.3805283390625;
    EXPECT_EQ(warm.x, x);
    EXPECT_EQ(lessWarm.x, x);
    // y still follows the 1667..2222 and 2223..4000 polynomials
    EXPECT_DOUBLE_EQ(warm.y, -1.1063814 * x * x * x - 1.3481102 * x * x + 2.18555832 * x - 0.20219683);
    EXPECT_DOUBLE_EQ(lessWarm.y, -0.9549476 * x * x * x - 1.37418593 * x * x + 2.09137015 * x - 0.16748867);
    EXPECT_NE(warm.y, lessWarm.y);
}

TEST(OffsetDaylightLocusXy, LiesThreeThousandthsBeyondDaylightAwayFromPlanckian) {
    const auto uv = [](Xy p) {
        const double d = -2.0 * p.x + 12.0 * p.y + 3.0;
        return Xy{4.0 * p.x / d, 6.0 * p.y / d};
    };
    for (int32_t kelvin : {4000, 5000, 6500, 9300, 25000}) {
        GainSolverState s;
        Xy q{};
        OffsetDaylightLocusXy(s, kelvin, q);
        const Xy p = uv(PlanckianLocusXy(s, kelvin)), d = uv(DaylightLocusXy(s, kelvin));
        q = uv(q);
        EXPECT_NEAR(std::hypot(q.x - d.x, q.y - d.y), 0.003, 1e-12) << kelvin;
        EXPECT_NEAR(std::hypot(q.x - p.x, q.y - p.y), std::hypot(d.x - p.x, d.y - p.y) + 0.003, 1e-12) << kelvin;
    }
}

TEST(IsInsideGamut, EdgesAndVerticesAreOutside) {
    GainSolverState s;  // dyadic corners, so that edge points are exact
    s.point[kRed] = {0.625, 0.25, 1.0};
    s.point[kGreen] = {0.25, 0.625, 1.0};
    s.point[kBlue] = {0.125, 0.0625, 1.0};
    for (int winding = 0; winding < 2; ++winding) {
        EXPECT_TRUE(IsInsideGamut(s, {0.3125, 0.3125}));
        EXPECT_FALSE(IsInsideGamut(s, {0.625, 0.25}));     // vertex
        EXPECT_FALSE(IsInsideGamut(s, {0.375, 0.15625}));  // midpoint of red-blue
        EXPECT_FALSE(IsInsideGamut(s, {0.4375, 0.4375}));  // midpoint of red-green
        EXPECT_FALSE(IsInsideGamut(s, {0.70, 0.30}));
        std::swap(s.point[kRed], s.point[kBlue]);
    }
}

}  // namespace
}  // namespace quarnel
