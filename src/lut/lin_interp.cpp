// SPDX-License-Identifier: MIT
// Step interpolation of an 8-bit LUT.

#include <algorithm>

#include "core/lut16.h"
#include "core/wide_vectors.h"
#include "lut/improve.h"
#include "platform/processor.h"

namespace quarnel {
namespace {

constexpr int kDefaultStep = 16;
constexpr int kMaxStep = 64;
constexpr double kSixteenth = 0.0625;

// Levels are 0..255 and a point between two of them stays within them.
QUARNEL_KERNEL uint16_t Entry(int32_t level) { return static_cast<uint16_t>(level * kLutStep); }

// half-up of a point on a line between two levels: it lies within 0..255, so
// the plain conversion truncates it as half-up does, without the guards for
// values out of range.
QUARNEL_KERNEL int32_t LevelOnLine(double v) { return static_cast<int32_t>(v + 0.5); }

// The channels are independent, so each is interpolated on its own plane,
// where the points of a segment lie side by side and the loops vectorise.
// The levels at the segment ends and the slopes between them are taken
// first, before any point is written, so that no segment waits on the one
// before it. Segment g runs from s = g x step up to (not including) its
// end e, on the line from its start level: point s is that level itself.
QUARNEL_KERNEL void Interpolate(int step, uint16_t* plane) {
    int32_t level[kLutLevels + 1];
    int segments = 0;
    level[0] = plane[0] >> 8;
    for (int s = 0; s < kTopLevel; s += step) level[++segments] = plane[std::min(s + step, kTopLevel)] >> 8;
    const int32_t at16 = plane[kDefaultStep] >> 8;  // the grid of 16 below reads the source entry
    double slope[kLutLevels];
    for (int g = 0; g < segments; ++g) {
        const int span = std::min(step, kTopLevel - g * step);
        slope[g] = (static_cast<double>(level[g + 1]) - level[g]) / span;
    }
    const double* offset = LevelValues().data();  // x - s, as the double it converts to
    for (int g = 0; g < segments; ++g) {
        const int s = g * step;
        const int span = std::min(step, kTopLevel - s);
        const double start = level[g];
        for (int k = 0; k < span; ++k) plane[s + k] = Entry(LevelOnLine(slope[g] * offset[k] + start));
    }
    plane[kTopLevel] = Entry(level[segments]);
    if (step == kDefaultStep) return;
    // The first sixteen entries always follow the grid of 16, whatever the
    // step; entry 0 stays the line's start.
    const double start = level[0];
    const double slope16 = (static_cast<double>(at16) - start) * kSixteenth;
    for (int k = 0; k < kDefaultStep; ++k) plane[k] = Entry(LevelOnLine(offset[k] * slope16 + start));
}

void InterpolateBaseline(int step, uint16_t* plane) { Interpolate(step, plane); }

QUARNEL_WIDE void InterpolateWide(int step, uint16_t* plane) { Interpolate(step, plane); }

}  // namespace

void LutLinInterp8Bit(int step, uint16_t* plane) {
    if (step < 1 || step > kMaxStep) step = kDefaultStep;
    platform::ActiveForm(InterpolateBaseline, InterpolateWide)(step, plane);
}

}  // namespace quarnel
