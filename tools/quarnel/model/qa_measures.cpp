// SPDX-License-Identifier: MIT
#include "model/qa_measures.h"

#include <cmath>
#include <vector>

#include "facts/chromaticity.h"

namespace quarnel::tool {
namespace {

double Cross(const Xy& o, const Xy& a, const Xy& b) { return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x); }

double Area(const std::vector<Xy>& polygon) {  // shoelace, unsigned
    double twice = 0;
    for (size_t i = 0; i < polygon.size(); ++i) {
        const Xy& a = polygon[i];
        const Xy& b = polygon[(i + 1) % polygon.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return std::abs(twice) / 2;
}

// Counter-clockwise order, which the clipping below relies on.
Triangle CounterClockwise(Triangle t) {
    if (Cross(t[0], t[1], t[2]) < 0) std::swap(t[1], t[2]);
    return t;
}

// Sutherland-Hodgman: the part of `subject` on the inner side of each edge
// of the convex `clip` in turn.
std::vector<Xy> Clip(std::vector<Xy> subject, const Triangle& clip) {
    for (size_t e = 0; e < clip.size() && !subject.empty(); ++e) {
        const Xy& a = clip[e];
        const Xy& b = clip[(e + 1) % clip.size()];
        std::vector<Xy> kept;
        for (size_t i = 0; i < subject.size(); ++i) {
            const Xy& p = subject[i];
            const Xy& q = subject[(i + 1) % subject.size()];
            const double sp = Cross(a, b, p), sq = Cross(a, b, q);
            if (sp >= 0) kept.push_back(p);
            if ((sp >= 0) != (sq >= 0)) {
                const double t = sp / (sp - sq);
                kept.push_back({p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)});
            }
        }
        subject = std::move(kept);
    }
    return subject;
}

// CIE 1976 v' stretches CIE 1960 v by half as much again.
constexpr double kVPrimeOverV = 1.5;

Xy Chroma(const Xyz& xyz) {
    const auto xy = ToChromaticity(xyz);
    return xy ? Xy{xy->x, xy->y} : kNoChromaticity;
}

}  // namespace

NativeMeasures MeasureNative(const PanelMeasurements& measured) {
    constexpr size_t kWhite = 3, kY = 1;
    NativeMeasures m;
    m.white = Chroma(measured.primaries[kWhite]);
    m.whiteY = measured.primaries[kWhite][kY];
    for (size_t c = 0; c < 3; ++c) {
        m.primaries[c] = Chroma(measured.primaries[c]);
        m.gamma[c] = NativeGamma(measured, c).value_or(kNotMeasured);
    }
    m.srgbCoverage = GamutCoverage(m.primaries, kSrgbPrimaries);
    m.p3Coverage = GamutCoverage(m.primaries, kDciP3Primaries);
    return m;
}

double GamutCoverage(const Triangle& panel, const Triangle& reference) {
    for (const Xy& p : panel)
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) return kNotMeasured;
    const Triangle ref = CounterClockwise(reference), own = CounterClockwise(panel);
    const double whole = Area({ref.begin(), ref.end()});
    if (!(whole > 0) || !(Area({own.begin(), own.end()}) > 0)) return 0;
    // Clipping the reference by the panel keeps every vertex on the
    // reference's edges, however far from it the panel's primaries lie.
    return Area(Clip({ref.begin(), ref.end()}, own)) / whole;
}

double DeltaUv(const Xy& a, const Xy& b) {
    const facts::Uv p = facts::ToUv({a.x, a.y}), q = facts::ToUv({b.x, b.y});
    return std::hypot(p.u - q.u, kVPrimeOverV * (p.v - q.v));
}

std::optional<double> NativeGamma(const PanelMeasurements& measured, size_t channel) {
    if (!measured.tone) return std::nullopt;
    constexpr size_t kY = 1;
    const double black = measured.tone->black[kY];
    const double span = measured.primaries[channel][kY] - black;
    double sxy = 0, sxx = 0;
    for (size_t j = 0; j < kGreyLevels; ++j) {
        const double share = (measured.tone->levels[channel][j][kY] - black) / span;
        if (!(share > 0 && share < 1)) continue;
        const double level = std::log(kToneDriveLevels[j + 1] / kToneDriveLevels.back());
        sxy += level * std::log(share);
        sxx += level * level;
    }
    if (!(sxx > 0)) return std::nullopt;
    return sxy / sxx;
}

}  // namespace quarnel::tool
