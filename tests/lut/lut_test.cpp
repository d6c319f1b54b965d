// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

#include "lut/bright_ctrl.h"
#include "lut/convert.h"
#include "lut/default_lut.h"
#include "lut/improve.h"
#include "lut/sample_luts.h"
#include "platform/utf8.h"
#include "support/capture.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::Row;

// The three outputs of a LUT step, filled with marks that show every entry written.
struct Outputs {
    std::vector<uint16_t> lut = std::vector<uint16_t>(768, 0xABCD);
    std::vector<double> igcl = std::vector<double>(768, -7.0);
    std::vector<float> nv = std::vector<float>(6144, -7.0f);
    Outputs() = default;
    explicit Outputs(const Lut16& in) : lut(in.begin(), in.end()) {}
};

// One call's status, both message channels and outputs as golden-file text.
std::string Transcript(const std::string& title, Outputs& o, const std::function<int32_t()>& call) {
    test::DebugCapture debug;
    int32_t status = 0;
    const std::string printed = test::CaptureStdout([&] { status = call(); });
    std::string text =
        Row("==", title.substr(0, title.find('\n')), "status", status) + printed + platform::ToUtf8(debug.joined());
    for (int i = 0; i < kLutLevels; ++i)
        text += Row(i, o.lut[LutIndex(0, i)], o.lut[LutIndex(1, i)], o.lut[LutIndex(2, i)], o.igcl[LutIndex(0, i)],
                    o.igcl[LutIndex(1, i)], o.igcl[LutIndex(2, i)]);
    for (std::size_t j : {0, 1, 41, 42, 500, 512, 1022, 1023})
        text += Row("nv", j, o.nv[j * 3], o.nv[j * 3 + 1], o.nv[j * 3 + 2], o.nv[3072 + j * 3], o.nv[3072 + j * 3 + 1],
                    o.nv[3072 + j * 3 + 2]);
    return text;
}

TEST(GetDefaultLut, EveryType) {
    std::string text;
    for (int32_t type : {0, 1, 2, 3, 4, 5, 6, -1, 1000}) {
        Outputs o;
        text += Transcript(std::to_string(type), o,
                           [&] { return GetDefaultLut(type, o.lut.data(), o.igcl.data(), o.nv.data()); });
    }
    test::ExpectGolden("default_lut.txt", text);
}

TEST(LutConvert, EveryTypeAndEveryNullOutput) {
    std::string text;
    const Lut16 panel = test::PanelLikeLut();
    for (int32_t type : {0, 1, 2, 3, 4, 5, 6, -1}) {
        Outputs o(panel);  // converted in place
        text += Transcript(std::to_string(type), o, [&] {
            return LutConvert(type, o.lut.data(), o.lut.data(), 256, o.igcl.data(), 256, o.nv.data(), 1024);
        });
    }
    for (int32_t type : {0, 1, 2, 3, 4})
        for (int missing = 0; missing < 4; ++missing) {
            Outputs o;
            auto keep = [&](auto* p, int which) { return missing == which ? nullptr : p; };
            text += Transcript(Row(type, "null", missing), o, [&] {
                return LutConvert(type, keep(panel.data(), 0), keep(o.lut.data(), 1), 256, keep(o.igcl.data(), 2), 256,
                                  keep(o.nv.data(), 3), 1024);
            });
        }
    test::ExpectGolden("lut_convert.txt", text);
}

Lut16 Brightened(Lut16 lut, uint32_t type, double scale) {
    test::CaptureStdout([&] { LutBrightCtrl(lut.data(), type, scale); });
    return lut;
}

Lut16 Ramp(int (*value)(int plane, int level)) {
    Lut16 lut{};
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i) lut[LutIndex(c, i)] = static_cast<uint16_t>(value(c, i));
    return lut;
}

TEST(LutBrightCtrl, ThresholdsLiftsAndEdges) {
    Lut16 dim = test::PanelLikeLut();
    for (auto& v : dim) v = static_cast<uint16_t>(v * 3 / 10);
    const struct {
        const char* name;
        Lut16 lut;
        uint32_t type;
        double scale;
    } cases[] = {
        {"panel", test::PanelLikeLut(), 0, 1.0},
        {"panel", test::PanelLikeLut(), 3, 1.5},
        {"panel", test::PanelLikeLut(), 4, 1.0},
        {"panel", test::PanelLikeLut(), 0, 0.7},
        {"panel", test::PanelLikeLut(), 3, 0.7},
        {"green steps at 210", Ramp([](int c, int i) { return c != 1    ? i * 256
                                                              : i < 210 ? 13000
                                                                        : 40000; }), 3, 0.7},
        {"peak at 0.4", Ramp([](int, int i) { return i * 256 * 4 / 10; }), 3, 1.0},
        {"dim panel", dim, 3, 0.5},
        {"zero green", Ramp([](int c, int i) { return c == 1 ? 0 : i * 256; }), 3, 1.0},
        {"negative index", Ramp([](int c, int i) { return 100 + c + i; }), 0, 0.0},
        {"identity", test::IdentityLut(), 3, 0.25},
    };
    std::string text;
    for (const auto& tc : cases) {
        Outputs o(tc.lut);
        text += Transcript(Row(tc.name, tc.type, tc.scale), o,
                           [&] { return LutBrightCtrl(o.lut.data(), tc.type, tc.scale); });
    }
    test::ExpectGolden("lut_bright.txt", text);
}

// The green search stops at the first entry whose share of the full scale, in single precision, exceeds 0.2.
TEST(LutBrightCtrl, SearchStopsExactlyAtTheLimit) {
    unsigned first = 0;
    while (!(static_cast<double>(static_cast<float>(first / 65280.0)) > 0.2)) ++first;
    for (const unsigned at150 : {first - 1, first}) {
        Lut16 lut = Ramp([](int c, int i) { return c == 1 ? 0 : i * 256; });
        std::fill_n(&lut[LutIndex(1, 0)], kLutLevels, static_cast<uint16_t>(first - 1));
        lut[LutIndex(1, 150)] = static_cast<uint16_t>(at150);
        const double th = at150 == first ? static_cast<double>(150.0f) / 255.0 : 0.1;  // the threshold found, or not
        const double k = (0.7 - 0.4) * (1.0 - th) / 0.6 + th;
        EXPECT_EQ(Brightened(lut, 0, 0.7)[LutIndex(0, 255)], static_cast<int>(255 * k + 0.5) * 256);
    }
}

// sRGB entries from the published curve; brightness entries worked out by hand from the green threshold search.
TEST(LutSteps, EntriesWorkedOutIndependently) {
    Outputs srgb;
    GetDefaultLut(1, srgb.lut.data(), srgb.igcl.data(), srgb.nv.data());
    Outputs cv(test::PanelLikeLut());
    test::CaptureStdout(
        [&] { LutConvert(1, cv.lut.data(), cv.lut.data(), 256, cv.igcl.data(), 256, cv.nv.data(), 1024); });
    const Lut16 low = Brightened(test::PanelLikeLut(), 0, 0.7), high = Brightened(test::PanelLikeLut(), 3, 0.7);
    const struct {
        const uint16_t* lut;
        int level;
        std::array<uint16_t, 3> rgb;
    } cases[] = {
        {srgb.lut.data(), 1, {3266, 3266, 3266}},    {srgb.lut.data(), 128, {48276, 48276, 48276}},
        {cv.lut.data(), 1, {2484, 3177, 3283}},      {cv.lut.data(), 128, {44935, 46961, 48294}},
        {cv.lut.data(), 254, {65140, 63640, 65425}}, {low.data(), 100, {12435, 15000, 15432}},
        {low.data(), 255, {35536, 38500, 39578}},    {high.data(), 100, {19328, 22500, 23148}},
        {high.data(), 255, {57443, 57500, 59128}},
    };
    for (const auto& tc : cases)
        EXPECT_EQ(
            (std::array{tc.lut[LutIndex(0, tc.level)], tc.lut[LutIndex(1, tc.level)], tc.lut[LutIndex(2, tc.level)]}),
            tc.rgb)
            << tc.level;
}

// A point of a step-interpolated plane exactly on a half of a level takes the whole part the line of doubles gives
// it: where the slope is no exact double (a span of 14 or 24, not of 32), that can be the level below.
TEST(LutLinInterp8Bit, PointsOnAHalfFollowTheLineOfDoubles) {
    const struct {
        int step, from, fromLevel, toLevel, point, level;
    } cases[] = {
        {14, 28, 0, 61, 35, 30},
        {14, 28, 29, 0, 35, 14},
        {24, 24, 0, 196, 39, 122},
        {32, 32, 0, 61, 48, 31},
    };
    for (const auto& tc : cases) {
        std::array<uint16_t, kLutLevels> plane{};
        plane[static_cast<std::size_t>(tc.from)] = static_cast<uint16_t>(tc.fromLevel * 256);
        plane[static_cast<std::size_t>(tc.from + tc.step)] = static_cast<uint16_t>(tc.toLevel * 256);
        LutLinInterp8Bit(tc.step, plane.data());
        EXPECT_EQ(plane[static_cast<std::size_t>(tc.point)], tc.level * 256) << tc.step << " " << tc.point;
    }
}

}  // namespace
}  // namespace quarnel
