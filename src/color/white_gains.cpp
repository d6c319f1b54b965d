// SPDX-License-Identifier: MIT
#include "color/white_gains.h"

#include <cmath>

namespace quarnel {
namespace {

constexpr double kPercent = 100.0;

bool AnyExactZero(const GainSolverState& s, Xy target) {
    for (int c = kRed; c <= kBlue; ++c)
        if (s.point[c].x == 0.0 || s.point[c].y == 0.0 || s.point[c].Y == 0.0) return true;
    return target.x == 0.0 || target.y == 0.0;
}

// Ties keep the earlier channel: green wins over red only when strictly
// smaller, blue over the current choice likewise.
int LimitingChannel(const double k[3]) {
    int limit = k[kRed] > k[kGreen] ? kGreen : kRed;
    if (k[kBlue] < k[limit]) limit = kBlue;
    return limit;
}

}  // namespace

// Driving primary i (chromaticity x_i, y_i) to luminance L_i adds
// L_i / y_i x (x_i, y_i, 1 - x_i - y_i) to X, Y, Z. The mix shows the
// target (xw, yw) when X = xw (X + Y + Z) and Y = yw (X + Y + Z), that is
//   sum_i L_i (xw - x_i) / y_i = 0   ->  e L_R + bb L_G + a L_B = 0
//   sum_i L_i (yw - y_i) / y_i = 0   ->  f L_R + c  L_G + d L_B = 0
// with e, bb, a = (xw - x_i) / y_i and f, c, d = (yw - y_i) / y_i for
// i = R, G, B. Two homogeneous equations in three unknowns: L is a multiple
// of their cross product
//   w = (bb d - a c, a f - e d, e c - bb f),
// whose shares s_i = w_i / sum(w) are each primary's part of the white's
// luminance. The brightest such white scales L = k s until one channel is
// at full drive, k = min_i Y_i / s_i; with a power-law response a drive
// of (L_i / Y_i)^(1 / gamma) gives L_i, and the limiting channel's drive is 1.
void SolveWhiteGains(GainSolverState& state, Xy target, double gain[3]) {
    if (AnyExactZero(state, target)) return;
    const ChromaPoint& r = state.point[kRed];
    const ChromaPoint& g = state.point[kGreen];
    const ChromaPoint& b = state.point[kBlue];
    const double a = (target.x - b.x) / b.y;
    const double bb = (target.x - g.x) / g.y;
    const double c = (target.y - g.y) / g.y;
    const double d = (target.y - b.y) / b.y;
    const double e = (target.x - r.x) / r.y;
    const double f = (target.y - r.y) / r.y;

    const double w[3] = {d * bb - a * c, f * a - e * d, e * c - f * bb};
    const double sum = w[kRed] + w[kGreen] + w[kBlue];
    if (sum == 0.0) return;
    double share[3];
    for (int i = 0; i < 3; ++i) {
        share[i] = w[i] / sum;
        if (share[i] == 0.0) return;
    }

    double k[3];
    for (int i = 0; i < 3; ++i) k[i] = state.point[i].Y / share[i];
    const int limit = LimitingChannel(k);

    double resultY = 0.0;
    for (int i = 0; i < 3; ++i) {
        const double mixY = k[limit] * share[i];
        gain[i] = i == limit ? 1.0 : std::pow(mixY / state.point[i].Y, 1.0 / state.gamma);
        resultY += mixY;
    }
    state.resultY = resultY;
    if (state.nativeY != 0.0) state.lumChangePct = (resultY - state.nativeY) / state.nativeY * kPercent;
}

}  // namespace quarnel
