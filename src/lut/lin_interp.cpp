// SPDX-License-Identifier: MIT
// Step interpolation of an 8-bit LUT.

#include <algorithm>

#include "core/lut16.h"
#include "core/vector_forms.h"
#include "lut/improve.h"
#include "platform/processor.h"

namespace quarnel {
namespace {

constexpr int kDefaultStep = 16;
constexpr int kMaxStep = 64;
constexpr double kSixteenth = 0.0625;

// Levels are 0..255 and a point between two of them stays within them.
QUARNEL_KERNEL uint16_t Entry(int32_t level) { return static_cast<uint16_t>(level * kLutStep); }

// A point on a line between two levels, plus a half, truncated: the point
// lies within 0..255, so the plain conversion rounds it half-up, without the
// guards for values out of range.
QUARNEL_KERNEL int32_t TruncToLevel(double pointAndHalf) { return static_cast<int32_t>(pointAndHalf); }

// The 8-bit levels that the interpolation of one plane reads: the high
// bytes of entry 0, of every segment end (e = s + step, capped at 255) and,
// for any other step than 16, of entry 16, which the grid of 16 reads.
struct SegmentEnds {
    int32_t level[kLutLevels + 1];
    int segments = 0;
    int32_t at16 = 0;
};

// Reads the ends through `entries` (the plane's entries at a list of
// indices, in one go), before any entry of the plane is written.
template <typename ReadEntries>
void ReadEnds(int step, ReadEntries entries, SegmentEnds& ends) {
    int at[kLutLevels + 1];
    int count = 0;
    at[count++] = 0;
    for (int s = 0; s < kTopLevel; s += step) at[count++] = std::min(s + step, kTopLevel);
    ends.segments = count - 1;
    if (step != kDefaultStep) at[count++] = kDefaultStep;
    uint16_t entry[kLutLevels + 1];
    entries(at, count, entry);
    for (int i = 0; i <= ends.segments; ++i) ends.level[i] = entry[i] >> 8;
    if (step != kDefaultStep) ends.at16 = entry[ends.segments + 1] >> 8;
}

// The channels are independent, so each is interpolated on its own plane,
// where the points of a segment lie side by side and the loops vectorise.
// The slopes between the segment ends are taken first, before any point is
// written, so that no segment waits on the one before it. Segment g runs
// from s = g x step up to (not including) its end e, on the line from its
// start level: point s is that level itself. Every entry is written once:
// for any other step than 16 the first sixteen follow the grid of 16
// instead. A point's start level and the half of its rounding are added as
// one sum: for every pair of 8-bit levels, every span up to 255 and every
// point of it, that gives the same whole part as adding them in turn.
QUARNEL_KERNEL void Rebuild(int step, const SegmentEnds& ends, uint16_t* plane) {
    const int32_t* level = ends.level;
    const int segments = ends.segments;
    double slope[kLutLevels];
    for (int g = 0; g < segments; ++g) {
        const int span = std::min(step, kTopLevel - g * step);
        slope[g] = (static_cast<double>(level[g + 1]) - level[g]) / span;
    }
    const double* offset = LevelValues().data();  // x - s, as the double it converts to
    const int gridEnd = step == kDefaultStep ? 0 : kDefaultStep;
    for (int g = 0; g < segments; ++g) {
        const int s = g * step;
        const int span = std::min(step, kTopLevel - s);
        const double rounded = level[g] + 0.5;
        for (int k = std::max(0, gridEnd - s); k < span; ++k)
            plane[s + k] = Entry(TruncToLevel(slope[g] * offset[k] + rounded));
    }
    plane[kTopLevel] = Entry(level[segments]);
    if (step == kDefaultStep) return;
    const double rounded = level[0] + 0.5;
    const double slope16 = (static_cast<double>(ends.at16) - level[0]) * kSixteenth;
    for (int k = 0; k < kDefaultStep; ++k) plane[k] = Entry(TruncToLevel(offset[k] * slope16 + rounded));
}

int StepInForce(int step) { return step < 1 || step > kMaxStep ? kDefaultStep : step; }

template <typename ReadEntries>
void Interpolate(int step, ReadEntries entries, uint16_t* plane) {
    step = StepInForce(step);
    SegmentEnds ends;
    ReadEnds(step, entries, ends);
    platform::RunLoop<Rebuild>(step, ends, plane);
}

}  // namespace

void LutLinInterp8Bit(int step, uint16_t* plane) {
    const auto entries = [plane](const int* at, int count, uint16_t* out) {
        for (int i = 0; i < count; ++i) out[i] = plane[at[i]];
    };
    Interpolate(step, entries, plane);
}

void LutLinInterp8Bit(int step, const PendingLut& from, int channel, uint16_t* plane) {
    const auto entries = [&from, channel](const int* at, int count, uint16_t* out) {
        from.Entries(channel, at, count, out);
    };
    Interpolate(step, entries, plane);
}

}  // namespace quarnel
