// SPDX-License-Identifier: MIT
#include "color/factory_gamma.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "support/capture.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::Row;

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

template <typename Table>
std::string Rows(const Table& table) {
    std::string text;
    for (std::size_t i = 0; i < table.size(); ++i) text += Row(i, table[i][0], table[i][1], table[i][2]);
    return text;
}

// The first table was checked against a brute-force search over every drive code of the interpolated response
// for the nearest match to the target curve, with the black ramp up to the first code above 30.
TEST(BuildFactoryGammaTable, PowerLawAndDegeneratePanels) {
    static constexpr double inf = std::numeric_limits<double>::infinity();
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* name;
        void (*change)(ToneModel&);
    } cases[] = {
        {"power law 2.2 1.8 2.2 to sRGB", [](ToneModel& m) { m = PowerLawPanel(2.2, 1.8, 2.2); }},
        {"power law to a 2.2 target", [](ToneModel& m) { m.targetGamma = 2.2; }},
        {"all zero", [](ToneModel& m) { m.toneR.fill(0.0), m.toneG.fill(0.0), m.toneB.fill(0.0); }},
        {"zero full drive", [](ToneModel& m) { m.toneG[18] = m.toneG[19] = m.toneG[20] = 0.0; }},
        {"infinite", [](ToneModel& m) { m.toneR[20] = inf, m.toneB[4] = -inf; }},
        {"not a number", [](ToneModel& m) { m.toneR[10] = nan, m.toneG[20] = nan; }},
        {"negative",
         [](ToneModel& m) {
             for (auto& v : m.toneB) v = -v;
         }},
        {"empty model", [](ToneModel& m) { m = ToneModel{}; }},
    };
    std::string text;
    for (const auto& tc : cases) {
        ToneModel m = PowerLawPanel(2.2, 2.2, 2.2);
        tc.change(m);
        int32_t status = -9;
        const std::string printed = test::CaptureStdout([&] { status = BuildFactoryGammaTable(m); });
        text += Row("==", tc.name, status, printed, m.blackThreshold) + Rows(m.gammaTable);
    }
    text += Row("== response curve") + Rows(BuildResponseCurve(PowerLawTone({1.0, 2.0, 4.0}, {2.2, 2.2, 2.2})));
    ResponseCurve linear;
    for (std::size_t k = 0; k < linear.size(); ++k) linear[k].fill(static_cast<double>(k));
    // a negative target exponent makes level 0 infinite; exponent 0 sends the start to 0 or 255
    text += Row("== inverted") + Rows(InvertResponseCurve(linear, {2.2, 0.0, 2.2}, -1.0));
    test::ExpectGolden("factory_gamma.txt", text);
}

TEST(FitChannelExponents, FindsEachColumnsPowerLaw) {
    EXPECT_EQ(FitChannelExponents(PowerLawTone({40.0, 20.0, 2.0}, {1.8, 2.2, 2.5})), (ColumnExponents{1.8, 2.2, 2.5}));
}

}  // namespace
}  // namespace quarnel
