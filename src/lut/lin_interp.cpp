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

void InterpolateSegment(int s, int e, const Lut8& in, Lut8& out) {
    out[s] = in[s];
    out[e] = in[e];
    for (int c = 0; c < kLutPlanes; ++c) {
        const double slope = (static_cast<double>(in[e][c]) - in[s][c]) / (e - s);
        for (int x = s + 1; x < e; ++x) out[x][c] = HalfUp(slope * (x - s) + in[s][c]);
    }
}

// The first sixteen entries always follow the grid of 16, whatever the step.
void ReinterpolateFirstSixteen(const Lut8& in, Lut8& out) {
    for (int c = 0; c < kLutPlanes; ++c) {
        const double slope = (static_cast<double>(in[kDefaultStep][c]) - in[0][c]) * kSixteenth;
        for (int k = 1; k < kDefaultStep; ++k) out[k][c] = HalfUp(k * slope + in[0][c]);
    }
}

}  // namespace

int32_t LutLinInterp8Bit(int step, const Lut8& in, Lut8& out) {
    if (step < 1 || step > kMaxStep) step = kDefaultStep;
    for (int s = 0; s < kTopLevel; s += step) InterpolateSegment(s, std::min(s + step, kTopLevel), in, out);
    if (step != kDefaultStep) ReinterpolateFirstSixteen(in, out);
    return 0;
}

}  // namespace quarnel
