// SPDX-License-Identifier: MIT
#include "mode_gains.h"

#include <algorithm>
#include <cmath>

namespace quarnel::tool {
namespace {

constexpr double kPanelGamma = 2.2;
constexpr double kWarmEnd = 0.5, kNormal = 1.0, kColdEnd = 1.5;

Gains Blend(double t, const double* a, const double* b) {
    t = std::clamp(t, 0.0, 1.0);
    return {(1 - t) * a[0] + t * b[0], (1 - t) * a[1] + t * b[1], (1 - t) * a[2] + t * b[2]};
}

Gains SliderGains(const CctContext& ctx) {
    const double v = (ctx.interval > kColdEnd || ctx.interval < kWarmEnd) ? kNormal : ctx.interval;
    const double s = 2.0 * (v - kNormal);
    if (s > 0) return Blend(s, ctx.gainNormal, ctx.gainCold);
    if (s < 0) return Blend(-s, ctx.gainNormal, ctx.gainWarm);
    return ctx.fromBios != 0 ? Blend(0, ctx.gainNormal, ctx.gainNormal) : Gains{1, 1, 1};
}

// The VX modes run the slider as a straight line through warm, normal, cold.
Gains VxGains(const CctContext& ctx) {
    const double t = std::clamp(ctx.interval, kWarmEnd, kColdEnd);
    if (t == kNormal) return Blend(0, ctx.gainNormal, ctx.gainNormal);
    const double* ref = t < kNormal ? ctx.gainWarm : ctx.gainCold;
    const double anchor = t < kNormal ? kWarmEnd : kColdEnd;
    Gains g{};
    for (size_t c = 0; c < 3; ++c) g[c] = ref[c] + (ctx.gainNormal[c] - ref[c]) / (kNormal - anchor) * (t - anchor);
    return g;
}

// Theater solves its white on the spot and keeps no gains in the record:
// read them back as the ratio of the curve's top entry to the base LUT's.
std::optional<Gains> CurveGains(const CctContext& ctx, const Curve& curve) {
    const auto& base = ctx.fromBios != 0 && ctx.gammaK != 0 ? ctx.gammaLut : ctx.oriLut;
    Gains g{};
    for (size_t c = 0; c < 3; ++c) {
        if (base[c][kCurveSize - 1] == 0) return std::nullopt;
        g[c] = static_cast<double>(curve[c][kCurveSize - 1]) / base[c][kCurveSize - 1];
    }
    return g;
}

}  // namespace

std::optional<Gains> ModeGains(Mode mode, const CctContext& ctx, const Curve& curve) {
    switch (mode) {
        case Mode::Slider:
            return SliderGains(ctx);
        case Mode::Theater:
            return CurveGains(ctx, curve);
        case Mode::Vivid:
            return Blend(0, ctx.gainNormal, ctx.gainNormal);
        case Mode::ReadingStrong:
            return Blend(0, ctx.gainReadStrong, ctx.gainReadStrong);
        case Mode::ReadingWeak:
            return Blend(0, ctx.gainReadWeak, ctx.gainReadWeak);
        case Mode::ReadingMulti:
            return Blend(ctx.rdIndex, ctx.gainReadWeak, ctx.gainReadStrong);
        case Mode::Native:
            return Gains{1, 1, 1};
        case Mode::VxVivid:
        case Mode::VxCurve:
            return VxGains(ctx);
    }
    return std::nullopt;
}

std::optional<WhitePoint> WhiteFromGains(const CctContext& ctx, const Gains& gains) {
    const auto& primaries = ctx.fromBios != 0 ? ctx.bios : ctx.icc;
    double xyz[3] = {};
    for (size_t c = 0; c < 3; ++c)
        for (size_t k = 0; k < 3; ++k) xyz[k] += primaries[c][k] * std::pow(std::max(gains[c], 0.0), kPanelGamma);
    const double sum = xyz[0] + xyz[1] + xyz[2];
    if (!(sum > 0)) return std::nullopt;
    WhitePoint white{xyz[0] / sum, xyz[1] / sum, 0};
    const double n = (white.x - 0.3320) / (0.1858 - white.y);
    white.cct = static_cast<int>(std::lround(437 * n * n * n + 3601 * n * n + 6831 * n + 5517));
    return white;
}

}  // namespace quarnel::tool
