// SPDX-License-Identifier: MIT
#include "color/reading_targets.h"

#include <cmath>

namespace quarnel {
namespace {

// How far the weak white lies beyond the current one, and how far behind the
// line's start a white may lie and still be projected onto it.
constexpr double kReadingStep = 0.005;

double Length(Xy v) { return std::sqrt(v.x * v.x + v.y * v.y); }

}  // namespace

void CalcReadingTargets(Xy current, Xy a, Xy b, ReadingTargets& targets) {
    const Xy d{b.x - a.x, b.y - a.y};
    const double len = Length(d);
    if (a.x - kReadingStep > current.x) {
        targets = {a, b};
        return;
    }
    const Xy r{current.x - a.x, current.y - a.y};
    if (d.x == 0.0 && d.y == 0.0) return;

    // The comparisons are made as written: a white that is not a number is
    // neither ahead of the start nor far behind it, so it starts at `a`.
    const double along = r.x * d.x + r.y * d.y;
    Xy q{0.0, 0.0};
    if (along >= 0.0) {
        q = {d.x * along / (len * len), d.y * along / (len * len)};
    } else if (Length(r) >= kReadingStep) {
        targets = {a, b};
        return;
    }
    const Xy u{d.x / len, d.y / len};
    targets.weak = {a.x + q.x + kReadingStep * u.x, a.y + q.y + kReadingStep * u.y};
    targets.strong = {targets.weak.x + len * u.x, targets.weak.y + len * u.y};
}

}  // namespace quarnel
