// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "color/chromaticity.h"
#include "color/locus.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::Row;

TEST(Polynomials, EachCoefficientMultipliesItsWholePower) {
    GainSolverState s;  // inputs where multiplying from the coefficient outwards gives another double or kelvin
    EXPECT_EQ(DaylightLocusXy(s, 4002).y, 0x1.88ec72f63ad7cp-2);
    EXPECT_EQ(PlanckianLocusXy(s, 4004).y, 0x1.819d00035ed34p-2);
    EXPECT_EQ(CctFromXy(s, {0x1.8a46beecde388p-2, 0.3}), 3077);
    EXPECT_EQ(CctFromXy(s, {0x1.8969a58235ba1p-2, 0.3}), 3106);
}

// The loci's published points are checked with the shared facts; the
// library's temperatures rest on the same cubic.
TEST(ColourMath, PublishedTemperatures) {
    // McCamy's published cubic gives 6504 K for D65 and 2856 K for illuminant A
    GainSolverState s;
    EXPECT_NEAR(CctFromXy(s, {0.31271, 0.32902}), 6504.0, 5.0);
    EXPECT_NEAR(CctFromXy(s, {0.44757, 0.40745}), 2856.0, 20.0);
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

TEST(ColourMath, LociTemperaturesAndGamutWithTheirClamps) {
    std::string text;
    for (int32_t kelvin : {1666, 1667, 2000, 2222, 2223, 3000, 3500, 3999, 4000, 5000, 6500, 9300, 25000, 25001, 30000})
        for (uint32_t locus : {kLocusPlanckian, kLocusDaylight, kLocusOffsetDaylight}) {
            GainSolverState s;
            Xy p;
            LocusXy(s, locus, kelvin, p);
            text += Row("locus", locus, kelvin, p.x, p.y, "flags", s.flags);
        }
    for (Xy p : {Xy{0.31271, 0.32902}, {0.44757, 0.40745}, {0.60, 0.35}, {0.26, 0.27}, {0.332, 0.1858}}) {
        GainSolverState s;  // (0.332, 0.1858) is McCamy's epicentre: 0 / 0
        text += Row("cct", p.x, p.y, CctFromXy(s, p), "flags", s.flags);
    }
    GainSolverState s;  // dyadic corners, so that edge points are exact
    s.point[kRed] = {0.625, 0.25, 1.0}, s.point[kGreen] = {0.25, 0.625, 1.0}, s.point[kBlue] = {0.125, 0.0625, 1.0};
    for (int winding = 0; winding < 2; ++winding, std::swap(s.point[kRed], s.point[kBlue]))
        for (Xy p : {Xy{0.3125, 0.3125}, {0.625, 0.25}, {0.375, 0.15625}, {0.4375, 0.4375}, {0.70, 0.30}})
            text += Row("inside", winding, p.x, p.y, IsInsideGamut(s, p));  // edges and vertices are outside
    test::ExpectGolden("colour_math.txt", text);
}

}  // namespace
}  // namespace quarnel
