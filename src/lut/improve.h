// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "core/calibration_source.h"
#include "core/lut16.h"

namespace quarnel {

// Fetches the interpolation step (byte 297 of the calibration block) from
// `source`. Returns -1 or -2 on failure, anything else on success. The LUT
// layer only calls it; the layer that owns the calibration sources provides it.
using StepByteFetch = int32_t (*)(const CalibrationSource& source, uint8_t& step);

// A LUT reduced to 8 bits: 256 entries of (red, green, blue), indexed
// [level][channel] with the plain int arithmetic of the steps.
struct Rgb8 {
    int32_t value[kLutPlanes];

    int32_t& operator[](int channel) { return value[channel]; }
    int32_t operator[](int channel) const { return value[channel]; }
    bool operator==(const Rgb8&) const = default;
};
struct Lut8 {
    Rgb8 entry[kLutLevels];

    Rgb8& operator[](int level) { return entry[level]; }
    const Rgb8& operator[](int level) const { return entry[level]; }
    bool operator==(const Lut8&) const = default;
};

// Dark ends closer to the identity than this are left as they are.
inline constexpr int SMOOTH_LEVEL_MIN = 30;

// A table not yet written out: worked out entry by entry from what it is
// made of (a base LUT under gains, say). The step interpolation reads only
// the 8-bit levels of the few entries at its segment ends before it writes
// every entry anew, so such a table is worked out whole only where a step
// reads it whole.
class PendingLut {
public:
    // The 8-bit levels (high bytes) of plane `channel`'s entries at `at[0]`
    // to `at[count - 1]`, into `out`.
    virtual void Levels(int channel, const int* at, int count, int32_t* out) const = 0;
    // Every entry, into `lut`.
    virtual void Fill(uint16_t* lut) const = 0;

protected:
    ~PendingLut() = default;
};

// Reduces `lut` to 8 bits and either interpolates it at the step fetched from
// `source` (calibration data version `biosVer` 7) or smooths its dark end;
// writes it back x 256 on success and leaves it untouched on any failure.
// Always returns 0.
int32_t LutImprove(int32_t biosVer, const CalibrationSource& source, uint16_t* lut, StepByteFetch fetch);

// The same for the table `pending` stands for, written into `lut`: the
// improved table on success, the table itself on any failure.
int32_t LutImprove(int32_t biosVer, const CalibrationSource& source, const PendingLut& pending, uint16_t* lut,
                   StepByteFetch fetch);

// Replaces each channel's dark end with a straight ramp when the curve near
// black strays a little from the identity. 0, or 2 when a channel offers no
// smoothing point (its entry 64 is exact, or every entry down to 1 strays far).
int32_t LutSmooth8Bit(const Lut8& in, Lut8& out);

// Piecewise-linear interpolation of one channel plane (256 entries) in
// place: the high bytes of every step-th entry and of the last are kept, the
// entries between them are rebuilt on the straight line, and every entry is
// written back as its 8-bit level x 256. A step outside 1..64 is taken as 16.
// It has no failure path.
void LutLinInterp8Bit(int step, uint16_t* plane);

// The same for every plane of `from`, written into `lut`: the entries each
// plane reads are worked out once for all three.
void LutLinInterp8Bit(int step, const PendingLut& from, uint16_t* lut);

}  // namespace quarnel
