// SPDX-License-Identifier: MIT
#include "color/factory_gamma.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>

#include "support/capture.h"

namespace quarnel {
namespace {

// Measurements of a primary whose every column follows (level / 255)^gamma.
ToneChannel PowerLawTone(const double (&full)[3], const double (&gamma)[3]) {
    ToneChannel tone{};
    for (std::size_t j = 0; j < kToneLevels.size(); ++j)
        for (std::size_t c = 0; c < 3; ++c) tone[j * 3 + c] = full[c] * std::pow(kToneLevels[j] / 255.0, gamma[c]);
    return tone;
}

ToneModel PowerLawPanel(double red, double green, double blue) {
    ToneModel m;
    m.levelCount = kToneLevelCount;
    m.levels = kToneLevels;
    m.toneR = PowerLawTone({41.24, 21.26, 1.93}, {red, red, red});
    m.toneG = PowerLawTone({35.76, 71.52, 11.92}, {green, green, green});
    m.toneB = PowerLawTone({18.05, 7.22, 95.05}, {blue, blue, blue});
    m.toneModelReady = 1;
    return m;
}

// Worked out separately by a brute-force search over every drive code of the
// interpolated response for the nearest match to the target curve, then the
// black ramp up to the first code above 30 (entries 0..25 for a 2.2 panel).
// Given as the step from each entry to the next, starting at 0.
const std::string kPowerLaw22ToSrgbSteps =
    "01121112111211121112111211111101111111011111111110111111111110111111111111111111101111"
    "11111111111011111111110111111111111111111111111111111111111111111110111111111111111121"
    "111111111111111111011111111112111111111111111111111111111111111111111111112111111111";
const std::string kPowerLaw18ToSrgbSteps =
    "01101111101111011111011110111101111101101101011011011011011111111111111011111111011111"
    "11101111111101111101121111111111111111101111111111111111111211111211111111111211111111"
    "111121111111211121111112111111211111211111211112112111211112111121112111121112111121";

std::string Build(ToneModel& m) {
    return test::CaptureStdout([&] { EXPECT_EQ(BuildFactoryGammaTable(m), 0); });
}

TEST(BuildFactoryGammaTable, PowerLawPanelMatchesTheWorkedTables) {
    ToneModel m = PowerLawPanel(2.2, 1.8, 2.2);
    EXPECT_EQ(Build(m), "V3");
    EXPECT_EQ(m.blackThreshold, 30);
    int32_t v22 = 0, v18 = 0;
    for (std::size_t i = 0; i < 256; ++i) {
        v22 += kPowerLaw22ToSrgbSteps[i] - '0';
        v18 += kPowerLaw18ToSrgbSteps[i] - '0';
        EXPECT_EQ(m.gammaTable[i], (std::array<int32_t, 3>{v22, v18, v22})) << i;
    }
    // Against a pure 2.2 power law the table is the identity except for inputs
    // 79..92, around the join of the quadratic segment and the next one.
    m.targetGamma = 2.2;
    Build(m);
    const std::map<int, int32_t> bent{{79, 80}, {80, 81}, {81, 82}, {82, 83}, {83, 84}, {84, 85},
                                      {88, 89}, {89, 90}, {90, 91}, {91, 92}, {92, 93}};
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(m.gammaTable[static_cast<std::size_t>(i)][0], bent.count(i) ? bent.at(i) : i) << i;
}

TEST(FitChannelExponents, FindsEachColumnsPowerLaw) {
    EXPECT_EQ(FitChannelExponents(PowerLawTone({40.0, 20.0, 2.0}, {1.8, 2.2, 2.5})), (ColumnExponents{1.8, 2.2, 2.5}));
}

TEST(BuildResponseCurve, PassesThroughTheMeasurementsWithItsSegmentShapes) {
    const ToneChannel tone = PowerLawTone({1.0, 2.0, 4.0}, {2.2, 2.2, 2.2});
    const ResponseCurve curve = BuildResponseCurve(tone);
    for (std::size_t j = 0; j < kToneLevels.size(); ++j)
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_DOUBLE_EQ(curve[static_cast<std::size_t>(kToneLevels[j])][c], tone[j * 3 + c]);
    const double p1 = tone[3], p2 = tone[6];
    // code 21: t = half-up(127.5) / 255 = 128 / 255 on the 2.2 power
    EXPECT_DOUBLE_EQ(curve[21][0], std::pow(128.0 / 255.0, 2.2) * p1);
    // code 43: t = half-up(255 / 44) = 6 on the quadratic of the 0..255 scale
    EXPECT_DOUBLE_EQ(curve[43][0], p1 + (6e-06 * 36 + 0.002305 * 6 + 0.000799) * (p2 - p1));
    EXPECT_DOUBLE_EQ(curve[85][0], p1 + (6e-06 * 249 * 249 + 0.002305 * 249 + 0.000799) * (p2 - p1));
}

void ExpectDriveCodes(const ColumnLookup& table, const char* name) {
    for (const auto& entry : table)
        for (int32_t v : entry) {
            EXPECT_GE(v, 0) << name;
            EXPECT_LE(v, 255) << name;
        }
}

TEST(BuildFactoryGammaTable, DegenerateMeasurementsStillGiveDriveCodes) {
    static constexpr double inf = std::numeric_limits<double>::infinity();
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* name;
        void (*spoil)(ToneModel&);
    } cases[] = {
        {"all zero", [](ToneModel& m) { m.toneR.fill(0.0), m.toneG.fill(0.0), m.toneB.fill(0.0); }},
        {"zero full drive", [](ToneModel& m) { m.toneG[18] = m.toneG[19] = m.toneG[20] = 0.0; }},
        {"infinite", [](ToneModel& m) { m.toneR[20] = inf, m.toneB[4] = -inf; }},
        {"not a number", [](ToneModel& m) { m.toneR[10] = nan, m.toneG[20] = nan; }},
        {"negative",
         [](ToneModel& m) {
             for (auto& v : m.toneB) v = -v;
         }},
    };
    for (const auto& tc : cases) {
        ToneModel m = PowerLawPanel(2.2, 2.2, 2.2);
        tc.spoil(m);
        Build(m);
        ExpectDriveCodes(m.gammaTable, tc.name);
    }
    ToneModel zero;
    Build(zero);
    for (const auto& entry : zero.gammaTable) EXPECT_EQ(entry, (std::array<int32_t, 3>{0, 0, 0}));
}

TEST(InvertResponseCurve, KeepsStartingCodesInsideTheCurve) {
    ResponseCurve curve;
    for (std::size_t k = 0; k < curve.size(); ++k) curve[k].fill(static_cast<double>(k));
    // a negative target exponent makes level 0 infinite; exponent 0 sends the start to 0 or 255
    ExpectDriveCodes(InvertResponseCurve(curve, {2.2, 0.0, 2.2}, -1.0), "inverted");
}

}  // namespace
}  // namespace quarnel
