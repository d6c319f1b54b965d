// SPDX-License-Identifier: MIT
// LUT steps over seeded random panel curves: what each driver form gives
// back, brightness control at full scale, the division-free quotient by
// the full scale, and the margin that lets the sRGB-folded table round to
// nearest.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "core/full_scale.h"
#include "core/lut16.h"
#include "core/srgb.h"
#include "lut/bright_ctrl.h"
#include "lut/convert.h"
#include "lut/convert_taps.h"
#include "support/capture.h"

namespace quarnel {
namespace {

// Rising planes, each a power law of exponent 0.7..1.4 reaching 60..100 % of
// 8-bit full scale, with a random low byte.
Lut16 RandomCurve(std::mt19937& rng) {
    std::uniform_real_distribution<double> exponent(0.7, 1.4), top(0.6, 1.0);
    std::uniform_int_distribution<int> low(0, 255);
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c) {
        const double g = exponent(rng), peak = top(rng) * kLutFullScale;
        for (int i = 1; i < kLutLevels; ++i)
            lut[LutIndex(c, i)] =
                static_cast<uint16_t>(std::max(0.0, std::pow(i / kTopLevelScale, g) * peak - low(rng) % 64));
    }
    return lut;
}

TEST(LutProperty, DriverFormsGiveTheCurveBackAndFullScaleKeepsIt) {
    std::mt19937 rng(17);
    for (int n = 0; n < 50; ++n) {
        const Lut16 lut = RandomCurve(rng);
        for (int32_t type = 0; type <= 5; ++type) {
            Lut16 out = lut;
            test::CaptureStdout([&] { LutBrightCtrl(out.data(), static_cast<uint32_t>(type), 1.0); });
            ASSERT_EQ(out, lut) << type;
        }
        Lut16 out16 = lut;
        std::array<double, kLutEntries> igcl{};
        std::vector<float> nv(2 * kNvFloatsPerArray);
        auto convert = [&](int32_t type) {
            return LutConvert(type, lut.data(), out16.data(), 256, igcl.data(), 256, nv.data(), 1024);
        };
        test::CaptureStdout([&] { convert(0), convert(4); });
        ASSERT_EQ(out16, lut);  // plain 16-bit: the curve itself
        for (int k = 0; k < kLutEntries; ++k) ASSERT_EQ(std::lround(igcl[k] * kLutFullScale), lut[k]);
    }
}

// The NVIDIA post-gamma floats against a plain reading of the conversion
// (each level re-sampled through the sRGB encoding and divided by the full
// scale, each point interpolated in double and stored as float), bit for
// bit on random tables, rising and not.
TEST(LutProperty, NvidiaPostGammaIsThePlainConversionBitForBit) {
    std::mt19937 rng(3);
    std::uniform_int_distribution<int> entry(0, 65535);
    std::vector<float> nv(2 * kNvFloatsPerArray);
    Lut16 lut, out16;
    std::array<double, kLutEntries> igcl{};
    double level[kLutPlanes][kLutLevels];
    int differing = 0;
    test::CaptureStdout([&] {
        for (int n = 0; n < 3000; ++n) {
            for (auto& e : lut) e = static_cast<uint16_t>(entry(rng));
            for (int c = 0; c < kLutPlanes && n % 2 != 0; ++c)
                std::sort(lut.begin() + LutIndex(c, 0), lut.begin() + LutIndex(c + 1, 0));
            LutConvert(2, lut.data(), out16.data(), 256, igcl.data(), 256, nv.data(), 1024);
            for (int i = 0; i < kLutLevels; ++i) {
                const double p = SrgbEncode(i / kTopLevelScale) * kTopLevelScale;
                const double lo = std::clamp(std::floor(p), 0.0, kTopLevelScale);
                const double hi = std::min(kTopLevelScale, std::ceil(p));
                for (int c = 0; c < kLutPlanes; ++c) {
                    const double a = lut[LutIndex(c, static_cast<int>(lo))], b = lut[LutIndex(c, static_cast<int>(hi))];
                    level[c][i] = (a + (b - a) * (hi != lo ? p - lo : 0.0)) / kLutFullScale;
                }
            }
            for (int j = 0; j < kNvPoints; ++j) {
                const auto q = static_cast<float>(j * kTopLevelScale / kNvTopScale);
                const float lo = std::floor(q), hi = std::ceil(q);
                const double f = (q - lo) / (hi != lo ? hi - lo : 1.0f);
                for (int c = 0; c < kLutPlanes; ++c) {
                    const double a = level[c][static_cast<int>(lo)], b = level[c][static_cast<int>(hi)];
                    differing += static_cast<float>(a + (b - a) * f) !=
                                 nv[kNvFloatsPerArray + static_cast<std::size_t>(j * 3 + c)];
                }
            }
        }
    });
    EXPECT_EQ(differing, 0);
}

// Every 16-bit entry, and values between entries with every kind of
// fraction, come out as the division rounds them; every entry as well
// through the form for whole entries.
TEST(LutProperty, DivisionFreeQuotientIsTheDivisionsBitForBit) {
    std::mt19937_64 rng(7);
    std::uniform_int_distribution<int> entry(0, 65535);
    std::uniform_real_distribution<double> fraction(0.0, 1.0);
    std::vector<double> xs;
    for (int x = 0; x <= 65535; ++x) xs.push_back(x);
    for (int n = 0; n < 1000000; ++n) {
        const double a = entry(rng), b = entry(rng);
        xs.push_back(a + (b - a) * fraction(rng));
    }
    int wrong = 0;
    for (double x : xs) {
        double q = x;
        DivideByFullScale(q);
        wrong += q != x / kLutFullScale;
    }
    for (int x = 0; x <= 65535; ++x) {
        double q = x;
        DivideEntryByFullScale(q);
        wrong += q != x / kLutFullScale;
    }
    EXPECT_EQ(wrong, 0);
}

// The sRGB-folded table rounds each re-sampled entry to the nearest
// integer rather than adding a half and truncating; the two agree while
// every rise (b - a) x f, over every level's fraction and every difference
// of two 16-bit entries, stays clear of half-integers.
TEST(LutProperty, ResampledRisesStayClearOfHalfIntegers) {
    double nearest = 1.0;
    for (const double f : convert::Srgb().f) {
        for (int d = -65535; d <= 65535; ++d) {
            const double rise = d * f;
            nearest = std::min(nearest, std::abs(rise - std::floor(rise) - 0.5));
        }
    }
    EXPECT_GT(nearest, 0x1p-30);
}

}  // namespace
}  // namespace quarnel
