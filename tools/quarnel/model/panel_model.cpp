// SPDX-License-Identifier: MIT
#include "model/panel_model.h"

#include <algorithm>
#include <cmath>

namespace quarnel::tool {
namespace {

constexpr double kFullDriveLevel = kToneDriveLevels.back();
constexpr size_t kWhite = 3;

Xyz Minus(const Xyz& a, const Xyz& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
double Dot(const Xyz& a, const Xyz& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Xyz Cross(const Xyz& a, const Xyz& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// The weights w with w0 c0 + w1 c1 + w2 c2 = target (Cramer's rule), or
// nothing when the three colours are not independent.
std::optional<Xyz> Solve(const std::array<Xyz, 3>& c, const Xyz& target) {
    const double det = Dot(c[0], Cross(c[1], c[2]));
    if (!(std::abs(det) > 0)) return std::nullopt;
    return Xyz{Dot(target, Cross(c[1], c[2])) / det, Dot(c[0], Cross(target, c[2])) / det,
               Dot(c[0], Cross(c[1], target)) / det};
}

// Each grey level's colour above black, projected onto the channel's
// full-drive colour; kept within 0..1 and rising, so the curve inverts.
std::array<double, 7> MeasuredResponse(const ToneMeasurements& tone, size_t c, const Xyz& full) {
    std::array<double, 7> r{};
    const double norm = Dot(full, full);
    for (size_t j = 0; j < kGreyLevels; ++j)
        r[j + 1] = norm > 0 ? std::clamp(Dot(Minus(tone.levels[c][j], tone.black), full) / norm, 0.0, 1.0) : 0.0;
    r.back() = 1.0;
    for (size_t j = 1; j < r.size(); ++j) r[j] = std::max(r[j], r[j - 1]);
    return r;
}

std::array<double, 7> PowerResponse() {
    std::array<double, 7> r{};
    for (size_t j = 0; j < r.size(); ++j) r[j] = std::pow(kToneDriveLevels[j] / kFullDriveLevel, kAssumedGamma);
    return r;
}

}  // namespace

PanelModel FromMeasurements(const PanelMeasurements& measured) {
    PanelModel model;
    model.measuredTone = measured.tone.has_value();
    if (measured.tone) model.black = measured.tone->black;
    for (size_t c = 0; c < 3; ++c) {
        model.channel[c] = Minus(measured.primaries[c], model.black);
        model.response[c] = measured.tone ? MeasuredResponse(*measured.tone, c, model.channel[c]) : PowerResponse();
    }
    // Scaled so that full drive of all three gives the measured white.
    const auto scale = Solve(model.channel, Minus(measured.primaries[kWhite], model.black));
    if (scale && std::ranges::all_of(*scale, [](double s) { return s > 0; }))
        for (size_t c = 0; c < 3; ++c)
            for (double& v : model.channel[c]) v *= (*scale)[c];
    return model;
}

double Response(const PanelModel& model, size_t channel, double drive) {
    const auto& r = model.response[channel];
    const double level = std::clamp(drive, 0.0, 1.0) * kFullDriveLevel;
    size_t j = 0;
    while (j + 2 < kToneDriveLevels.size() && level > kToneDriveLevels[j + 1]) ++j;
    const double lo = kToneDriveLevels[j], hi = kToneDriveLevels[j + 1];
    if (j == 0) {  // from black, the power law through the first level and full drive
        const double exponent = std::log(r[1]) / std::log(hi / kFullDriveLevel);
        if (r[1] > 0 && r[1] < 1 && std::isfinite(exponent)) return r[1] * std::pow(level / hi, exponent);
    } else if (r[j] > 0 && r[j + 1] > r[j]) {
        return r[j] * std::pow(level / lo, std::log(r[j + 1] / r[j]) / std::log(hi / lo));
    }
    return r[j] + (level - lo) / (hi - lo) * (r[j + 1] - r[j]);
}

Xyz Emission(const PanelModel& model, const Drive& drive) {
    Xyz xyz = model.black;
    for (size_t c = 0; c < 3; ++c) {
        const double share = Response(model, c, drive[c]);
        for (size_t k = 0; k < 3; ++k) xyz[k] += model.channel[c][k] * share;
    }
    return xyz;
}

Xyz BlackShares(const PanelModel& model) {
    Xyz shares = Solve(model.channel, model.black).value_or(Xyz{});
    for (double& s : shares) s = std::max(s, 0.0);
    return shares;
}

double CurveDrive(const CurvePlane& plane, double input) {
    const double position = std::clamp(input, 0.0, 1.0) * (kCurveSize - 1);
    const auto i = std::min(static_cast<size_t>(position), static_cast<size_t>(kCurveSize - 2));
    const double f = position - static_cast<double>(i);
    return (1 - f) * NormalisedEntry(plane[i]) + f * NormalisedEntry(plane[i + 1]);
}

Xyz CalibratedWhite(const PanelModel& model, const Curve& curve) {
    return Emission(model, {CurveDrive(curve[0], 1.0), CurveDrive(curve[1], 1.0), CurveDrive(curve[2], 1.0)});
}

std::optional<Chromaticity> ToChromaticity(const Xyz& xyz) {
    const double sum = xyz[0] + xyz[1] + xyz[2];
    if (!(sum > 0)) return std::nullopt;
    return facts::ChromaticityOf(xyz[0], xyz[1], xyz[2]);
}

int Cct(const Chromaticity& xy) { return static_cast<int>(std::lround(facts::McCamyKelvin(xy))); }

}  // namespace quarnel::tool
