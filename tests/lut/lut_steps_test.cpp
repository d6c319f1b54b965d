// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "lut/compose.h"
#include "lut/improve.h"
#include "lut/sample_luts.h"
#include "lut/vivid.h"
#include "support/capture.h"

namespace quarnel {
namespace {

Lut8 Ramp8(int at64) {
    Lut8 t{};
    for (int i = 0; i < 256; ++i) t[i] = {i, i, i};
    t[64] = {at64, at64, at64};
    return t;
}

// The 8-bit table as a Lut16 with low bytes that a successful improvement drops.
Lut16 Widen(const Lut8& t, int low) {
    Lut16 lut{};
    for (int i = 0; i < 256; ++i)
        for (int c = 0; c < 3; ++c) lut[LutIndex(c, i)] = static_cast<uint16_t>(t[i][c] * 256 + low);
    return lut;
}

std::string Improve(const CctContext& ctx, Lut16& lut, StepByteFetch fetch) {
    return test::CaptureStdout([&] { EXPECT_EQ(LutImprove(ctx, lut.data(), fetch), 0); });
}

TEST(LutImprove, SmoothsTheDarkEndIntoARampThatMeetsEntry64) {
    const struct {
        int at64;
        std::vector<int> head;  // entries 0..20; none: smoothing fails and the LUT stays as it was
    } cases[] = {{70, {0, 2, 3, 4, 6, 7, 8, 10, 11, 12, 13, 15, 16, 17, 19, 20, 21, 23, 24, 25, 26}},
                 {58, {0, 0, 1, 2, 2, 3, 4, 4, 5, 6, 7, 7, 8, 9, 9, 10, 11, 11, 12, 13, 14}},
                 {64, {}}};
    for (const auto& tc : cases) {
        Lut16 lut = Widen(Ramp8(tc.at64), 255);  // entry 255 at 65535
        const bool failed = Improve(CctContext{}, lut, nullptr).ends_with("; VOK: LutSmooth8Bit() failed!!!\n");
        EXPECT_EQ(failed, tc.head.empty());
        for (int i = 0; i < 256; ++i) {
            int want = i * 256 + 255;  // as it was
            if (!tc.head.empty()) want = 256 * (i > 64 ? i : (i > 20 ? tc.head[20] + i - 20 : tc.head[i]));
            for (int c = 0; c < 3; ++c) ASSERT_EQ(lut[LutIndex(c, i)], want) << tc.at64 << " entry " << i;
        }
    }
}

TEST(LutSmooth8Bit, FailsOrKeepsAChannelWithoutAUsablePoint) {
    Lut8 far = Ramp8(70), shallow = Ramp8(64), out{};
    for (int i = 1; i <= 64; ++i) far[i][1] = i + 13;  // green strays everywhere
    for (int i = 26; i <= 64; ++i) shallow[i] = {i + 20, i + 20, i + 20};
    shallow[25] = {30, 30, 30};  // close only at entry 25
    const std::string printed = test::CaptureStdout([&] {
        EXPECT_EQ(LutSmooth8Bit(far, out), 2);
        EXPECT_EQ(LutSmooth8Bit(shallow, out), 0);
    });
    EXPECT_EQ(out, shallow);
    EXPECT_TRUE(
        printed.ends_with("smoothLv = 25\nscatterLv = 20\ndiff = 5\nlut type: 1\n"
                          "smoothLv < SMOOTH_LEVEL_MIN(30), no change lut!!!\n"));
}

// A ramp with a bump at 16 and a drop at the top tells the grids apart.
Lut8 Bumpy() {
    Lut8 t = Ramp8(64);
    t[16] = {100, 100, 100};
    t[255] = {129, 129, 129};
    return t;
}

TEST(LutLinInterp8Bit, InterpolatesBetweenEveryStepthEntry) {
    const int cases[][3] = {{16, 8, 50},  {16, 24, 66},   {16, 248, 181}, {0, 24, 66},    {200, 24, 66},
                            {32, 8, 50},  {32, 16, 16},   {32, 24, 24},   {64, 8, 50},    {64, 16, 16},
                            {64, 64, 64}, {64, 160, 160}, {64, 224, 160}, {64, 254, 130}, {64, 255, 129}};
    for (const auto& [step, entry, want] : cases) {
        Lut8 out = Bumpy();
        EXPECT_EQ(LutLinInterp8Bit(step, Bumpy(), out), 0);
        for (int c = 0; c < 3; ++c) EXPECT_EQ(out[entry][c], want) << step << " entry " << entry;
    }
}

std::vector<int32_t> gScript;
std::size_t gCalls = 0;

int32_t ScriptedFetch(const CctContext&, uint8_t& step) { return step = 32, gScript[gCalls++]; }

TEST(LutImprove, StepFetchRetriesOnceAfterMinusOne) {
    const struct {
        std::vector<int32_t> script;
        bool used;
    } cases[] = {{{0}, true}, {{-1, 0}, true}, {{-1, -2}, true}, {{-2}, false}, {{-1, -1}, false}};
    CctContext ctx{};
    ctx.biosVer = 7;
    for (const auto& tc : cases) {
        gScript = tc.script;
        gCalls = 0;
        Lut16 lut = Widen(Bumpy(), 7);
        test::DebugCapture debug;
        EXPECT_EQ(Improve(ctx, lut, ScriptedFetch),
                  tc.used ? "; VOK: Get bios[297]: 32\n " : "GetBIOSData() failed!!!\n");
        EXPECT_EQ(gCalls, tc.script.size());
        EXPECT_EQ(lut[LutIndex(2, 8)], tc.used ? 50 * 256 : 8 * 256 + 7);
        EXPECT_EQ(debug.joined(), std::wstring(L"; VOK: ##Enter LutImprove()##\nVOK: Enter GetBIOSData()\n"
                                               L"VOK: Enter GetBIOSDataManual()\n") +
                                      (tc.used ? L"VOK: Exit GetBIOSDataManual()\n" : L""));
    }
}

// Planes that differ, so that a mixed-up plane shows.
const Lut16 kPanel = test::PanelLikeLut();

TEST(ComposeLut, ReindexesEveryPlaneThroughTheMap) {
    const int cases[][3] = {{0, 0, 0},       {0, 127, 0}, {1, 128, 1},   {1, 32640, 128}, {0, 65280, 255},
                            {1, 65535, 255}, {2, 3, 3},   {2, 300, 255}, {3, 5, -1},      {7, 5, -1}};
    for (const auto& [kind, entry, index] : cases) {  // index -1: the entry's own level
        Lut16 map, out = kPanel;
        map.fill(static_cast<uint16_t>(entry));
        EXPECT_EQ(ComposeLut(static_cast<uint32_t>(kind), map.data(), out.data(), out.data()), index < 0 ? 1 : 0);
        for (int c = 0; c < 3; ++c)
            for (int i = 0; i < 256; ++i) ASSERT_EQ(out[LutIndex(c, i)], kPanel[LutIndex(c, index < 0 ? i : index)]);
    }
}

TEST(ApplyGainClamped, HalfUpIndexHeldInsideThePlane) {
    const double cases[][3] = {{0.5, 3, 2},  {0.5, 255, 128}, {0.3, 5, 2},       {2.0, 200, 255},
                               {-1.0, 9, 0}, {NAN, 9, 0},     {INFINITY, 1, 255}};
    for (const auto& [g, level, index] : cases) {
        const double gain[3] = {g, g, g};
        Lut16 out{};
        ApplyGainClamped(gain, kPanel.data(), out.data());
        for (int c = 0; c < 3; ++c) EXPECT_EQ(out[LutIndex(c, int(level))], kPanel[LutIndex(c, int(index))]) << g;
    }
}

TEST(VividCurve, IdentityBelow50ThenLifted) {
    const Lut16 curve = BuildVividCurve();
    const int levels[][2] = {{0, 0}, {49, 49}, {50, 50}, {100, 108}, {150, 166}, {200, 217}, {255, 255}};
    for (const auto& [level, value] : levels)
        for (int c = 0; c < 3; ++c) EXPECT_EQ(curve[LutIndex(c, level)], value * 256) << level;
}

}  // namespace
}  // namespace quarnel
