// SPDX-License-Identifier: MIT
// Step interpolation of an 8-bit LUT.

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>

#include "core/kernel.h"
#include "core/lut16.h"
#include "lut/improve.h"

namespace quarnel {
namespace {

constexpr int kDefaultStep = 16;
constexpr int kMaxStep = 64;

// Levels are 0..255 and a point between two of them stays within them.
QUARNEL_KERNEL uint16_t Entry(int32_t level) { return static_cast<uint16_t>(level * kLutStep); }

// A point on a line between two levels, plus a half, truncated: the point
// lies within 0..255, so the plain conversion rounds it half-up, without the
// guards for values out of range.
QUARNEL_KERNEL int32_t TruncToLevel(double pointAndHalf) { return static_cast<int32_t>(pointAndHalf); }

// The entries whose 8-bit levels the interpolation of a plane reads: entry
// 0, every segment end (e = s + step, capped at 255) and, for any other step
// than 16, entry 16, which the grid of 16 reads. The same for every plane.
struct EndPlaces {
    int at[kLutLevels + 1];
    int count = 0;
    int segments = 0;
};

EndPlaces EndPlacesAt(int step) {
    EndPlaces places;
    places.at[places.count++] = 0;
    for (int s = 0; s < kTopLevel; s += step) places.at[places.count++] = std::min(s + step, kTopLevel);
    places.segments = places.count - 1;
    if (step != kDefaultStep) places.at[places.count++] = kDefaultStep;
    return places;
}

// One plane's ends, as levels.
struct SegmentEnds {
    int32_t level[kLutLevels + 1];
    int segments = 0;
    int32_t at16 = 0;
};

// Reads the ends through `levels` (the high bytes of the plane's entries at
// a list of indices, in one go), before any entry of the plane is written.
// They go straight where the segments read them: a vector load of 16-bit
// entries just stored one by one would wait for the stores to drain.
template <typename ReadLevels>
void ReadEnds(int step, const EndPlaces& places, ReadLevels levels, SegmentEnds& ends) {
    levels(places.at, places.count, ends.level);
    ends.segments = places.segments;
    if (step != kDefaultStep) ends.at16 = ends.level[ends.segments + 1];
}

// A point of a segment from level a to level b, span points long, lies at
// a + (b - a) x k / span, and takes the whole part of that plus a half. The
// points are worked out in fixed point, in 65536ths of a level, the slope
// rounded up: what that adds stays below 64 / 65536 of a level over a
// segment, while a point that is not on a half lies at least 1 / 128 of a
// level from the next whole level, so the whole part is exact. A point on a
// half is left to the double line, whose slope, rounded to a double, may put
// it just below the half: those points lie every `period` points from the
// middle of the first, period the span over its greatest common divisor
// with b - a, and only where that is even.
constexpr int kFractionBits = 16;
constexpr int32_t kOneLevel = int32_t{1} << kFractionBits;

// The whole part of m / span for 0 <= m < 2^24 (a rise's magnitude in
// 65536ths, plus at most 63) is m x ceil(2^32 / span) shifted down 32 bits:
// what the rounded-up inverse adds stays below m / 2^32 < 1 / 256, while a
// quotient that is not whole lies at least 1 / 64 below the next whole
// number. A multiply, where a division would hold each segment's slope up
// for some twenty cycles.
constexpr auto kSpanInverse = [] {
    std::array<uint64_t, kMaxStep + 1> inverse{};
    for (uint64_t span = 1; span <= kMaxStep; ++span) inverse[span] = ((uint64_t{1} << 32) + span - 1) / span;
    return inverse;
}();

// The slope in 65536ths of a level a point, rounded up: a rise's magnitude
// is rounded up, a fall's down.
QUARNEL_KERNEL int32_t FixedSlope(int32_t rise, int span, uint64_t inverse) {
    const auto magnitude = static_cast<uint64_t>(rise < 0 ? -rise : rise) * kOneLevel;
    const auto up = static_cast<uint64_t>(rise > 0 ? span - 1 : 0);
    const auto quotient = static_cast<int32_t>(((magnitude + up) * inverse) >> 32);
    return rise < 0 ? -quotient : quotient;
}

QUARNEL_KERNEL uint16_t FixedEntry(int32_t point) { return Entry(point >> kFractionBits); }

// 32-bit words, each two neighbouring entries: the even one in its low
// half. Four words fill a vector.
using FourPairs = uint32_t __attribute__((vector_size(4 * sizeof(uint32_t))));
constexpr int kVectorPoints = 8;

// Points from the fixed points of the even ones and of the odd ones: each
// point's whole level is the third byte of its word, which moves to the
// high byte of its entry.
QUARNEL_KERNEL void StorePairs(const FourPairs& even, const FourPairs& odd, uint16_t* points) {
    const FourPairs pairs = ((even >> 8) & 0xFF00U) | ((odd << 8) & 0xFF000000U);
    std::memcpy(points, &pairs, sizeof pairs);
}

// The points of a segment at least a vector of them long, a vector at a
// time, from the even points of the first (0, 2, 4, ...). It ends with a
// vector that may go over some already written: the same points again.
QUARNEL_KERNEL void VectorLine(uint32_t start, uint32_t step, int span, uint16_t* points) {
    const FourPairs even = FourPairs{0, 2, 4, 6} * step + start;
    const FourPairs odd = even + step;
    FourPairs e = even, o = odd;
    int k = 0;
    for (; k + kVectorPoints <= span; k += kVectorPoints, e += kVectorPoints * step, o += kVectorPoints * step)
        StorePairs(e, o, points + k);
    const auto last = static_cast<uint32_t>(span - kVectorPoints) * step;
    if (k < span) StorePairs(even + last, odd + last, points + span - kVectorPoints);
}

// The points of one segment, starting at `level`, a vector at a time where
// the segment fills one.
QUARNEL_KERNEL void FixedLine(int32_t level, int32_t slope, int span, uint16_t* points) {
    const auto start = static_cast<uint32_t>(level * kOneLevel + kOneLevel / 2);
    const auto step = static_cast<uint32_t>(slope);
    if (span >= kVectorPoints) return VectorLine(start, step, span, points);
    for (int k = 0; k < span; ++k)
        points[k] = FixedEntry(static_cast<int32_t>(start + static_cast<uint32_t>(k) * step));
}

// The points on a half, on the line of doubles from level to level + rise.
// A period that is a power of two (a span that is one, to begin with) makes
// the slope an exact double, and every point on it exact.
QUARNEL_KERNEL bool PowerOfTwo(unsigned n) { return (n & (n - 1)) == 0; }

QUARNEL_KERNEL void HalvesOnDoubleLine(int32_t level, int32_t rise, int span, uint16_t* points) {
    const auto magnitude = static_cast<unsigned>(rise < 0 ? -rise : rise);
    const auto length = static_cast<unsigned>(span);
    // The period is even exactly where the span holds more factors of two than the rise.
    if (rise == 0 || PowerOfTwo(length) || std::countr_zero(magnitude) >= std::countr_zero(length)) return;
    const auto period = static_cast<int>(length / std::gcd(magnitude, length));
    if (PowerOfTwo(static_cast<unsigned>(period))) return;
    const double slope = static_cast<double>(rise) / span;
    const double rounded = level + 0.5;
    const double* offset = LevelValues().data();  // k, as the double it converts to
    for (int k = period / 2; k < span; k += period) points[k] = Entry(TruncToLevel(slope * offset[k] + rounded));
}

// The channels are independent, so each is interpolated on its own plane,
// where the points of a segment lie side by side and the loops vectorise.
// The slopes between the segment ends are taken first, before any point is
// written, so that no segment waits on the one before it. Segment g runs
// from s = g x step up to (not including) its end e: point s is its start
// level itself. For any other step than 16 the first sixteen entries then
// follow the grid of 16 instead, whose sixteenths are exact.
void Rebuild(int step, const SegmentEnds& ends, uint16_t* plane) {
    const int32_t* level = ends.level;
    const int segments = ends.segments;
    // Every segment but the last spans a whole step, so their slopes
    // share one inverse.
    int32_t slope[kLutLevels];
    const uint64_t inverse = kSpanInverse[static_cast<std::size_t>(step)];
    for (int g = 0; g < segments - 1; ++g) slope[g] = FixedSlope(level[g + 1] - level[g], step, inverse);
    const int last = kTopLevel - (segments - 1) * step;
    slope[segments - 1] =
        FixedSlope(level[segments] - level[segments - 1], last, kSpanInverse[static_cast<std::size_t>(last)]);
    for (int g = 0; g < segments; ++g) {
        const int s = g * step;
        const int span = std::min(step, kTopLevel - s);
        FixedLine(level[g], slope[g], span, plane + s);
        HalvesOnDoubleLine(level[g], level[g + 1] - level[g], span, plane + s);
    }
    plane[kTopLevel] = Entry(level[segments]);
    if (step == kDefaultStep) return;
    FixedLine(level[0], (ends.at16 - level[0]) * (kOneLevel / kDefaultStep), kDefaultStep, plane);
}

int StepInForce(int step) { return step < 1 || step > kMaxStep ? kDefaultStep : step; }

}  // namespace

void LutLinInterp8Bit(int step, uint16_t* plane) {
    step = StepInForce(step);
    const auto levels = [plane](const int* at, int count, int32_t* out) {
        for (int i = 0; i < count; ++i) out[i] = plane[at[i]] >> 8;
    };
    SegmentEnds ends;
    ReadEnds(step, EndPlacesAt(step), levels, ends);
    Rebuild(step, ends, plane);
}

void LutLinInterp8Bit(int step, const PendingLut& from, uint16_t* lut) {
    step = StepInForce(step);
    const EndPlaces places = EndPlacesAt(step);
    for (int c = 0; c < kLutPlanes; ++c) {
        const auto levels = [&from, c](const int* at, int count, int32_t* out) { from.Levels(c, at, count, out); };
        SegmentEnds ends;
        ReadEnds(step, places, levels, ends);
        Rebuild(step, ends, lut + LutIndex(c, 0));
    }
}

}  // namespace quarnel
