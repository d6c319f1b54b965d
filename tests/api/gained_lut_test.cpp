// SPDX-License-Identifier: MIT
// A gained table improved as it stands gives, bit for bit, what improving the whole gained table gives.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "api/gained_lut.h"
#include "lut/sample_luts.h"
#include "lut/vivid.h"
#include "support/capture.h"

namespace quarnel {
namespace {

uint8_t gStep = 0;
int32_t gFetchResult = 0;

int32_t FixedFetch(const CalibrationSource&, uint8_t& step) { return step = gStep, gFetchResult; }

TEST(GainedLut, ImprovesAsTheWholeGainedTable) {
    std::mt19937 rng(20261125);
    std::uniform_real_distribution<double> gain(-0.1, 1.2);
    std::uniform_int_distribution<int> step(0, 70);
    const double* levelSets[] = {LevelValues().data(), VividLevels().data()};
    test::CaptureStdout([&] {
        for (int round = 0; round < 400; ++round) {
            const Lut16 base = test::RandomTable(rng);
            const GainTriple gains{gain(rng), round % 7 == 0 ? std::nan("") : gain(rng), 1.0};
            const GainedLut gained(levelSets[round % 2], gains, base.data());
            const int32_t biosVer = round % 5 == 0 ? 5 : 7;
            gStep = static_cast<uint8_t>(step(rng));
            gFetchResult = round % 11 == 0 ? -2 : 0;

            Lut16 whole{};
            gained.Fill(whole.data());
            LutImprove(biosVer, {}, whole.data(), FixedFetch);
            Lut16 pending{};
            LutImprove(biosVer, {}, gained, pending.data(), FixedFetch);
            ASSERT_EQ(pending, whole) << "round " << round << ", version " << biosVer << ", step " << int{gStep};
        }
    });
}

}  // namespace
}  // namespace quarnel
