// SPDX-License-Identifier: MIT
#pragma once
// A base LUT under white-point gains, handed to the improvement as it
// stands: the step interpolation reads a few of its entries and writes every
// entry anew, so the gains are applied to the whole table only where a step
// reads it whole.

#include <cstdint>

#include "color/apply_gains.h"
#include "color/gain_types.h"
#include "core/lut16.h"
#include "lut/improve.h"

namespace quarnel {

class GainedLut final : public PendingLut {
public:
    // `levels` are the input levels the gains scale (LevelValues() for the
    // plain i x gain), rising from the first to the last.
    GainedLut(const double* levels, const GainTriple& gains, const uint16_t* base)
        : levels_(levels), gains_(gains), base_(base) {}

    void Levels(int channel, const int* at, int count, int32_t* out) const override {
        const uint16_t* plane = base_ + LutIndex(channel, 0);
        const double gain = gains_[static_cast<std::size_t>(channel)];
        for (int i = 0; i < count; ++i) out[i] = GainedEntry(plane, levels_[at[i]], gain) >> 8;
    }
    void Fill(uint16_t* lut) const override { ApplyGainsAtLevels(levels_, gains_.data(), base_, lut); }

private:
    const double* levels_;
    GainTriple gains_;
    const uint16_t* base_;
};

}  // namespace quarnel
