// SPDX-License-Identifier: MIT
// Step interpolation of an 8-bit LUT.

#include <algorithm>

#include "core/lut16.h"
#include "lut/improve.h"

namespace quarnel {
namespace {

constexpr int kDefaultStep = 16;
constexpr int kMaxStep = 64;
constexpr double kSixteenth = 0.0625;

// Levels are 0..255 and a point between two of them stays within them.
uint16_t Entry(int32_t level) { return static_cast<uint16_t>(level * kLutStep); }

// half-up of a point on a line between two levels: it lies within 0..255, so
// the plain conversion truncates it as half-up does, without the guards for
// values out of range.
int32_t LevelOnLine(double v) { return static_cast<int32_t>(v + 0.5); }

// The points from s up to (not including) e on the line from level `from` to
// `to`; point s is `from` itself, as the line starts there.
void InterpolateSegment(int s, int e, int32_t from, int32_t to, uint16_t* plane) {
    const double start = from;
    const double slope = (static_cast<double>(to) - start) / (e - s);
    for (int x = s; x < e; ++x) plane[x] = Entry(LevelOnLine(slope * (x - s) + start));
}

}  // namespace

// The channels are independent, so each is interpolated on its own plane,
// where the points of a segment lie side by side and the loops vectorise;
// a segment's loop starts at its first point, so that whole segments of a
// step of 8, 16, 32 or 64 fill whole vectors. Each segment reads its end
// before writing anything at or beyond it.
void LutLinInterp8Bit(int step, uint16_t* plane) {
    if (step < 1 || step > kMaxStep) step = kDefaultStep;
    const int32_t first = plane[0] >> 8;
    const int32_t at16 = plane[kDefaultStep] >> 8;  // the grid of 16 below reads the source entry
    int32_t from = first;
    for (int s = 0; s < kTopLevel; s += step) {
        const int e = std::min(s + step, kTopLevel);
        const int32_t to = plane[e] >> 8;
        InterpolateSegment(s, e, from, to, plane);
        from = to;
    }
    plane[kTopLevel] = Entry(from);
    if (step == kDefaultStep) return;
    // The first sixteen entries always follow the grid of 16, whatever the
    // step; entry 0 stays the line's start.
    const double start = first;
    const double slope = (static_cast<double>(at16) - start) * kSixteenth;
    for (int k = 0; k < kDefaultStep; ++k) plane[k] = Entry(LevelOnLine(k * slope + start));
}

}  // namespace quarnel
