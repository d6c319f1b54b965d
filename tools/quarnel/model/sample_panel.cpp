// SPDX-License-Identifier: MIT
#include "model/sample_panel.h"

#include <cmath>

#include "model/panel_model.h"

namespace quarnel::tool {
namespace {

// A 290-nit notebook panel with a slightly blue native white, measured as a
// colorimeter sees it: every reading includes the panel's black, and the
// channels add up, so white = red + green + blue - 2 x black (CIE XYZ).
using Triple = std::array<double, 3>;
constexpr Triple kBlack{0.21, 0.22, 0.31};
constexpr std::array<Triple, 3> kFullDrive{{{124.8, 64.35, 5.85}, {101.5, 203.0, 33.84}, {51.25, 20.5, 269.95}}};
// Each channel's response to its drive.
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
    for (size_t k = 0; k < 3; ++k) {
        for (size_t c = 0; c < 3; ++c) d.primaries[c][k] = static_cast<float>(kFullDrive[c][k]);
        d.primaries[3][k] = static_cast<float>(kFullDrive[0][k] + kFullDrive[1][k] + kFullDrive[2][k] - 2 * kBlack[k]);
        d.black[k] = static_cast<float>(kBlack[k]);
    }
    d.firstWhite = {0.3127f, 0.329f};
    d.targetLuminance = 270.0f;
    d.defaultWhite = {0.3127f, 0.329f};
    for (size_t c = 0; c < 3; ++c)
        for (size_t level = 0; level < kGreyLevels; ++level) {
            const double share = std::pow(kToneDriveLevels[level + 1] / kToneDriveLevels.back(), kChannelGamma[c]);
            for (size_t k = 0; k < 3; ++k)
                d.toneLevels[c][level][k] =
                    static_cast<float>(Round4(kBlack[k] + (kFullDrive[c][k] - kBlack[k]) * share));
        }
    d.stepByte = kInterpolationStep;
    d.gammaLut = GammaCorrection();
    return d;
}

}  // namespace quarnel::tool
