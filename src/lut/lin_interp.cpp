// SPDX-License-Identifier: MIT
// Step interpolation of an 8-bit LUT.

#include <algorithm>

#include "core/half_up.h"
#include "lut/improve.h"

namespace quarnel {
namespace {

constexpr int kDefaultStep = 16;
constexpr int kMaxStep = 64;
constexpr double kSixteenth = 0.0625;

// The channels are independent, so each is interpolated on its own plane,
// where the points of a segment lie side by side and the loops vectorise.
void InterpolateSegment(int s, int e, const Plane8& in, Plane8& out) {
    const int32_t* from = in.data();
    int32_t* to = out.data();
    to[s] = from[s];
    to[e] = from[e];
    const double start = from[s];
    const double slope = (static_cast<double>(from[e]) - start) / (e - s);
    for (int x = s + 1; x < e; ++x) to[x] = HalfUp(slope * (x - s) + start);
}

// The first sixteen entries always follow the grid of 16, whatever the step.
void ReinterpolateFirstSixteen(const Plane8& in, Plane8& out) {
    const double start = in[0];
    const double slope = (static_cast<double>(in[kDefaultStep]) - start) * kSixteenth;
    int32_t* to = out.data();
    for (int k = 1; k < kDefaultStep; ++k) to[k] = HalfUp(k * slope + start);
}

}  // namespace

int32_t LutLinInterp8Bit(int step, const Plane8& in, Plane8& out) {
    if (step < 1 || step > kMaxStep) step = kDefaultStep;
    for (int s = 0; s < kTopLevel; s += step) InterpolateSegment(s, std::min(s + step, kTopLevel), in, out);
    if (step != kDefaultStep) ReinterpolateFirstSixteen(in, out);
    return 0;
}

}  // namespace quarnel
