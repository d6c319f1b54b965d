#include "color/factory_gamma.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

#include "support/capture.h"

namespace quarnel {
namespace {

// Measurements of a primary whose every column follows (level / 255)^gamma.
ToneChannel PowerLawTone(const double (&full)[3], const double (&gamma)[3]) {
    ToneChannel tone{};
    for (int j = 0; j < kToneLevelCount; ++j)
        for (int c = 0; c < 3; ++c)
            tone[static_cast<std::size_t>(j * 3 + c)] =
                full[c] * std::pow(kToneLevels[static_cast<std::size_t>(j)] / 255.0, gamma[c]);
    return tone;
}

ToneModel PowerLawPanel(double redGamma, double greenGamma, double blueGamma) {
    ToneModel m;
    m.levelCount = kToneLevelCount;
    m.levels = kToneLevels;
    m.toneR = PowerLawTone({41.24, 21.26, 1.93}, {redGamma, redGamma, redGamma});
    m.toneG = PowerLawTone({35.76, 71.52, 11.92}, {greenGamma, greenGamma, greenGamma});
    m.toneB = PowerLawTone({18.05, 7.22, 95.05}, {blueGamma, blueGamma, blueGamma});
    m.toneModelReady = 1;
    return m;
}

// Worked out separately by a brute-force search over every drive code of the
// interpolated response for the nearest match to the target curve, then the
// black ramp up to the first code above 30.
constexpr int32_t kPowerLaw22ToSrgb[256] = {
    0,   1,   2,   4,   5,   6,   7,   9,   10,  11,  12,  14,  15,  16,  17,  19,  20,  21,  22,  24,  25,  26,
    27,  29,  30,  31,  32,  33,  34,  35,  35,  36,  37,  38,  39,  40,  41,  42,  42,  43,  44,  45,  46,  47,
    48,  49,  50,  51,  52,  52,  53,  54,  55,  56,  57,  58,  59,  60,  61,  62,  63,  63,  64,  65,  66,  67,
    68,  69,  70,  71,  72,  73,  74,  75,  76,  77,  78,  79,  80,  81,  82,  82,  83,  84,  85,  86,  87,  88,
    89,  90,  91,  92,  93,  94,  95,  96,  97,  97,  98,  99,  100, 101, 102, 103, 104, 105, 106, 107, 107, 108,
    109, 110, 111, 112, 113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123, 124, 125, 126, 127, 128, 129, 130,
    131, 132, 133, 134, 135, 136, 137, 138, 139, 140, 141, 142, 143, 144, 145, 146, 147, 148, 149, 150, 151, 151,
    152, 153, 154, 155, 156, 157, 158, 159, 160, 161, 162, 163, 164, 165, 166, 167, 169, 170, 171, 172, 173, 174,
    175, 176, 177, 178, 179, 180, 181, 182, 183, 184, 185, 186, 187, 188, 188, 189, 190, 191, 192, 193, 194, 195,
    196, 197, 198, 200, 201, 202, 203, 204, 205, 206, 207, 208, 209, 210, 211, 212, 213, 214, 215, 216, 217, 218,
    219, 220, 221, 222, 223, 224, 225, 226, 227, 228, 229, 230, 231, 232, 233, 234, 235, 236, 237, 238, 239, 240,
    241, 242, 243, 244, 246, 247, 248, 249, 250, 251, 252, 253, 254, 255};
constexpr int32_t kPowerLaw18ToSrgb[256] = {
    0,   1,   2,   2,   3,   4,   5,   6,   7,   7,   8,   9,   10,  11,  11,  12,  13,  14,  15,  16,  16,  17,
    18,  19,  20,  20,  21,  22,  23,  24,  24,  25,  26,  27,  28,  29,  29,  30,  31,  31,  32,  33,  33,  34,
    34,  35,  36,  36,  37,  38,  38,  39,  40,  40,  41,  42,  42,  43,  44,  45,  46,  47,  48,  49,  50,  51,
    52,  53,  54,  55,  56,  56,  57,  58,  59,  60,  61,  62,  63,  64,  64,  65,  66,  67,  68,  69,  70,  71,
    72,  72,  73,  74,  75,  76,  77,  78,  79,  80,  80,  81,  82,  83,  84,  85,  85,  86,  87,  89,  90,  91,
    92,  93,  94,  95,  96,  97,  98,  99,  100, 101, 102, 103, 104, 105, 106, 106, 107, 108, 109, 110, 111, 112,
    113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123, 124, 125, 127, 128, 129, 130, 131, 132, 134, 135, 136,
    137, 138, 139, 140, 141, 142, 143, 144, 145, 147, 148, 149, 150, 151, 152, 153, 154, 155, 156, 157, 158, 159,
    161, 162, 163, 164, 165, 166, 167, 168, 170, 171, 172, 173, 175, 176, 177, 178, 179, 180, 181, 183, 184, 185,
    186, 187, 188, 189, 191, 192, 193, 194, 195, 196, 198, 199, 200, 201, 202, 203, 205, 206, 207, 208, 209, 211,
    212, 213, 215, 216, 217, 218, 220, 221, 222, 223, 224, 226, 227, 228, 229, 230, 232, 233, 234, 235, 237, 238,
    239, 240, 241, 243, 244, 245, 246, 248, 249, 250, 251, 252, 254, 255};

std::string Build(ToneModel& m) {
    return test::CaptureStdout([&] { EXPECT_EQ(BuildFactoryGammaTable(m), 0); });
}

TEST(BuildFactoryGammaTable, PowerLawPanelMatchesTheWorkedTables) {
    ToneModel m = PowerLawPanel(2.2, 1.8, 2.2);
    EXPECT_EQ(Build(m), "V3");
    EXPECT_EQ(m.blackThreshold, 30);
    for (std::size_t i = 0; i < 256; ++i) {
        EXPECT_EQ(m.gammaTable[i][0], kPowerLaw22ToSrgb[i]) << i;
        EXPECT_EQ(m.gammaTable[i][1], kPowerLaw18ToSrgb[i]) << i;
        EXPECT_EQ(m.gammaTable[i][2], kPowerLaw22ToSrgb[i]) << i;
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

TEST(BuildFactoryGammaTable, BlackRampRisesStraightToTheFirstCodeAboveThirty) {
    ToneModel m = PowerLawPanel(2.2, 2.2, 2.2);
    Build(m);
    // 31 is first reached at input 25: entries 0..25 are half-up(j / 25 x 31)
    for (int j = 0; j <= 25; ++j)
        EXPECT_EQ(m.gammaTable[static_cast<std::size_t>(j)][0], static_cast<int32_t>(j * 31.0 / 25.0 + 0.5)) << j;
}

TEST(FitChannelExponents, FindsEachColumnsPowerLaw) {
    const ColumnExponents e = FitChannelExponents(PowerLawTone({40.0, 20.0, 2.0}, {1.8, 2.2, 2.5}));
    EXPECT_EQ(e[0], 1.8);
    EXPECT_EQ(e[1], 2.2);
    EXPECT_EQ(e[2], 2.5);
}

TEST(BuildResponseCurve, PassesThroughTheMeasurementsWithItsSegmentShapes) {
    const ToneChannel tone = PowerLawTone({1.0, 2.0, 4.0}, {2.2, 2.2, 2.2});
    const ResponseCurve curve = BuildResponseCurve(tone);
    for (std::size_t j = 0; j < kToneLevels.size(); ++j)
        for (int c = 0; c < 3; ++c)
            EXPECT_DOUBLE_EQ(curve[static_cast<std::size_t>(kToneLevels[j])][static_cast<std::size_t>(c)],
                             tone[j * 3 + static_cast<std::size_t>(c)]);
    const double p1 = tone[3], p2 = tone[6];
    // code 21: t = half-up(127.5) / 255 = 128 / 255 on the 2.2 power
    EXPECT_DOUBLE_EQ(curve[21][0], std::pow(128.0 / 255.0, 2.2) * p1);
    // code 43: t = half-up(255 / 44) = 6 on the quadratic of the 0..255 scale
    EXPECT_DOUBLE_EQ(curve[43][0], p1 + (6e-06 * 36 + 0.002305 * 6 + 0.000799) * (p2 - p1));
    EXPECT_DOUBLE_EQ(curve[85][0], p1 + (6e-06 * 249 * 249 + 0.002305 * 249 + 0.000799) * (p2 - p1));
}

TEST(BuildFactoryGammaTable, DegenerateMeasurementsStillGiveDriveCodes) {
    static constexpr double inf = std::numeric_limits<double>::infinity();
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* name;
        void (*spoil)(ToneModel&);
    } cases[] = {
        {"all zero",
         [](ToneModel& m) {
             m.toneR.fill(0.0);
             m.toneG.fill(0.0);
             m.toneB.fill(0.0);
         }},
        {"zero full drive", [](ToneModel& m) { m.toneG[18] = m.toneG[19] = m.toneG[20] = 0.0; }},
        {"infinite",
         [](ToneModel& m) {
             m.toneR[20] = inf;
             m.toneB[4] = -inf;
         }},
        {"not a number",
         [](ToneModel& m) {
             m.toneR[10] = nan;
             m.toneG[20] = nan;
         }},
        {"negative",
         [](ToneModel& m) {
             for (auto& v : m.toneB) v = -v;
         }},
    };
    for (const auto& tc : cases) {
        ToneModel m = PowerLawPanel(2.2, 2.2, 2.2);
        tc.spoil(m);
        Build(m);
        for (const auto& entry : m.gammaTable)
            for (int32_t v : entry) {
                EXPECT_GE(v, 0) << tc.name;
                EXPECT_LE(v, 255) << tc.name;
            }
    }
    ToneModel zero;
    Build(zero);
    for (const auto& entry : zero.gammaTable) EXPECT_EQ(entry, (std::array<int32_t, 3>{0, 0, 0}));
}

TEST(InvertResponseCurve, KeepsStartingCodesInsideTheCurve) {
    ResponseCurve curve;
    for (std::size_t k = 0; k < curve.size(); ++k) curve[k].fill(static_cast<double>(k));
    // a negative target exponent makes level 0 infinite; exponent 0 sends the start to 0 or 255
    const ColumnLookup lookup = InvertResponseCurve(curve, {2.2, 0.0, 2.2}, -1.0);
    for (const auto& entry : lookup)
        for (int32_t v : entry) {
            EXPECT_GE(v, 0);
            EXPECT_LE(v, 255);
        }
}

}  // namespace
}  // namespace quarnel
