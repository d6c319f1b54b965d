// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "lut/compose.h"
#include "lut/improve.h"
#include "lut/sample_luts.h"
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

std::string Improve(int32_t biosVer, Lut16& lut, StepByteFetch fetch) {
    return test::CaptureStdout([&] { EXPECT_EQ(LutImprove(biosVer, {}, lut.data(), fetch), 0); });
}

// A ramp with a bump at 16 and a drop at the top tells the grids apart.
Lut8 Bumpy() {
    Lut8 t = Ramp8(64);
    t[16] = {100, 100, 100};
    t[255] = {129, 129, 129};
    return t;
}

std::vector<int32_t> gScript;
std::size_t gCalls = 0;

int32_t ScriptedFetch(const CalibrationSource&, uint8_t& step) { return step = 32, gScript[gCalls++]; }

TEST(LutImprove, StepFetchRetriesOnceAfterMinusOne) {
    const struct {
        std::vector<int32_t> script;
        bool used;
    } cases[] = {{{0}, true}, {{-1, 0}, true}, {{-1, -2}, true}, {{-2}, false}, {{-1, -1}, false}};
    for (const auto& tc : cases) {
        gScript = tc.script;
        gCalls = 0;
        Lut16 lut = Widen(Bumpy(), 7);
        test::DebugCapture debug;
        EXPECT_EQ(Improve(7, lut, ScriptedFetch),
                  tc.used ? "; VOK: Get bios[297]: 32\n " : "GetBIOSData() failed!!!\n");
        EXPECT_EQ(gCalls, tc.script.size());
        EXPECT_EQ(lut[LutIndex(2, 8)], tc.used ? 50 * 256 : 8 * 256 + 7);
        EXPECT_EQ(lut[LutIndex(2, 15)], tc.used ? 94 * 256 : 15 * 256 + 7);  // the grid of 16 reaches entry 15
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

// Every 16-bit entry of a scaled map picks half-up(entry / 65280 x 255), held at 255.
TEST(ComposeLut, ScaledMapIndexOfEveryEntry) {
    Lut16 map, base, out;
    for (int i = 0; i < 768; ++i) base[i] = static_cast<uint16_t>(i % 256);
    for (int first = 0; first < 65536; first += 768) {
        for (int i = 0; i < 768; ++i) map[i] = static_cast<uint16_t>(std::min(first + i, 65535));
        ComposeLut(0, map.data(), base.data(), out.data());
        for (int i = 0; i < 768; ++i)
            ASSERT_EQ(out[i], std::min(static_cast<int>(map[i] / 65280.0 * 255.0 + 0.5), 255));
    }
}

}  // namespace
}  // namespace quarnel
