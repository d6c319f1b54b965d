// SPDX-License-Identifier: MIT
// Ramps of CRTCs whose gamma size is not 256.

#include <gtest/gtest.h>

#include <vector>

#include "display/resample.h"
#include "model/curve.h"

namespace quarnel::tool::display {
namespace {

struct ResampleCase {
    std::vector<std::uint16_t> in;
    std::size_t size;
    std::vector<std::uint16_t> out;
};

TEST(Resample, InterpolatesLinearlyAndKeepsBothEnds) {
    const std::vector<ResampleCase> cases = {
        {{0, 65280}, 5, {0, 16320, 32640, 48960, 65280}},
        {{0, 1, 2, 100}, 7, {0, 1, 1, 2, 2, 51, 100}},  // halves round up
        {{10, 20, 30, 40, 50}, 3, {10, 30, 50}},
        {{900, 7, 65535}, 3, {900, 7, 65535}},
        {{7, 9}, 1, {9}},
    };
    for (const ResampleCase& c : cases) EXPECT_EQ(Resample(c.in, c.size), c.out) << c.size;
}

// A 10-bit CRTC read back: within one step of what was loaded.
TEST(Resample, UpAndDownAgainGivesTheCurveBack) {
    std::vector<std::uint16_t> curve(256);
    for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = static_cast<std::uint16_t>(i * i);
    const std::vector<std::uint16_t> back = Resample(Resample(curve, 1024), 256);
    for (std::size_t i = 0; i < curve.size(); ++i) EXPECT_NEAR(back[i], curve[i], 1) << i;
}

// Entries reach the 16-bit ramp as entry x 65535 / 65280 and come back exactly.
TEST(RampScale, EveryEntryComesBackAndTheIdentityFillsTheRamp) {
    for (int e = 0; e <= 65280; ++e) ASSERT_EQ(RampToEntry(EntryToRamp(static_cast<std::uint16_t>(e))), e);
    for (int i = 0; i < 256; ++i) EXPECT_EQ(EntryToRamp(static_cast<std::uint16_t>(i * 256)), i * 257);
    EXPECT_EQ(EntryToRamp(65535), 65535);
}

}  // namespace
}  // namespace quarnel::tool::display
