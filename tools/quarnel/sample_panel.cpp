// SPDX-License-Identifier: MIT
#include "sample_panel.h"

#include <cmath>

namespace quarnel::tool {
namespace {

// A 300-nit notebook panel with a slightly blue native white (rows red,
// green, blue, white; CIE XYZ at full drive).
constexpr std::array<std::array<double, 3>, 4> kPrimaries{
    {{124.8, 64.35, 5.85}, {101.5, 203.0, 33.84}, {51.25, 20.5, 269.95}, {276.9, 287.3, 309.6}}};
// Drive levels of the five grey measurements, and each channel's response.
constexpr std::array<double, 5> kToneDrive{42, 86, 128, 168, 210};
constexpr std::array<double, 3> kChannelGamma{2.18, 2.22, 2.27};
// The factory's gamma correction bends each channel a little.
constexpr std::array<double, 3> kCorrection{0.98, 1.0, 1.03};
constexpr int kInterpolationStep = 8;

double Round4(double v) { return std::round(v * 1e4) / 1e4; }

Curve GammaCorrection() {
    Curve curve{};
    for (size_t c = 0; c < 3; ++c)
        for (size_t i = 0; i < curve[c].size(); ++i) {
            const double level = std::round(255.0 * std::pow(static_cast<double>(i) / 255.0, kCorrection[c]));
            curve[c][i] = static_cast<uint16_t>(level * 256.0);
        }
    return curve;
}

}  // namespace

BlockDescription SamplePanel() {
    BlockDescription d;
    d.version = 7;
    d.subVersion = 1;
    for (size_t r = 0; r < kPrimaries.size(); ++r)
        for (size_t k = 0; k < 3; ++k) d.primaries[r][k] = static_cast<float>(kPrimaries[r][k]);
    d.firstWhite = {0.3127f, 0.329f};
    d.targetLuminance = 270.0f;
    d.defaultWhite = {0.3127f, 0.329f};
    for (size_t c = 0; c < 3; ++c)
        for (size_t level = 0; level < kToneDrive.size(); ++level)
            for (size_t k = 0; k < 3; ++k)
                d.toneLevels[c][level][k] = static_cast<float>(
                    Round4(kPrimaries[c][k] * std::pow(kToneDrive[level] / 255.0, kChannelGamma[c])));
    d.black = {0.21f, 0.22f, 0.31f};
    d.stepByte = kInterpolationStep;
    d.gammaLut = GammaCorrection();
    return d;
}

}  // namespace quarnel::tool
